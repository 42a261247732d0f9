// Numbers as text in the C locale's form, whatever the locale of the process is.
#pragma once
#include <string>
#include <string_view>

/// The number at the start of the text, white space before it passed over; 0 if there is none. Too large a
/// number is infinite, too small a one 0.
double LeadingReal(std::string_view text);

/// The same for decimal integers; beyond the range of int it is the nearer bound.
int LeadingInt(std::string_view text);

/// As "%.*f".
std::string FixedReal(double v, int decimals);
