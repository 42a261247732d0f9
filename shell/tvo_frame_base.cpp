#include "shell/tvo_frame_base.h"

#include <algorithm>
#include <cmath>

#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "platform/number_text.h"
#include "shell/cmd_map.h"
#include "shell/prompt_view.h"
#include "view/tvo_view_mgr.h"
#include "view/view_commands.h"

CTvoFrameBase* g_pFrame = nullptr;

namespace {

constexpr int kRangeMask = static_cast<int>(0xFFFF0000u);

/// "x,y,z", each divided by what the profile shows coordinates in.
CString PointText(const CFPoint& p) {
    double divisor = g_cTvoProfile.m_dDisplayDivisor;
    if (divisor == 0 || !std::isfinite(divisor)) divisor = 1;
    const auto text = [&](float v) { return FixedReal(static_cast<double>(v) / divisor, 2); };
    return CString(text(p.x) + "," + text(p.y) + "," + text(p.z));
}

}  // namespace

CTvoFrameBase::CTvoFrameBase() { g_pFrame = this; }

CTvoFrameBase::~CTvoFrameBase() {
    m_bClosing = 1;
    if (m_pOwnView) m_pOwnView->m_pFrame = nullptr;
    DestroyWindow();
    m_pView = nullptr;
    m_pOwnView.reset();
    m_pPrompt.reset();
    if (g_pFrame == this) g_pFrame = nullptr;
}

// ---- panes ------------------------------------------------------------------------------------------------

CTvoViewMgr* CTvoFrameBase::GetGraphicView() { return new CTvoViewMgr; }

void CTvoFrameBase::CreatePanes(CTvoDataBase* db) {
    m_pOwnView.reset(GetGraphicView());
    m_pView = m_pOwnView.get();
    m_pView->m_pFrame = this;
    m_pView->SetDataBase(db);
    m_pPrompt = std::make_unique<CPromptView>();
    m_pPrompt->m_pFrame = this;
    m_pView->Create(this, CRect(), WindowKind::kView);
    m_pPrompt->Create(this, CRect(), WindowKind::kPane);
    const CRect client = GetClientRect();
    OnSize(client.right, client.bottom);
    m_pView->OnInitialUpdate();
    m_pPrompt->OnInitialUpdate();
}

// The menu's column is kept free at the right, the prompt's row below; either may be off.
void CTvoFrameBase::OnSize(int width, int height) {
    if (!m_pView || !m_pPrompt) return;
    const int column = std::max(0, m_bShowScrnMenu ? width - m_nScrnMenuWidth : width);
    const int row = std::max(0, (m_bShowPrompt ? height - m_nPromptHeight : height) - 10);
    m_pView->MoveWindow(CRect(0, 0, column, row));
    m_pPrompt->MoveWindow(CRect(0, row, width, std::max(row, height)));
    const CRect view = m_pView->GetClientRect();
    if (m_bShownAll || view.Width() < 2 || view.Height() < 2) return;
    m_bShownAll = true;
    m_pView->_Fun_ShowAll();
}

void CTvoFrameBase::OnDestroy() { m_bClosing = 1; }

// ---- commands ---------------------------------------------------------------------------------------------

void CTvoFrameBase::InvokeCommand(int id, int arg) {
    if (id == -1) return;
    m_nCurrentCommand = id;
    m_nCurrentArg = arg;
    m_bRangeCommand = 0;
    switch (id) {
        case CMD_PAN: return DoCommand_Pan();
        case CMD_ZOOM: return DoCommand_Zoom();
        case CMD_UNDO: return DoCommand_Undo();
        case CMD_REDO: return DoCommand_Redo();
        case CMD_SINGLE_SELECT: return DoCommand_SingleSelect();
        case CMD_WINDOW_SELECT: return DoCommand_WindowSelect();
        case CMD_POLYGON_SELECT: return DoCommand_PolygonSelect();
        default: return;
    }
}

void CTvoFrameBase::InvokeAny(int id) {
    if (IsCommandRange(id)) InvokeCommandRange(id & kRangeMask, id & 0xFFFF);
    else InvokeCommand(id, 0);
}

void CTvoFrameBase::RepeatCommand() {
    if (m_pView) m_pView->ReSetToInitialState(1);
    InvokeAny(m_nCurrentCommand);
}

