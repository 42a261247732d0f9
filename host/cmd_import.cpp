// tvo import: a layer of a drawing becomes a clean net.
#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <iostream>
#include <memory>
#include <string>

#include "host/commands.h"
#include "host/dxf_output.h"
#include "host/failure.h"
#include "host/file_output.h"
#include "host/host_data_base.h"
#include "host/import_report.h"
#include "host/models/model_writer.h"
#include "host/picture.h"
#include "host/stopwatch.h"
#include "host/svg_writer.h"
#include "host/tvo_model_host.h"
#include "model/profile.h"

namespace {

struct ImportOptions {
    ImportJob job;
    std::string out, dxf, svg, png;
    std::string dxfVersion = "r12";
    std::string size = "1600x1000";
    int tolerance = 50;
    bool keepNodes = false;
    bool noPlates = false;
    bool json = false;
};

struct PictureSize {
    int width = 0, height = 0;
};

/// Reads "1600x1000". False when it is anything else or out of range.
bool ReadSize(const std::string& text, PictureSize& size) {
    const char* const end = text.data() + text.size();
    const auto [x, widthError] = std::from_chars(text.data(), end, size.width);
    if (widthError != std::errc() || x == end || (*x != 'x' && *x != 'X')) return false;
    const auto [last, heightError] = std::from_chars(x + 1, end, size.height);
    const auto fits = [](int side) { return side >= kMinPictureSide && side <= kMaxPictureSide; };
    return heightError == std::errc() && last == end && fits(size.width) && fits(size.height);
}

std::string CheckSize(const std::string& text) {
    PictureSize size;
    return ReadSize(text, size) ? ""
                                : "'" + text + "' is no size; WxH, both from " + std::to_string(kMinPictureSide) + " to " +
                                      std::to_string(kMaxPictureSide);
}

int RunImport(const ImportOptions& options) {
    g_cTvoProfile.m_nNetTolerance = options.tolerance;
    CTvoHostDataBase db;
    ImportOutcome outcome = RunImportJob(options.job, db);
    if (!options.keepNodes) DeleteNodesWithoutLines(db, outcome);
    if (!options.noPlates) FormPlates(db, outcome);

    const std::string caption = CaptionText(outcome);
    Stopwatch watch;
    if (!options.out.empty()) {
        outcome.modelBytes = SaveModel(options.out, db, TvoModelHost()).bytes;
        outcome.modelFile = options.out;
        outcome.stages.push_back({"save", watch.Lap()});
    }
    if (!options.dxf.empty()) {
        DxfVersion version = DxfVersion::R12;
        ReadDxfVersion(options.dxfVersion, version);
        SaveDrawing(options.dxf, db, version);
        outcome.stages.push_back({"dxf", watch.Lap()});
    }
    if (!options.svg.empty()) {
        ReplaceFile(options.svg, SvgOfNet(db, caption));
        outcome.stages.push_back({"svg", watch.Lap()});
    }
    if (!options.png.empty()) {
        PictureSize size;
        ReadSize(options.size, size);
        WritePngOfModel(options.png, db, size.width, size.height, caption);
        outcome.stages.push_back({"png", watch.Lap()});
    }
    if (options.json)
        PrintJsonLine(std::cout, ImportJson(outcome));
    else
        PrintImportReport(std::cout, outcome);
    return kDone;
}

}  // namespace

Command AddImportCommand(CLI::App& app) {
    auto options = std::make_shared<ImportOptions>();
    CLI::App* command = app.add_subcommand("import", "Turn a layer of a DXF drawing into a clean axis net");
    command->add_option("PLAN.dxf", options->job.file, "the drawing, text or binary, R10 to R2018")->required();
    command->add_option("--layer", options->job.layer, "layer to take; ASCII case does not matter")
        ->required()
        ->type_name("NAME");
    command->add_option("--tolerance", options->tolerance, "ends nearer than this are one node, whole number from 1 (50)")
        ->check(CLI::Range(1, kMaxTolerance))
        ->type_name("MM");
    command->add_option("--scale", options->job.scale, "multiply coordinates and radii, as 1000 for a plan in metres")
        ->check(CheckScale)
        ->type_name("F");
    command->add_flag("--keep-nodes", options->keepNodes, "leave nodes without lines in the net");
    command->add_flag("--no-plates", options->noPlates, "leave the plates out");
    command->add_option("--out", options->out, "save the model; a file before is kept as MODEL.tvo~")->type_name("MODEL.tvo");
    CLI::Option* dxf = command->add_option("--dxf", options->dxf, "draw the net as DXF")->type_name("FILE");
    command->add_option("--dxf-version", options->dxfVersion, "r12 or 2000 (r12)")
        ->check(CheckDxfVersion)
        ->type_name("VERSION")
        ->needs(dxf);
    command->add_option("--svg", options->svg, "draw the net as SVG")->type_name("FILE");
    CLI::Option* png = command->add_option("--png", options->png, "draw the net as PNG")->type_name("FILE");
    command->add_option("--size", options->size, "pixels of the PNG (1600x1000)")
        ->check(CheckSize)
        ->type_name("WxH")
        ->needs(png);
    command->add_flag("--json", options->json, "print the report as one JSON object");
    command->footer(
        "Lines, polylines, arcs and circles of the layer become a clean net: ends snap to nodes, crossings\n"
        "break lines, duplicates go. Its closed cells become plates. The report tells what was read, taken, refused\n"
        "and skipped, how many plates there are, and how many lines dangle: no closed way passes them.\n"
        "The closing side of a closed polyline is not made; the report counts them. A drawing that says it is\n"
        "not in millimetres is taken as it stands unless --scale is given; the report tells.\n"
        "\nJSON:  {\"type\":\"import\",\"file\",\"layer\",\"version\",\"insunits\":N or null,\"scale\",\"tolerance\",\n"
        "        \"entities\":of the drawing,\"read\":of the layer,\"taken\":{KIND:N},\"skipped\":{KIND:N},\n"
        "        \"pieces\":{\"offered\",\"taken\",\"existed\"},\"refused\":{\"tooShort\",\"degenerate\",\"notFinite\"},\n"
        "        \"closedNotMade\",\"nodes\",\"lines\",\"arcs\",\"nodesDeleted\",\"plates\":{\"count\",\"area\",\"dangling\"}\n"
        "        or null,\"model\":{\"file\",\"bytes\"} or null,\"seconds\":{STAGE:F},\"notes\":[S]}\n"
        "       pieces are what the net is offered: lines, sides of polylines, arcs, half circles;\n"
        "       the area is that of all plates in square millimetres\n"
        "\nStatus: 0; 1 if the drawing can't be read, has no such layer, or a file can't be written; 2 wrong\n"
        "usage.\n"
        "\nExample:  tvo import plan.dxf --layer AXIS --out plan.tvo --png plan.png --size 1200x800\n");
    return {command, [options] { return RunImport(*options); }};
}
