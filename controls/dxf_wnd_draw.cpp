// CDxfWnd: the picture.
#include <cmath>
#include <memory>

#include "controls/dxf_wnd.h"
#include "controls/entity_pencil.h"
#include "platform/canvas/surface.h"
#include "platform/saturate.h"

namespace {

constexpr COLORREF kGround = RGB(24, 24, 28);

COLORREF Dimmed(COLORREF c) {
    const auto channel = [&](int shift) { return ((c >> shift & 0xFF) * 2 + (kGround >> shift & 0xFF) * 7) / 9 << shift; };
    return channel(0) | channel(8) | channel(16);
}

}  // namespace

void CDxfWnd::OnDraw(CDC* dc) {
    const CRect place = DrawingPlace();
    if (place.IsRectEmpty()) return;
    const CSurface* const base = m_cBase.Surface();
    if (m_bDirty || !base || base->LogicalWidth() != place.Width() || base->LogicalHeight() != place.Height() ||
        base->Density() != dc->Density())
        DrawBase(place, dc->Density());
    const int saved = dc->SaveDC();
    dc->IntersectClipRect(place);
    if (m_bDrag) {
        CBrush ground(kGround);
        dc->FillRect(&place, &ground);
    }
    const CPoint shift = m_bDrag ? m_ptShift : CPoint();
    dc->BitBlt(place.left + shift.x, place.top + shift.y, place.Width(), place.Height(), &m_cBase, 0, 0, SRCCOPY);
    dc->RestoreDC(saved);
}

void CDxfWnd::DrawBase(const CRect& place, int density) {
    m_bDirty = false;
    ++m_nDrawn;
    m_cBase.DeleteDC();
    m_cBase.Attach(std::make_shared<CSurface>(place.Width(), place.Height(), density));
    m_cBase.Surface()->Fill(PixelFromColor(kGround));
    if (!(m_scale > 0)) return;
    m_cBase.SetBkMode(TRANSPARENT);
    m_cBase.SetTextAlign(TA_LEFT | TA_BASELINE);
    if (m_bDimmed) DrawItems(m_cBase, place, false);
    DrawItems(m_cBase, place, true);
}

void CDxfWnd::DrawItems(CDC& dc, const CRect& place, bool shown) {
    const DrawingPlacement placement{m_scale, m_left, m_top};
    const double right = m_left + (place.Width() + 1) / m_scale, bottom = m_top - (place.Height() + 1) / m_scale;
    const double pixel = 1 / m_scale;
    CEntityPencil pencil(dc, placement);
    CPen pen;
    COLORREF selected = CLR_INVALID;
    for (const Item& item : m_items) {
        if (m_layers[item.layer].m_bShown != shown) continue;
        if (item.maxX < m_left - pixel || item.minX > right || item.maxY < bottom || item.minY > m_top + pixel) continue;
        const COLORREF color = shown ? item.color : Dimmed(item.color);
        if (item.maxX - item.minX < pixel && item.maxY - item.minY < pixel) {
            dc.SetPixel(SaturatedInt(std::floor(placement.X((item.minX + item.maxX) / 2))),
                        SaturatedInt(std::floor(placement.Y((item.minY + item.maxY) / 2))), color);
            continue;
        }
        if (color != selected) {
            pen.CreatePen(PS_SOLID, 1, selected = color);
            dc.SelectObject(&pen);
        }
        pencil.Draw(*item.entity, color);
    }
    dc.SelectStockObject(BLACK_PEN);
}
