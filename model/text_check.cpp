#include "model/text_check.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/number_text.h"

namespace {

constexpr std::size_t kLastFieldBytes = 500;
constexpr int kMaxDecimals = 5;

}  // namespace

int vs_comma_text(const char* text, CStringArray& out, char sep, const char* more) {
    out.RemoveAll();
    if (!text) return 0;
    std::string separators(1, sep);
    if (more) separators += more;
    std::string_view rest = text;
    for (std::size_t end; (end = rest.find_first_of(separators)) != rest.npos; rest.remove_prefix(end + 1))
        out.Add(CString(rest.substr(0, end)));
    out.Add(CString(rest.substr(0, Utf8CutLength(rest, kLastFieldBytes))));
    return out.GetSize();
}

CString remove_invalid_filechar(const CString& text) {
    std::string kept = text.Std();
    std::erase_if(kept,
                  [](char c) { return std::string_view("\\/:*?<>|").find(c) != std::string_view::npos; });
    return kept;
}

CString remove_continous_duplicate_char(const char* s, char c) {
    std::string kept = s ? s : "";
    const auto isSecond = [c](char a, char b) { return a == c && b == c; };
    kept.erase(std::unique(kept.begin(), kept.end(), isSecond), kept.end());
    return kept;
}

int IsValidInteger(CString text) {
    std::string_view digits = text.Trim().View();
    if (digits.starts_with('-')) digits.remove_prefix(1);
    return std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
}

int IsValidReal(CString text) {
    CStringArray parts;
    vs_comma_text(text.Trim(), parts, '.', nullptr);
    if (parts.GetSize() > 2) return 0;
    if (parts.GetSize() == 2 && parts[1].View().starts_with('-')) return 0;
    return std::all_of(parts.begin(), parts.end(),
                       [](const CString& part) { return IsValidInteger(part) != 0; });
}

int IsValidNumber(const CString& text) { return IsValidInteger(text) || IsValidReal(text); }

CString GetDisplayCoef(double v, int digits) {
    std::string text = FixedReal(v, std::clamp(digits, 0, kMaxDecimals));
    if (text.find('.') == text.npos) return text;
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text += '0';
    return text;
}
