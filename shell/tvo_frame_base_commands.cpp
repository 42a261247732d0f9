// CTvoFrameBase: commands.
#include <algorithm>
#include <iterator>

#include "shell/cmd_map.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"
#include "view/view_commands.h"

namespace {

constexpr int kRangeMask = static_cast<int>(0xFFFF0000u);

}  // namespace

// ---- by identity ------------------------------------------------------------------------------------------

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

void CTvoFrameBase::DoCommand_SingleSelect() { OnEditSselect(); }
void CTvoFrameBase::DoCommand_WindowSelect() { OnEditWselect(); }
void CTvoFrameBase::DoCommand_PolygonSelect() { OnEditMselect(); }

void CTvoFrameBase::DoCommand_Undo() {
    OnUndo();
    RestoreParaPrompt();
}

void CTvoFrameBase::DoCommand_Redo() {
    OnRedo();
    RestoreParaPrompt();
}

// ---- of menus and tool bars -------------------------------------------------------------------------------

struct CTvoFrameBase::Tool {
    int id;
    const char* caption;
    void (CTvoFrameBase::*handler)();
    ToolPicture picture;
};

const CTvoFrameBase::Tool CTvoFrameBase::kTools[] = {
    {ID_SHOW_ZOOM_IN, "放大", &CTvoFrameBase::OnShowZoomIn, DrawZoomIn},
    {ID_SHOW_ZOOM_OUT, "缩小", &CTvoFrameBase::OnShowZoomout, DrawZoomOut},
    {ID_SHOW_ALL, "全屏", &CTvoFrameBase::OnShowAll, DrawShowAll},
    {ID_SHOW_MOVE, "移动", &CTvoFrameBase::OnShowMove, DrawShowMove},
    {ID_SHOW_RECT, "开窗显示", &CTvoFrameBase::OnShowRect, DrawShowRect},
    {ID_SHOW_AGAIN, "重画", &CTvoFrameBase::OnShowAgain, DrawShowAgain},
    {ID_SHOW_PRE, "显示前屏", &CTvoFrameBase::OnShowPre, DrawShowPre},
    {ID_EDIT_SSELECT, "单选", &CTvoFrameBase::OnEditSselect, DrawSelectOne},
    {ID_EDIT_WSELECT, "窗选", &CTvoFrameBase::OnEditWselect, DrawSelectWindow},
    {ID_EDIT_MSELECT, "多边形选", &CTvoFrameBase::OnEditMselect, DrawSelectPolygon},
    {ID_UNDO, "UNDO", &CTvoFrameBase::OnUndo, DrawUndo},
    {ID_REDO, "REDO", &CTvoFrameBase::OnRedo, DrawRedo},
};

BOOL CTvoFrameBase::OnCommand(int id) {
    const auto tool = std::find_if(std::begin(kTools), std::end(kTools), [&](const Tool& t) { return t.id == id; });
    if (tool == std::end(kTools)) return 0;
    if (m_pView) (this->*tool->handler)();
    return 1;
}

void CTvoFrameBase::CreateToolBar() {
    if (!m_cToolBar.Create(this)) return;
    m_cToolBar.SetWindowText("图形工具栏");
    for (const Tool& tool : kTools) {
        if (tool.id == ID_EDIT_SSELECT || tool.id == ID_UNDO) m_cToolBar.AddSeparator();
        m_cToolBar.AddButton(tool.id, tool.caption, tool.picture);
    }
}

void CTvoFrameBase::OnShowZoomIn() { if (m_pView) m_pView->_Svr_ShowZoomIn(); }
void CTvoFrameBase::OnShowZoomout() { if (m_pView) m_pView->_Svr_ShowZoomOut(); }
void CTvoFrameBase::OnShowAll() { if (m_pView) m_pView->_Svr_ShowAll(); }
void CTvoFrameBase::OnShowAgain() { if (m_pView) m_pView->_Svr_ShowAgain(); }
void CTvoFrameBase::OnShowPre() { if (m_pView) m_pView->_Svr_ShowPre(); }
void CTvoFrameBase::OnEditSselect() { if (m_pView) m_pView->_Svr_EditSSelect(); }
void CTvoFrameBase::OnEditWselect() { if (m_pView) m_pView->_Svr_EditWSelect(); }
void CTvoFrameBase::OnEditMselect() { if (m_pView) m_pView->_Svr_EditMSelect(); }
void CTvoFrameBase::OnUndo() { if (m_pView) m_pView->_Svr_Undo(1); }
void CTvoFrameBase::OnRedo() { if (m_pView) m_pView->_Svr_Redo(1); }

void CTvoFrameBase::OnShowMove() {
    if (!m_pView) return;
    m_pView->m_nShowMethod = 1;
    m_pView->_SvrSwitchShowMethod();
}

void CTvoFrameBase::OnShowRect() {
    if (!m_pView) return;
    m_pView->m_nShowMethod = 0;
    m_pView->_SvrSwitchShowMethod();
}