void CTvoFrameBase::RegisterCommandRange(int base) {
    if (!IsCommandRange(base)) m_aCommandRange.Add(base & kRangeMask);
}

void CTvoFrameBase::UnregisterCommandRange(int base) {
    for (int i = m_aCommandRange.GetSize() - 1; i >= 0; --i)
        if (m_aCommandRange[i] == (base & kRangeMask)) m_aCommandRange.RemoveAt(i);
}

void CTvoFrameBase::RemoveAllCommandRange() { m_aCommandRange.RemoveAll(); }

int CTvoFrameBase::IsCommandRange(int id) {
    return std::find(m_aCommandRange.begin(), m_aCommandRange.end(), id & kRangeMask) != m_aCommandRange.end();
}

void CTvoFrameBase::InvokeCommandRange(int base, int index) {
    m_nCurrentCommand = base | index;
    m_nCurrentArg = index;
    m_bRangeCommand = 1;
}

void CTvoFrameBase::DoCommand_Pan() {
    if (!m_pView) return;
    auto* const pan = new CShowMove;
    pan->m_pView = m_pView;
    m_pView->DoWork(pan);
}

void CTvoFrameBase::DoCommand_Zoom() {
    if (!m_pView) return;
    auto* const zoom = new CZoom;
    zoom->m_pView = m_pView;
    m_pView->DoWork(zoom);
}

void CTvoFrameBase::DoCommand_SingleSelect() {
    if (m_pView) m_pView->_Svr_EditSSelect();
}

void CTvoFrameBase::DoCommand_WindowSelect() {
    if (m_pView) m_pView->_Svr_EditWSelect();
}

void CTvoFrameBase::DoCommand_PolygonSelect() {
    if (m_pView) m_pView->_Svr_EditMSelect();
}

void CTvoFrameBase::DoCommand_Undo() {
    if (m_pView) m_pView->_Svr_Undo(1);
    RestoreParaPrompt();
}

void CTvoFrameBase::DoCommand_Redo() {
    if (m_pView) m_pView->_Svr_Redo(1);
    RestoreParaPrompt();
}

// ---- prompt -----------------------------------------------------------------------------------------------

void CTvoFrameBase::AppendPromptText(CString text) {
    if (m_pPrompt) m_pPrompt->AppendPromptText(text);
}

void CTvoFrameBase::SetPromptText(const CString& text) {
    if (m_pPrompt) m_pPrompt->AddPromptText(text, 0);
}

void CTvoFrameBase::RestoreParaPrompt() {
    if (m_pPrompt) m_pPrompt->RestoreParaPrompt();
}

CString CTvoFrameBase::GetInput() const { return m_pPrompt ? m_pPrompt->GetInput() : CString(); }

void CTvoFrameBase::FocusToCommandLine() {
    if (m_pPrompt) m_pPrompt->m_cInput.SetFocus();
}

void CTvoFrameBase::PostKeyToCommandLine(UINT key) {
    if (m_pPrompt) m_pPrompt->m_cInput.PostMessage(WM_KEYDOWN, key, 1);
}

// ---- status bar -------------------------------------------------------------------------------------------

void CTvoFrameBase::ShowPane(int pane, const CString& text) { m_strPane[pane] = text; }

void CTvoFrameBase::SetLocate(const CFPoint& at) {
    if (m_pView && m_pView->m_bShowCoordinate) ShowPane(0, PointText(at));
}

void CTvoFrameBase::SetOffset(const CFPoint& offset) {
    if (m_pView && m_pView->m_bShowCoordinate) ShowPane(1, PointText(offset));
}

void CTvoFrameBase::SetStatusPrompt(const CString& text) { ShowPane(1, text); }
void CTvoFrameBase::SetMouseMovePrompt(const CString& text) { ShowPane(1, text); }

void CTvoFrameBase::SetMouseMousePromptText(float x, float y) {
    if (m_bClosing) return;
    if (const char* text = GetMMP_Text(x, y)) SetMouseMovePrompt(text);
}

// Switched off, the coordinate leaves the bar.
void CTvoFrameBase::SyncStsToStatusBar() {
    if (m_pView && !m_pView->m_bShowCoordinate) ShowPane(0, "");
}

void CTvoFrameBase::ShowProgress(int percent) { m_nPercent = std::clamp(percent, 1, 100); }
void CTvoFrameBase::ShutDownProgress() { m_nPercent = -1; }
