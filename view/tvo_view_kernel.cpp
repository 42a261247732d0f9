// CTvoViewKernel: life, the stack of commands, the selection.
#include "view/tvo_view_kernel.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "model/goujian.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "platform/canvas/client_dc.h"
#include "shell/prompt_view.h"
#include "shell/tvo_frame_base.h"
#include "view/cursors.h"
#include "view/dt_work_ex.h"
#include "view/select_command.h"

CTvoViewKernel* g_pViewKernel = nullptr;

const HCURSOR g_hCursorNull = 40001;
const HCURSOR g_hCursorWin = 40002;
const HCURSOR g_hCursorPan = 40003;
const HCURSOR g_hCursorZoom = 40004;
const HCURSOR g_hCursorRot = 40005;
const HCURSOR g_hCursorLoc = 40006;

CommandCall::CommandCall(CTvoViewKernel& view, CDtWorkEx* work)
    : m_view(view), m_work(work), m_serial(view.m_nWorkSerial) {
    ++m_work->m_nCalls;
}

CommandCall::~CommandCall() {
    if (--m_work->m_nCalls == 0 && m_work->m_bDue) delete m_work;
}

// ---- life -------------------------------------------------------------------------------------------------

CTvoViewKernel::CTvoViewKernel()
    : m_fKbdStep(std::clamp(1000.0f, g_cTvoProfile.m_fKbdStepMin,
                            std::max(g_cTvoProfile.m_fKbdStepMin, g_cTvoProfile.m_fKbdStepMax))),
      m_pSelectedList(new CGouJianExList) {
    m_cFont.CreateFont(12, 0, 0, 0, FW_NORMAL, 0, 0, 0, GB2312_CHARSET, 0, 0, DEFAULT_QUALITY, 0, "黑体");
    g_pViewKernel = this;
}

CTvoViewKernel::~CTvoViewKernel() {
    DestroyWindow();
    CDtWorkEx* const running = m_pWork;
    m_pWork = nullptr;
    PurgeStack(running);
    if (running && !IsStockObject(running)) delete running;
    for (COperStackItem item; PopViewStack(item);) {
        PurgeStack(item.m_pWork);
        if (item.m_pWork && !IsStockObject(item.m_pWork)) delete item.m_pWork;
    }
    delete m_pSelectedList;
    if (g_pViewKernel == this) g_pViewKernel = nullptr;
}

int CTvoViewKernel::CurrentCommandId() const { return m_pFrame ? m_pFrame->m_nCurrentCommand : -1; }

void CTvoViewKernel::SetDataBase(CTvoDataBase* db) {
    m_pDataBase = db;
    for (CDtWorkEx* stock : m_pSelectCommand)
        if (stock) stock->m_pDataBase = db;
    for (CDtWorkEx* stock : m_pShowCommand)
        if (stock) stock->m_pDataBase = db;
}

void CTvoViewKernel::SetWork(CDtWorkEx* pWork) {
    m_pWork = pWork;
    ++m_nWorkSerial;
}

bool CTvoViewKernel::IsStockObject(const CDtWorkEx* pWork) const {
    const auto is = [&](const CDtWorkEx* stock) { return stock && stock == pWork; };
    return std::any_of(std::begin(m_pSelectCommand), std::end(m_pSelectCommand), is) ||
           std::any_of(std::begin(m_pShowCommand), std::end(m_pShowCommand), is);
}

bool CTvoViewKernel::IsSelecting() const {
    return m_pWork && std::find(std::begin(m_pSelectCommand), std::end(m_pSelectCommand), m_pWork) != std::end(m_pSelectCommand);
}

bool CTvoViewKernel::IsShowing() const {
    return m_pWork && std::find(std::begin(m_pShowCommand), std::end(m_pShowCommand), m_pWork) != std::end(m_pShowCommand);
}

CSelectCommand* CTvoViewKernel::Selecting() const {
    return IsSelecting() ? static_cast<CSelectCommand*>(m_pWork) : nullptr;
}

CDtWorkEx* CTvoViewKernel::GetWorkingCommand() {
    if (!m_pWork || !IsStockObject(m_pWork)) return m_pWork;
    COperStackItem top;
    return PeekViewStack(top) ? top.m_pWork : nullptr;
}

