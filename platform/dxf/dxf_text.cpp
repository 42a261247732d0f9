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
        if (text[i] != '\\') {
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
    return text.find('\\') == std::string::npos ? text : ResolveEscapes(text);
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
    return (high & 0x8080808080808080u) == 0 && bytes.find('\\') == std::string_view::npos;
}
