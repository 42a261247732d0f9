// tvo layers: what stands on the layers of a drawing.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "host/commands.h"
#include "host/drawing.h"
#include "host/failure.h"
#include "host/json_text.h"
#include "platform/dxf/dxf.h"
#include "platform/dxf/layer_summary.h"

namespace {

struct LayersOptions {
    std::string file;
    bool json = false;
};

Json LayerJson(const DxfLayerSummary& layer) {
    const DxfExtent& box = layer.m_extent;
    return {{"type", "layer"},
            {"name", layer.m_strName},
            {"lines", layer.m_nLine},
            {"polylines", layer.m_nPolyline},
            {"arcs", layer.m_nArc},
            {"circles", layer.m_nCircle},
            {"others", layer.m_nOther},
            {"extent", box.m_bEmpty ? Json(nullptr)
                                    : Json::array({JsonNumber(box.m_dMinX), JsonNumber(box.m_dMinY),
                                                   JsonNumber(box.m_dMaxX), JsonNumber(box.m_dMaxY)})}};
}

std::string ExtentText(const DxfExtent& box) {
    if (box.m_bEmpty) return "-";
    char text[120];
    std::snprintf(text, sizeof text, "(%.9g, %.9g) to (%.9g, %.9g)", box.m_dMinX, box.m_dMinY, box.m_dMaxX, box.m_dMaxY);
    return text;
}

/// A table with aligned columns: the name left, the counts right, the extent as it comes.
void PrintTable(const std::vector<DxfLayerSummary>& layers) {
    std::vector<std::vector<std::string>> rows = {{"layer", "lines", "polylines", "arcs", "circles", "others", "extent"}};
    for (const DxfLayerSummary& layer : layers)
        rows.push_back({PlainText(layer.m_strName), std::to_string(layer.m_nLine), std::to_string(layer.m_nPolyline),
                        std::to_string(layer.m_nArc), std::to_string(layer.m_nCircle), std::to_string(layer.m_nOther),
                        ExtentText(layer.m_extent)});
    std::vector<std::size_t> widths(rows[0].size(), 0);
    for (const auto& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], TerminalColumns(row[i]));
    for (const auto& row : rows) {
        std::string line = row[0] + std::string(widths[0] - TerminalColumns(row[0]), ' ');
        for (std::size_t i = 1; i + 1 < row.size(); ++i)
            line += "  " + std::string(widths[i] - row[i].size(), ' ') + row[i];
        std::cout << line << "  " << row.back() << '\n';
    }
}

int RunLayers(const LayersOptions& options) {
    DXF drawing;
    ReadDrawing(options.file, drawing);
    const auto layers = SummarizeLayers(drawing);
    if (options.json) {
        for (const DxfLayerSummary& layer : layers) PrintJsonLine(std::cout, LayerJson(layer));
    } else if (layers.empty()) {
        std::cout << "no layers\n";
    } else {
        PrintTable(layers);
    }
    return kDone;
}

}  // namespace

Command AddLayersCommand(CLI::App& app) {
    auto options = std::make_shared<LayersOptions>();
    CLI::App* command = app.add_subcommand("layers", "List the layers of a DXF drawing");
    command->add_option("PLAN.dxf", options->file, "the drawing, text or binary, R10 to R2018")->required();
    command->add_flag("--json", options->json, "print JSON, one object a layer");
    command->footer("Lists every layer with its counts of lines, polylines, arcs, circles and other entities, and the\n"
                    "extent of the former four in the drawing's units.\n"
                    "\nJSON:  {\"type\":\"layer\",\"name\":S,\"lines\":N,\"polylines\":N,\"arcs\":N,\"circles\":N,\"others\":N,\n"
                    "        \"extent\":[minX,minY,maxX,maxY] or null}\n"
                    "\nStatus: 0; 1 if the drawing can't be read; 2 wrong usage.\n"
                    "\nExample:  tvo layers plan.dxf\n");
    return {command, [options] { return RunLayers(*options); }};
}
