// The pictures of tool bar buttons, drawn at any size.
#pragma once
#include "platform/win_types.h"

class CDC;

/// What a picture is drawn with.
struct ToolColours {
    COLORREF m_ink = 0, m_accent = 0;
};

/// Draws the picture of a button into a square.
using ToolPicture = void (*)(CDC& dc, const CRect& box, const ToolColours& colours);

void DrawZoomIn(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawZoomOut(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawShowAll(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawShowMove(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawShowRect(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawShowAgain(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawShowPre(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawSelectOne(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawSelectWindow(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawSelectPolygon(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawUndo(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawRedo(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawNewFile(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawOpenFile(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawSaveFile(CDC& dc, const CRect& box, const ToolColours& colours);
void DrawPrint(CDC& dc, const CRect& box, const ToolColours& colours);
