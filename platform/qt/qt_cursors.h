// The pictures of the cursors.
#pragma once
#include <QCursor>

#include "platform/window.h"

/// The cursor of a number, sharp on a screen of so many pixels to the unit; the arrow for 0 and unknown
/// numbers.
QCursor CursorPicture(HCURSOR cursor, double density);
