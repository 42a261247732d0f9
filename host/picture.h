// The model as a picture in pixels.
#pragma once
#include <string>

class CTvoHostDataBase;

inline constexpr int kMinPictureSide = 16;
inline constexpr int kMaxPictureSide = 16384;

/// Draws everything that is visible on white, plates hatched and with number and area where these fit, fitted with a
/// margin, and writes it as PNG. Both sides are in pixels, from kMinPictureSide to kMaxPictureSide. `caption` goes below
/// the drawing and may be empty. Throws DataFailure when the file can't be written.
void WritePngOfModel(const std::string& path, CTvoHostDataBase& db, int width, int height, const std::string& caption);
