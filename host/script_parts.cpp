// The commands of `tvo run` about texts, graphics and riders, and about what is shown of the model.
#include <algorithm>
#include <memory>
#include <numbers>
#include <optional>

#include "host/json_text.h"
#include "host/net_json.h"
#include "host/net_walk.h"
#include "host/part_kinds.h"
#include "host/parts_json.h"
#include "host/script.h"
#include "host/script_command.h"
#include "host/script_line.h"
#include "model/gj_text.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "plates/mian_goujian.h"
#include "platform/acad_color.h"
#include "platform/code_page.h"

namespace {

using Words = ScriptWords;

constexpr double kLargest = 1e9;  // a size in millimetres

// ---- words ----------------------------------------------------------------------------------------

float Place(const Words& words, std::size_t i, const char* what) {
    return static_cast<float>(ScriptNumber(words[i], what));
}

/// A size above 0.
float Size(const std::string& word, const char* what) {
    const auto size = static_cast<float>(ScriptNumber(word, what, 0, kLargest));
    if (!(size > 0)) throw ScriptFailure{std::string(what) + ": '" + word + "' must be greater than 0"};
    return size;
}

/// Of a line: in millimetres, or in pixels when it is negative.
float Width(const std::string& word) {
    return static_cast<float>(ScriptNumber(word, "WIDTH", -1000, kLargest));
}

unsigned long Color(const std::string& word) {
    if (!word.starts_with('#'))
        return GetAcadRGBColor(static_cast<int>(ScriptInteger(word, "colour", 0, 255)));
    const bool digits = word.find_first_not_of("0123456789abcdefABCDEF", 1) == std::string::npos;
    if (word.size() != 7 || !digits)
        throw ScriptFailure{"colour: '" + word + "' is no colour such as #FF8000"};
    const auto channel = [&](std::size_t at) { return std::stoi(word.substr(at, 2), nullptr, 16); };
    return RGB(channel(1), channel(3), channel(5));
}

std::uint32_t Tag(const std::string& word) {
    return static_cast<std::uint32_t>(ScriptInteger(word, "tag", 0, 0xFFFFFFFF));
}

/// What may stand behind the arguments of a component: colour C, tag N.
struct PartOptions {
    std::optional<unsigned long> color;
    std::uint32_t tag = 0;

