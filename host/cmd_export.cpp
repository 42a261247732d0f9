// tvo export: a saved model becomes a DXF drawing, or a page of PDF.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "host/commands.h"
#include "host/dxf_output.h"
#include "host/failure.h"
#include "host/host_data_base.h"
#include "host/json_text.h"
#include "host/models/model_build.h"
#include "host/print/pdf.h"
#include "host/tvo_model_host.h"

namespace {

struct ExportOptions {
    std::string model, out;
    std::string version = "r12";
    std::string paper = "A4", scale;
    bool portrait = false;
    bool json = false;
};

bool IsPdf(std::string path) {
    std::transform(path.begin(), path.end(), path.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return path.ends_with(".pdf");
}

int ExportPdf(const ExportOptions& options, CTvoHostDataBase& db, const std::string& remarks) {
    PdfPage page;
    page.paper = options.paper;
    page.landscape = !options.portrait;
    page.caption = std::filesystem::path(options.model).filename().string();
    if (!options.scale.empty()) page.scale = *ScaleFrom(options.scale);
    const WrittenPdf written = WritePdf(options.out, db, page);
    if (options.json) {
        Json json = {{"type", "export"},           {"model", options.model},   {"file", options.out}, {"paper", options.paper},
                     {"width", written.width},     {"height", written.height}, {"scale", written.scale},
                     {"whole", !written.cut},      {"bytes", written.bytes}};
        if (!remarks.empty()) json["remarks"] = remarks;
        PrintJsonLine(std::cout, json);
        return kDone;
    }
    std::cout << options.out << ": " << written.width << " x " << written.height << " mm, 1:" << written.scale << ", bytes "
              << written.bytes << '\n';
    if (written.cut) std::cout << "not all of the model finds room on the page at that scale\n";
    if (!remarks.empty()) std::cout << remarks << '\n';
    return kDone;
}

int RunExport(const ExportOptions& options) {
    CTvoHostDataBase db;
    const BuiltModel built = OpenModel(options.model, db, TvoModelHost());
    if (IsPdf(options.out)) return ExportPdf(options, db, built.Remarks());
    DxfVersion version = DxfVersion::R12;
    ReadDxfVersion(options.version, version);
    const SavedDrawing saved = SaveDrawing(options.out, db, version);
    const std::string remarks = built.Remarks();
    if (options.json) {
        Json json = {{"type", "export"},           {"model", options.model},     {"file", saved.file},
                     {"version", options.version}, {"entities", saved.entities}, {"bytes", saved.bytes}};
        if (!remarks.empty()) json["remarks"] = remarks;
        PrintJsonLine(std::cout, json);
        return kDone;
    }
    std::cout << saved.file << ": entities " << saved.entities << ", bytes " << saved.bytes << '\n';
    if (!remarks.empty()) std::cout << remarks << '\n';
    return kDone;
}

}  // namespace

Command AddExportCommand(CLI::App& app) {
    auto options = std::make_shared<ExportOptions>();
    CLI::App* command = app.add_subcommand("export", "Write a saved model as a DXF drawing or as PDF");
    command->add_option("MODEL", options->model, "the model file")->required();
    command->add_option("OUT", options->out, "the drawing: OUT.pdf for a page of PDF; else .dxf is added if the name has no such ending")
        ->required();
    command->add_option("--dxf-version", options->version, "r12, which everything old reads, or 2000 (r12)")
        ->check(CheckDxfVersion)
        ->type_name("VERSION");
    command->add_option("--paper", options->paper, "of the page: A0 to A4 (A4)")
        ->check([](const std::string& name) { return IsPaper(name) ? "" : "'" + name + "' is none of A0 to A4"; })
        ->type_name("NAME");
    command->add_option("--scale", options->scale, "of the page, such as 1:100; without it all fits")
        ->check([](const std::string& text) { return ScaleFrom(text) ? "" : "'" + text + "' is no scale such as 1:100"; })
        ->type_name("1:N");
    command->add_flag("--portrait", options->portrait, "the page upright");
    command->add_flag("--json", options->json, "tell what was written as one JSON object");
    command->footer(
        "What the view of the model shows comes out as points, lines, arcs, circles, polylines and texts on "
        "layer 0, in\n"
        "millimetres, each in the nearest of the 255 colours of drawings. Hidden components stay out.\n"
        "A page of PDF has it in colours of paper within a frame, below it name and scale. Where the scale is given, the\n"
        "middle of the model is in the middle of the page.\n"
        "\n--json: {\"type\":\"export\",\"model\",\"file\",\"version\",\"entities\":N,\"bytes\":N}; of PDF {\"type\":\"export\",\"model\",\n"
        "\"file\",\"paper\",\"width\":MM,\"height\":MM,\"scale\":N,\"whole\":B,\"bytes\":N}\n"
        "\nStatus: 0; 1 if the model can't be read or the drawing can't be written, and the file that was "
        "there\n"
        "stands then as it was; 2 wrong usage.\n"
        "\nExamples:  tvo export house.tvo house.dxf --dxf-version 2000\n"
        "           tvo export house.tvo house.pdf --paper A3 --scale 1:100\n");
    return {command, [options] { return RunExport(*options); }};
}
