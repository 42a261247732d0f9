#include "controls/text_progress_ctrl.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "platform/canvas/dc.h"
#include "platform/canvas/system_metrics.h"

CTextProgressCtrl::CTextProgressCtrl() {
    m_font.CreateFont(12, 0, 0, 0, FW_NORMAL, 0, 0, 0, GB2312_CHARSET, 0, 0, 4, 0, "MS Sans Serif");
}

CTextProgressCtrl::~CTextProgressCtrl() { DestroyWindow(); }

BOOL CTextProgressCtrl::Create(CWnd* parent, const CRect& place, int id) {
    m_nID = id;
    return CWnd::Create(parent, place, WindowKind::kBar);
}

void CTextProgressCtrl::SetRange(int lower, int upper) {
    m_nLower = lower;
    m_nUpper = std::max(lower, upper);
    SetPos(m_nPos);
}

int CTextProgressCtrl::SetPos(int pos) {
    const int before = std::exchange(m_nPos, std::clamp(pos, m_nLower, m_nUpper));
    if (before != m_nPos) {
        Invalidate();
        UpdateWindow();
    }
    return before;
}

namespace {

/// So many of `whole`, as the position stands in its range.
int Share(int pos, int lower, int upper, int whole) {
    const std::int64_t range = std::int64_t{upper} - lower;
    return range == 0 ? whole : static_cast<int>((std::int64_t{pos} - lower) * whole / range);
}

}  // namespace

// A range from 1 to 100 is percent itself.
CString CTextProgressCtrl::Text() const {
    const bool percent = m_nUpper == 100 && (m_nLower == 0 || m_nLower == 1);
    return CString(std::to_string(percent ? m_nPos : Share(m_nPos, m_nLower, m_nUpper, 100)) + "%");
}

// The text in two colours, each where its ground is.
void CTextProgressCtrl::OnDraw(CDC* dc) {
    const CRect client = GetClientRect();
    CRect inside = client;
    inside.InflateRect(-1, -1);
    const int edge = inside.left + Share(m_nPos, m_nLower, m_nUpper, std::max(0, inside.Width()));
    const int saved = dc->SaveDC();
    dc->Draw3dRect(client, GetSysColor(COLOR_BTNSHADOW), GetSysColor(COLOR_BTNHIGHLIGHT));
    dc->SelectObject(&m_font);
    dc->SetBkMode(TRANSPARENT);
    const auto part = [&](int left, int right, int ground, int ink) {
        const int before = dc->SaveDC();
        dc->IntersectClipRect(left, inside.top, right, inside.bottom);
        dc->FillSolidRect(inside, GetSysColor(ground));
        dc->SetTextColor(GetSysColor(ink));
        CRect box = inside;
        dc->DrawText(Text(), &box, DT_SINGLELINE | DT_CENTER | DT_VCENTER | DT_NOPREFIX);
        dc->RestoreDC(before);
    };
    part(inside.left, edge, COLOR_HIGHLIGHT, COLOR_HIGHLIGHTTEXT);
    part(edge, inside.right, COLOR_WINDOW, COLOR_WINDOWTEXT);
    dc->RestoreDC(saved);
}
