// The commands of `tvo run` about fields.
#include <memory>
#include <ostream>

#include "fields/chang.h"
#include "fields/gj_chang.h"
#include "host/field_edit.h"
#include "host/field_look.h"
#include "host/fields/field_file.h"
#include "host/host_data_base.h"
#include "host/json_text.h"
#include "host/script.h"
#include "host/script_command.h"
#include "host/script_line.h"

namespace {

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
    CGjChang* field = AddField(script.m_db, std::move(chang), NextFieldTag(script.m_db),
                               {options.scheme, options.display, static_cast<float>(options.scale)}, GJ_STATUS_NORMAL);
    Json json = FieldJson("field", *field, tally);
    json["file"] = words[1];
    json["format"] = read.format;
    json["values"] = read.values;
    if (read.leftOut) json["leftOut"] = read.leftOut;
    PrintJsonLine(script.m_out, json);
}

void RunDensify(Script& script, const ScriptWords&) {
    const auto fields = AllFields(script.m_db);
    if (fields.empty()) throw ScriptFailure{"there is no field"};
    CGjChang* const fine = DensifyField(script.m_db, fields.back());
    if (!fine)
        throw ScriptFailure{"the field would have more than " + std::to_string(kMostFieldTriangles) +
                            " triangles"};
    PrintJsonLine(script.m_out, FieldJson("densify", *fine, TallyField(*fine->m_pChang)));
}

constexpr ScriptCommand kCommands[] = {
    {"field", "FILE [cloud|isoline|digit] [SCHEME] [--scale S] [--value K]", 1, 8, RunField,
     "show a field from a file over the plan"},
    {"densify", "", 0, 0, RunDensify, "cut each triangle of the last field in four"},
};

}  // namespace

std::span<const ScriptCommand> FieldCommands() { return kCommands; }
