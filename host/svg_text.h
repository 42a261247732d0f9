// The pieces of text that SVG is made of.
#pragma once
#include <string>
#include <string_view>

#include "platform/win_types.h"

/// Text for XML content and attributes. Control characters, which XML 1.0 can't hold at all, become spaces,
/// and U+FFFE and U+FFFF become U+FFFD; in a text that is not UTF-8 whatever is not ASCII becomes "?".
std::string SvgEscaped(std::string_view text);

/// A number with up to 9 digits.
std::string SvgNumber(double value);

/// "#rrggbb"
std::string SvgColor(COLORREF color);
