#include "shell/scr_menu_view.h"

#include <utility>

#include "platform/canvas/client_dc.h"
#include "platform/canvas/system_metrics.h"
#include "shell/prompt_view.h"
#include "shell/shell_icons.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

namespace {

constexpr int kNoRepaint = 0x1000A;  // a command after which the pane is left alone: it may be taking it down
constexpr int kMarked = -100;        // an item with a frame around it
constexpr int kTextIndent = 20;      // pixels
constexpr int kIcon = 16;

}  // namespace

CScrMenuView::CScrMenuView() {
    m_cFont.CreateFont(13, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 4, 0, "宋体");
    g_cScrnMenuData.GetObjectByID(0, m_cCurrent);
    TakeColours();
}

CScrMenuView::~CScrMenuView() { DestroyWindow(); }

void CScrMenuView::TakeColours() {
    m_crBranch = GetSysColor(COLOR_MENU_BRANCH);
    m_crBranchHot = GetSysColor(COLOR_MENU_BRANCH_HOT);
    m_crCommand = GetSysColor(COLOR_MENU_COMMAND);
    m_crCommandHot = GetSysColor(COLOR_MENU_COMMAND_HOT);
}

void CScrMenuView::OnSysColorChange() { TakeColours(); }

// ---- rows -------------------------------------------------------------------------------------------------

void CScrMenuView::OnInitialUpdate() { ShowRoot(); }

void CScrMenuView::ShowRoot() {
    m_nBranch = 0;
    m_aShown.RemoveAll();
    g_cScrnMenuData.GetChildItems(0, m_aShown);
    g_cScrnMenuData.InsertRootMenu(m_aShown);
}

void CScrMenuView::Build(const CScrMenuItem& branch, bool open) {
    m_nBranch = branch.m_nCmdID;
    m_bBranchOpen = open;
    m_aShown.RemoveAll();
    CScrMenuItems ancestors, buddies, children;
    g_cScrnMenuData.GetAncestorItems(branch.m_nCmdID, ancestors);
    if (m_bShowBuddies) g_cScrnMenuData.GetAllBuddyItems(branch.m_nCmdID, buddies);
    else buddies.Add(branch);
    if (open) g_cScrnMenuData.GetChildItems(branch.m_nCmdID, children);
    for (CScrMenuItem& item : ancestors) {
        item.m_bExpanded = 1;
        m_aShown.Add(item);
    }
    for (CScrMenuItem& item : buddies) {
        const bool itself = item.m_nCmdID == branch.m_nCmdID;
        if (itself) item.m_bExpanded = open;
        m_aShown.Add(item);
        if (!itself) continue;
        for (const CScrMenuItem& child : children) m_aShown.Add(child);
    }
    g_cScrnMenuData.EnsureRootMenu(m_aShown);
}

void CScrMenuView::Regenerate() {
    CScrMenuItem branch;
    if (m_nBranch != 0 && g_cScrnMenuData.GetObjectByID(m_nBranch, branch)) Build(branch, m_bBranchOpen);
    else ShowRoot();
    Invalidate();
}

int CScrMenuView::HeightOf(const CScrMenuItem& item) {
    return item.m_nType == SCRMENU_SEPARATOR ? kSeparatorHeight : kRowHeight;
}

CRect CScrMenuView::GetBorder(int index) const {
    if (index < 0 || index >= m_aShown.GetSize()) return {};
    CRect rect = GetClientRect();
    rect.InflateRect(-4, -1);
    rect.left += 5;
    for (int i = 0; i < index; ++i) rect.top += HeightOf(m_aShown[i]);
    rect.bottom = rect.top + HeightOf(m_aShown[index]);
    return rect;
}

CScrMenuItem* CScrMenuView::HitTest(int, int y, CRect& rect) {
    int top = 0;
    for (CScrMenuItem& item : m_aShown) {
        const int bottom = top + HeightOf(item);
        if (y > top && y < bottom) {
            rect = CRect(5, top, GetClientRect().right, bottom);
            return &item;
        }
        top = bottom;
    }
    return nullptr;
}

int CScrMenuView::GetIndexByCmdID(int id) const {
    for (int i = 0; i < m_aShown.GetSize(); ++i)
        if (m_aShown[i].m_nCmdID == id) return i;
    return -1;
}

