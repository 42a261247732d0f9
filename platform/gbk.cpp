#include "platform/gbk.h"

#include "platform/code_page.h"

namespace {

constexpr int kGbkPage = 936;
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD, which no GBK character stands for

}  // namespace

std::string GbkToUtf8(std::string_view gbk, bool* lossless) {
    bool ok = true;
    const std::string text = DecodeText(gbk, kGbkPage, &ok);
    if (lossless) *lossless = ok;
    if (ok) return text;
    std::string out;
    std::string_view rest = text;
    for (std::size_t at; (at = rest.find(kReplacement)) != rest.npos;
         rest.remove_prefix(at + kReplacement.size()))
        out.append(rest.substr(0, at)).push_back('?');
    return out.append(rest);
}

std::string Utf8ToGbk(std::string_view utf8, bool* lossless) { return EncodeText(utf8, kGbkPage, lossless); }

namespace {

bool Begins(char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }

std::size_t WidthOf(char lead) { return static_cast<unsigned char>(lead) < 0x80 ? 1 : 2; }

}  // namespace

std::size_t GbkLength(std::string_view utf8) {
    std::size_t bytes = 0;
    for (const char c : utf8)
        if (Begins(c)) bytes += WidthOf(c);
    return bytes;
}

std::size_t GbkCutLength(std::string_view utf8, std::size_t gbkBytes) {
    std::size_t used = 0;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        if (!Begins(utf8[i])) continue;
        used += WidthOf(utf8[i]);
        if (used > gbkBytes) return i;
    }
    return utf8.size();
}
