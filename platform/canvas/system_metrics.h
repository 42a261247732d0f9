// What the system reports of the screen: sizes and colours.
#pragma once
#include "platform/win_types.h"

// clang-format off
enum : int { SM_CXSCREEN = 0, SM_CYSCREEN = 1, SM_CXFULLSCREEN = 16, SM_CYFULLSCREEN = 17 };
enum : int {
    COLOR_WINDOW = 5, COLOR_WINDOWTEXT = 8, COLOR_HIGHLIGHT = 13, COLOR_HIGHLIGHTTEXT = 14,
    COLOR_BTNFACE = 15, COLOR_3DFACE = 15, COLOR_BTNSHADOW = 16, COLOR_GRAYTEXT = 17, COLOR_BTNTEXT = 18, COLOR_BTNHIGHLIGHT = 20
};
// clang-format on

/// The screen is 1920 by 1080 pixels until a backend or a test says otherwise. 0 for unknown numbers.
int GetSystemMetrics(int index);
void SetSystemMetrics(int index, int value);

/// The customary colours of the toolkit; 0 (black) for unknown numbers.
COLORREF GetSysColor(int index);
