// The commands of `tvo run` about fields.
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <ostream>
#include <vector>

#include "fields/chang.h"
#include "fields/field_mesh.h"
#include "fields/gj_chang.h"
#include "fields/mesh_densify.h"
#include "host/field_look.h"
#include "host/fields/field_file.h"
#include "host/host_data_base.h"
#include "host/json_text.h"
#include "host/script.h"
#include "host/script_command.h"
#include "host/script_line.h"

namespace {

constexpr int kMostTriangles = 20000000;  // that densify may make: some 2 GB

struct FieldOptions {
    FIELD_DISPLAY display = FIELD_DISPLAY_CLOUD;
    int scheme = 1;
    double scale = 1;
    int value = 1;  // which of the ten
};

FieldOptions ReadOptions(const ScriptWords& words) {
    FieldOptions options;
    bool displayGiven = false, schemeGiven = false;
    for (std::size_t i = 2; i < words.size(); ++i) {
        const std::string& word = words[i];
        const auto argument = [&]() -> const std::string& {
            if (i + 1 == words.size()) throw ScriptFailure{word + " wants a number behind it"};
            return words[++i];
        };
        const auto named = [&](FIELD_DISPLAY display) { return word == FieldDisplayName(display); };
        if (word == "--scale") {
            options.scale = ScriptNumber(argument(), "--scale", -1e30, 1e30);
        } else if (word == "--value") {
            options.value = static_cast<int>(ScriptInteger(argument(), "--value", 1, CChang::kValues));
        } else if (!displayGiven && (named(FIELD_DISPLAY_CLOUD) || named(FIELD_DISPLAY_ISOLINE) ||
                                     named(FIELD_DISPLAY_DIGIT))) {
            displayGiven = true;
            options.display = named(FIELD_DISPLAY_CLOUD)     ? FIELD_DISPLAY_CLOUD
                              : named(FIELD_DISPLAY_ISOLINE) ? FIELD_DISPLAY_ISOLINE
                                                             : FIELD_DISPLAY_DIGIT;
        } else if (!schemeGiven && !word.empty() &&
                   word.find_first_not_of("0123456789") == std::string::npos) {
            schemeGiven = true;
            options.scheme = static_cast<int>(ScriptInteger(word, "SCHEME", 1, 5));
        } else {
            throw ScriptFailure{
                "field knows cloud, isoline, digit, a scheme from 1 to 5, --scale and --value, not '" + word +
                "'"};
        }
    }
    return options;
}

/// Shows a field as a component that owns it.
CGjChang* Show(CTvoHostDataBase& db, std::unique_ptr<CChang> chang, int scheme, std::uint32_t tag,
               FIELD_DISPLAY display, float scale, unsigned char status) {
    CGjChang* field = db.DrawChang(chang.get(), scheme, tag, display, scale, 0, 0, status);
    chang.release();  // the component's, which deletes it
    field->m_bOwnChang = 1;
    return field;
}

Json FieldJson(const char* type, CGjChang& field, const FieldTally& tally) {
    CChang& chang = *field.m_pChang;
    float min, max;
    chang.GetMinMaxZ(min, max);
    Json json = {{"type", type},
                 {"id", field.get_m_dwGouJianID()},
                 {"tag", field.m_dwTag},
                 {"display", FieldDisplayName(field.m_nDisplay)},
                 {"scheme", field.m_nColorScheme},
                 {"nodes", chang.m_arrNode.GetSize()},
                 {"triangles", chang.m_arrTri.GetSize()},
                 {"passedOver", tally.passedOver},
                 {"min", JsonNumber(min)},
                 {"max", JsonNumber(max)}};
    if (field.m_nDisplay == FIELD_DISPLAY_ISOLINE) json["levels"] = field.m_arrColor.GetSize();
    if (const std::string remarks = tally.Remarks(chang); !remarks.empty()) json["remarks"] = remarks;
    return json;
}

void RunField(Script& script, const ScriptWords& words) {
    const FieldOptions options = ReadOptions(words);
    auto chang = std::make_unique<CChang>();
    const FieldFileTally read = ReadFieldFile(words[1], *chang);
    if (read.values > 0 && options.value > read.values)
        throw ScriptFailure{"--value: " + words[1] + " has only " + std::to_string(read.values) +
                            (read.values == 1 ? " value" : " values")};
    chang->m_nValue = options.value - 1;
    const FieldTally tally = TallyField(*chang);
    CGjChang* field = Show(script.m_db, std::move(chang), options.scheme,
                           static_cast<std::uint32_t>(script.m_db.GetNextTagID(GJLX_CHANG)), options.display,
                           static_cast<float>(options.scale), GJ_STATUS_NORMAL);
    Json json = FieldJson("field", *field, tally);
    json["file"] = words[1];
    json["format"] = read.format;
    json["values"] = read.values;
    if (read.leftOut) json["leftOut"] = read.leftOut;
    PrintJsonLine(script.m_out, json);
}

/// Densifying numbers its new nodes upwards from the greatest corner, so that nodes which are nobody's corner
/// and bear such numbers, of a mesh's quadrangles for one, would stand in for them; and numbers end.
bool HasRoomToDensify(const CChang& field) {
    int corner = 0;
    for (const CChangTri& tri : field.m_arrTri)
        corner = std::max({corner, tri.m_aNode[0], tri.m_aNode[1], tri.m_aNode[2]});
    if (std::int64_t{corner} + 1 + 3 * std::int64_t{field.m_arrTri.GetSize()} >
        std::numeric_limits<int>::max())
        return false;
    return field.m_arrNode.GetSize() <= corner &&
           std::none_of(field.m_arrNode.begin(), field.m_arrNode.end(),
                        [&](const CChangNode& node) { return node.m_nNumber > corner; });
}

/// The field with nodes numbered from 1, those that are nobody's corner first, and without the triangles that
/// lack a corner.
void NumberAnew(const CChang& field, CChang& fresh) {
    CFieldMesh mesh(field);
    mesh.Refresh();
    const auto whole = [&](const CChangTri& tri) {
        return std::all_of(std::begin(tri.m_aNode), std::end(tri.m_aNode),
                           [&](int number) { return mesh.PositionOf(number) >= 0; });
    };
    std::vector<bool> isCorner(static_cast<std::size_t>(field.m_arrNode.GetSize()));
    for (const CChangTri& tri : field.m_arrTri)
        if (whole(tri))
            for (const int number : tri.m_aNode)
                isCorner[static_cast<std::size_t>(mesh.PositionOf(number))] = true;
    std::vector<int> numbers(isCorner.size());
    for (const bool corners : {false, true})
        for (std::size_t i = 0; i < isCorner.size(); ++i) {
            if (isCorner[i] != corners) continue;
            fresh.m_arrNode.Add(field.m_arrNode[static_cast<int>(i)]);
            numbers[i] = fresh.m_arrNode[fresh.m_arrNode.GetUpperBound()].m_nNumber =
                fresh.m_arrNode.GetSize();
        }
    const auto renamed = [&](int number) {
        return numbers[static_cast<std::size_t>(mesh.PositionOf(number))];
    };
    for (const CChangTri& tri : field.m_arrTri)
        if (whole(tri))
            fresh.m_arrTri.Add({{renamed(tri.m_aNode[0]), renamed(tri.m_aNode[1]), renamed(tri.m_aNode[2])}});
}

void RunDensify(Script& script, const ScriptWords&) {
    const auto fields = AllFields(script.m_db);
    if (fields.empty()) throw ScriptFailure{"there is no field"};
    CGjChang* const old = fields.back();
    if (old->m_pChang->m_arrTri.GetSize() > kMostTriangles / 4)
        throw ScriptFailure{"the field would have more than " + std::to_string(kMostTriangles) +
                            " triangles"};
    auto fine = std::make_unique<CChang>();
    CChang fresh;
    const bool hasRoom = HasRoomToDensify(*old->m_pChang);
    if (!hasRoom) NumberAnew(*old->m_pChang, fresh);
    wange_ge_jia_mi(hasRoom ? old->m_pChang : &fresh, fine.get());
    fine->m_nValue = old->m_pChang->m_nValue;
    const FieldTally tally = TallyField(*fine);
    script.m_db.DeleteGouJian(old);  // the log keeps it, for undo
    PrintJsonLine(script.m_out,
                  FieldJson("densify",
                            *Show(script.m_db, std::move(fine), old->m_nColorScheme, old->m_dwTag,
                                  old->m_nDisplay, old->m_fValueScale, old->get_m_byteStatus()),
                            tally));
}

constexpr ScriptCommand kCommands[] = {
    {"field", "FILE [cloud|isoline|digit] [SCHEME] [--scale S] [--value K]", 1, 8, RunField,
     "show a field from a file over the plan"},
    {"densify", "", 0, 0, RunDensify, "cut each triangle of the last field in four"},
};

}  // namespace

std::span<const ScriptCommand> FieldCommands() { return kCommands; }
