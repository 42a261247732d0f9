#include "host/svg_text.h"

#include <cstdio>

#include "platform/code_page.h"

std::string SvgEscaped(std::string_view text) {
    const bool whole = IsUtf8(text);
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += byte < 0x20 || byte == 0x7F ? ' ' : byte >= 0x80 && !whole ? '?' : c;
        }
    }
    return out;
}

std::string SvgNumber(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", value == 0 ? 0.0 : value);
    return text;
}

std::string SvgColor(COLORREF color) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", static_cast<unsigned>(GetRValue(color)),
                  static_cast<unsigned>(GetGValue(color)), static_cast<unsigned>(GetBValue(color)));
    return text;
}
