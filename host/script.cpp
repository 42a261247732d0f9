#include "host/script.h"

#include <algorithm>
#include <ostream>
#include <vector>

#include "geometry/fpoint.h"
#include "geometry/frect.h"
#include "geometry/fshape.h"
#include "host/failure.h"
#include "host/file_output.h"
#include "host/import_report.h"
#include "host/net_json.h"
#include "host/net_walk.h"
#include "host/picture.h"
#include "host/script_command.h"
#include "host/script_line.h"
#include "host/svg_writer.h"
#include "host/tvo_load.h"
#include "model/profile.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "plates/mian_goujian.h"

namespace {

using Words = ScriptWords;

float Coordinate(const Words& words, std::size_t i) {
    static const char* const names[] = {"", "X1", "Y1", "X2", "Y2", "X3", "Y3"};
    return static_cast<float>(ScriptNumber(words[i], names[i]));
}

CFPoint Point(const Words& words, std::size_t i) { return {Coordinate(words, i), Coordinate(words, i + 1), 0}; }

void PrintResult(Script& script, const CGjNetLine* line) { PrintJsonLine(script.m_out, ResultJson(line, script.m_db)); }

// ---- drawing --------------------------------------------------------------------------------------

void RunNode(Script& script, const Words& words) {
    const float x = static_cast<float>(ScriptNumber(words[1], "X"));
    const float y = static_cast<float>(ScriptNumber(words[2], "Y"));
    script.m_db.KeepNode(script.m_db.AddNetNode(x, y));
}

void RunLine(Script& script, const Words& words) {
    PrintResult(script, script.m_db.AddNetLine(Point(words, 1), Point(words, 3), 0, 0));
}

void RunGetLine(Script& script, const Words& words) {
    PrintResult(script, script.m_db.GetNetLine(Point(words, 1), Point(words, 3), 0, 0));
}

// A net line's bulge is half the included angle, negative for anticlockwise, the only sense that a net stores.
void RunBulge(Script& script, const Words& words) {
    const double degrees = ScriptNumber(words[5], "DEGREES", -180, 0);
    if (degrees == 0 || degrees == -180)
        throw ScriptFailure{"DEGREES: '" + words[5] + "' gives no arc; it must lie between -180 and 0"};
    PrintResult(script, script.m_db.AddNetLine(Point(words, 1), Point(words, 3), 1, static_cast<float>(degrees)));
}

void RunArc(Script& script, const Words& words) {
    const CFPoint centre(static_cast<float>(ScriptNumber(words[1], "CX")),
                         static_cast<float>(ScriptNumber(words[2], "CY")), 0);
    const double r = ScriptNumber(words[3], "R", 0, 1e12);
    if (r == 0) throw ScriptFailure{"R: '" + words[3] + "' must be greater than 0"};
    const double start = ScriptNumber(words[4], "START", -360, 720);
    const double end = ScriptNumber(words[5], "END", -360, 720);
    // AddArc lifts negative angles by a turn, and the end by one more if it lies below the start.
    double sweep = (end < 0 ? end + 360 : end) - (start < 0 ? start + 360 : start);
    if (sweep < 0) sweep += 360;
    if (sweep < 0 || sweep > 360) throw ScriptFailure{"START to END turns more than once round"};
    PrintResult(script, script.m_db.AddArc(centre, static_cast<float>(r), static_cast<float>(start),
                                           static_cast<float>(end)));
}

void RunArc3(Script& script, const Words& words) {
    const CFPoint a = Point(words, 1), b = Point(words, 3), between = Point(words, 5);
    if (CFShape(a, b, between).GetB() == 0) throw ScriptFailure{"the three points give no arc"};
    PrintResult(script, script.m_db.AddArc(a, b, between));
}

// ---- editing --------------------------------------------------------------------------------------

void RunDelete(Script& script, const Words& words) {
    CArray<CGouJianEx*> lines;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const auto id = static_cast<unsigned long>(ScriptInteger(words[i], "ID", 1, 0xFFFFFFFF));
        CGouJianEx* line = script.m_db.FindGouJian(id);
        if (!line || line->QueryBasicType() != kBasicLine)
            throw ScriptFailure{"ID: there is no line with the identity " + words[i]};
        lines.Add(line);
    }
    script.m_db.DeleteNetLine(lines);
}

