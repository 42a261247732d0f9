// Names and texts of drawings, turned into UTF-8. Internal.
#pragma once
#include <string>
#include <string_view>

/// The number of a code page that a header names ("ANSI_936", "gb2312", "dos850"); 0 if it isn't known.
int DxfCodePage(std::string_view name);

/// UTF-8 of a text as its file holds it. `codePage` is the header's, 0 if it gives none; `utf8File` holds
/// for AC1021 and later. Escapes \U+XXXX and \M+nXXXX are resolved, and so is "^ ", a caret. Never fails: what fits nothing else is
/// taken as Latin-1.
std::string DecodeDxfText(std::string_view bytes, bool utf8File, int codePage);

/// Whether the text means just its own bytes: ASCII without a backslash or caret.
bool IsPlainDxfText(std::string_view bytes);

/// The bytes that stand for a text in a file of code page 936: what GBK lacks is \U+XXXX, in pairs beyond the basic
/// plane, and so is what would come back as something else: the backslash of a text that looks like such an escape, and
/// all that is not ASCII where the GBK bytes would pass for UTF-8. A caret is "^ ". A control character, which would
/// break the file's lines, is a blank.
std::string EncodeDxfText(std::string_view utf8);
