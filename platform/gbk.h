// Conversion between the text of memory (UTF-8) and the text of files (GBK).
#pragma once
#include <string>
#include <string_view>

/// The text of GBK bytes. A byte or pair that is no GBK character becomes '?' and *lossless false; else
/// *lossless is set to true.
std::string GbkToUtf8(std::string_view gbk, bool* lossless = nullptr);

/// The GBK bytes of a text. A character that GBK does not have, or a byte that is no UTF-8, becomes '?' and
/// *lossless false; else *lossless is set to true.
std::string Utf8ToGbk(std::string_view utf8, bool* lossless = nullptr);