// ---- the stack --------------------------------------------------------------------------------------------

void CTvoViewKernel::PushViewStack() {
    COperStackItem item;
    item.m_pWork = m_pWork;
    item.m_nWorkState = m_nWorkState;
    item.m_nObjectHint = m_nObjectHint;
    item.m_nSelectKind = m_nSelectKind;
    item.m_nWorkMessage = m_nWorkMessage;
    item.m_nInputPoint = m_nInputPoint;
    std::copy_n(m_aInputPoint, m_nInputPoint, item.m_aInputPoint);
    item.m_byteFilter = m_byteFilter;
    for (const std::uint8_t type : m_aFilter) item.m_aFilter.Add(type);
    m_cViewStack.AddHead(item);
}

int CTvoViewKernel::PeekViewStack(COperStackItem& item) {
    if (m_cViewStack.IsEmpty()) return 0;
    item = m_cViewStack.GetHead();
    return 1;
}

int CTvoViewKernel::PopViewStack(COperStackItem& item) {
    if (m_cViewStack.IsEmpty()) return 0;
    item = m_cViewStack.RemoveHead();
    return 1;
}

void CTvoViewKernel::PurgeStack(const CDtWorkEx* pWork) {
    if (!pWork) return;
    for (POSITION p = m_cViewStack.GetHeadPosition(); p;) {
        const POSITION at = p;
        if (m_cViewStack.GetNext(p).m_pWork == pWork) m_cViewStack.RemoveAt(at);
    }
}

void CTvoViewKernel::EndLife(CDtWorkEx* pWork) {
    PurgeStack(pWork);
    if (pWork->m_nCalls == 0) {
        delete pWork;
        return;
    }
    pWork->LeavePrompt();  // now, not when the call returns: the next command may have asked by then
    pWork->m_bDue = true;
}

bool CTvoViewKernel::EndByHook(CDtWorkEx* pWork, int bCancel) {
    const unsigned switches = m_nSwitches;
    Called(pWork, [&] {
        if (bCancel) pWork->OnCancel();
        else pWork->OnComplete();
    });
    const bool alone = m_nSwitches == switches;
    if (!alone) pWork->m_bLeft = true;  // the prompt is the other one's
    EndLife(pWork);
    return alone;
}

void CTvoViewKernel::SwitchState(COperStackItem item, unsigned code) {
    ++m_nSwitches;
    if (code == DTW_START) ++m_nStarts;
    m_cCursorOffset = CFPoint();
    SetWork(item.m_pWork);
    m_nWorkState = item.m_nWorkState;
    m_nObjectHint = item.m_nObjectHint;
    m_nSelectKind = item.m_nSelectKind;
    m_nWorkMessage = item.m_nWorkMessage;
    m_nInputPoint = static_cast<std::int16_t>(std::clamp(item.m_nInputPoint, 0, kMostInputPoints));
    std::copy_n(item.m_aInputPoint, m_nInputPoint, m_aInputPoint);
    m_byteFilter = item.m_byteFilter;
    m_aFilter.RemoveAll();
    for (const std::uint8_t type : item.m_aFilter) m_aFilter.Add(type);
    if (!m_bKeepSelected) ClearSelectedList();
    SendMessage(WM_SETCURSOR);
    PostMessage(m_nWorkMessage, code, 0);
}

// ---- commands begin and end -------------------------------------------------------------------------------

void CTvoViewKernel::DoWork(CDtWorkEx* pWork) {
    if (!pWork) return;
    PushViewStack();
    SetWork(pWork);
    if (!IsStockObject(pWork)) ClearSelectedList();
    const CommandCall call(*this, pWork);
    pWork->Run();
}

void CTvoViewKernel::ClearWork(int bCancel) {
    CDtWorkEx* const work = m_pWork;
    if (!work) return;
    if (!IsStockObject(work)) {
        SetWork(nullptr);
        EndLife(work);
    } else if (CSelectCommand* select = Selecting(); select && select->m_pOwner) {
        EndByHook(std::exchange(select->m_pOwner, nullptr), bCancel);
    }
}

