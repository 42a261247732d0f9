// Pictures in PNG files.
#pragma once
#include <string>

#include "platform/canvas/surface.h"

/// Writes the surface as an RGB picture of 8 bits a channel. False with a message that names the file and the
/// reason if it cannot be written; no half-written file is left then.
bool WritePng(const CSurface& surface, const std::string& file, std::string& error);
