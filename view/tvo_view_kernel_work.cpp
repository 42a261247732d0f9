// CTvoViewKernel: the work message, by which all input reaches the running command.
#include <algorithm>
#include <string>
#include <utility>

#include "model/tvo_data_base.h"
#include "platform/canvas/client_dc.h"
#include "platform/gbk.h"
#include "shell/prompt_view.h"
#include "shell/tvo_frame_base.h"
#include "view/dt_work_ex.h"
#include "view/select_command.h"
#include "view/tvo_view_kernel.h"

namespace {

constexpr std::size_t kMostTyped = 500;  // bytes of GBK of typed text that reach a command

}  // namespace

LRESULT CTvoViewKernel::WindowProc(UINT message, WPARAM w, LPARAM l) {
    if (message == WM_DTVIEW_WORK) return OnWmDtviewWork(w, l);
    if (message == WM_DTVIEW_IDLE) return OnWnDtviewIdle(w, l);
    return CView::WindowProc(message, w, l);
}

LRESULT CTvoViewKernel::OnWmDtviewWork(WPARAM code, LPARAM l) {
    if (!m_pWork) {
        if (!m_pSelectedList->IsEmpty()) {
            ClearSelectedList();
            ShowCopy(3);
        }
        return 0;
    }
    m_bNeedBlit = 1;
    const int blit = m_pWork->BlitAfterComplete();

    if (code == DTW_CANCEL) {
        CancelByKey();
        return 0;
    }
    bool go = true, switched = false;
    if (code == DTW_NORMAL) go = OnNormal() != 0;
    else switched = !Dispatch(code, l);

    if (!go || !m_pWork) {
        if (go || blit) ShowCopy(7);
        return 0;
    }
    // What was posted as the result of a select step with an owner.
    if (IsSelecting() && code == QS_FINISH) {
        ReSetToInitialState(0);
        if (m_pFrame) m_pFrame->AfterCommandComplete(CurrentCommandId());
        return 0;
    }
    // A command that was switched in meanwhile has its own start waiting: what it awaits is asked then.
    if (!switched && Await()) {
        ShowCopy(6);
        return 0;
    }
    // While a selection stays in work nothing follows that would draw the cursor.
    if (m_bNeedBlit == 1) ShowCopy(m_nObjectHint == QS_SELECT && !IsSelecting() ? 6 : 7);
    return 0;
}

void CTvoViewKernel::CancelByKey() {
    CDtWorkEx* const work = m_pWork;
    if (m_pFrame) m_pFrame->AppendPromptText(work->m_strPrompt + (work->m_bPlainCancel ? " * 取消 *" : " *ESC 取消*"));
    Called(work, [&] { work->OnCancel(); });
    if (m_pWork && m_pWork != work) return;  // its hook has started the next
    if (m_pWork) m_pWork->m_bEchoPrompt = 0;
    ReSetToInitialState(1);
}

// 1 while the command that was called is still the running one.
int CTvoViewKernel::Dispatch(WPARAM code, LPARAM l) {
    const CommandCall call(*this, m_pWork);
    CDtWorkEx* const work = m_pWork;
    const auto await = [&](unsigned hint) {
        if (call.Stands()) m_nObjectHint = hint;
    };
    switch (code) {
        case DTW_START:
            m_aFunctionKey.RemoveAll();
            work->OnPrepare();
            if (call.Stands()) work->RegisterFunctionKey(m_aFunctionKey);
            break;
        case DTW_POINT:
            // The click may have ended a selection whose command went on to start the next: it was not for that one.
            if (l && static_cast<unsigned>(l) != m_nStarts) break;
            if (m_nObjectHint & QS_POINT) await(work->OnGetObject(OH_POINT, &m_cCursor, 0));
            break;
        case DTW_INPUT: {
            const std::string text = l ? reinterpret_cast<const char*>(l) : "";
            if (m_pFrame) m_pFrame->AppendPromptText(g_strPrompt + " " + CString(text));
            CPromptView* const prompt = m_pFrame ? m_pFrame->GetPromptView() : nullptr;
            if (prompt) prompt->m_bInInput = 1;
            OnInput(text.c_str());
            if (prompt) prompt->m_bInInput = 0;
            break;
        }
        case DTW_REQUERY:
            m_aFunctionKey.RemoveAll();
            work->RegisterFunctionKey(m_aFunctionKey);
            await(work->OnQueryState());
            break;
        default:
            break;
    }
    return call.Stands();
}

// What the command awaits now. 1 if a selection has been switched in.
int CTvoViewKernel::Await() {
    if ((m_nObjectHint & QS_SELECT) && !IsSelecting()) {
        auto* const select = static_cast<CSelectCommand*>(m_pSelectCommand[std::clamp(m_nSelectKind, 0, 2)]);
        if (!select) return 0;
        PushViewStack();
        select->TakeFilter(m_byteFilter, m_aFilter);
        select->Run();
        return 1;
    }
    // Equal, not by bit: a word with others set is only a wait.
    CDtWorkEx* const work = m_pWork;
    if (m_nObjectHint == QS_RESTART) {
        Called(work, [&] { work->Run(); });
    } else if (m_nObjectHint == QS_FINISH) {
        Finish();
    } else if (m_nObjectHint == QS_CANCEL) {
        // A select command with an owner takes itself out of work here too.
        if (Called(work, [&] { work->OnCancel(); }) || !m_pWork) RevokeCurCmd(1);
    }
    return 0;
}

