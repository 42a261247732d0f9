// TCFlatSplitterWnd: a splitter with flat bars.
#pragma once
#include "controls/splitter_wnd.h"

/// Bars of one pixel in one colour, without edges.
class TCFlatSplitterWnd : public CSplitterWndEx {
public:
    TCFlatSplitterWnd();
    void SetBarColour(COLORREF colour);

protected:
    COLORREF BarColour() const override { return m_colour; }
    void DrawBar(CDC* dc, const CRect& bar) override;
    void OnSysColorChange() override;

private:
    COLORREF m_colour;
};