// A command that a host switched in over a selection stands twice on the stack, once pushed for it and once for the
// selection: at its own end it would come back to itself.
void CTvoViewKernel::RevokeCurCmd(int bCancel) {
    COperStackItem item;
    int came = PopViewStack(item);
    while (came && item.m_pWork && item.m_pWork == m_pWork) came = PopViewStack(item);
    if (!came || !item.m_pWork) {
        ReSetToInitialState(bCancel);
        return;
    }
    const COperStackItem next = item;
    ClearWork(bCancel);
    SwitchState(next, DTW_REQUERY);
}

void CTvoViewKernel::EndSuspended(int bCancel) {
    for (COperStackItem item; PopViewStack(item);) {
        CDtWorkEx* const work = item.m_pWork;
        if (!work || work == m_pWork || IsStockObject(work)) continue;
        PurgeStack(work);  // it may stand there twice
        EndByHook(work, bCancel);
    }
}

// ---- the selection ----------------------------------------------------------------------------------------

void CTvoViewKernel::ClearSelectedList() {
    for (POSITION p = m_pSelectedList->GetHeadPosition(); p;) {
        CGouJianEx* const obj = m_pSelectedList->GetNext(p);
        obj->set_m_byteStatus(0);
        if (m_pDataBase && m_pDataBase->FindGouJian(obj->get_m_dwGouJianID())) ReGenObject(obj);
    }
    m_pSelectedList->RemoveAll();
}

void CTvoViewKernel::DrawSelectedList(CDC* dc, CFCoor* coor) {
    for (POSITION p = m_pSelectedList->GetHeadPosition(); p;) m_pSelectedList->GetNext(p)->Draw(dc, coor);
}

int CTvoViewKernel::InFilter(CGouJianEx* pGouJian) {
    if (!pGouJian->IsVisable()) return 0;
    const unsigned char type = pGouJian->get_Gjlx();
    if (type == m_byteFilter) return 1;
    return std::find(m_aFilter.begin(), m_aFilter.end(), type) != m_aFilter.end();
}

void CTvoViewKernel::ForgetComponent(CGouJianEx* pGouJian) {
    m_cSelectedIndex.Drop(*m_pSelectedList, pGouJian);
    for (std::size_t i = 0; i < std::size(m_pSelectCommand); ++i)
        if (auto* select = static_cast<CSelectCommand*>(m_pSelectCommand[i])) {
            m_cAddedIndex[i].Drop(select->m_lstAdded, pGouJian);
            m_cRemovedIndex[i].Drop(select->m_lstRemoved, pGouJian);
        }
}

// ---- small services ---------------------------------------------------------------------------------------

CFPoint CTvoViewKernel::EffectivePoint() const {
    return {m_cCursor.x + m_cCursorOffset.x, m_cCursor.y + m_cCursorOffset.y, m_cCursor.z + m_cCursorOffset.z};
}

void CTvoViewKernel::SetPromptText(CString text) {
    if (m_pFrame) m_pFrame->SetStatusPrompt(text);
}

void CTvoViewKernel::ShowLocate() {
    if (!m_pFrame) return;
    m_pFrame->SetLocate(m_cCursor);
    if (!IsBusy() || m_nInputPoint <= 0 || (m_bSnapHit && m_bAngleSnap)) return;
    const CFPoint& last = m_aInputPoint[m_nInputPoint - 1];
    m_pFrame->SetOffset(m_cCoor.PointTouYing({m_cCursor.x - last.x, m_cCursor.y - last.y, m_cCursor.z - last.z}));
}

int CTvoViewKernel::ResponseFunctionKey(unsigned code) {
    if (!m_pWork) return 0;
    if (std::find(m_aFunctionKey.begin(), m_aFunctionKey.end(), code) == m_aFunctionKey.end()) return 0;
    const CommandCall call(*this, m_pWork);
    m_pWork->OnGetFunctionKey(code);
    return 1;
}

BOOL CTvoViewKernel::OnSetCursor() {
    HCURSOR cursor = g_hCursorNull;
    if (IsBusy() && m_pWork) {
        cursor = m_pWork->m_hCursor;
        if (!cursor) return 1;
    }
    ::SetCursor(cursor);
    ShowCursor(cursor);
    return 1;
}
