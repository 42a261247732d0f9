// Reading drawings for the commands, and their texts on a terminal.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>

class DXF;
struct DxfReadResult;

/// Reads a drawing. One that breaks off in the middle is taken as far as it goes, with a warning on the error
/// stream. Throws DataFailure with file, place and reason when there is nothing to take.
void ReadDrawing(const std::string& file, DXF& drawing);

/// Does the same for a reading that is through. `file` names it in messages.
void CheckReading(const std::string& file, const DxfReadResult& result);

/// A text of a drawing without control characters, which could play tricks on a terminal.
std::string PlainText(std::string_view text);

/// Columns that a UTF-8 text takes on a terminal: two for each East Asian character.
std::size_t TerminalColumns(std::string_view text);
