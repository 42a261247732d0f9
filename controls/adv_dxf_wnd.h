// CAdvDxfWnd: a drawing to look at, with its layers beside it.
#pragma once
#include <functional>

#include "controls/dxf_wnd.h"
#include "platform/canvas/font.h"

/// A CDxfWnd with a column at its left: a tick, the name and the number of entities of each layer. A click switches the
/// layer; the wheel scrolls where the column is.
class CAdvDxfWnd : public CDxfWnd {
public:
    CAdvDxfWnd();
    ~CAdvDxfWnd() override { DestroyWindow(); }

    static constexpr int kListWidth = 190;  // pixels; at most half of the window
    static constexpr int kRowHeight = 20;

    void OnDraw(CDC* dc) override;
    int GetFirstLayer() const { return m_nFirst; }  // at the top of the column

    std::function<void(const CDxfLayerSwitch&)> m_onLayer;  // after the user has switched one; may be empty

protected:
    CRect DrawingPlace() const override;
    void OnSize(int width, int height) override;
    void OnLButtonDown(UINT keys, CPoint p) override;
    BOOL OnMouseWheel(UINT keys, int delta, CPoint screen) override;

private:
    CRect ListPlace() const;
    int MostFirst() const;

    CFont m_font;
    int m_nFirst = 0;
};
