// CTvoFrameBase: life, panes, layout.
#include "shell/tvo_frame_base.h"

#include <algorithm>

#include "model/tvo_data_base.h"
#include "shell/cmd_map.h"
#include "shell/prompt_view.h"
#include "shell/scr_menu_view.h"
#include "view/tvo_view_mgr.h"

CTvoFrameBase* g_pFrame = nullptr;

namespace {

constexpr int kLeastPane = 10;  // pixels: as small as dragging makes a pane
constexpr int kBelowRow = 10;   // the upper row is smaller by this, with the prompt or without

bool g_shownAll = false;  // the first size of the process has been

}  // namespace

CTvoFrameBase::CTvoFrameBase() {
    g_pFrame = this;
    if (IsSessionLogOn()) m_log.Open();
}

CTvoFrameBase::~CTvoFrameBase() {
    BeginClosing();
    DestroyWindow();
    m_pView = nullptr;
    m_pOwnView.reset();
    m_pMenu.reset();
    m_pPrompt.reset();
    if (g_pFrame == this) g_pFrame = nullptr;
}

// What goes on while panes die finds no frame any more.
void CTvoFrameBase::BeginClosing() {
    m_bClosing = 1;
    if (m_pOwnView) m_pOwnView->m_pFrame = nullptr;
    m_cStatusBar.m_pView = nullptr;
}

void CTvoFrameBase::OnDestroy() { m_bClosing = 1; }

void CTvoFrameBase::OnClose() {
    m_bClosing = 1;
    CWnd::OnClose();
}

void CTvoFrameBase::OnActivate(bool active) {
    CWnd::OnActivate(active);
    SetMenuMode(1);
    if (active) FocusToCommandLine();
}

void CTvoFrameBase::ResetFirstSize() { g_shownAll = false; }

// ---- panes ------------------------------------------------------------------------------------------------

CTvoViewMgr* CTvoFrameBase::GetGraphicView() { return new CTvoViewMgr; }

void CTvoFrameBase::CreateStatusBar() { m_cStatusBar.Create(this); }

void CTvoFrameBase::CreatePanes(CTvoDataBase* db) {
    CreateToolBar();
    CreateStatusBar();
    OnCreateClient(db);
    Layout();
    m_pView->OnInitialUpdate();
    m_pMenu->OnInitialUpdate();
    m_pPrompt->OnInitialUpdate();
    FocusToCommandLine();
}

void CTvoFrameBase::OnCreateClient(CTvoDataBase* db) {
    g_cCmdMap.AddBasicCommands();
    g_cScrnMenuData.AddBasicScrnMenu();
    m_pOwnView.reset(GetGraphicView());
    if (!m_pOwnView) m_pOwnView = std::make_unique<CTvoViewMgr>();
    m_pMenu = std::make_unique<CScrMenuView>();
    m_pPrompt = std::make_unique<CPromptView>();
    m_pView = m_pOwnView.get();
    m_pView->m_pFrame = m_pMenu->m_pFrame = m_pPrompt->m_pFrame = this;
    m_pView->SetDataBase(db);
    m_outer.CreateStatic(this, 2, 1);
    m_inner.CreateStatic(&m_outer, 1, 2);
    m_pView->Create(&m_inner, CRect(), WindowKind::kView);
    m_pMenu->Create(&m_inner, CRect(), WindowKind::kPane);
    m_pPrompt->Create(&m_outer, CRect(), WindowKind::kPane);
    m_outer.AddPane(m_inner);
    m_outer.AddPane(*m_pPrompt);
    m_inner.AddPane(*m_pView);
    m_inner.AddPane(*m_pMenu);
    m_bPanesStand = true;
    // What was dragged stays so at the next size.
    m_outer.m_onDragged = [this](int, int size) { m_nPromptHeight = GetClientRect().Height() - kBelowRow - size; };
    m_inner.m_onDragged = [this](int, int size) { m_nScrnMenuWidth = GetClientRect().Width() - size; };
    m_outer.SetMode(m_bShowPrompt);
    SyncStsToStatusBar();
}

void CTvoFrameBase::ShowScrnMenu(int show) {
    m_bShowScrnMenu = show;
    Layout();
}

void CTvoFrameBase::ShowPromptWnd(int show) {
    m_bShowPrompt = show;
    m_outer.SetMode(show);
    Layout();
}

void CTvoFrameBase::ShowStatusBar(int show) {
    m_bShowStatusBar = show;
    Layout();
}

void CTvoFrameBase::Layout() {
    const CRect client = GetClientRect();
    SendMessage(WM_SIZE, 0, PointParam({client.right, client.bottom}));
}

// Sizes of the view are reckoned from the whole window: bars at the edges take from the prompt.
void CTvoFrameBase::OnSize(int width, int height) {
    if (!m_bPanesStand) return;  // a view may ask for a layout while it is made
    const int column = std::max(0, m_bShowScrnMenu ? width - m_nScrnMenuWidth : width);
    const int row = std::max(0, (m_bShowPrompt ? height - m_nPromptHeight : height) - kBelowRow);
    const int top = m_cToolBar.IsWindow() ? CTvoToolBar::kHeight : 0;
    const int below = m_cStatusBar.IsWindow() && m_bShowStatusBar ? CTvoStatusBar::kHeight : 0;
    const int floor = std::max(top, height - below);
    m_cToolBar.MoveWindow(CRect(0, 0, width, top));
    m_cStatusBar.MoveWindow(CRect(0, floor, width, floor + below));
    m_outer.SetPaneInfo(0, row, kLeastPane);
    m_outer.SetPaneInfo(1, 0, kLeastPane);
    m_inner.SetPaneInfo(0, column, kLeastPane);
    m_inner.SetPaneInfo(1, 0, kLeastPane);
    m_outer.MoveWindow(CRect(0, top, width, floor));
    m_outer.RecalcLayout();
    m_inner.RecalcLayout();
    const CRect view = m_pView->GetClientRect();
    if (g_shownAll || view.Width() < 2 || view.Height() < 2) return;
    g_shownAll = true;
    m_pView->_Fun_ShowAll();
}
