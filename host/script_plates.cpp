// The commands of `tvo run` about plates.
#include <algorithm>
#include <ostream>

#include "host/host_data_base.h"
#include "host/json_text.h"
#include "host/script.h"
#include "host/script_command.h"
#include "host/script_line.h"
#include "host/tvo_load.h"
#include "host/tvo_rider.h"
#include "plates/mian_goujian.h"
#include "plates/plate_queries.h"

namespace {

/// The component that a word names by its identity. `kind` is its name and basic type, for the message and the test.
CGouJianEx* Named(Script& script, const std::string& word, const char* what, const char* name, BasicType kind) {
    const auto id = static_cast<unsigned long>(ScriptInteger(word, what, 1, 0xFFFFFFFF));
    CGouJianEx* found = script.m_db.FindGouJian(id);
    if (!found || found->QueryBasicType() != kind)
        throw ScriptFailure{std::string(what) + ": there is no " + name + " with the identity " + word};
    return found;
}

CMianGouJian* Plate(Script& script, const std::string& word, const char* what = "ID") {
    return static_cast<CMianGouJian*>(Named(script, word, what, "plate", kBasicPlate));
}

template <class Plates>
Json Identities(const Plates& plates) {
    std::vector<std::uint32_t> ids;
    for (const CMianGouJian* plate : plates) ids.push_back(plate->get_m_dwGouJianID());
    std::sort(ids.begin(), ids.end());
    return ids;
}

// ---- forming --------------------------------------------------------------------------------------

void RunPlates(Script& script, const ScriptWords&) { script.m_db.FormPlates(); }

void RunBegin(Script& script, const ScriptWords&) {
    if (script.m_db.InBatch()) throw ScriptFailure{"a batch is open; end closes it"};
    script.m_db.BeginBatch();
}

void RunEnd(Script& script, const ScriptWords&) {
    if (!script.m_db.InBatch()) throw ScriptFailure{"no batch is open; begin opens one"};
    script.m_db.EndBatch();
}

/// A type byte that plates may have: their own, or one that is free for hosts.
unsigned char PlateType(const std::string& word) {
    const auto type = static_cast<unsigned char>(ScriptInteger(word, "TYPE", 1, 255));
    const bool free = (type >= 11 && type <= 15) || (type >= 17 && type <= 254);
    if ((!free && type != GJLX_MIAN) || type == kTvoLoadType || type == kTvoRiderType)
        throw ScriptFailure{"TYPE: '" + word + "' is no type for plates; 3, 11 to 15, or 17 to 252"};
    return type;
}

void RunCombine(Script& script, const ScriptWords& words) {
    const unsigned char type = PlateType(words[1]);
    const auto tag = static_cast<unsigned long>(ScriptInteger(words[2], "TAG", 0, 0xFFFFFFFF));
    CArray<CMianGouJian*> in, out;
    for (std::size_t i = 3; i < words.size(); ++i) in.Add(Plate(script, words[i]));
    script.m_db.CombineMianGouJian(in, out, type, tag);
    PrintJsonLine(script.m_out, {{"type", "combine"}, {"plates", Identities(out)}});
}

void RunLoad(Script& script, const ScriptWords& words) {
    CMianGouJian* plate = Plate(script, words[1], "PLATEID");
    script.m_db.SetLoad(plate, ScriptNumber(words[2], "VALUE"));
}

// ---- asking ---------------------------------------------------------------------------------------

void RunEmbrace(Script& script, const ScriptWords& words) {
    CMianGouJian* plate = Plate(script, words[1]);
    const CMianGouJian* by = script.m_db.GetEmbracingPlate(plate, 0);
    PrintJsonLine(script.m_out, {{"type", "embrace"},
                                 {"plate", plate->get_m_dwGouJianID()},
                                 {"by", by ? Json(by->get_m_dwGouJianID()) : Json(nullptr)}});
}

void RunInside(Script& script, const ScriptWords& words) {
    CMianGouJian* plate = Plate(script, words[1]);
    CArray<CMianGouJian*> found;
    script.m_db.GetPlateInPlate(plate, found, nullptr);
    PrintJsonLine(script.m_out,
                  {{"type", "inside"}, {"plate", plate->get_m_dwGouJianID()}, {"plates", Identities(found)}});
}

void RunAround(Script& script, const ScriptWords& words) {
    CMianGouJian* plate = Plate(script, words[1]);
    CArray<CMianGouJian*> found;
    script.m_db.GetBanAround(plate, found);
    PrintJsonLine(script.m_out,
                  {{"type", "around"}, {"plate", plate->get_m_dwGouJianID()}, {"plates", Identities(found)}});
}

void RunStride(Script& script, const ScriptWords& words) {
    auto* line = static_cast<CGjNetLine*>(Named(script, words[1], "LINEID", "line", kBasicLine));
    CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*> found;
    script.m_db.GetStridePlate(line, found);
    std::vector<CMianGouJian*> plates;
    found.ForEach([&](unsigned long, CGouJianEx* plate) { plates.push_back(static_cast<CMianGouJian*>(plate)); });
    PrintJsonLine(script.m_out,
                  {{"type", "stride"}, {"line", line->get_m_dwGouJianID()}, {"plates", Identities(plates)}});
}

void RunIsRect(Script& script, const ScriptWords& words) {
    CMianGouJian* plate = Plate(script, words[1]);
    const auto tolerance = static_cast<float>(ScriptNumber(words[2], "TOL_DEG", 0, 45));
    float width = 0, height = 0, angle = 0;
    CFPoint corners[4];
    Json result = {{"type", "isrect"}, {"plate", plate->get_m_dwGouJianID()}};
    const bool is = IsRectanglePlate(&script.m_db, plate, width, height, angle, tolerance, corners) != 0;
    result["rect"] = is;
    if (is) {
        result["width"] = JsonNumber(width);
        result["height"] = JsonNumber(height);
        result["angle"] = JsonNumber(angle);
        for (const CFPoint& corner : corners) result["corners"].push_back({JsonNumber(corner.x), JsonNumber(corner.y)});
    }
    PrintJsonLine(script.m_out, result);
}

constexpr ScriptCommand kCommands[] = {
    {"plates", "", 0, 0, RunPlates, "form the plates of the whole net anew; from then on they follow each edit"},
    {"begin", "", 0, 0, RunBegin, "open a batch of edits"},
    {"end", "", 0, 0, RunEnd, "close it: the plates follow all of its edits at once"},
    {"combine", "TYPE TAG ID...", 3, -1, RunCombine,
     "form plates of type TYPE with the tag from the borders of some; prints those with the tag"},
    {"embrace", "ID", 1, 1, RunEmbrace, "the plate about a plate"},
    {"inside", "ID", 1, 1, RunInside, "the plates inside a plate that don't touch its border"},
    {"around", "ID", 1, 1, RunAround, "the plates that share a line with a plate"},
    {"stride", "LINEID", 1, 1, RunStride, "the plates that a line may cut"},
    {"isrect", "ID TOL_DEG", 2, 2, RunIsRect, "is a plate a rectangle within so many degrees?"},
    {"load", "PLATEID VALUE", 2, 2, RunLoad, "put a load on a plate, in the place of one that is there"},
};

}  // namespace

std::span<const ScriptCommand> PlateCommands() { return kCommands; }
