#include "shell/tvo_status_bar.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "model/profile.h"
#include "platform/canvas/client_dc.h"
#include "platform/canvas/system_metrics.h"
#include "platform/number_text.h"
#include "view/tvo_view_mgr.h"

namespace {

constexpr const char* kCaptions[CTvoStatusBar::kPanes] = {
    "", "", "坐标 F6", "网格 F7", "正交 F8", "网格捕捉 F2", "对象捕捉 F3", "角度捕捉 F4"};
constexpr int kCaptionMargin = 20;  // both sides together, pixels

}  // namespace

CString CoordinateText(const CFPoint& p) {
    double divisor = g_cTvoProfile.m_dDisplayDivisor;
    if (divisor == 0 || !std::isfinite(divisor)) divisor = 1;
    const auto text = [&](float v) { return FixedReal(static_cast<double>(v) / divisor, 2); };
    return CString(text(p.x) + "," + text(p.y) + "," + text(p.z));
}

CTvoStatusBar::CTvoStatusBar() {
    m_cFont.CreateFont(15, 0, 0, 0, FW_NORMAL, 0, 0, 0, GB2312_CHARSET, 0, 0, 4, 0, "MS Sans Serif");
    m_cSmallFont.CreateFont(12, 0, 0, 0, FW_NORMAL, 0, 0, 0, GB2312_CHARSET, 0, 0, 4, 0, "MS Sans Serif");
    std::copy(std::begin(kCaptions), std::end(kCaptions), m_szCaption);
}

CTvoStatusBar::~CTvoStatusBar() { DestroyWindow(); }

BOOL CTvoStatusBar::Create(CWnd* parent) { return CWnd::Create(parent, CRect(), WindowKind::kBar); }

void CTvoStatusBar::OnDestroy() { DeleteProgressCtrl(); }

// Buttons from the right, one pixel between them; the fields share what is left.
void CTvoStatusBar::OnSize(int width, int height) {
    CClientDC dc(this);
    CFont* const old = dc.SelectObject(&m_cFont);
    int right = width;
    for (int pane = kPanes - 1; pane >= kFirstButton; --pane) {
        const int left = right - dc.GetTextExtent(m_szCaption[pane]).cx - kCaptionMargin;
        m_rcPane[pane] = CRect(left, 0, right, height);
        right = left - (pane > kFirstButton ? 1 : 0);
    }
    dc.SelectObject(old);
    const int free = std::max(0, right);
    m_rcPane[0] = CRect(0, 0, free / 2, height);
    m_rcPane[1] = CRect(free / 2, 0, std::max(free / 2, free - 1), height);
    if (m_pProgress) m_pProgress->MoveWindow(m_rcPane[0]);
}

// ---- texts ------------------------------------------------------------------------------------------------

void CTvoStatusBar::Say(int pane, const CString& text, bool prompt) {
    m_strPane[pane] = text;
    if (pane == 1) m_prompt = prompt;
    if (!IsWindow()) return;
    CClientDC dc(this);
    DrawPane(&dc, pane);
}

void CTvoStatusBar::ShowCoordinate(const CFPoint& at) {
    const bool same = at.x == m_cCoordinate.x && at.y == m_cCoordinate.y && at.z == m_cCoordinate.z;
    if (same && !m_strPane[0].IsEmpty()) return;
    m_cCoordinate = at;
    Say(0, CoordinateText(at), false);
}

void CTvoStatusBar::ShowOffset(const CFPoint& offset) {
    m_cOffset = offset;
    Say(1, CoordinateText(offset), false);
}

void CTvoStatusBar::SetPromptText(const CString& text) { Say(1, text, true); }
void CTvoStatusBar::SetMouseMovePrompt(const CString& text) { Say(1, text, false); }
void CTvoStatusBar::ClearCoordinate() { Say(0, "", false); }

// ---- switches ---------------------------------------------------------------------------------------------

int* CTvoStatusBar::Switch(int pane) const {
    if (!m_pView) return nullptr;
    switch (pane) {
        case 2: return &m_pView->m_bShowCoordinate;
        case 3: return &m_pView->m_bShowGrid;
        case 4: return &m_pView->m_bOrtho;
        case 5: return &m_pView->m_bGridSnap;
        case 6: return &m_pView->m_bObjectSnap;
        case 7: return &m_pView->m_bAngleSnap;
        default: return nullptr;
    }
}

int CTvoStatusBar::HitTest(const CPoint& p) const {
    for (int pane = kFirstButton; pane < kPanes; ++pane)
        if (m_rcPane[pane].PtInRect(p)) return pane;
    return -1;
}

// Switched off, the coordinate leaves the bar.
void CTvoStatusBar::SyncStsFromView() {
    for (int pane = kFirstButton; pane < kPanes; ++pane)
        if (const int* on = Switch(pane)) m_nState[pane] = *on;
    if (m_pView && !m_pView->m_bShowCoordinate) ClearCoordinate();
    Invalidate();
}

