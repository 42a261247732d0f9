// Numbers as drawings write them, read with a point for the decimals whatever the process's locale. Internal.
#pragma once
#include <cstdint>
#include <string_view>

/// 10^0 .. 10^22, all of them exact.
extern const double kDxfPowersOfTen[23];

/// Reads a plain number ("-12.5") of few digits, which is nearly every one in a drawing, and returns the
/// place behind it. Null for anything else: long numbers, exponents, no number. The text must end in a
/// character that is no digit.
///
/// The digits without the point fit in 53 bits and the power of ten is exact, so that the one division
/// rounds as the correctly rounded number does.
inline const char* ReadShortReal(const char* p, double& value) {
    while (*p == ' ' || *p == '\t') ++p;
    const bool negative = *p == '-';
    p += negative;
    const auto digit = [](char c) { return static_cast<unsigned>(static_cast<unsigned char>(c)) - '0'; };
    const char* const first = p;
    std::uint64_t number = 0;
    for (unsigned d; (d = digit(*p)) <= 9; ++p) number = number * 10 + d;
    auto digits = p - first;
    std::ptrdiff_t decimals = 0;
    if (*p == '.') {
        const char* const point = ++p;
        for (unsigned d; (d = digit(*p)) <= 9; ++p) number = number * 10 + d;
        decimals = p - point;
        digits += decimals;
    }
    if (digits == 0 || digits > 19 || number > (std::uint64_t{1} << 53)) return nullptr;
    const double magnitude = static_cast<double>(number) / kDxfPowersOfTen[decimals];
    value = negative ? -magnitude : magnitude;
    return p;
}

/// Any number, correctly rounded, blanks around it allowed. Too great ones and "1.#INF" are infinite or NaN;
/// text that is no number is NaN, and `isNumber` false.
double ReadReal(std::string_view text, bool& isNumber);

/// The whole number at the start of the text, cut to the range of int; 0 if there is none.
int ReadInteger(std::string_view text);

/// The text without blanks, tabs and returns at its ends.
std::string_view TrimBlanks(std::string_view text);
