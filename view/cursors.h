// The cursors of the view, by number; a backend has their pictures.
#pragma once
#include "platform/window.h"

extern const HCURSOR g_hCursorNull;  // hidden: the view draws its own
extern const HCURSOR g_hCursorWin;
extern const HCURSOR g_hCursorPan;
extern const HCURSOR g_hCursorZoom;
extern const HCURSOR g_hCursorRot;
extern const HCURSOR g_hCursorLoc;