int CScrMenuView::HasChildren(int id) const {
    for (const CScrMenuItem& item : m_aShown)
        if (item.m_nParentID == id) return 1;
    return 0;
}

void CScrMenuView::GetCurrentState(unsigned& id, int& expanded) const {
    id = static_cast<unsigned>(m_cClicked.m_nCmdID);
    expanded = m_nLastExpand;
}

// ---- clicks -----------------------------------------------------------------------------------------------

void CScrMenuView::CloseClicked() {
    if (m_nLastExpand == -1 || m_cClicked.m_nCmdID == -1 || !m_pFrame) return;
    m_pFrame->OnExpandNode(&m_cClicked, 0);
}

void CScrMenuView::OnLButtonDown(UINT, CPoint p) {
    CRect rect;
    const CScrMenuItem* const hit = HitTest(p.x, p.y, rect);
    if (!hit) return;
    const CScrMenuItem item = *hit;
    if (item.m_nCmdID == 0) {
        ShowRoot();
        CloseClicked();
        m_cCurrent = m_aShown[0];
        Invalidate();
        return;
    }
    bool open = true;
    if (std::exchange(m_bFirstClick, 0) == 0 && item.m_nCmdID == m_cCurrent.m_nCmdID && item.m_bExpanded == 1)
        open = !HasChildren(item.m_nCmdID);
    Choose(item, open, true);
}

void CScrMenuView::ToggleItem(int id, int bExpanded) {
    CScrMenuItem item;
    if (!g_cScrnMenuData.GetObjectByID(id, item)) return;
    if (id == 0) {
        ShowRoot();
        m_cCurrent = m_aShown[0];
        Invalidate();
        return;
    }
    Choose(item, !bExpanded, false);
}

// The item by value: the host's hooks may change the tree and the rows.
void CScrMenuView::Choose(CScrMenuItem item, bool open, bool byClick) {
    m_cHot = m_cCurrent = item;
    if (item.m_nType != SCRMENU_BRANCH) {
        Run(item);
        if (item.m_nCmdID == kNoRepaint) return;
    } else {
        m_cClicked = item;
        if (m_pFrame) m_pFrame->OnExpandNode(&m_cClicked, open);
        if (byClick) m_nLastExpand = open;
        Build(item, open);
    }
    RepaintAfterClick();
}

void CScrMenuView::Run(const CScrMenuItem& item) {
    if (!m_pFrame) return;
    if (CTvoViewMgr* view = m_pFrame->GetDtView()) view->ReSetToInitialState(1);
    if (item.m_nType == SCRMENU_COMMAND) m_pFrame->InvokeAny(item.m_nCmdID);
}

void CScrMenuView::RepaintAfterClick() {
    if (!g_pFrame) return;
    ShowHot(true);
    Invalidate();
}

void CScrMenuView::OnRButtonDown(UINT, CPoint) {
    OnInitialUpdate();
    Invalidate();
    CloseClicked();
}

// ---- the pointer ------------------------------------------------------------------------------------------

// The hot look is drawn, never stored: whatever is repainted is cold.
void CScrMenuView::ShowHot(bool hot) {
    const bool stands = m_nHotRow >= 0 && m_nHotRow < m_aShown.GetSize() && m_aShown[m_nHotRow].m_nCmdID == m_cHot.m_nCmdID;
    if (!stands) m_nHotRow = GetIndexByCmdID(m_cHot.m_nCmdID);  // the rows are others now
    if (m_nHotRow < 0 || !IsWindow()) return;
    CClientDC dc(this);
    DrawRow(&dc, m_nHotRow, hot);
}

void CScrMenuView::OnMouseMove(UINT, CPoint p) {
    CRect rect;
    const CScrMenuItem* const hit = HitTest(p.x, p.y, rect);
    CString tip = hit ? hit->m_strTip : CString();
    SetTip(tip.Trim());
    const int row = hit ? static_cast<int>(hit - &m_aShown[0]) : -1;
    if (row < 0 || (row == m_nHotRow && hit->m_nCmdID == m_cHot.m_nCmdID)) return;
    ShowHot(false);
    m_cHot = *hit;
    m_nHotRow = row;
    ShowHot(true);
}

