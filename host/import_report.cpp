#include "host/import_report.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <ostream>

#include "host/drawing.h"
#include "host/plate_look.h"
#include "model/profile.h"

namespace {

using KindCounts = std::map<std::string, std::uint64_t>;

std::uint64_t Sum(const KindCounts& counts) {
    std::uint64_t sum = 0;
    for (const auto& [kind, count] : counts) sum += count;
    return sum;
}

std::string Text(const KindCounts& counts) {
    std::string text;
    for (const auto& [kind, count] : counts)
        text += (text.empty() ? "" : ", ") + PlainText(kind) + " " + std::to_string(count);
    return text;
}

/// "1 node", "2 nodes"
std::string Counted(std::uint64_t count, const std::string& thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

struct Unit {
    const char* name;
    double millimetres;
};

/// The unit of $INSUNITS; the null name for numbers that say nothing.
Unit UnitOf(int insUnits) {
    static constexpr Unit kUnits[] = {
        {nullptr, 0},        {"inches", 25.4},      {"feet", 304.8},         {"miles", 1609344},    {"millimetres", 1},
        {"centimetres", 10}, {"metres", 1000},      {"kilometres", 1e6},     {"microinches", 2.54e-5}, {"mils", 0.0254},
        {"yards", 914.4},    {"angstroms", 1e-7},   {"nanometres", 1e-6},    {"micrometres", 1e-3}, {"decimetres", 100},
        {"decametres", 1e4}, {"hectometres", 1e5},  {"gigametres", 1e12},
    };
    return insUnits >= 0 && insUnits < static_cast<int>(std::size(kUnits)) ? kUnits[insUnits] : Unit{nullptr, 0};
}

/// "R12", "2018"; the mark itself if it is none of the known ones.
std::string VersionText(const std::string& mark) {
    static const std::map<std::string, const char*> kVersions = {
        {"AC1006", "R10"},  {"AC1009", "R12"},  {"AC1012", "R13"},  {"AC1014", "R14"},  {"AC1015", "2000"},
        {"AC1018", "2004"}, {"AC1021", "2007"}, {"AC1024", "2010"}, {"AC1027", "2013"}, {"AC1032", "2018"},
    };
    if (mark.empty()) return "no version given";
    const auto known = kVersions.find(mark);
    return known == kVersions.end() ? PlainText(mark) : known->second;
}

std::string UnitText(int insUnits) {
    const Unit unit = UnitOf(insUnits);
    return unit.name ? unit.name : "no unit given";
}

std::string Shown(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", value);
    return text;
}

std::string SecondsText(double seconds) {
    char text[32];
    if (seconds < 0.9995)
        std::snprintf(text, sizeof text, "%.1f ms", seconds * 1e3);
    else
        std::snprintf(text, sizeof text, "%.2f s", seconds);
    return text;
}

std::uint64_t NotFinite(const DxfImportReport& report) { return report.dropped + report.pieces.notFinite; }

std::uint64_t RefusedPieces(const DxfPieceCounts& pieces) {
    return pieces.tooShort + pieces.degenerate + pieces.notFinite;
}

Json PlatesJson(const ImportOutcome& outcome) {
    if (!outcome.plates) return nullptr;
    return {{"count", outcome.plates->count},
            {"area", JsonNumber(outcome.plates->area)},
            {"dangling", outcome.plates->dangling}};
}

}  // namespace

std::vector<std::string> ImportNotes(const ImportOutcome& outcome) {
    const DxfImportReport& report = outcome.report;
    std::vector<std::string> notes;
    const int units = report.header.m_nInsUnits;
    if (units >= 0 && units != 4 && !outcome.job.scale) {
        const Unit unit = UnitOf(units);
        if (unit.name)
            notes.push_back("the drawing says that its unit is not the millimetre but " + std::string(unit.name) +
                            "; it was taken as it stands (--scale " + Shown(unit.millimetres) + " converts it)");
        else
            notes.push_back("the drawing does not say that its unit is the millimetre ($INSUNITS " +
                            std::to_string(units) + "); it was taken as it stands (see --scale)");
    }
    if (report.closedNotMade)
        notes.push_back(Counted(report.closedNotMade, "closed polyline") +
                        ": the closing side from the last corner to the first was not made");
    if (!report.read.Ok()) notes.push_back("the drawing breaks off: " + report.read.m_strReason);
    if (outcome.lines == 0) notes.push_back("no line came out");
    return notes;
}

Json ImportJson(const ImportOutcome& outcome) {
    const DxfImportReport& report = outcome.report;
    const DxfPieceCounts& pieces = report.pieces;
    Json seconds = Json::object();
    for (const ImportStage& stage : outcome.stages) seconds[stage.name] = JsonNumber(stage.seconds);
    return {{"type", "import"},
            {"file", outcome.job.file},
            {"layer", outcome.job.layer},
            {"version", report.header.m_strVersion},
            {"insunits", report.header.m_nInsUnits >= 0 ? Json(report.header.m_nInsUnits) : Json(nullptr)},
            {"scale", JsonNumber(outcome.job.scale.value_or(1.0))},
            {"tolerance", g_cTvoProfile.m_nNetTolerance},
            {"entities", report.entities},
            {"read", Sum(report.onLayer) + report.dropped},
            {"taken", report.taken},
            {"skipped", report.skipped},
            {"pieces", {{"offered", pieces.offered}, {"taken", pieces.taken}, {"existed", pieces.existed}}},
            {"refused", {{"tooShort", pieces.tooShort}, {"degenerate", pieces.degenerate}, {"notFinite", NotFinite(report)}}},
            {"closedNotMade", report.closedNotMade},
            {"nodes", outcome.nodes},
            {"lines", outcome.lines},
            {"arcs", outcome.arcs},
            {"nodesDeleted", outcome.nodesDeleted},
            {"plates", PlatesJson(outcome)},
            {"model", outcome.modelFile.empty() ? Json(nullptr) : Json{{"file", outcome.modelFile}, {"bytes", outcome.modelBytes}}},
            {"seconds", seconds},
            {"notes", ImportNotes(outcome)}};
}

void PrintImportReport(std::ostream& out, const ImportOutcome& outcome) {
    const DxfImportReport& report = outcome.report;
    const DxfPieceCounts& pieces = report.pieces;
    out << "drawing   " << PlainText(outcome.job.file) << "\n          " << VersionText(report.header.m_strVersion)
        << (report.header.m_bBinary ? ", binary, " : ", text, ") << UnitText(report.header.m_nInsUnits) << "; "
        << report.entities << " entities on "
        << Counted(report.layers.size(), "layer") << "\n";
    out << "layer     " << PlainText(outcome.job.layer) << "\n";
    out << "read      " << Sum(report.onLayer) + report.dropped << " entities of the layer\n";
    out << "taken     " << Sum(report.taken) << (report.taken.empty() ? "" : ": " + Text(report.taken)) << "\n          in "
        << Counted(pieces.taken, "piece") << ", of which " << pieces.existed << " stood there already\n";
    out << "refused   " << RefusedPieces(pieces) + report.dropped << ": " << pieces.tooShort << " too short (up to "
        << g_cTvoProfile.m_nNetTolerance << " mm), " << pieces.degenerate << " degenerate (both ends at one node), "
        << NotFinite(report) << " not finite\n";
    out << "skipped   " << Sum(report.skipped) << (report.skipped.empty() ? "" : ": " + Text(report.skipped)) << "\n";
    out << "net       " << Counted(outcome.nodes, "node") << ", " << Counted(outcome.lines, "line") << " ("
        << Counted(outcome.arcs, "arc") << "); " << Counted(outcome.nodesDeleted, "node") << " without lines deleted\n";
    if (const auto& plates = outcome.plates) {
        out << "plates    " << plates->count;
        if (plates->count) out << ", " << AreaText(plates->area) << " in all";
        out << "; " << Counted(plates->dangling, "line") << (plates->dangling == 1 ? " dangles\n" : " dangle\n");
    }
    if (!outcome.modelFile.empty())
        out << "saved     " << PlainText(outcome.modelFile) << ", " << outcome.modelBytes << " bytes\n";
    out << "time      ";
    for (std::size_t i = 0; i < outcome.stages.size(); ++i)
        out << (i ? ", " : "") << outcome.stages[i].name << " " << SecondsText(outcome.stages[i].seconds);
    out << "\n";
    for (const std::string& note : ImportNotes(outcome)) out << "note      " << PlainText(note) << "\n";
}

std::string CaptionText(const ImportOutcome& outcome) {
    return PlainText(outcome.job.layer) + "  ·  " + Counted(outcome.nodes, "node") + ", " + Counted(outcome.lines, "line") +
           (outcome.plates ? ", " + Counted(outcome.plates->count, "plate") : "") + "  ·  " + PlainText(std::filesystem::path(outcome.job.file).filename().string());
}
