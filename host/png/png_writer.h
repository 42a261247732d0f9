// Pictures in PNG files.
#pragma once
#include <cstdint>
#include <string>

#include "platform/canvas/surface.h"

/// Writes the surface as an RGB picture of 8 bits a channel. False with a message that names the file and the
/// reason if it cannot be written; no half-written file is left then.
bool WritePng(const CSurface& surface, const std::string& file, std::string& error);

/// The same as the bytes of a file, with one colour transparent. Empty if it cannot be made.
std::string PngBytes(const CSurface& surface, std::uint32_t transparent);
