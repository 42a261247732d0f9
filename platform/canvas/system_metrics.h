// What the system reports of the screen: sizes and colours.
#pragma once
#include "platform/win_types.h"

// clang-format off
enum : int { SM_CXSCREEN = 0, SM_CYSCREEN = 1, SM_CXFULLSCREEN = 16, SM_CYFULLSCREEN = 17 };
enum : int {
    COLOR_WINDOW = 5, COLOR_WINDOWTEXT = 8, COLOR_HIGHLIGHT = 13, COLOR_HIGHLIGHTTEXT = 14,
    COLOR_BTNFACE = 15, COLOR_3DFACE = 15, COLOR_BTNSHADOW = 16, COLOR_GRAYTEXT = 17, COLOR_BTNTEXT = 18, COLOR_BTNHIGHLIGHT = 20
};
// Roles of the library's own panes.
enum : int {
    COLOR_MENU_BRANCH = 1000, COLOR_MENU_BRANCH_HOT, COLOR_MENU_COMMAND, COLOR_MENU_COMMAND_HOT, COLOR_MENU_LINE, COLOR_MENU_MARK,
    COLOR_SPLITTER, COLOR_BAR_FIELD, COLOR_BAR_PROMPT, COLOR_PROMPT_LINE, COLOR_TOOL_HOT, COLOR_TOOL_PRESSED, COLOR_TOOL_INK,
    COLOR_TOOL_ACCENT
};
// clang-format on

/// The screen is 1920 by 1080 pixels until a backend or a test says otherwise. 0 for unknown numbers.
int GetSystemMetrics(int index);
void SetSystemMetrics(int index, int value);

/// The colour of a role in the palette in force, at first the light one: the toolkit's customary colours. 0 (black) for
/// unknown numbers.
COLORREF GetSysColor(int index);
void SetSysColor(int index, COLORREF colour);
/// Takes up the dark palette or the light one, whole. Windows learn of it by CWindowSystem::UsePalette.
void UseDarkPalette(bool dark);
bool IsDarkPalette();
/// A text colour that can be read in the palette in force: on dark ground black becomes the role's text colour and other
/// dark colours are lightened; on light ground every colour stays.
COLORREF ReadableColor(COLORREF colour);
