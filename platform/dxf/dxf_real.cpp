#include "platform/dxf/dxf_real.h"

#include <charconv>
#include <limits>

const double kDxfPowersOfTen[23] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Of a number out of range: whether it is too great and not too small. `text` has no sign.
bool IsHuge(std::string_view text) {
    const auto e = text.find_first_of("eE");
    if (e != std::string_view::npos && e + 1 < text.size()) return text[e + 1] != '-';
    return !text.starts_with("0") && !text.starts_with(".");
}

}  // namespace

std::string_view TrimBlanks(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && blank(text.back())) text.remove_suffix(1);
    return text;
}

double ReadReal(std::string_view text, bool& isNumber) {
    text = TrimBlanks(text);
    bool negative = false;
    if (!text.empty() && (text[0] == '+' || text[0] == '-')) {
        negative = text[0] == '-';
        text.remove_prefix(1);
    }
    isNumber = false;
    if (text.empty() || text[0] == '-') return kNaN;
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::invalid_argument) return kNaN;
    if (error == std::errc::result_out_of_range) value = IsHuge(text) ? kInfinity : 0.0;
    if (end != text.data() + text.size()) {
        isNumber = *end == '#' && IsDigit(text[0]);  // "1.#INF", "1.#QNAN": how some programs print them
        return kNaN;
    }
    isNumber = true;
    return negative ? -value : value;
}

int ReadInteger(std::string_view text) {
    text = TrimBlanks(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc::result_out_of_range) return value;
    return text[0] == '-' ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
}
