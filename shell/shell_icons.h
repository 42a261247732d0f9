// The small pictures of the screen menu, by the numbers that hosts know them by.
#pragma once
#include "platform/canvas/icon.h"

constexpr unsigned short kIconOpenFolder = 2026;
constexpr unsigned short kIconClosedFolder = 2028;

/// The picture of a number, 16 by 16, with one of 32 by 32 behind it for dense screens; null for numbers that have none.
/// It lives as long as the process.
HICON LoadShellIcon(unsigned short number);
