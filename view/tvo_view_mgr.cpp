// CTvoViewMgr: life, services, switches, selection from outside.
#include "view/tvo_view_mgr.h"

#include <algorithm>

#include "fields/backgrnd.h"
#include "model/tvo_data_base.h"
#include "platform/canvas/client_dc.h"
#include "shell/prompt_view.h"
#include "shell/tvo_frame_base.h"
#include "view/dt_work_ex.h"
#include "view/select_command.h"
#include "view/view_commands.h"

CTvoViewMgr* g_pCurrentView = nullptr;

CTvoViewMgr::CTvoViewMgr() {
    g_pCurrentView = this;
    m_bObjectSnap = 1;
    m_pSelectCommand[0] = new CSingleSelect(this, nullptr);
    m_pSelectCommand[1] = new CWindowSelect(this, nullptr);
    m_pSelectCommand[2] = new CPolygonSelect(this, nullptr);
    m_pShowCommand[0] = new CShowRect;
    m_pShowCommand[1] = new CShowMove;
    for (CDtWorkEx* show : m_pShowCommand) show->m_pView = this;
}

CTvoViewMgr::~CTvoViewMgr() {
    if (IsStockObject(m_pWork)) SetWork(nullptr);
    for (CDtWorkEx*& stock : m_pSelectCommand) {
        PurgeStack(stock);
        delete std::exchange(stock, nullptr);
    }
    for (CDtWorkEx*& stock : m_pShowCommand) {
        PurgeStack(stock);
        delete std::exchange(stock, nullptr);
    }
    WriteLastCoordinateToReg();
    if (g_pCurrentView == this) g_pCurrentView = nullptr;
}

// A new command always cancels what runs.
void CTvoViewMgr::DoWork(CDtWorkEx* pWork) {
    if (!pWork) return;
    if (!IsBusy()) {
        CTvoViewKernel::DoWork(pWork);
        return;
    }
    if (CDtWorkEx* const running = m_pWork) Called(running, [&] { running->OnCancel(); });
    EndSuspended(1);
    if (CDtWorkEx* const running = m_pWork; running && !IsStockObject(running)) {
        SetWork(nullptr);
        EndLife(running);
    }
    GoIdle();
    RebuildBaseMap();
    CTvoViewKernel::DoWork(pWork);
    ShowCopy(7);
}

void CTvoViewMgr::OnDraw(CDC* dc) {
    if (m_bBaseMapDirty == 1) CreateBaseMap(dc);
    _Fun_ShowHighLight(&m_cBaseMap);
    BlitScreen(dc, &m_cBaseMap);
    CTvoViewKernel::OnDraw(dc);
    m_bHighLight = 0;
}

void CTvoViewMgr::OnOverlapBaseMap(CDC* dc) {
    if (m_bOverlay && m_pDataBase) m_pDataBase->DrawSelected(dc, &m_cCoor, 0);
}

void CTvoViewMgr::OnMButtonDown(UINT keys, CPoint p) {
    m_nShowMethod = 1;
    _SvrSwitchShowMethod();
    CTvoViewKernel::OnMButtonDown(keys, p);
}

// ---- telling ----------------------------------------------------------------------------------------------

void CTvoViewMgr::History(const char* text) {
    if (m_pFrame) m_pFrame->AppendPromptText(text);
}

void CTvoViewMgr::Say(const char* text) {
    if (m_pFrame) m_pFrame->SetPromptText(text);
}

// ---- show commands ----------------------------------------------------------------------------------------

void CTvoViewMgr::_SvrSwitchShowMethod() {
    CDtWorkEx* const show = m_pShowCommand[std::clamp(m_nShowMethod, 0, 1)];
    if (!IsShowing()) {
        show->m_bRepeat = m_pWork ? 0 : 1;
        CTvoViewKernel::DoWork(show);
        return;
    }
    SetWork(show);
    show->m_bRepeat = 1;
    show->Run();
}

// The window zoom, whatever the name says; the pan is the middle button's.
void CTvoViewMgr::_Svr_ShowMove() {
    m_nShowMethod = 0;
    _SvrSwitchShowMethod();
}

void CTvoViewMgr::_Svr_ShowRect() {
    m_nShowMethod = 0;
    _SvrSwitchShowMethod();
}

void CTvoViewMgr::_Svr_ShowAgain() {
    Invalidate();
    m_bBaseMapDirty = 1;
}

// ---- undo -------------------------------------------------------------------------------------------------

void CTvoViewMgr::_Svr_Undo(int bMsg) {
    const bool can = m_pDataBase && m_pDataBase->CanUndo();
    if (bMsg) History(can ? "UNDO: 回退一步" : "已经没有可以UNDO的操作了");
    if (!can) return;
    m_pDataBase->Undo(this, &m_cCoor);
    m_bBaseMapDirty = 1;
}

