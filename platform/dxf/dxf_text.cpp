#include "platform/dxf/dxf_text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <optional>

#include "platform/code_page.h"

namespace {

constexpr int kUtf8 = 65001;
constexpr int kGbk = 936;
constexpr int kLatin1 = 28591;
constexpr char32_t kReplacement = 0xFFFD;

std::string Lower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
    return lower;
}

/// Whether decoding found any character beyond ASCII, U+FFFD for bad bytes aside.
bool HasForeignCharacter(std::string_view utf8) {
    constexpr std::string_view kReplaced = "\xEF\xBF\xBD";
    while (!utf8.empty()) {
        if (utf8.starts_with(kReplaced)) {
            utf8.remove_prefix(kReplaced.size());
        } else if (static_cast<unsigned char>(utf8[0]) >= 0x80) {
            return true;
        } else {
            utf8.remove_prefix(1);
        }
    }
    return false;
}

/// The bytes in the first code page in which they make sense. Programs write UTF-8 in old versions and the
/// code page of their machine in new ones; text of several bytes is hardly ever valid UTF-8 by accident, so
/// that goes first everywhere. One bad byte in a file of UTF-8 does not spoil the rest of the text.
std::string Decode(std::string_view bytes, bool utf8File, int codePage) {
    bool ok = false;
    std::string text = DecodeText(bytes, kUtf8, &ok);
    if (ok || (utf8File && HasForeignCharacter(text))) return text;
    for (const int page : {codePage, kGbk}) {
        if (page == 0) continue;
        text = DecodeText(bytes, page, &ok);
        if (ok) return text;
    }
    return DecodeText(bytes, kLatin1);
}

std::optional<std::uint32_t> Hex(std::string_view text, std::size_t at, std::size_t digits) {
    if (text.size() < at + digits) return std::nullopt;
    std::uint32_t value = 0;
    const char* const last = text.data() + at + digits;
    const auto [end, error] = std::from_chars(text.data() + at, last, value, 16);
    return error == std::errc() && end == last ? std::optional(value) : std::nullopt;
}

/// \U+XXXX at `at`: a character of the basic plane, or half of a pair.
std::optional<std::uint32_t> UnicodeEscape(std::string_view text, std::size_t at) {
    const std::string_view mark = text.substr(std::min(at, text.size()), 3);
    return mark == "\\U+" || mark == "\\u+" ? Hex(text, at + 3, 4) : std::nullopt;
}

/// \M+nXXXX at `at`: two bytes of one of five code pages.
std::optional<std::string> MultiByteEscape(std::string_view text, std::size_t at) {
    static constexpr int kPages[] = {932, 950, 949, 1361, 936};
    const std::string_view mark = text.substr(at, 3);
    if ((mark != "\\M+" && mark != "\\m+") || text.size() < at + 8) return std::nullopt;
    const int page = text[at + 3] - '1';
    const auto value = Hex(text, at + 4, 4);
    if (page < 0 || page >= 5 || !value) return std::nullopt;
    const char bytes[] = {static_cast<char>(*value >> 8), static_cast<char>(*value & 0xFF)};
    const bool single = bytes[0] == 0;
    return DecodeText({bytes + single, single ? 1u : 2u}, kPages[page]);
}

std::string ResolveEscapes(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == '^' && i + 1 < text.size() && text[i + 1] == ' ') {
            out.push_back('^');  // so that it is not taken for the beginning of a control character
            i += 2;
        } else if (text[i] != '\\') {
            out.push_back(text[i++]);
        } else if (const auto unit = UnicodeEscape(text, i)) {
            const auto low = UnicodeEscape(text, i + 7);
            const bool pair = *unit >= 0xD800 && *unit < 0xDC00 && low && *low >= 0xDC00 && *low < 0xE000;
            if (pair)
                AppendUtf8(out, 0x10000 + ((*unit - 0xD800) << 10) + (*low - 0xDC00));
            else  // a zero would end the text for readers of C strings
                AppendUtf8(out, *unit != 0 ? *unit : kReplacement);
            i += pair ? 14 : 7;
        } else if (const auto characters = MultiByteEscape(text, i)) {
            out += *characters;
            i += 8;
        } else {
            out.push_back(text[i++]);
        }
    }
    return out;
}