void CScrMenuView::OnMouseLeave() {
    ShowHot(false);
    m_cHot = CScrMenuItem();
    m_nHotRow = -1;
}

BOOL CScrMenuView::OnMouseWheel(UINT keys, int delta, CPoint screen) {
    CPromptView* const prompt = m_pFrame ? m_pFrame->GetPromptView() : nullptr;
    return prompt ? prompt->OnMouseWheel(keys, delta, screen) : 0;
}

// ---- drawing ----------------------------------------------------------------------------------------------

COLORREF CScrMenuView::FillOf(const CScrMenuItem& item) const {
    if (item.m_nType == SCRMENU_BRANCH) return item.m_bHot ? m_crBranchHot : m_crBranch;
    return item.m_bHot ? m_crCommandHot : m_crCommand;
}

void CScrMenuView::OnPaint() {
    CClientDC dc(this);
    OnEraseBkgnd(&dc);
    OnDraw(&dc);
}

BOOL CScrMenuView::OnEraseBkgnd(CDC* dc) {
    if (dc) dc->FillSolidRect(GetClientRect(), GetSysColor(COLOR_BTNFACE));
    return 1;
}

void CScrMenuView::OnDraw(CDC* dc) {
    DrawBorder(dc);
    for (int i = 0; i < m_aShown.GetSize(); ++i) DrawRow(dc, i, m_aShown[i].m_bHot);
}

void CScrMenuView::DrawBorder(CDC* dc) {
    dc->Draw3dRect(GetClientRect(), GetSysColor(COLOR_BTNHIGHLIGHT), GetSysColor(COLOR_BTNSHADOW));
}

void CScrMenuView::DrawRow(CDC* dc, int index, int hot) {
    const CRect border = GetBorder(index);
    CScrMenuItem item = m_aShown[index];
    item.m_bHot = hot;
    if (item.m_nType == SCRMENU_BRANCH || item.m_nType == SCRMENU_COMMAND) dc->FillSolidRect(border, FillOf(item));
    DrawScrMenuItem(dc, border, item);
}

void CScrMenuView::DrawScrMenuItem(CDC* dc, CRect rect, const CScrMenuItem& item) {
    rect.top += 2;
    rect.bottom -= 2;
    CRect text = rect;
    text.left += kTextIndent;
    if (item.m_nType == SCRMENU_SEPARATOR) {
        const int middle = rect.CenterPoint().y;
        dc->FillSolidRect(text.left, middle, text.Width(), 1, GetSysColor(COLOR_MENU_LINE));
        return;
    }
    if (item.m_nType != SCRMENU_BRANCH && item.m_nType != SCRMENU_COMMAND) return;

    const int saved = dc->SaveDC();
    CBrush fill(FillOf(item));
    CPen pen;
    if (item.m_nType == SCRMENU_BRANCH) pen.CreatePen(PS_SOLID, 1, FillOf(item));
    else if (item.m_nCmdID == kMarked) pen.CreatePen(PS_SOLID, 1, GetSysColor(COLOR_MENU_MARK));
    else pen.CreatePen(PS_NULL, 1, COLORREF{0});
    dc->SelectObject(&fill);
    dc->SelectObject(&pen);
    if (item.m_nType == SCRMENU_BRANCH) {
        dc->RoundRect(rect, CPoint(8, 8));
        HICON icon = item.m_hIcon;
        if (!icon) icon = LoadShellIcon(item.m_bExpanded ? kIconOpenFolder : kIconClosedFolder);
        if (item.m_nCmdID != 0) DrawIconEx(dc, rect.left, rect.top, icon, kIcon, kIcon, 0, nullptr, DI_NORMAL);
    } else {
        dc->Rectangle(text);
        if (item.m_hIcon) DrawIconEx(dc, rect.left + 2, rect.top, item.m_hIcon, kIcon, kIcon, 0, nullptr, DI_IMAGE);
    }
    dc->SelectObject(&m_cFont);
    dc->SetBkMode(TRANSPARENT);
    dc->SetTextColor(ReadableColor(item.m_nColor));
    dc->DrawText(item.m_szCaption, &text, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    dc->RestoreDC(saved);
}
