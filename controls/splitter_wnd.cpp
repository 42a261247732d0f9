#include "controls/splitter_wnd.h"

#include <algorithm>
#include <utility>

#include "platform/canvas/dc.h"
#include "platform/canvas/system_metrics.h"

namespace {

constexpr int kGrip = 4;  // pixels that take a bar, at least

}  // namespace

CSplitterWndEx::~CSplitterWndEx() { DestroyWindow(); }

BOOL CSplitterWndEx::CreateStatic(CWnd* parent, int rows, int) {
    m_rows = rows > 1;
    m_panes.clear();
    return Create(parent, CRect(), WindowKind::kPane);
}

void CSplitterWndEx::AddPane(CWnd& pane) { m_panes.push_back({&pane}); }

void CSplitterWndEx::SetPaneInfo(int index, int wanted, int least) {
    Pane& pane = m_panes[static_cast<std::size_t>(index)];
    pane.m_wanted = std::max(0, wanted);
    pane.m_least = std::max(0, least);
}

int CSplitterWndEx::GetPaneSize(int index) const { return m_panes[static_cast<std::size_t>(index)].m_size; }

CRect CSplitterWndEx::Strip(int from, int size) const {
    const CRect client = GetClientRect();
    return m_rows ? CRect(0, from, client.right, from + size) : CRect(from, 0, from + size, client.bottom);
}

void CSplitterWndEx::RecalcLayout() {
    const CRect client = GetClientRect();
    const int whole = m_rows ? client.bottom : client.right;
    int at = 0;
    for (std::size_t i = 0; i < m_panes.size(); ++i) {
        Pane& pane = m_panes[i];
        const int left = whole - at;
        pane.m_from = at;
        pane.m_size = i + 1 == m_panes.size() ? left : std::min(pane.m_wanted, left);
        at = std::min(whole, at + pane.m_size + (pane.m_size > 0 ? m_nBar : 0));
    }
    for (const Pane& pane : m_panes) pane.m_window->MoveWindow(Strip(pane.m_from, pane.m_size));
    Invalidate();
}

void CSplitterWndEx::OnSize(int, int) { RecalcLayout(); }

// ---- dragging ---------------------------------------------------------------------------------------------

int CSplitterWndEx::HitTest(CPoint p) const {
    if (m_nMode == 0) return 0;
    for (std::size_t i = 0; i + 1 < m_panes.size(); ++i) {
        const int from = m_panes[i].m_from + m_panes[i].m_size;
        if (m_panes[i].m_size > 0 && m_panes[i + 1].m_size > 0 && Along(p) >= from && Along(p) < from + std::max(m_nBar, kGrip))
            return static_cast<int>(i) + 1;
    }
    return 0;
}

void CSplitterWndEx::OnLButtonDown(UINT, CPoint p) {
    m_dragged = HitTest(p);
    if (!m_dragged) return;
    const Pane& pane = m_panes[static_cast<std::size_t>(m_dragged - 1)];
    m_grip = Along(p) - (pane.m_from + pane.m_size);
    SetCapture();
}

void CSplitterWndEx::OnMouseMove(UINT, CPoint p) {
    if (!m_dragged || GetCapture() != this) return;
    Pane& pane = m_panes[static_cast<std::size_t>(m_dragged - 1)];
    const Pane& next = m_panes[static_cast<std::size_t>(m_dragged)];
    const int most = next.m_from + next.m_size - m_nBar - next.m_least - pane.m_from;
    const int along = std::clamp(Along(p), -CSurface::kMaxSide, CSurface::kMaxSide);
    const int size = std::max(std::min(along - m_grip - pane.m_from, most), pane.m_least);
    if (size == pane.m_size) return;
    pane.m_wanted = size;
    RecalcLayout();
    if (m_onDragged) m_onDragged(m_dragged - 1, pane.m_size);
}

void CSplitterWndEx::OnLButtonUp(UINT, CPoint) {
    if (std::exchange(m_dragged, 0)) ReleaseCapture();
}

// For all of the window: only the bars are seen of it.
BOOL CSplitterWndEx::OnSetCursor() {
    if (m_nMode == 0) return 0;
    ::SetCursor(m_rows ? IDC_SIZENS : IDC_SIZEWE);
    return 1;
}

// ---- drawing ----------------------------------------------------------------------------------------------

COLORREF CSplitterWndEx::BarColour() const { return GetSysColor(COLOR_BTNFACE); }

void CSplitterWndEx::DrawBar(CDC* dc, const CRect& bar) {
    dc->FillSolidRect(bar, BarColour());
    dc->Draw3dRect(bar, GetSysColor(COLOR_BTNHIGHLIGHT), GetSysColor(COLOR_BTNSHADOW));
}

void CSplitterWndEx::OnDraw(CDC* dc) {
    dc->FillSolidRect(GetClientRect(), BarColour());
    for (std::size_t i = 0; i + 1 < m_panes.size(); ++i)
        if (m_panes[i].m_size > 0) DrawBar(dc, Strip(m_panes[i].m_from + m_panes[i].m_size, m_nBar));
}
