#include "host/settings/profile_settings.h"

#include <charconv>
#include <cmath>
#include <string>
#include <variant>

#include "host/settings/settings_file.h"
#include "model/profile.h"

namespace {

const char* const kGroup = "profile";

/// Where a field is, and the least and the most that it may hold. Colours stand as #RRGGBB.
struct Field {
    const char* name;
    std::variant<std::uint32_t*, int*, float*, double*> value;
    double least = 0, most = 0;
};

constexpr int kLastColor = 255;  // colour indices, 0 the view's own

const Field kFields[] = {
    {"Background", &g_cTvoProfile.m_crBackground},
    {"Rubber", &g_cTvoProfile.m_crRubber},
    {"Snap", &g_cTvoProfile.m_crSnap},
    {"Grid", &g_cTvoProfile.m_crGrid},
    {"SymbolSize", &g_cTvoProfile.m_nSymbolSize, 3, 200},
    {"NodeColor", &g_cTvoProfile.m_nNodeColor, 0, kLastColor},
    {"SelectedNodeColor", &g_cTvoProfile.m_nSelNodeColor, 0, kLastColor},
    {"LineColor", &g_cTvoProfile.m_nLineColor, 0, kLastColor},
    {"SelectedLineColor", &g_cTvoProfile.m_nSelLineColor, 0, kLastColor},
    {"OtherLineColor", &g_cTvoProfile.m_nLineColorOther, 0, kLastColor},
    {"LineDirection", &g_cTvoProfile.m_bShowLineDirection, 0, 1},
    {"TextColor", &g_cTvoProfile.m_nTextColor, 0, kLastColor},
    {"MutedColor", &g_cTvoProfile.m_nMutedColor, 0, kLastColor},
    {"DisplayDivisor", &g_cTvoProfile.m_dDisplayDivisor, 1e-6, 1e9},
    {"KeyboardStepMin", &g_cTvoProfile.m_fKbdStepMin, 1e-3, 1e9},
    {"KeyboardStepMax", &g_cTvoProfile.m_fKbdStepMax, 1e-3, 1e9},
    {"TextHeightMin", &g_cTvoProfile.m_fTextHeightMin, 1e-3, 1e9},
    {"TextHeightMax", &g_cTvoProfile.m_fTextHeightMax, 1e-3, 1e9},
};

template <class Number>
bool Parse(std::string_view text, Number& number, int base) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

bool ParseReal(std::string_view text, double& number) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() && std::isfinite(number);
}

// COLORREF has red in its lowest byte.
std::uint32_t Turned(std::uint32_t color) { return (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF); }

std::string ColorText(std::uint32_t color) {
    char text[8];
    std::snprintf(text, sizeof text, "#%06X", Turned(color) & 0xFFFFFF);
    return text;
}

template <class Number>
std::string NumberText(Number number) {
    char text[64];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

std::string TextOf(const Field& field) {
    if (const auto* color = std::get_if<std::uint32_t*>(&field.value)) return ColorText(**color);
    if (const auto* number = std::get_if<int*>(&field.value)) return NumberText(**number);
    if (const auto* number = std::get_if<float*>(&field.value)) return NumberText(**number);
    return NumberText(*std::get<double*>(field.value));
}

/// False when the text makes no sense for the field, which stays as it is.
bool Set(const Field& field, std::string_view text) {
    if (const auto* color = std::get_if<std::uint32_t*>(&field.value)) {
        std::uint32_t read = 0;
        if (text.size() != 7 || text[0] != '#' || !Parse(text.substr(1), read, 16)) return false;
        **color = Turned(read);
        return true;
    }
    if (const auto* number = std::get_if<int*>(&field.value)) {
        int read = 0;
        if (!Parse(text, read, 10) || read < field.least || read > field.most) return false;
        **number = read;
        return true;
    }
    double read = 0;
    if (!ParseReal(text, read) || read < field.least || read > field.most) return false;
    if (const auto* number = std::get_if<float*>(&field.value))
        **number = static_cast<float>(read);
    else
        *std::get<double*>(field.value) = read;
    return true;
}

/// A range that lies the wrong way round is as it was at the start.
void CheckRange(SettingsFile& settings, const char* what, float& least, float& most, float usualLeast, float usualMost) {
    if (least <= most) return;
    least = usualLeast;
    most = usualMost;
    settings.Tell(std::string("设置 profile\\") + what + " 的下限大于上限, 改用缺省值");
}

}  // namespace

void LoadProfile(SettingsFile& settings) {
    for (const Field& field : kFields) {
        const auto text = settings.Read(kGroup, field.name);
        if (text && !Set(field, *text))
            settings.Tell(std::string("设置 profile\\") + field.name + " = " + *text + " 无效, 仍用 " + TextOf(field));
    }
    const CTvoProile usual;
    CTvoProile& profile = g_cTvoProfile;
    CheckRange(settings, "KeyboardStep", profile.m_fKbdStepMin, profile.m_fKbdStepMax, usual.m_fKbdStepMin, usual.m_fKbdStepMax);
    CheckRange(settings, "TextHeight", profile.m_fTextHeightMin, profile.m_fTextHeightMax, usual.m_fTextHeightMin, usual.m_fTextHeightMax);
}

void SaveProfile(SettingsFile& settings) {
    for (const Field& field : kFields) settings.Write(kGroup, field.name, TextOf(field));
}
