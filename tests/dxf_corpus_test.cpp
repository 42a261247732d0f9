// Drawings from elsewhere, against counts and sums that were made without this reader.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <numbers>
#include <string>

#include "platform/dxf/dxf.h"
#include "platform/dxf/layer_summary.h"

namespace {

using Json = nlohmann::json;

/// The folder of the drawings: the build's, or else the environment's; empty if there is none.
std::string CorpusFolder() {
    const char* const given = std::getenv("TVO_DXF_CORPUS");
    for (const std::string& folder : {std::string(TVO_DXF_CORPUS), std::string(given ? given : "")})
        if (!folder.empty() && std::filesystem::exists(folder + "/oracle.json")) return folder;
    return "";
}

class DxfCorpus : public testing::Test {
protected:
    void SetUp() override {
        m_folder = CorpusFolder();
        if (m_folder.empty())
            GTEST_SKIP() << "no drawings: set TVO_DXF_CORPUS to their folder (with oracle.json)";
        m_oracle = Json::parse(std::ifstream(m_folder + "/oracle.json")).at("files");
        ASSERT_EQ(m_oracle.size(), 45u);
    }
    std::string Path(const std::string& file) const { return m_folder + "/" + file; }
    std::string m_folder;
    Json m_oracle;
};

/// The numbers of one layer under the oracle's names.
using Numbers = std::map<std::string, double>;
using Layers = std::map<std::string, Numbers>;

void TakePolyline(Numbers& n, const ACAD_POLYLINE& polyline) {
    const bool light = polyline.GetKind() == "LWPOLYLINE";
    const std::string form = light ? "lw" : "pl";
    const auto vertices = polyline.Vertices();
    ++n[light ? "LWPOLYLINE" : polyline.m_b3D ? "POLYLINE_3D" : "POLYLINE_2D"];
    n[form + "_vertices"] += static_cast<double>(vertices.size());
    n[form + "_closed"] += polyline.m_bClosed;
    for (const ACAD_VERTEX& v : vertices) {
        n[form + "_bulged_vertices"] += v.m_dBulge != 0;
        n["poly_vertex_sum_x"] += v.m_x;
        n["poly_vertex_sum_y"] += v.m_y;
    }
    if (!vertices.empty()) n["poly_segments_without_frame"] += static_cast<double>(vertices.size() - 1);
    for (std::size_t i = 0; i + 1 < vertices.size(); ++i) {
        const ACAD_VERTEX &p = vertices[i], &q = vertices[i + 1];
        n["poly_segments_ccw_bulge"] += p.m_dBulge > 0;
        n["poly_segments_cw_bulge"] += p.m_dBulge < 0;
        n["poly_bulge_sum"] += p.m_dBulge;
        if (p.m_dBulge == 0) n["poly_straight_length_sum"] += std::hypot(q.m_x - p.m_x, q.m_y - p.m_y);
    }
    if (polyline.m_bClosed && vertices.size() > 1)
        n["poly_closing_segments_not_made"] +=
            vertices.front().m_x != vertices.back().m_x || vertices.front().m_y != vertices.back().m_y;
}

void TakeEntity(Numbers& n, const ACAD_ENTITY& entity) {
    if (const auto* line = dynamic_cast<const ACAD_LINE*>(&entity)) {
        const double length = std::hypot(line->m_x2 - line->m_x1, line->m_y2 - line->m_y1);
        ++n["LINE"];
        n["line_sum_x"] += line->m_x1 + line->m_x2;
        n["line_sum_y"] += line->m_y1 + line->m_y2;
        n["line_length_sum"] += length;
        n["zero_length_lines"] += length == 0;
    } else if (const auto* arc = dynamic_cast<const ACAD_ARC*>(&entity)) {
        double sweep = std::fmod(arc->m_dEnd - arc->m_dStart, 360);
        if (sweep < 0) sweep += 360;
        if (sweep == 0) sweep = 360;
        ++n["ARC"];
        n["arc_centre_sum_x"] += arc->m_x;
        n["arc_centre_sum_y"] += arc->m_y;
        n["arc_radius_sum"] += arc->m_dRadius;
        n["arc_sweep_sum_deg"] += sweep;
    } else if (const auto* circle = dynamic_cast<const ACAD_CIRCLE*>(&entity)) {
        ++n["CIRCLE"];
        n["circle_centre_sum_x"] += circle->m_x;
        n["circle_centre_sum_y"] += circle->m_y;
        n["circle_radius_sum"] += circle->m_dRadius;
    } else if (const auto* polyline = dynamic_cast<const ACAD_POLYLINE*>(&entity)) {
        TakePolyline(n, *polyline);
    } else if (entity.GetKind() == "POLYLINE (mesh)") {
        ++n["POLYLINE_MESH"];
    }
}

Layers LayersOf(const DXF& drawing, bool paperSpace) {
    Layers layers;
    for (const ACAD_ENTITY* entity : drawing.GetEntities())
        if (entity->m_bPaperSpace == paperSpace) TakeEntity(layers[entity->GetLayer()], *entity);
    return layers;
}

/// What must be found instead of the oracle's number. The oracle counts as the file stands: control points of
/// splines are vertices there, of meshes too, and objects seen from below (extrusion 0, 0, -1) keep their own
/// coordinates. These numbers come from a separate scan of the files.
const struct {
    const char* file;
    const char* layer;
    const char* key;
    double value;
} kDifferences[] = {
    {"arch_eaves_section_r12_8bit.dxf", "HOLZ", "pl_vertices", 1190},
    {"arch_eaves_section_r12_8bit.dxf", "HOLZ", "poly_vertex_sum_x", 8037298.5355259925},
    {"arch_eaves_section_r12_8bit.dxf", "HOLZ", "poly_vertex_sum_y", 12273444.964092983},
    {"arch_eaves_section_r12_8bit.dxf", "HOLZ", "poly_straight_length_sum", 53338.10416640457},
    {"arch_eaves_section_r12_8bit.dxf", "REGENRINNE", "pl_vertices", 37},
    {"arch_eaves_section_r12_8bit.dxf", "REGENRINNE", "poly_vertex_sum_x", 152281.27588300002},
    {"arch_eaves_section_r12_8bit.dxf", "REGENRINNE", "poly_vertex_sum_y", 351500.3038040001},
    {"arch_eaves_section_r12_8bit.dxf", "REGENRINNE", "poly_straight_length_sum", 782.8625135000915},
    {"arch_eaves_section_r12_8bit.dxf", "SCHRAFFUR", "pl_vertices", 186},
    {"arch_eaves_section_r12_8bit.dxf", "SCHRAFFUR", "poly_vertex_sum_x", 2152829.4822079996},
    {"arch_eaves_section_r12_8bit.dxf", "SCHRAFFUR", "poly_vertex_sum_y", 776222.212022},
    {"arch_eaves_section_r12_8bit.dxf", "SCHRAFFUR", "poly_straight_length_sum", 2243.1548352224054},
    {"mech_bracket_r2004_ocs.dxf", "Visible", "arc_centre_sum_x", 104.1532583620014},
    {"mech_part_r12_ocs.dxf", "0", "arc_centre_sum_x", -103.12521043776437},
    {"mech_part_r12_ocs.dxf", "0", "circle_centre_sum_x", -316.9794121773924},
    {"lwpoly_extrusion_flip_r2000.dxf", "0", "poly_vertex_sum_x", -360.0},
    {"mixed_binary_r2018.dxf", "Layer1", "pl_vertices", 17},
    {"mixed_binary_r2018.dxf", "Layer1", "poly_vertex_sum_x", 9775.0},
    {"mixed_binary_r2018.dxf", "Layer1", "poly_vertex_sum_y", -6800.0},
    {"mixed_binary_r2018.dxf", "Layer1", "poly_straight_length_sum", 232.57927115947328},
    {"mixed_binary_r2018.dxf", "Layer2", "poly_vertex_sum_x", 15564.375},
    {"mixed_binary_r2018.dxf", "Layer2", "poly_vertex_sum_y", -7210.3125},
    {"mixed_binary_r2018.dxf", "Layer2", "poly_straight_length_sum", 630.9503477100164},
    {"mixed_binary_r2018.dxf", "Layer2", "pl_vertices", 22},
};

double Wanted(const std::string& file, const std::string& layer, const std::string& key, const Json& oracle) {
    for (const auto& d : kDifferences)
        if (file == d.file && layer == d.layer && key == d.key) return d.value;
    return oracle.is_null() ? 0 : oracle.get<double>();
}

bool HasDifferences(const std::string& file, const std::string& layer) {
    return std::any_of(std::begin(kDifferences), std::end(kDifferences),
                       [&](const auto& d) { return file == d.file && layer == d.layer; });
}

/// Equal but for rounding in sums.
bool Near(double a, double b) { return std::abs(a - b) <= 1e-9 * std::max({1.0, std::abs(a), std::abs(b)}); }

/// Every key that the oracle and this test both know.
const char* const kKeys[] = {
    "LINE",
    "LWPOLYLINE",
    "POLYLINE_2D",
    "POLYLINE_3D",
    "POLYLINE_MESH",
    "ARC",
    "CIRCLE",
    "lw_vertices",
    "lw_bulged_vertices",
    "lw_closed",
    "pl_vertices",
    "pl_bulged_vertices",
    "pl_closed",
    "poly_segments_without_frame",
    "poly_segments_ccw_bulge",
    "poly_segments_cw_bulge",
    "poly_closing_segments_not_made",
    "line_sum_x",
    "line_sum_y",
    "line_length_sum",
    "zero_length_lines",
    "poly_vertex_sum_x",
    "poly_vertex_sum_y",
    "poly_straight_length_sum",
    "poly_bulge_sum",
    "arc_centre_sum_x",
    "arc_centre_sum_y",
    "arc_radius_sum",
    "arc_sweep_sum_deg",
    "circle_centre_sum_x",
    "circle_centre_sum_y",
    "circle_radius_sum",
};

TEST_F(DxfCorpus, EveryLayerHasItsCountsAndSums) {
    for (const auto& [file, expected] : m_oracle.items()) {
        SCOPED_TRACE(file);
        DXF drawing;
        ASSERT_EQ(drawing.Read_FileDxf_To_Mem(Path(file).c_str()), 1) << drawing.GetResult().m_strReason;
        EXPECT_EQ(drawing.GetDropCount(), 0u);
        Layers ours = LayersOf(drawing, false);
        for (const auto& [name, layer] : expected.at("layers").items())
            for (const char* key : kKeys)
                EXPECT_PRED2(Near, ours[name][key], Wanted(file, name, key, layer.at(key)))
                    << name << ": " << key;
        for (const auto& [name, numbers] : ours)
            EXPECT_TRUE(numbers.empty() || expected.at("layers").contains(name)) << name << " isn't expected";

        Layers sheets = LayersOf(drawing, true);
        const Json onSheets = expected.value("paperspace_layers", Json::object());
        for (const auto& [name, layer] : onSheets.items())
            for (const auto& [key, count] : layer.items())
                EXPECT_EQ(sheets[name][key], count.get<double>()) << name;
    }
}

TEST_F(DxfCorpus, EveryKindHasItsCount) {
    for (const auto& [file, expected] : m_oracle.items()) {
        SCOPED_TRACE(file);
        DXF drawing;
        drawing.Read_FileDxf_To_Mem(Path(file).c_str());
        std::map<std::string, int> ours[2], wanted[2];
        for (const ACAD_ENTITY* e : drawing.GetEntities())
            ++ours[e->m_bPaperSpace][e->GetKind() == "POLYLINE (mesh)" ? "POLYLINE" : e->GetKind()];
        int space = 0;
        for (const char* key : {"entities_model", "entities_paper"}) {
            const Json counts = expected.value(key, Json::object());
            for (const auto& [kind, count] : counts.items())
                if (!kind.starts_with("(")) wanted[space][kind] = count;  // "(VERTEX)": parts of entities
            ++space;
        }
        EXPECT_EQ(ours[0], wanted[0]);
        EXPECT_EQ(ours[1], wanted[1]);
    }
}

TEST_F(DxfCorpus, HeadersAndLayerTables) {
    for (const auto& [file, expected] : m_oracle.items()) {
        SCOPED_TRACE(file);
        DXF drawing;
        drawing.Read_FileDxf_To_Mem(Path(file).c_str());
        const DxfHeader& header = drawing.GetHeader();
        EXPECT_EQ(header.m_strVersion,
                  expected.at("acadver").is_null() ? "" : expected.at("acadver").get<std::string>());
        EXPECT_EQ(header.m_strCodePage,
                  expected.at("codepage").is_null() ? "" : expected.at("codepage").get<std::string>());
        EXPECT_EQ(header.m_nInsUnits,
                  expected.at("insunits").is_null() ? -1 : expected.at("insunits").get<int>());
        EXPECT_EQ(header.m_bEndMark, expected.at("eof_marker").get<bool>());
        EXPECT_EQ(header.m_bBinary, expected.at("bytes") == "binary");
        for (const DxfLayer& layer : drawing.GetLayers()) {
            const auto at = expected.at("layers").find(layer.m_strName);
            if (at == expected.at("layers").end()) continue;
            const Json& table = at->at("table");
            EXPECT_EQ(layer.m_bInTable, !table.is_null()) << layer.m_strName;
            if (table.is_null()) continue;
            EXPECT_EQ(layer.m_bFrozen, table.at("frozen").get<bool>()) << layer.m_strName;
            EXPECT_EQ(layer.m_bOff, table.at("off").get<bool>()) << layer.m_strName;
            EXPECT_EQ(layer.m_bLocked, table.at("locked").get<bool>()) << layer.m_strName;
        }
    }
}

TEST_F(DxfCorpus, SummaryAgrees) {
    for (const auto& [file, expected] : m_oracle.items()) {
        SCOPED_TRACE(file);
        DXF drawing;
        drawing.Read_FileDxf_To_Mem(Path(file).c_str());
        for (const DxfLayerSummary& row : SummarizeLayers(drawing)) {
            const auto at = expected.at("layers").find(row.m_strName);
            if (at == expected.at("layers").end() || row.m_nPaperSpace > 0) continue;
            const Json& layer = *at;
            const auto count = [&](const char* key) { return layer.at(key).get<std::uint64_t>(); };
            EXPECT_EQ(row.m_nLine, count("LINE"));
            EXPECT_EQ(row.m_nArc, count("ARC"));
            EXPECT_EQ(row.m_nCircle, count("CIRCLE"));
            EXPECT_EQ(row.m_nPolyline, count("LWPOLYLINE") + count("POLYLINE_2D") + count("POLYLINE_3D"));
            const Json& box = layer.at("bbox");
            if (box.is_null() || row.m_extent.m_bEmpty || HasDifferences(file, row.m_strName)) continue;
            if (count("lw_bulged_vertices") + count("pl_bulged_vertices") > 0) continue;
            const DxfExtent& e = row.m_extent;
            const double ours[] = {e.m_dMinX, e.m_dMinY, e.m_dMaxX, e.m_dMaxY};
            for (std::size_t i = 0; i < 4; ++i) {
                const double theirs = box.at(i).get<double>();
                if (row.m_nArc == 0) EXPECT_PRED2(Near, ours[i], theirs) << row.m_strName << ", side " << i;
                else  // the oracle takes an arc's whole circle
                    EXPECT_TRUE(i < 2 ? ours[i] >= theirs - 1e-6 : ours[i] <= theirs + 1e-6) << row.m_strName;
            }
        }
    }
}

// The same drawing, saved both ways.
TEST_F(DxfCorpus, TextAndBinaryAreTheSame) {
    for (const std::string version : {"r12", "r2013"}) {
        DXF text, binary;
        ASSERT_EQ(text.Read_FileDxf_To_Mem(Path("twin_ascii_" + version + ".dxf").c_str()), 1);
        ASSERT_EQ(binary.Read_FileDxf_To_Mem(Path("twin_binary_" + version + ".dxf").c_str()), 1);
        ASSERT_EQ(text.GetEntityCount(), binary.GetEntityCount());
        Layers a = LayersOf(text, false), b = LayersOf(binary, false);
        ASSERT_EQ(a.size(), b.size());
        for (const auto& [layer, numbers] : a)
            for (const auto& [key, value] : numbers)
                EXPECT_PRED2(Near, value, b[layer][key]) << layer << ": " << key;
    }
}

// A plate drawn from below: its lines stand in world coordinates, its round corners in their own. Turned
// over, the corners' ends meet the lines' ends.
TEST_F(DxfCorpus, ArcsSeenFromBelowMeetTheirLines) {
    DXF drawing;
    ASSERT_EQ(drawing.Read_FileDxf_To_Mem(Path("mech_part_r12_ocs.dxf").c_str()), 1);
    int met = 0;
    for (const ACAD_ENTITY* e : drawing.GetEntities()) {
        const auto* arc = dynamic_cast<const ACAD_ARC*>(e);
        if (!arc || arc->m_dRadius != 12) continue;
        for (const double degrees : {arc->m_dStart, arc->m_dEnd}) {
            const double angle = degrees * std::numbers::pi / 180;
            const double x = arc->m_x + arc->m_dRadius * std::cos(angle),
                         y = arc->m_y + arc->m_dRadius * std::sin(angle);
            for (const ACAD_ENTITY* other : drawing.GetEntities()) {
                const auto* line = dynamic_cast<const ACAD_LINE*>(other);
                if (line && std::min(std::hypot(line->m_x1 - x, line->m_y1 - y),
                                     std::hypot(line->m_x2 - x, line->m_y2 - y)) < 1e-6)
                    ++met;
            }
        }
    }
    EXPECT_EQ(met, 8);
}

}  // namespace
