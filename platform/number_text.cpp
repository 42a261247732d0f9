#include "platform/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

void DropWhite(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\r\f\v"), text.size()));
}

// Takes one sign off the text.
bool TakeMinus(std::string_view& text) {
    const bool minus = text.starts_with('-');
    if (minus || text.starts_with('+')) text.remove_prefix(1);
    return minus;
}

// For a number that no double holds: whether it is too small rather than too large.
bool IsTiny(std::string_view number) {
    const std::size_t exponent = number.find_first_of("eE");
    if (exponent != number.npos && exponent + 1 < number.size()) return number[exponent + 1] == '-';
    const std::size_t first = number.find_first_of("123456789");
    return first > number.find('.');
}

}  // namespace

double LeadingReal(std::string_view text) {
    DropWhite(text);
    const bool minus = TakeMinus(text);
    double v = 0;
    if (!text.starts_with('-')) {  // from_chars would take a second sign
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), v);
        if (error == std::errc::result_out_of_range)
            v = IsTiny({text.data(), static_cast<std::size_t>(end - text.data())}) ? 0 : HUGE_VAL;
    }
    return minus ? -v : v;
}

int LeadingInt(std::string_view text) {
    DropWhite(text);
    const bool minus = TakeMinus(text);
    int v = 0;
    if (text.starts_with('-')) return 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (error == std::errc::result_out_of_range)
        return minus ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
    return minus ? -v : v;
}

std::string FixedReal(double v, int decimals) {
    std::string out(static_cast<std::size_t>(330 + decimals), 0);  // the largest double has 309 digits
    const auto [end, error] =
        std::to_chars(out.data(), out.data() + out.size(), v, std::chars_format::fixed, decimals);
    out.resize(static_cast<std::size_t>(end - out.data()));
    return out;
}