void RunCleanNodes(Script& script, const Words&) { script.m_db.DeleteIndependentNetNode(); }
void RunStart(Script& script, const Words&) { script.m_db.Start(); }

// Plates belong to the step of the lines that they follow: in an open batch they are seen to first, else the step that
// is taken back would be one without them.
void TakeStep(CTvoHostDataBase& db, void (CTvoHostDataBase::*step)(CWnd*, CFCoor*)) {
    const bool batch = db.InBatch();
    if (batch) db.EndBatch();
    (db.*step)(nullptr, nullptr);
    if (batch) db.BeginBatch();
}

void RunUndo(Script& script, const Words&) { TakeStep(script.m_db, &CTvoHostDataBase::Undo); }
void RunRedo(Script& script, const Words&) { TakeStep(script.m_db, &CTvoHostDataBase::Redo); }
void RunNumber(Script& script, const Words&) { script.m_db.SortBianHaoAll(); }

void RunSet(Script& script, const Words& words) {
    struct Setting {
        const char* name;
        int* value;
        int least, most;
    };
    int storey = 0;
    const Setting settings[] = {
        {"autobreak", &script.m_db.m_bAutoBreak, 0, 1},
        {"automerge", &script.m_db.m_bAutoMerge, 0, 1},
        {"merge", &script.m_db.m_bMerge, 0, 1},
        {"outer", &script.m_db.m_bOuterPlates, 0, 1},
        {"wholenet", &script.m_db.m_bWeiBanWholeNet, 0, 1},
        {"direction", &g_cTvoProfile.m_bShowLineDirection, 0, 1},
        {"tolerance", &g_cTvoProfile.m_nNetTolerance, 1, kMaxTolerance},
        {"storey", &storey, -1, 1000000},
    };
    for (const Setting& setting : settings) {
        if (words[1] != setting.name) continue;
        *setting.value = static_cast<int>(ScriptInteger(words[2], words[1], setting.least, setting.most));
        if (setting.value == &storey) script.m_db.SetCurCeng(storey);
        return;
    }
    throw ScriptFailure{"there is no setting '" + words[1] + "'"};
}

// ---- asking ---------------------------------------------------------------------------------------

void RunRect(Script& script, const Words& words) {
    CFRect rect(Point(words, 1), Point(words, 3));
    CArray<CGouJianEx*> found;
    script.m_db.GetInterRect(rect, found);
    std::vector<unsigned long> offered, kept;
    for (int i = 0; i < found.GetSize(); ++i) {
        offered.push_back(found[i]->get_m_dwGouJianID());
        if (found[i]->IndexHitTest(rect, 0)) kept.push_back(offered.back());
    }
    std::sort(offered.begin(), offered.end());
    std::sort(kept.begin(), kept.end());
    PrintJsonLine(script.m_out, {{"type", "rect"}, {"offered", offered}, {"kept", kept}});
}

void RunStat(Script& script, const Words&) { PrintJsonLine(script.m_out, StatJson(script.m_db)); }

// ---- files ----------------------------------------------------------------------------------------

void RunImport(Script& script, const Words& words) {
    ImportJob job;
    job.file = words[1];
    job.layer = words[2];
    ImportOutcome outcome;
    script.m_db.DoEdit([&] { outcome = RunImportJob(job, script.m_db); });
    if (!script.m_db.InBatch()) NoteNet(script.m_db, outcome);  // with the plates, which have followed
    PrintJsonLine(script.m_out, ImportJson(outcome));
}

void RunSvg(Script& script, const Words& words) { ReplaceFile(words[1], SvgOfNet(script.m_db, "")); }

void RunPng(Script& script, const Words& words) {
    const int width = static_cast<int>(ScriptInteger(words[2], "W", kMinPictureSide, kMaxPictureSide));
    const int height = static_cast<int>(ScriptInteger(words[3], "H", kMinPictureSide, kMaxPictureSide));
    WritePngOfModel(words[1], script.m_db, width, height, "");
}