/// The next character of a text, which is shortened by it; U+FFFD for a byte that is no UTF-8.
char32_t TakeCharacter(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const std::string_view bytes = text.substr(0, length);
    if (!IsUtf8(bytes)) {
        text.remove_prefix(1);
        return kReplacement;
    }
    text.remove_prefix(length);
    if (length == 1) return lead;
    char32_t c = lead & (0x7Fu >> length);
    for (const char byte : bytes.substr(1)) c = c << 6 | (static_cast<unsigned char>(byte) & 0x3Fu);
    return c;
}

void AppendEscape(std::string& out, char32_t c) {
    if (c > 0xFFFF) {
        AppendEscape(out, 0xD800 + ((c - 0x10000) >> 10));
        c = 0xDC00 + ((c - 0x10000) & 0x3FF);
    }
    out += "\\U+";
    for (int shift = 12; shift >= 0; shift -= 4) out.push_back("0123456789ABCDEF"[c >> shift & 15]);
}

/// GBK where it has the character (or nowhere at all), else escapes.
std::string Encode(std::string_view utf8, bool escapeAll) {
    std::string out;
    while (!utf8.empty()) {
        const std::string_view rest = utf8;
        const char32_t c = TakeCharacter(utf8);
        const bool escapeAhead = c == '\\' && (UnicodeEscape(rest, 0) || MultiByteEscape(rest, 0));
        if (escapeAhead) {
            AppendEscape(out, c);
        } else if (c == '^') {
            out += "^ ";
        } else if (c < 0x80) {
            out.push_back(c < 0x20 || c == 0x7F ? ' ' : static_cast<char>(c));
        } else {
            bool known = !escapeAll;
            const std::string bytes = known ? EncodeText(rest.substr(0, rest.size() - utf8.size()), kGbk, &known) : "";
            if (known && bytes.size() == 2)  // single bytes (the euro sign) are additions that few readers know
                out += bytes;
            else
                AppendEscape(out, c);
        }
    }
    return out;
}

}  // namespace

int DxfCodePage(std::string_view name) {
    const std::string lower = Lower(name);
    struct { const char* name; int page; } const named[] = {
        {"ascii", 20127},   {"utf-8", 65001},    {"utf8", 65001},     {"gb2312", 936},   {"gbk", 936},
        {"big5", 950},      {"ksc5601", 949},    {"johab", 1361},     {"shift_jis", 932}, {"dos932", 932},
        {"mac-roman", 10000},
    };
    for (const auto& n : named)
        if (lower == n.name) return n.page;
    for (const std::string_view prefix : {"ansi_", "ansi", "dos", "cp", "iso8859-"}) {
        if (!lower.starts_with(prefix)) continue;
        int number = 0;
        const char* const last = lower.data() + lower.size();
        const auto [end, error] = std::from_chars(lower.data() + prefix.size(), last, number);
        if (error == std::errc() && end == last && number > 0 && number < 65536)
            return prefix[0] == 'i' ? 28590 + std::min(number, 15) : number;
    }
    return 0;
}

std::string DecodeDxfText(std::string_view bytes, bool utf8File, int codePage) {
    std::string text = Decode(bytes, utf8File, codePage);
    return text.find_first_of("\\^") == std::string::npos ? text : ResolveEscapes(text);
}

std::string EncodeDxfText(std::string_view utf8) {
    std::string bytes = Encode(utf8, false);
    return !IsAscii(bytes) && IsUtf8(bytes) ? Encode(utf8, true) : bytes;
}

bool IsPlainDxfText(std::string_view bytes) {
    std::uint64_t high = 0;
    std::size_t i = 0;
    for (; i + 8 <= bytes.size(); i += 8) {
        std::uint64_t eight;
        std::memcpy(&eight, bytes.data() + i, 8);
        high |= eight;
    }
    for (; i < bytes.size(); ++i) high |= static_cast<unsigned char>(bytes[i]);
    return (high & 0x8080808080808080u) == 0 && bytes.find_first_of("\\^") == std::string_view::npos;
}
