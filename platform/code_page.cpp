#include "platform/code_page.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <map>
#include <utility>

namespace {

constexpr int kUtf8Page = 65001;
constexpr char32_t kReplacement = 0xFFFD;

std::string ConverterName(int codePage) {
    switch (codePage) {
        case 936: return "GBK";
        case 949: return "UHC";
        case 1361: return "JOHAB";
        case 10000: return "MACINTOSH";
        case 20127: return "ASCII";
        case 28591: return "ISO-8859-1";
        case kUtf8Page: return "UTF-8";
        default: break;
    }
    if (codePage > 28591 && codePage <= 28605) return "ISO-8859-" + std::to_string(codePage - 28590);
    return "CP" + std::to_string(codePage);
}

constexpr auto kNoConverter = static_cast<std::intptr_t>(-1);

/// An open converter, or one that is not to be had. They are opened once and stay with the process, since
/// a drawing asks for the same one thousands of times.
iconv_t Converter(int codePage, bool toUtf8) {
    static auto& open = *new std::map<std::pair<int, bool>, iconv_t>;
    const auto [at, fresh] = open.try_emplace({codePage, toUtf8});
    if (fresh) {
        const std::string page = ConverterName(codePage);
        at->second = toUtf8 ? iconv_open("UTF-8", page.c_str()) : iconv_open(page.c_str(), "UTF-8");
    }
    if (at->second != reinterpret_cast<iconv_t>(kNoConverter))
        iconv(at->second, nullptr, nullptr, nullptr, nullptr);  // back to its first state
    return at->second;
}

/// Bytes of the UTF-8 character that begins the text, or 0 when none does.
std::size_t Utf8CharLength(std::string_view s) {
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(s[i]); };
    const unsigned char lead = at(0);
    if (lead < 0x80) return 1;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    const std::size_t n = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (s.size() < n) return 0;
    for (std::size_t i = 1; i < n; ++i)
        if ((at(i) & 0xC0) != 0x80) return 0;
    const unsigned char second = at(1);  // shuts out overlong forms, surrogates and what is over U+10FFFF
    const bool bad = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                     (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
    return bad ? 0 : n;
}

/// Runs the converter over the whole text. At a place that it refuses, `repair(rest, out)` writes a
/// substitute and tells how many bytes to pass over.
template <class Repair>
std::string Convert(iconv_t converter, std::string_view in, bool& ok, Repair repair) {
    std::string out;
    out.reserve(in.size() * 2);
    char buffer[512];
    auto* from = const_cast<char*>(in.data());  // iconv's signature; it writes nothing there
    std::size_t left = in.size();
    while (left > 0) {
        char* to = buffer;
        std::size_t room = sizeof buffer;
        const std::size_t done = iconv(converter, &from, &left, &to, &room);
        const int error = done == static_cast<std::size_t>(-1) ? errno : 0;
        out.append(buffer, static_cast<std::size_t>(to - buffer));
        if (error == 0 || error == E2BIG) continue;
        ok = false;
        const std::size_t skip = std::clamp<std::size_t>(repair({from, left}, out), 1, left);
        from += skip;
        left -= skip;
    }
    return out;
}

std::string DecodeUtf8(std::string_view bytes, bool& ok) {
    std::string out;
    for (std::size_t i = 0; i < bytes.size();) {
        const std::size_t n = Utf8CharLength(bytes.substr(i));
        if (n == 0) {
            ok = false;
            AppendUtf8(out, kReplacement);
        } else {
            out.append(bytes.substr(i, n));
        }
        i += std::max<std::size_t>(n, 1);
    }
    return out;
}

}  // namespace

bool IsAscii(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool IsUtf8(std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        const std::size_t n = Utf8CharLength(bytes.substr(i));
        if (n == 0) return false;
        i += n;
    }
    return true;
}

void AppendUtf8(std::string& text, char32_t c) {
    if (c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) c = kReplacement;
    const auto put = [&](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | c >> 6);
        put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        put(0xE0 | c >> 12);
        put(0x80 | (c >> 6 & 0x3F));
        put(0x80 | (c & 0x3F));
    } else {
        put(0xF0 | c >> 18);
        put(0x80 | (c >> 12 & 0x3F));
        put(0x80 | (c >> 6 & 0x3F));
        put(0x80 | (c & 0x3F));
    }
}

std::string DecodeText(std::string_view bytes, int codePage, bool* ok) {
    bool fine = true;
    std::string text;
    if (IsAscii(bytes)) {
        text = bytes;  // all pages that are spoken of here hold ASCII
    } else if (codePage == kUtf8Page) {
        text = DecodeUtf8(bytes, fine);
    } else if (const iconv_t converter = Converter(codePage, true);
               converter != reinterpret_cast<iconv_t>(kNoConverter)) {
        text = Convert(converter, bytes, fine, [](std::string_view, std::string& out) {
            AppendUtf8(out, kReplacement);
            return std::size_t{1};
        });
    } else {
        fine = false;
        for (const char c : bytes) AppendUtf8(text, static_cast<unsigned char>(c));
    }
    if (ok) *ok = fine;
    return text;
}

std::string EncodeText(std::string_view utf8, int codePage, bool* ok) {
    bool fine = true;
    std::string bytes;
    if (IsAscii(utf8)) {
        bytes = utf8;
    } else if (codePage == kUtf8Page) {
        bytes = DecodeUtf8(utf8, fine);
    } else {
        const auto substitute = [](std::string_view rest, std::string& out) {
            out.push_back('?');
            return Utf8CharLength(rest);
        };
        const iconv_t converter = Converter(codePage, false);
        if (converter != reinterpret_cast<iconv_t>(kNoConverter)) {
            bytes = Convert(converter, utf8, fine, substitute);
        } else {
            fine = false;
            while (!utf8.empty()) {
                const std::size_t n = std::max<std::size_t>(1, Utf8CharLength(utf8));
                bytes.push_back(static_cast<unsigned char>(utf8[0]) < 0x80 ? utf8[0] : '?');
                utf8.remove_prefix(n);
            }
        }
    }
    if (ok) *ok = fine;
    return bytes;
}
