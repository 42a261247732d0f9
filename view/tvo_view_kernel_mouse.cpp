// CTvoViewKernel: mouse and keyboard.
#include <algorithm>
#include <cmath>

#include "model/tvo_data_base.h"
#include "platform/canvas/client_dc.h"
#include "shell/prompt_view.h"
#include "shell/tvo_frame_base.h"
#include "view/dt_work_ex.h"
#include "view/scale_limits.h"
#include "view/tvo_view_kernel.h"

namespace {

bool Same(const CFPoint& a, const CFPoint& b) { return a.x == b.x && a.y == b.y && a.z == b.z; }

bool Same(const CFCoor& a, const CFCoor& b) {
    return Same(a.GetOrigin(), b.GetOrigin()) && a.GetScale() == b.GetScale();
}

}  // namespace

// ---- buttons ----------------------------------------------------------------------------------------------

void CTvoViewKernel::OnLButtonDown(UINT keys, CPoint) {
    if (m_nWorkState == 1 && m_pWork) {
        const CFPoint point = EffectivePoint();
        const unsigned starts = m_nStarts;
        if (!m_bKbdPointAdded) StorePoint(point);
        if (m_pWork->m_nMouseMask & MN_LDOWN) {
            unsigned code = DTW_NONE;
            Called(m_pWork, [&] { code = m_pWork->OnMouseNotify(MN_LDOWN, keys, point); });
            PostMessage(m_nWorkMessage, code);
        }
        PostMessage(m_nWorkMessage, DTW_POINT, static_cast<LPARAM>(starts));
    }
    g_bSnapSymbolShown = 0;
}

// These hand over the raw pointer position, not the snapped cursor.
void CTvoViewKernel::NotifyMouse(unsigned event, UINT keys, CPoint p) {
    if (!IsBusy() || !m_pWork || !(m_pWork->m_nMouseMask & event)) return;
    unsigned code = DTW_NONE;
    Called(m_pWork, [&] { code = m_pWork->OnMouseNotify(event, keys, WorldOf(p)); });
    PostMessage(m_nWorkMessage, code);
}

void CTvoViewKernel::OnLButtonUp(UINT keys, CPoint p) { NotifyMouse(MN_LUP, keys, p); }
void CTvoViewKernel::OnMButtonUp(UINT keys, CPoint p) { NotifyMouse(MN_MUP, keys, p); }
void CTvoViewKernel::OnRButtonUp(UINT keys, CPoint p) { NotifyMouse(MN_RUP, keys, p); }

void CTvoViewKernel::OnMButtonDown(UINT keys, CPoint p) {
    NotifyMouse(MN_MDOWN, keys, p);
    g_bSnapSymbolShown = 0;
}

void CTvoViewKernel::OnRButtonDown(UINT keys, CPoint p) {
    CString text = m_pFrame ? m_pFrame->GetInput() : CString();
    text.TrimLeft();
    text.TrimRight();
    if ((m_nObjectHint & QS_TEXT) && text.IsEmpty() && m_pWork) {
        // The empty answer stands for taking the default.
        char empty[1] = {};
        unsigned hint = 0;
        if (Called(m_pWork, [&] { hint = m_pWork->OnGetObject(OH_TEXT, empty, 1); })) m_nObjectHint = hint;
        PostMessage(m_nWorkMessage, DTW_NONE);
        return;
    }
    if (!text.IsEmpty()) {
        m_pFrame->PostKeyToCommandLine(VK_RETURN);
        return;
    }
    if (m_nWorkState == 1 && m_pWork) {
        if (m_pWork->m_nMouseMask & MN_RDOWN) NotifyMouse(MN_RDOWN, keys, p);
        else PostMessage(m_nWorkMessage, DTW_NORMAL);
    } else if (m_pFrame) {
        m_pFrame->RepeatCommand();
    }
    g_bSnapSymbolShown = 0;
}

// ---- moves ------------------------------------------------------------------------------------------------