void CTvoViewMgr::_Svr_Redo(int bMsg) {
    const bool can = m_pDataBase && m_pDataBase->CanRedo();
    if (bMsg) History(can ? "REDO: 重做一步" : "已经没有可以REDO的操作了");
    if (!can) return;
    m_pDataBase->Redo(this, &m_cCoor);
    m_bBaseMapDirty = 1;
}

// ---- switches ---------------------------------------------------------------------------------------------

void CTvoViewMgr::Toggle(int& flag) {
    flag = !flag;
    if (m_pFrame) m_pFrame->SyncStsToStatusBar();
}

void CTvoViewMgr::_Svr_SwitchCoordDisplay() { Toggle(m_bShowCoordinate); }
void CTvoViewMgr::_Svr_SwitchGridSnap() { Toggle(m_bGridSnap); }
void CTvoViewMgr::_Svr_SwitchObjectSnap() { Toggle(m_bObjectSnap); }
void CTvoViewMgr::_Svr_SwitchAngleSnap() { Toggle(m_bAngleSnap); }

// The rubber line of a command may follow the switch.
void CTvoViewMgr::_Svr_SwitchOrthoSnap() {
    CClientDC dc(this);
    DrawRubberLine(&dc);
    Toggle(m_bOrtho);
    DrawRubberLine(&dc);
}

void CTvoViewMgr::_Svr_SwitchGridDisplay() {
    Toggle(m_bShowGrid);
    if (!m_pDataBase) return;
    CClientDC dc(this);
    const int erase = !m_bShowGrid;
    m_pDataBase->GetBackgrnd().Draw(&dc, &m_cCoor, erase);
    m_pDataBase->GetBackgrnd().Draw(&m_cBaseMap, &m_cCoor, erase);
}

void CTvoViewMgr::_Svr_ShowHighLight(float x, float y, float size) {
    m_cHighLight = {x, y};
    m_fHighLightSize = size;
    m_bHighLight = 1;
}

void CTvoViewMgr::_Fun_ShowHighLight(CDC* dc) {
    if (!m_bHighLight) return;
    const CPoint at = PixelOf({m_cHighLight.x, m_cHighLight.y, 0});
    constexpr int kFar = 1 << 29;  // pixels; the spot itself may stand twice as far out
    const int h = std::clamp(m_cCoor.FPtoDP(static_cast<double>(m_fHighLightSize)), -kFar, kFar);
    CPen pen(PS_SOLID, 3, RGB(255, 255, 255));
    CPen* const oldPen = dc->SelectObject(&pen);
    CGdiObject* const oldBrush = dc->SelectStockObject(NULL_BRUSH);
    const int oldMode = dc->SetROP2(R2_COPYPEN);
    dc->Rectangle(at.x - h, at.y - h, at.x + h, at.y + h);
    dc->SetROP2(oldMode);
    dc->SelectObject(oldBrush);
    dc->SelectObject(oldPen);
}

// ---- selecting from outside -------------------------------------------------------------------------------

int CTvoViewMgr::_Can_Select() {
    if (!m_pWork) return 0;
    const CSelectCommand* const select = Selecting();
    if (select && select->m_pOwner) return 0;
    if (m_nObjectHint == QS_SELECT || select) return 1;
    Say("*当前操作不允许做对象选择*");
    return 0;
}

void CTvoViewMgr::StartSelection(int kind) {
    if (!_Can_Select()) return;
    m_nSelectKind = kind;
    _Svr_EditSwitchSelectMethod();
}

void CTvoViewMgr::_Svr_EditSSelect() { StartSelection(0); }
void CTvoViewMgr::_Svr_EditWSelect() { StartSelection(1); }
void CTvoViewMgr::_Svr_EditMSelect() { StartSelection(2); }

void CTvoViewMgr::_Svr_SwitchToNextSelectMethod() {
    m_nSelectKind = (std::clamp(m_nSelectKind, 0, 2) + 1) % 3;
    _Svr_EditSwitchSelectMethod();
}

// From outside a selection the waiting command is pushed twice, here and by DoWork: the second item is the one that the
// end of the selection takes off.
void CTvoViewMgr::_Svr_EditSwitchSelectMethod() {
    auto* const select = static_cast<CSelectCommand*>(m_pSelectCommand[std::clamp(m_nSelectKind, 0, 2)]);
    select->m_bRubberDrawn = 0;
    m_nInputPoint = 0;
    select->TakeFilter(m_byteFilter, m_aFilter);
    if (IsSelecting()) {
        select->Init();
        SetWork(select);
        select->Run();
        ShowCopy(7);
    } else {
        PushViewStack();
        CTvoViewKernel::DoWork(select);
    }
}