void CTvoViewKernel::Finish() {
    CDtWorkEx* const work = m_pWork;
    if (IsStockObject(work)) {
        work->OnComplete();
        // A select command with an owner takes itself out of work as it ends.
        if (m_pWork == work || !m_pWork) RevokeCurCmd(0);
        return;
    }
    if (work->m_bCompleted || work->m_bCompleting) return;
    const std::lock_guard lock(m_csWork);
    work->m_bCompleted = 1;
    const bool stands = Called(work, [&] {
        work->OnComplete();
        if (m_pFrame) m_pFrame->AfterCommandComplete(CurrentCommandId());
    });
    if (stands) RevokeCurCmd(0);
}

// The list of a selection goes to the command that waited for it; what was switched in by OnComplete itself is left
// alone.
int CTvoViewKernel::OnNormal() {
    CDtWorkEx* const work = m_pWork;
    const CSelectCommand* const select = Selecting();
    const bool owned = select && select->m_pOwner;
    // Within OnComplete of this very command, as from a dialog that it shows: the outer call ends it.
    const bool stock = IsStockObject(work);
    if (!stock && (work->m_bCompleted || work->m_bCompleting)) return 0;
    bool switched = false;
    {
        const std::lock_guard lock(m_csWork);
        work->m_bCompleting = !stock;
        Called(work, [&] {
            work->OnComplete();
            if (m_pWork == work && !stock) work->m_bCompleted = 1;
        });
        switched = m_pWork && m_pWork != work;
    }
    if (switched) return 0;
    if (IsSelecting()) {
        RevokeCurCmd(0);
        if (m_pWork) {
            m_bKeepSelected = 1;
            if (m_nObjectHint & QS_SELECT) {
                unsigned hint = 0;
                if (Called(m_pWork, [&] { hint = m_pWork->OnGetObject(OH_OBJECT, m_pSelectedList, 0); }))
                    m_nObjectHint = hint;
            }
            return 1;
        }
        if (!owned) ReSetToInitialState(0);
        return 0;
    }
    if (!IsShowing()) ClearSelectedList();
    RevokeCurCmd(0);
    return 0;
}

// A text that reads as a coordinate while a point is awaited never reaches the command as text.
int CTvoViewKernel::OnInput(const char* text) {
    if (!m_pWork) return 1;
    std::string typed = text ? text : "";
    typed.resize(GbkCutLength(typed, kMostTyped));
    int valid = 0;
    if (m_nObjectHint & QS_POINT) {
        CFPoint point;
        valid = ProcessInputCoor(typed.c_str(), point);
        if (valid) {
            unsigned hint = 0;
            if (!Called(m_pWork, [&] { hint = m_pWork->OnGetObject(OH_POINT, &point, 0); })) return 1;
            m_nObjectHint = hint;
            // Behind the call: a click stores its point before.
            StorePoint(point);
            ShowCopy(m_nObjectHint == QS_FINISH ? 0 : 7);
            ShowLocate();
        }
    }
    if ((m_nObjectHint & QS_TEXT) && !valid) {
        unsigned hint = 0;
        if (Called(m_pWork, [&] { hint = m_pWork->OnGetObject(OH_TEXT, typed.data(), 0); })) m_nObjectHint = hint;
    }
    return 1;
}

// The overlays are put on a copy, which goes to the window in one piece. The copy is made last, so that a base map that
// changed on the way is never overwritten by the picture before.
void CTvoViewKernel::ShowCopy(unsigned mask) {
    CClientDC screen(this);
    CDC copy;
    CopyBaseMap(&copy, &screen, &m_cBaseMap);
    OverlapBaseMap(&copy, mask);
    BlitScreen(&screen, &copy);
}

void CTvoViewKernel::StorePoint(const CFPoint& p) {
    if (m_nInputPoint < kMostInputPoints) m_aInputPoint[m_nInputPoint++] = p;
}

void CTvoViewKernel::ReSetToInitialState(int bCancel) {
    const unsigned switches = m_nSwitches;
    EndSuspended(bCancel);
    if (m_nSwitches == switches) ClearWork(bCancel);
    if (m_nSwitches != switches) return;  // the last hook of one has started the next
    GoIdle();
    if (m_pFrame) m_pFrame->RestoreParaPrompt();
    SendMessage(WM_SETCURSOR);
    RebuildBaseMap();
    ShowCopy(7);
    m_bNeedBlit = 0;
}

void CTvoViewKernel::GoIdle() {
    m_nObjectHint = 0;
    m_nWorkState = 0;
    m_nWorkMessage = WM_DTVIEW_IDLE;
    SetWork(nullptr);
    m_byteFilter = 255;
    m_aFilter.RemoveAll();
    ClearSelectedList();
}

void CTvoViewKernel::RebuildBaseMap() {
    CClientDC screen(this);
    CreateBaseMap(&screen);
}