    unsigned long ColorOrWhite() const { return color.value_or(0xFFFFFF); }
};

PartOptions OptionsFrom(const Words& words, std::size_t first) {
    PartOptions options;
    for (std::size_t i = first; i < words.size(); i += 2) {
        const bool isColor = words[i] == kColorWord;
        if (!isColor && words[i] != "tag")
            throw ScriptFailure{"'" + words[i] + "' is neither colour nor tag"};
        if (i + 1 == words.size()) throw ScriptFailure{words[i] + " needs a value behind it"};
        if (isColor) options.color = Color(words[i + 1]);
        else options.tag = Tag(words[i + 1]);
    }
    return options;
}

void PrintAdded(Script& script, const CGouJianEx* part) {
    PrintJsonLine(
        script.m_out,
        {{"type", "added"}, {"kind", FindPartKind(part->get_Gjlx())->one}, {"id", part->m_dwGouJianID}});
}

// ---- drawing --------------------------------------------------------------------------------------

bool IsControl(char c) { return (c >= 0 && c < ' ') || c == 0x7F; }

void RunText(Script& script, const Words& words) {
    const float x = Place(words, 1, "X"), y = Place(words, 2, "Y"), height = Size(words[3], "HEIGHT");
    const double degrees = ScriptNumber(words[4], "ANGLE_DEG", -36000, 36000);
    if (words[5].empty()) throw ScriptFailure{"STRING: a text of nothing"};
    if (!IsUtf8(words[5])) throw ScriptFailure{"STRING: the text is not UTF-8"};
    if (std::any_of(words[5].begin(), words[5].end(), IsControl))
        throw ScriptFailure{"STRING: the text holds a control character, such as a tab"};
    const PartOptions options = OptionsFrom(words, 6);
    const auto radians = static_cast<float>(degrees * std::numbers::pi / 180);
    PrintAdded(script, script.m_db.DrawTextA(x, y, CString(words[5]), options.tag, GJ_STATUS_NORMAL, height,
                                             radians, options.color ? &*options.color : nullptr, 0));
}

void RunPoint(Script& script, const Words& words) {
    const PartOptions o = OptionsFrom(words, 3);
    PrintAdded(script, script.m_db.DrawPoint(Place(words, 1, "X"), Place(words, 2, "Y"), o.ColorOrWhite(),
                                             o.tag, GJ_STATUS_NORMAL, 1));
}

void RunPline(Script& script, const Words& words) {
    const PartOptions o = OptionsFrom(words, 6);
    PrintAdded(script, script.m_db.DrawLine(Place(words, 1, "X1"), Place(words, 2, "Y1"),
                                            Place(words, 3, "X2"), Place(words, 4, "Y2"), Width(words[5]),
                                            o.ColorOrWhite(), o.tag, GJ_STATUS_NORMAL, 1));
}

void RunParc(Script& script, const Words& words) {
    const double start = ScriptNumber(words[4], "START", -3600, 3600);
    double end = ScriptNumber(words[5], "END", -3600, 3600);
    while (end < start) end += 360;  // anticlockwise from the start
    if (end == start || end - start > 360)
        throw ScriptFailure{end == start ? "START and END give no arc"
                                         : "START to END turns more than once round"};
    const PartOptions o = OptionsFrom(words, 7);
    PrintAdded(script, script.m_db.DrawArc(Place(words, 1, "X"), Place(words, 2, "Y"), Size(words[3], "R"),
                                           static_cast<float>(start), static_cast<float>(end),
                                           Width(words[6]), o.ColorOrWhite(), o.tag, GJ_STATUS_NORMAL, 1));
}

void RunCircle(Script& script, const Words& words) {
    const PartOptions o = OptionsFrom(words, 5);
    PrintAdded(script, script.m_db.DrawCircle(Place(words, 1, "X"), Place(words, 2, "Y"), Size(words[3], "R"),
                                              Width(words[4]), o.ColorOrWhite(), o.tag, GJ_STATUS_NORMAL, 1));
}

void RunDisc(Script& script, const Words& words) {
    const PartOptions o = OptionsFrom(words, 4);
    PrintAdded(script,
               script.m_db.DrawCircleRgn(Place(words, 1, "X"), Place(words, 2, "Y"), Size(words[3], "R"),
                                         o.ColorOrWhite(), o.tag, GJ_STATUS_NORMAL, 1));
}

void RunPolygon(Script& script, const Words& words) {
    std::size_t end = 1;
    while (end < words.size() && words[end] != kColorWord && words[end] != "tag") ++end;
    const PartOptions o = OptionsFrom(words, end);
    if (end % 2 == 0) throw ScriptFailure{"an X without its Y"};
    if (end < 7) throw ScriptFailure{"a polygon has three points at least"};
    CArray<CFPoint, CFPoint> points;
    for (std::size_t i = 1; i < end; i += 2)
        points.Add(CFPoint(Place(words, i, "X"), Place(words, i + 1, "Y"), 0));
    PrintAdded(script, script.m_db.DrawPolygonRgn(points, o.ColorOrWhite(), o.tag, GJ_STATUS_NORMAL, 1));
}

void RunRider(Script& script, const Words& words) {
    const auto id = static_cast<unsigned long>(ScriptInteger(words[1], "LINEID", 1, 0xFFFFFFFF));
    CGouJianEx* line = script.m_db.FindGouJian(id);
    if (!line || line->QueryBasicType() != kBasicLine)
        throw ScriptFailure{"LINEID: there is no line with the identity " + words[1]};
    const float width = Size(words[2], "WIDTH");
    const PartOptions options = OptionsFrom(words, 3);
    if (options.color) throw ScriptFailure{"a rider has no colour of its own"};
    const CTvoRider* rider =
        script.m_db.AddRider(static_cast<CGjNetLine*>(line), width, options.tag, GJ_STATUS_NORMAL);
    if (!rider) throw ScriptFailure{"plates have the type byte of riders in this model"};
    PrintAdded(script, rider);
}

// ---- what is shown --------------------------------------------------------------------------------

std::string KindNames() {
    std::string names;
    for (const PartKind& kind : kPartKinds) names += (names.empty() ? "" : ", ") + std::string(kind.many);
    return names;
}

/// A kind of components by its name or its type byte.
unsigned char TypeNamed(const std::string& word) {
    for (const PartKind& kind : kPartKinds)
        if (word == kind.many) return kind.type;
    if (word.empty() || word.find_first_not_of("0123456789") != std::string::npos)
        throw ScriptFailure{"TYPE: '" + word + "' is none of " + KindNames() + ", and no type byte"};
    return static_cast<unsigned char>(ScriptInteger(word, "TYPE", 1, 255));
}

void RunHide(Script& script, const Words& words) {
    const unsigned char type = TypeNamed(words[1]);
    words.size() > 2 ? script.m_db.Hide_GouJian(type, Tag(words[2])) : script.m_db.Hide_GouJian(type);
}

void RunShow(Script& script, const Words& words) {
    const unsigned char type = TypeNamed(words[1]);
    words.size() > 2 ? script.m_db.Show_GouJian(type, Tag(words[2])) : script.m_db.Show_GouJian(type);
}

void RunClear(Script& script, const Words& words) {
    const unsigned char type = TypeNamed(words[1]);
    const bool graphics =
        (type >= GJLX_TEXT && type <= GJLX_CIRCLE_RGN) || type == GJLX_POLYGON_RGN || type == kTvoRiderType;
    if (!graphics)
        throw ScriptFailure{"clear is for texts, fields, graphics and riders, not for " + words[1]};
    words.size() > 2 ? script.m_db.Clear_GouJian(type, Tag(words[2])) : script.m_db.Clear_GouJian(type);
}

void RunSetTextHeight(Script& script, const Words& words) { script.m_db.SetTextHeights(Size(words[1], "H")); }

// ---- dump -----------------------------------------------------------------------------------------

std::vector<CGouJianEx*> Family(CTvoHostDataBase& db, unsigned char type) {
    CArray<CGouJianEx*> array;
    db.GetGouJianArray(type, &array);
    std::vector<CGouJianEx*> family(array.begin(), array.end());
    std::sort(family.begin(), family.end(),
              [](const auto* a, const auto* b) { return a->m_dwGouJianID < b->m_dwGouJianID; });
    return family;
}

void DumpKind(Script& script, const PartKind& kind) {
    const auto print = [&](const auto& components, auto json) {
        for (auto* component : components) PrintJsonLine(script.m_out, json(*component));
    };
    switch (kind.type) {
        case GJLX_NET_NODE:
            return print(NetNodes(script.m_db), NodeJson);
        case GJLX_NET_LINE:
            return print(NetLines(script.m_db), LineJson);
        case GJLX_MIAN:
            return print(AllPlates(script.m_db), PlateJson);
        case kTvoLoadType:
            return print(AllLoads(script.m_db), LoadJson);
        default:
            return print(Family(script.m_db, kind.type), PartJson);
    }
}

/// Those of types without a name; plates may have such types, and have been told.
void DumpOthers(Script& script) {
    for (int type = 1; type < kTypeCount; ++type) {
        if (FindPartKind(static_cast<unsigned char>(type))) continue;
        for (CGouJianEx* component : Family(script.m_db, static_cast<unsigned char>(type)))
            if (component->QueryBasicType() == kBasicOther) PrintJsonLine(script.m_out, PartJson(*component));
    }
}

void RunDump(Script& script, const Words& words) {
    const std::string what = words.size() > 1 ? words[1] : "all";
    bool known = what == "all";
    for (const PartKind& kind : kPartKinds) {
        if (what != "all" && what != kind.many) continue;
        DumpKind(script, kind);
        known = true;
    }
    if (what == "all") DumpOthers(script);
    if (!known) throw ScriptFailure{"dump knows " + KindNames() + " and all, not '" + what + "'"};
}

constexpr ScriptCommand kCommands[] = {
    {"text", "X Y HEIGHT ANGLE_DEG STRING [colour C] [tag N]", 5, 9, RunText,
     "add a text; prints its identity, as the next ones do"},
    {"point", "X Y [colour C] [tag N]", 2, 6, RunPoint,
     "draw a point; C is an index from 0 to 255 or #RRGGBB"},
    {"pline", "X1 Y1 X2 Y2 WIDTH [colour C] [tag N]", 5, 9, RunPline,
     "draw a straight line that is none of the net; a negative WIDTH is in pixels"},
    {"parc", "X Y R START END WIDTH [colour C] [tag N]", 6, 10, RunParc,
     "draw an arc, anticlockwise, in degrees"},
    {"circle", "X Y R WIDTH [colour C] [tag N]", 4, 8, RunCircle, "draw a circle"},
    {"disc", "X Y R [colour C] [tag N]", 3, 7, RunDisc, "draw a filled circle"},
    {"polygon", "X1 Y1 X2 Y2 X3 Y3 ... [colour C] [tag N]", 6, -1, RunPolygon, "draw a filled polygon"},
    {"rider", "LINEID WIDTH [tag N]", 2, 4, RunRider,
     "put a strip on a line: it is broken and merged with the line, and goes with it"},
    {"hide", "TYPE [TAG]", 1, 2, RunHide,
     "hide components of a kind (with a tag); no edit, so that undo leaves it"},
    {"show", "TYPE [TAG]", 1, 2, RunShow, "show them again; TYPE is a name as in dump, or a type byte"},
    {"clear", "TYPE [TAG]", 1, 2, RunClear, "delete texts, fields, graphics or riders (with a tag)"},
    {"settextheight", "H", 1, 1, RunSetTextHeight, "give all texts that height"},
    {"dump", "[KIND]", 0, 1, RunDump,
     "print components, each by identity: nodes, lines, plates, loads, texts, fields, points, plines, arcs, "
     "circles,\n"
     "                                discs, polygons, riders; without KIND, or for all, everything there "
     "is"},
};

}  // namespace

std::span<const ScriptCommand> PartCommands() { return kCommands; }