// The grid is part of the picture of the model, which is made anew when it comes or goes.
void CTvoStatusBar::SyncStsToView() {
    if (!m_pView) return;
    if (m_pView->m_bShowGrid != m_nState[3]) m_pView->m_bBaseMapDirty = 1;
    for (int pane = kFirstButton; pane < kPanes; ++pane) *Switch(pane) = m_nState[pane];
    if (!m_pView->m_bShowCoordinate) ClearCoordinate();
    m_pView->Invalidate();
}

void CTvoStatusBar::OnLButtonDown(UINT, CPoint p) {
    const int pane = HitTest(p);
    if (pane < 0) return;
    m_nState[pane] = !m_nState[pane];
    CClientDC dc(this);
    DrawButton(&dc, pane);
    SyncStsToView();
}

// ---- progress ---------------------------------------------------------------------------------------------

void CTvoStatusBar::ShowProgress(int percent) {
    if (!IsWindow()) return;
    if (!m_pProgress) {
        m_pProgress = std::make_unique<CTextProgressCtrl>();
        m_pProgress->SetRange(1, 100);
        m_pProgress->Create(this, m_rcPane[0], kProgressID);
    }
    if (!m_progressShown) {
        m_progressShown = true;
        m_pProgress->ShowWindow(1);
        m_pProgress->Invalidate();
    }
    m_pProgress->SetPos(std::clamp(percent, 1, 100));
    m_pProgress->UpdateWindow();  // also when it begins where the last one ended
}

void CTvoStatusBar::ShutDownProgressCtrl() {
    if (!m_progressShown) return;
    m_progressShown = false;
    m_pProgress->ShowWindow(0);
    Invalidate();
}

void CTvoStatusBar::DeleteProgressCtrl() {
    m_progressShown = false;
    m_pProgress.reset();
}

int CTvoStatusBar::GetProgress() const { return m_progressShown ? m_pProgress->GetPos() : -1; }

// ---- drawing ----------------------------------------------------------------------------------------------

void CTvoStatusBar::OnDraw(CDC* dc) {
    dc->FillSolidRect(GetClientRect(), GetSysColor(COLOR_BTNFACE));
    for (int pane = 0; pane < kFirstButton; ++pane) DrawPane(dc, pane);
    for (int pane = kFirstButton; pane < kPanes; ++pane) DrawButton(dc, pane);
}

void CTvoStatusBar::DrawPane(CDC* dc, int pane) {
    if (pane == 1 && m_prompt) DrawField(dc, 1, m_strPane[1], m_cSmallFont, GetSysColor(COLOR_BAR_PROMPT));
    else ShowCoordinateText(dc, pane, m_strPane[pane]);
}

void CTvoStatusBar::ShowCoordinateText(CDC* dc, int pane, const CString& text) {
    DrawField(dc, pane, text, m_cFont, GetSysColor(COLOR_BTNTEXT));
}

void CTvoStatusBar::DrawField(CDC* dc, int pane, const CString& text, CFont& font, COLORREF ink) {
    CRect box = m_rcPane[pane];
    box.InflateRect(-2, -2);
    if (box.IsRectEmpty()) return;
    const int saved = dc->SaveDC();
    dc->FillSolidRect(box, GetSysColor(COLOR_BTNFACE));
    CPen pen(PS_INSIDEFRAME, 1, GetSysColor(COLOR_BAR_FIELD));
    dc->SelectObject(&pen);
    dc->SelectStockObject(NULL_BRUSH);
    dc->Rectangle(box);
    dc->IntersectClipRect(box.left + 1, box.top + 1, box.right - 1, box.bottom - 1);
    dc->SelectObject(&font);
    dc->SetBkMode(TRANSPARENT);
    dc->SetTextColor(ink);
    dc->DrawText(text, &box, DT_SINGLELINE | DT_CENTER | DT_VCENTER | DT_NOPREFIX);
    dc->RestoreDC(saved);
}

void CTvoStatusBar::DrawButton(CDC* dc, int pane) {
    CRect box = m_rcPane[pane];
    box.InflateRect(-2, -2);
    ++box.bottom;
    const int saved = dc->SaveDC();
    dc->FillSolidRect(box, GetSysColor(COLOR_BTNFACE));
    const COLORREF light = GetSysColor(COLOR_BTNHIGHLIGHT), dark = GetSysColor(COLOR_BTNSHADOW);
    if (m_nState[pane]) dc->Draw3dRect(box, dark, light);
    else dc->Draw3dRect(box, light, dark);
    dc->SelectObject(&m_cFont);
    dc->SetBkMode(TRANSPARENT);
    dc->SetTextColor(GetSysColor(COLOR_BTNTEXT));
    dc->DrawText(m_szCaption[pane], &box, DT_SINGLELINE | DT_CENTER | DT_VCENTER | DT_NOPREFIX);
    dc->RestoreDC(saved);
}
