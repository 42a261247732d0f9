// Plain-text layout for tables of results, in a font of fixed width.
//
// Widths count columns: an ASCII character takes one, any other two, as Chinese text does in such a font.
#pragma once
#include "platform/string.h"

/// Columns that the text takes.
int GetTextColumns(const CString& text);

/// The word in the middle of `width` columns, spaces on both sides, the odd one behind. A word that does not
/// fit is cut at a whole character.
CString GetCenteredWord(const CString& word, int width);

/// The line with spaces in front alone, so that it stands in the middle of a page `width` columns wide.
/// A longer line stays whole.
CString GetCenteredTextLine(const CString& line, int width);

/// Fields set apart by tabs, each filled with spaces to `width` columns, at least one space behind it.
CString GetTabbedText(const CString& text, int width);

// Exercisers: each does a round trip on values of its own, through a temporary file where files are meant,
// and gives 1 if all is as it should be.
int TestTabbedText();
int test_get_word();
int Test_WriteFloatArray();
int Test_ReadFloatArray();
