// tvo export: a saved model becomes a DXF drawing.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "host/commands.h"
#include "host/dxf_output.h"
#include "host/failure.h"
#include "host/host_data_base.h"
#include "host/json_text.h"
#include "host/models/model_build.h"
#include "host/tvo_model_host.h"

namespace {

struct ExportOptions {
    std::string model, out;
    std::string version = "r12";
    bool json = false;
};

int RunExport(const ExportOptions& options) {
    CTvoHostDataBase db;
    const BuiltModel built = OpenModel(options.model, db, TvoModelHost());
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
    CLI::App* command = app.add_subcommand("export", "Write a saved model as a DXF drawing");
    command->add_option("MODEL", options->model, "the model file")->required();
    command->add_option("OUT.dxf", options->out, "the drawing; .dxf is added if the name has no such ending")
        ->required();
    command->add_option("--dxf-version", options->version, "r12, which everything old reads, or 2000 (r12)")
        ->check(CheckDxfVersion)
        ->type_name("VERSION");
    command->add_flag("--json", options->json, "tell what was written as one JSON object");
    command->footer(
        "What the view of the model shows comes out as points, lines, arcs, circles, polylines and texts on "
        "layer 0, in\n"
        "millimetres, each in the nearest of the 255 colours of drawings. Hidden components stay out.\n"
        "\n--json: {\"type\":\"export\",\"model\",\"file\",\"version\",\"entities\":N,\"bytes\":N}\n"
        "\nStatus: 0; 1 if the model can't be read or the drawing can't be written, and the file that was "
        "there\n"
        "stands then as it was; 2 wrong usage.\n"
        "\nExample:  tvo export house.tvo house.dxf --dxf-version 2000\n");
    return {command, [options] { return RunExport(*options); }};
}