// Cursor and rubber line are drawn in XOR on the screen itself: the same drawn twice is gone.
void CTvoViewKernel::OnMouseMove(UINT keys, CPoint p) {
    const bool echo = m_bKbdMoved == 1;
    m_bKbdMoved = 0;
    CFPoint position = echo ? m_cCursor : WorldOf(p);
    if (m_pWork && (m_pWork->m_nMouseMask & MN_MOVE)) {
        const CFCoor before = m_cCoor;
        Called(m_pWork, [&] { m_pWork->OnMouseNotify(MN_MOVE, keys, WorldOf(p)); });
        // A pan has moved the world under the pointer.
        if (!echo && !Same(before, m_cCoor)) position = WorldOf(p);
    }
    CClientDC dc(this);
    if (!IsSnapping()) {
        OverlapBaseMap(&dc, 7);
        m_cCursor = position;
        m_cCursorOffset = CFPoint();
        EraseSnapSymbol(dc);
        OverlapBaseMap(&dc, 7);
    } else {
        int kind = -1;
        m_bSnapHit = GetSnapPoint(position, kind);
        if (!Same(position, m_cCursor)) {
            OverlapBaseMap(&dc, 7);
            m_cCursor = position;
            m_cCursorOffset = CFPoint();
            UpdateSnapSymbol(dc, kind);
            OverlapBaseMap(&dc, 7);
        }
    }
    ShowLocate();
    if (m_pFrame) m_pFrame->SetMouseMousePromptText(m_cCursor.x, m_cCursor.y);
}

// A step in and a step out are no inverse of each other, and only the upper limit is looked at: both are meant.
BOOL CTvoViewKernel::OnMouseWheel(UINT, int delta, CPoint screen) {
    CPoint pixel = screen;
    ScreenToClient(pixel);
    const CFPoint fixed = WorldOf(pixel);
    const float scale = m_cCoor.GetScale() * (delta > 0 ? 1.4f : 0.6f);
    if (scale > g_qeTvoScaleMax) {
        if (m_pFrame) m_pFrame->AppendPromptText("已到放大极限！");
        return 1;
    }
    const CFPoint origin(fixed.x - static_cast<float>(pixel.x) / scale, fixed.y + static_cast<float>(pixel.y) / scale, 0);
    if (!IsUsableView(scale, origin)) return 1;
    m_cCoor.SetScale(scale);
    m_cCoor.SetOrigin(origin);
    RefreshViewPort();
    Invalidate();
    m_bBaseMapDirty = 1;
    return 1;
}

// ---- the keyboard's cursor --------------------------------------------------------------------------------

void CTvoViewKernel::SetCursorByKbd(int key) {
    switch (key) {
        case VK_RETURN:
        case VK_SPACE:
            if (m_pWork && !m_pWork->m_bEnterAsPoint) return;
            AddInputCoordByKbd();
            return;
        case VK_LEFT: return ProcessCursorByKbd(-m_fKbdStep, 0);
        case VK_UP: return ProcessCursorByKbd(0, m_fKbdStep);
        case VK_RIGHT: return ProcessCursorByKbd(m_fKbdStep, 0);
        case VK_DOWN: return ProcessCursorByKbd(0, -m_fKbdStep);
        default: return;
    }
}

void CTvoViewKernel::ProcessCursorByKbd(float dx, float dy) {
    m_cCursor.x += dx;
    m_cCursor.y += dy;
    m_cCursorOffset = CFPoint();
    m_bKbdMoved = 1;
    ShowCopy(7);  // the symbol goes with the picture that held it
    SetCursorPos(PixelOf(m_cCursor));
    if (!IsWindow()) m_bKbdMoved = 0;  // no move will come
    ShowLocate();
}

void CTvoViewKernel::AddInputCoordByKbd() {
    if (m_nInputPoint >= kMostInputPoints) {
        SetPromptText("*已经超过最大输入点数!*");
        return;
    }
    const CFPoint point = EffectivePoint();
    StorePoint(point);
    m_bKbdPointAdded = 1;
    OnLButtonDown(0, PixelOf(point));
    m_bKbdPointAdded = 0;
}
