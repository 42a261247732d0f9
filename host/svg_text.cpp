#include "host/svg_text.h"

#include <cstdio>

#include "platform/code_page.h"

namespace {

/// U+FFFE and U+FFFF, the two characters above the control characters that no XML may hold.
bool BeginsWithNoncharacter(std::string_view text) {
    return text.starts_with("\xEF\xBF\xBE") || text.starts_with("\xEF\xBF\xBF");
}

}  // namespace

std::string SvgEscaped(std::string_view text) {
    const bool whole = IsUtf8(text);
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (BeginsWithNoncharacter(text.substr(i))) {
            out += "\xEF\xBF\xBD";  // U+FFFD, as wide as they are
            i += 2;
            continue;
        }
        const char c = text[i];
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
