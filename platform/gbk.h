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

/// Bytes of a text in GBK: one for an ASCII character, two for any other.
std::size_t GbkLength(std::string_view utf8);
/// The greatest length of UTF-8 at which `utf8` can be cut between characters with at most so many bytes of GBK before.
std::size_t GbkCutLength(std::string_view utf8, std::size_t gbkBytes);
