#include "platform/canvas/system_metrics.h"

#include <map>

namespace {

std::map<int, int>& Metrics() {
    static std::map<int, int> metrics{
        {SM_CXSCREEN, 1920}, {SM_CYSCREEN, 1080}, {SM_CXFULLSCREEN, 1920}, {SM_CYFULLSCREEN, 1080}};
    return metrics;
}

}  // namespace

int GetSystemMetrics(int index) {
    const auto found = Metrics().find(index);
    return found == Metrics().end() ? 0 : found->second;
}

void SetSystemMetrics(int index, int value) { Metrics()[index] = value; }

namespace {

struct Role {
    int index;
    COLORREF light, dark;
};
constexpr Role kRoles[] = {
    {COLOR_WINDOW, RGB(255, 255, 255), RGB(35, 38, 41)},
    {COLOR_WINDOWTEXT, RGB(0, 0, 0), RGB(239, 240, 241)},
    {COLOR_HIGHLIGHT, RGB(0, 120, 215), RGB(61, 174, 233)},
    {COLOR_HIGHLIGHTTEXT, RGB(255, 255, 255), RGB(20, 22, 24)},
    {COLOR_BTNFACE, RGB(240, 240, 240), RGB(49, 54, 59)},
    {COLOR_BTNSHADOW, RGB(160, 160, 160), RGB(12, 13, 14)},
    {COLOR_GRAYTEXT, RGB(109, 109, 109), RGB(150, 154, 158)},
    {COLOR_BTNTEXT, RGB(0, 0, 0), RGB(239, 240, 241)},
    {COLOR_BTNHIGHLIGHT, RGB(255, 255, 255), RGB(140, 147, 153)},
    {COLOR_MENU_BRANCH, 12500680, RGB(66, 73, 80)},
    {COLOR_MENU_BRANCH_HOT, 13806250, RGB(48, 94, 130)},
    {COLOR_MENU_COMMAND, 0xFFFFFF, RGB(35, 38, 41)},
    {COLOR_MENU_COMMAND_HOT, 14073525, RGB(44, 80, 108)},
    {COLOR_MENU_LINE, 0xC0C0C0, RGB(94, 100, 106)},
    {COLOR_MENU_MARK, 0xFF0000, RGB(61, 174, 233)},
    {COLOR_SPLITTER, 0xC0C0C0, RGB(27, 30, 32)},
    {COLOR_BAR_FIELD, 0x808000, RGB(64, 128, 128)},
    {COLOR_BAR_PROMPT, 0xFF0000, RGB(110, 190, 255)},
    {COLOR_PROMPT_LINE, 0x808080, RGB(120, 126, 132)},
    {COLOR_TOOL_HOT, RGB(218, 232, 245), RGB(66, 80, 94)},
    {COLOR_TOOL_PRESSED, RGB(184, 210, 234), RGB(44, 80, 108)},
    {COLOR_TOOL_INK, RGB(70, 78, 86), RGB(214, 218, 222)},
    {COLOR_TOOL_ACCENT, RGB(0, 104, 190), RGB(84, 184, 240)},
};

struct Palette {
    std::map<int, COLORREF> m_colours;
    bool m_dark = false;

    void Fill(bool dark) {
        m_dark = dark;
        m_colours.clear();
        for (const Role& role : kRoles) m_colours[role.index] = dark ? role.dark : role.light;
    }
};

Palette& Colours() {
    static Palette palette = [] {
        Palette light;
        light.Fill(false);
        return light;
    }();
    return palette;
}

}  // namespace

COLORREF GetSysColor(int index) {
    const auto& colours = Colours().m_colours;
    const auto found = colours.find(index);
    return found == colours.end() ? 0 : found->second;
}

void SetSysColor(int index, COLORREF colour) { Colours().m_colours[index] = colour & 0xFFFFFF; }
void UseDarkPalette(bool dark) { Colours().Fill(dark); }
bool IsDarkPalette() { return Colours().m_dark; }

COLORREF ReadableColor(COLORREF colour) {
    if (!IsDarkPalette()) return colour;
    if (colour == 0) return GetSysColor(COLOR_WINDOWTEXT);
    const int brightness = (299 * GetRValue(colour) + 587 * GetGValue(colour) + 114 * GetBValue(colour)) / 1000;
    const auto lighter = [](int v) { return v + (255 - v) * 3 / 5; };
    if (brightness >= 110) return colour;
    return RGB(lighter(GetRValue(colour)), lighter(GetGValue(colour)), lighter(GetBValue(colour)));
}
