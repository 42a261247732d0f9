// Drawings of a model, for the commands that make them.
#pragma once
#include <cstdint>
#include <string>

#include "platform/dxf/dxf.h"

class CTvoDataBase;

struct SavedDrawing {
    std::string file;  // with its extension
    int entities = 0;
    std::uint64_t bytes = 0;
};

/// Writes the model as a drawing, hidden things left out, with progress on the terminal. The name gets the extension
/// .dxf if it lacks it. Throws DataFailure with path and reason; the file before stands then.
SavedDrawing SaveDrawing(const std::string& path, CTvoDataBase& db, DxfVersion version);

/// "r12" and "2000", in any case. False for anything else.
bool ReadDxfVersion(const std::string& text, DxfVersion& version);
/// The reason why a text is no version; empty when it is one.
std::string CheckDxfVersion(const std::string& text);
