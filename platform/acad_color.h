// The 256 indexed colours of drawings.
#pragma once
#include "platform/win_types.h"

/// The colour of an index: 0 black, 1 to 7 red, yellow, green, cyan, blue, magenta, white, 8 and 9 greys,
/// 10 to 249 by hue, 250 to 255 greys. An index outside 0 to 255 gives entry 7.
COLORREF GetAcadRGBColor(int index);

/// The index from 1 to 255 whose colour is nearest by squared distance, the lowest of several. Black is 7, which
/// drawings show black on white and white on black. Values outside 0 to 255 count as the nearer bound.
int RGB2AcadIndex(int r, int g, int b);
