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
