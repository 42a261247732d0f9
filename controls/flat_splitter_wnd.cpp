#include "controls/flat_splitter_wnd.h"

#include "platform/canvas/dc.h"
#include "platform/canvas/system_metrics.h"

TCFlatSplitterWnd::TCFlatSplitterWnd() : CSplitterWndEx(1), m_colour(GetSysColor(COLOR_SPLITTER)) {}

void TCFlatSplitterWnd::SetBarColour(COLORREF colour) {
    m_colour = colour;
    Invalidate();
}

void TCFlatSplitterWnd::OnSysColorChange() { m_colour = GetSysColor(COLOR_SPLITTER); }

void TCFlatSplitterWnd::DrawBar(CDC* dc, const CRect& bar) { dc->FillSolidRect(bar, m_colour); }
