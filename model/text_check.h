// Splitting and checking of short texts, and numbers for display.
#pragma once
#include "platform/string.h"

/// Splits `text` at `sep` and at every byte of `more` (or null) into `out`, which is emptied first. Every
/// separator ends a field: "a,,b" has three fields, "a," has two. The last field is cut to 500 bytes.
/// Returns the number of fields; a null text has none.
int vs_comma_text(const char* text, CStringArray& out, char sep, const char* more);

/// Without the bytes \ / : * ? < > |.
CString remove_invalid_filechar(const CString& text);

/// Without each `c` that follows a `c`.
CString remove_continous_duplicate_char(const char* s, char c);

// White space at the ends counts for nothing in these.

/// Digits, with "-" allowed as the first byte alone. An empty text is valid: an empty edit box is accepted.
int IsValidInteger(CString text);
/// At most two parts set apart by ".", each a valid integer, the second without "-".
int IsValidReal(CString text);
int IsValidNumber(const CString& text);

/// `v` with at most `digits` decimals (0 to 5), without the zeros at their end, though one decimal stays:
/// 2.50 is "2.5", 2.0 is "2.0". With no digits asked for there are no decimals: 20 is "20".
CString GetDisplayCoef(double v, int digits);
