#include "controls/adv_dxf_wnd.h"

#include <algorithm>
#include <string>

#include "platform/acad_color.h"
#include "platform/canvas/system_metrics.h"

CAdvDxfWnd::CAdvDxfWnd() {
    m_font.CreateFont(13, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, DEFAULT_QUALITY, 0, "");
}

CRect CAdvDxfWnd::ListPlace() const {
    const CRect client = GetClientRect();
    return {0, 0, std::min(kListWidth, client.right / 2), client.bottom};
}

CRect CAdvDxfWnd::DrawingPlace() const {
    const CRect client = GetClientRect();
    return {ListPlace().right, 0, client.right, client.bottom};
}

int CAdvDxfWnd::MostFirst() const {
    return std::max(0, static_cast<int>(GetLayers().size()) - std::max(1, ListPlace().Height() / kRowHeight));
}

void CAdvDxfWnd::OnSize(int width, int height) {
    m_nFirst = std::min(m_nFirst, MostFirst());
    CDxfWnd::OnSize(width, height);
}

void CAdvDxfWnd::OnDraw(CDC* dc) {
    CDxfWnd::OnDraw(dc);
    m_nFirst = std::clamp(m_nFirst, 0, MostFirst());  // the drawing may be another one
    const CRect place = ListPlace();
    const int saved = dc->SaveDC();
    dc->IntersectClipRect(place);
    CBrush ground(GetSysColor(COLOR_WINDOW)), line(GetSysColor(COLOR_BTNSHADOW));
    dc->FillRect(&place, &ground);
    dc->FillRect(CRect(place.right - 1, 0, place.right, place.bottom), &line);
    dc->SelectObject(&m_font);
    dc->SetBkMode(TRANSPARENT);
    CPen pen(PS_SOLID, 2, GetSysColor(COLOR_WINDOWTEXT));
    dc->SelectObject(&pen);
    const auto& layers = GetLayers();
    int top = 0;
    for (auto i = static_cast<std::size_t>(m_nFirst); i < layers.size() && top < place.bottom; ++i, top += kRowHeight) {
        const CDxfLayerSwitch& layer = layers[i];
        const CRect box(5, top + 4, 17, top + 16);
        dc->FrameRect(&box, &line);
        if (layer.m_bShown) {
            const CPoint tick[] = {{8, top + 10}, {10, top + 13}, {15, top + 6}};
            dc->Polyline(tick, 3);
        }
        CBrush color(GetAcadRGBColor(layer.m_nColor));
        const CRect sample(21, top + 5, 31, top + 15);
        dc->FillRect(sample, &color);
        dc->FrameRect(&sample, &line);
        const CString count(std::to_string(layer.m_nCount));
        CRect number(place.right - 8 - dc->GetTextExtent(count).cx, top, place.right - 8, top + kRowHeight);
        CRect name(35, top, number.left - 6, top + kRowHeight);
        dc->SetTextColor(GetSysColor(layer.m_bShown ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT));
        dc->DrawText(layer.m_strName, &name, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
        dc->SetTextColor(GetSysColor(COLOR_GRAYTEXT));
        dc->DrawText(count, &number, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    }
    dc->RestoreDC(saved);
    dc->SelectStockObject(BLACK_PEN);  // what was selected goes with this call
    dc->SelectStockObject(SYSTEM_FONT);
}

void CAdvDxfWnd::OnLButtonDown(UINT keys, CPoint p) {
    if (!ListPlace().PtInRect(p)) return CDxfWnd::OnLButtonDown(keys, p);
    const auto index = static_cast<std::size_t>(m_nFirst + p.y / kRowHeight);
    if (index >= GetLayers().size()) return;
    SwitchLayer(index, !GetLayers()[index].m_bShown);
    if (m_onLayer) m_onLayer(GetLayers()[index]);
}

BOOL CAdvDxfWnd::OnMouseWheel(UINT keys, int delta, CPoint screen) {
    CPoint p = screen;
    ScreenToClient(p);
    if (!ListPlace().PtInRect(p)) return CDxfWnd::OnMouseWheel(keys, delta, screen);
    m_nFirst = std::clamp(m_nFirst - 3 * std::clamp(delta / 120, -100, 100), 0, MostFirst());
    Invalidate();
    return 1;
}