// ---- the table ------------------------------------------------------------------------------------

constexpr ScriptCommand kCommands[] = {
    {"start", "", 0, 0, RunStart, "begin a new undo step"},
    {"node", "X Y", 2, 2, RunNode, "add a node, unless one stands within the tolerance"},
    {"line", "X1 Y1 X2 Y2", 4, 4, RunLine, "add a straight line and break it and others where they cross", true},
    {"getline", "X1 Y1 X2 Y2", 4, 4, RunGetLine, "add a straight line without breaking", true},
    {"bulge", "X1 Y1 X2 Y2 DEGREES", 5, 5, RunBulge,
     "add an arc by its ends and minus half its angle (-180 to 0, anticlockwise)", true},
    {"arc", "CX CY R START END", 5, 5, RunArc, "add an arc, anticlockwise from START to END in degrees", true},
    {"arc3", "X1 Y1 X2 Y2 X3 Y3", 6, 6, RunArc3, "add an arc by its ends, then a point between", true},
    {"delete", "ID...", 1, -1, RunDelete, "delete lines by identity, all at once", true},
    {"cleannodes", "", 0, 0, RunCleanNodes, "delete nodes without lines"},
    {"undo", "", 0, 0, RunUndo, "take back the last step; nothing if there is none"},
    {"redo", "", 0, 0, RunRedo, "do it again; nothing if there is none"},
    {"set", "NAME N", 2, 2, RunSet,
     "autobreak, automerge, merge, outer, wholenet, direction: 0 or 1; tolerance: from 1; storey: from -1"},
    {"rect", "X1 Y1 X2 Y2", 4, 4, RunRect, "identities that the index offers for a box, and those that touch it"},
    {"number", "", 0, 0, RunNumber, "number all nodes and lines by rows"},
    {"import", "FILE LAYER", 2, 2, RunImport, "start a step and add a layer of a DXF drawing; prints the report"},
    {"stat", "", 0, 0, RunStat, "print the numbers of nodes, lines, plates and dangling lines, and the plates' area"},
    {"svg", "FILE", 1, 1, RunSvg, "draw everything that is not hidden as SVG"},
    {"png", "FILE W H", 3, 3, RunPng, "the same as PNG, W by H pixels"},
};

// The families, in the order in which the help tells them.
const std::span<const ScriptCommand> kFamilies[] = {kCommands, PartCommands(), PlateCommands(), FieldCommands(), GridCommands(),
                                                    ModelCommands(), DrawingCommands()};

const ScriptCommand& FindCommand(const std::string& name) {
    for (const auto& family : kFamilies)
        for (const ScriptCommand& command : family)
            if (name == command.name) return command;
    throw ScriptFailure{"there is no command '" + name + "'"};
}

void CheckCount(const ScriptCommand& command, int count) {
    if (count >= command.least && (command.most < 0 || count <= command.most)) return;
    throw ScriptFailure{std::string(command.name) + " takes " +
                        (*command.arguments ? command.arguments : "no arguments") + ", got " + std::to_string(count) +
                        (count == 1 ? " word" : " words")};
}

}  // namespace

void Script::Run(std::string_view line) {
    const Words words = SplitScriptLine(line);
    if (words.empty()) return;
    const ScriptCommand& command = FindCommand(words[0]);
    CheckCount(command, static_cast<int>(words.size()) - 1);
    try {
        if (command.edits)
            m_db.DoEdit([&] { command.run(*this, words); });
        else
            command.run(*this, words);
    } catch (const DataFailure& failure) {
        throw ScriptFailure{failure.what()};
    }
}

std::string Script::Help() {
    std::string text;
    for (const auto& family : kFamilies) {
        for (const ScriptCommand& command : family) {
            std::string head = std::string("  ") + command.name + " " + command.arguments;
            head.resize(std::max<std::size_t>(head.size() + 2, 32), ' ');
            text += head + command.help + "\n";
        }
    }
    return text;
}
