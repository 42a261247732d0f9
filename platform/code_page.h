// Text of other code pages, turned into UTF-8 and back.
#pragma once
#include <string>
#include <string_view>

/// UTF-8 of bytes in a code page of that number (936, 1252, 932, 65001 for UTF-8 itself, ...). A byte that
/// means nothing there becomes U+FFFD. `ok`, if given, tells whether everything could be decoded; it is
/// false for a page that this system doesn't know, whose bytes are then taken as Latin-1.
std::string DecodeText(std::string_view bytes, int codePage, bool* ok = nullptr);

/// The way back. A character that the page lacks becomes "?", and `ok` false.
std::string EncodeText(std::string_view utf8, int codePage, bool* ok = nullptr);

bool IsAscii(std::string_view bytes);

/// Whether all is well-formed UTF-8 (shortest forms, no surrogates, at most U+10FFFF). ASCII is.
bool IsUtf8(std::string_view bytes);

/// Appends one character; what is no character (a surrogate, over U+10FFFF) becomes U+FFFD.
void AppendUtf8(std::string& text, char32_t c);
