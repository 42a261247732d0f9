// Texts and graphics components as the bytes of a model file; the components themselves store nothing.
#pragma once
#include <cstdio>

class CGjText;
class CGouJianEx;

// All numbers are 32 bits wide and little-endian, lengths count bytes, letters are UTF-8. The readers give 0
// at the end of the file and for what makes no sense: numbers that are not finite or beyond 1e15, letters
// that are not UTF-8, primitives of no known kind, line type or raster mode.

/// x, y, height, angle in radians, colour, length, letters.
int WriteText(const CGjText& text, std::FILE* file);
int ReadText(CGjText& text, std::FILE* file);

/// The display list: the fixed flag, the number of primitives; for each its kind, part, colour, line type,
/// snap, raster mode, then its geometry: the floats in the order of the fields; of a polygon the number of
/// points before them; of a text those of WriteText without the colour. A locator and a host's own kind are
/// left out.
int WriteGraph(CGouJianEx& component, std::FILE* file);
int ReadGraph(CGouJianEx& component, std::FILE* file);
