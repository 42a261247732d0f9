#include "view/view_commands.h"

#include <cmath>

#include "model/tvo_data_base.h"
#include "platform/canvas/client_dc.h"
#include "view/cursors.h"
#include "view/rubber_line.h"
#include "view/tvo_view_mgr.h"

namespace {

constexpr const char* kZoomPrompt = "[放大<I>/缩小<O>/全部<A>/扩展<E>/开窗<W>]<扩展<E>";
constexpr int kWindowMode = 3;
constexpr double kSecondsPerObject = 5e-5;
constexpr double kSlowDrag = 0.1;  // seconds

}  // namespace

// ---- zoom -------------------------------------------------------------------------------------------------

CZoom::CZoom() {
    m_strName = "Zoom";
    m_nObjectHint = QS_TEXT;
    m_strPrompt = kZoomPrompt;
}

CTvoViewMgr* CZoom::View() const { return static_cast<CTvoViewMgr*>(m_pView); }

unsigned CZoom::OnLetter(const char* text) {
    const CString letter(text);
    const auto is = [&](const char* l) { return letter.CompareNoCase(l) == 0; };
    const auto done = [&](void (CTvoViewMgr::*service)()) {
        m_bDone = 1;
        (View()->*service)();
        return static_cast<unsigned>(QS_FINISH);
    };
    if (is("I")) return done(&CTvoViewMgr::_Svr_ShowZoomIn);
    if (is("O")) return done(&CTvoViewMgr::_Svr_ShowZoomOut);
    if (is("A")) return done(&CTvoViewMgr::_Svr_ShowAll);
    if (is("E") || letter.IsEmpty()) return done(&CTvoViewMgr::_Svr_Extends);
    if (is("W")) {
        m_hCursor = g_hCursorWin;
        SwitchRubberLine(new CRectRubberLine, 1);
        m_pView->PostMessage(WM_SETCURSOR);
        m_nMode = kWindowMode;
        m_pView->ClearResultSize();
        SetPromptText("请给定第1角点");
        return QS_POINT;
    }
    SetPromptText(CString("*") + letter + ": 未知命令参数* \t" + kZoomPrompt);
    return QS_TEXT;
}

unsigned CZoom::OnGetObject(OBJECT_HINT hint, void* object, int) {
    if (hint == OH_TEXT) return OnLetter(static_cast<const char*>(object));
    if (m_nMode != kWindowMode || hint != OH_POINT) return QS_TEXT;
    const CFPoint point = *static_cast<const CFPoint*>(object);
    if (m_nCorners == 0) {
        // The second one too, so that an end in between shows nothing new.
        m_cCorner1 = m_cCorner2 = point;
        m_nCorners = 1;
        SetPromptText("请给定第2角点");
        return QS_POINT;
    }
    m_cCorner2 = point;
    return QS_FINISH;
}

unsigned CZoom::OnQueryState() { return m_bDone ? unsigned{QS_FINISH} : unsigned{QS_TEXT} | QS_POINT; }

void CZoom::OnComplete() {
    if (m_nMode == kWindowMode) View()->_Fun_ShowRect(m_cCorner1, m_cCorner2, 0, 0);
    CDtWorkEx::OnComplete();
}

void CZoom::DrawCursor(CTvoViewKernel* view, CFPoint& at, CDC* dc) {
    if (m_nMode != kWindowMode) CDtWorkEx::DrawCursor(view, at, dc);
}

// ---- window zoom ------------------------------------------------------------------------------------------

CShowRect::CShowRect() {
    m_strName = "ShowRect";
    m_hCursor = g_hCursorWin;
    m_bRepeat = 1;
    m_strPrompt = "请开窗选择对象";
    SwitchRubberLine(new CRectRubberLine, 0);
}

unsigned CShowRect::OnQueryState() { return m_pView->m_nInputPoint < 2 ? unsigned{QS_POINT} : 0u; }

unsigned CShowRect::OnGetObject(OBJECT_HINT, void*, int) {
    if (m_pView->m_nInputPoint != 2) return QS_POINT;
    const CPoint cursor = m_pView->PixelOf(m_pView->m_cCursor);
    static_cast<CTvoViewMgr*>(m_pView)->_Fun_ShowRect(m_pView->m_aInputPoint[0], m_pView->m_aInputPoint[1], 1, 0);
    m_pView->m_cCursor = m_pView->WorldOf(cursor);
    m_pView->m_nInputPoint = 0;
    m_pView->m_bBaseMapDirty = 1;
    return m_bRepeat ? QS_RESTART : QS_FINISH;
}

// ---- pan --------------------------------------------------------------------------------------------------

CShowMove::CShowMove() {
    m_strName = "ShowMove";
    m_nMouseMask = MN_LDOWN | MN_LUP | MN_MDOWN | MN_MUP | MN_RDOWN | MN_MOVE;
    m_hCursor = g_hCursorPan;
    m_bRepeat = 1;
    m_strPrompt = "请拖动鼠标移动查看";
}

CTvoViewMgr* CShowMove::View() const { return static_cast<CTvoViewMgr*>(m_pView); }

void CShowMove::OnPrepare() {
    m_nMoveCount = 0;
    m_bLiveDrag = 1;
}

unsigned CShowMove::OnQueryState() {
    SetPromptText(m_strPrompt);
    return 0;
}

// A command that ends during a drag, by ESC or the right button, sees no button come up.
void CShowMove::End() {
    m_nButton = 0;
    m_nResult = DTW_NONE;
    m_pView->m_bNeedBlit = 1;
    if (GetCapture() == m_pView) ReleaseCapture();
}

void CShowMove::OnCancel() { End(); }

void CShowMove::OnComplete() {
    End();
    CDtWorkEx::OnComplete();
}

unsigned CShowMove::OnMouseNotify(unsigned event, unsigned, CFPoint point) {
    switch (event) {
        case MN_RDOWN: return DTW_NORMAL;
        case MN_LDOWN:
        case MN_MDOWN:
            m_cDragStart = point;
            m_ptStart = m_pView->PixelOf(point);
            m_nButton = static_cast<int>(event);
            m_pView->SetCapture();
            return DTW_NONE;
        case MN_MOVE:
            if (GetCapture() == m_pView) OnDrag(point);
            return DTW_NONE;
        case MN_LUP:
        case MN_MUP: return OnDrop(point);
        default: return DTW_NONE;
    }
}

// How long a live drag would take for each move: tried once for each run of the command.
void CShowMove::Try(CTvoViewMgr& view) {
    const CFCoor coor = view.m_cCoor;
    const CFPoint cursor = view.m_cCursor;
    const std::int64_t start = QueryPerformanceCounter();
    view.PanBy(m_cDragStart, m_cDragEnd);
    CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*> trial;
    view.GetGouJianInViewPort(trial, view.GetClientRect());
    const double elapsed = static_cast<double>(QueryPerformanceCounter() - start) / static_cast<double>(QueryPerformanceFrequency());
    if (elapsed + view.m_mapViewPort.GetCount() * kSecondsPerObject > kSlowDrag) m_bLiveDrag = 0;
    view.m_cCoor = coor;
    view.m_cCursor = cursor;
}

void CShowMove::OnDrag(CFPoint point) {
    CTvoViewMgr& view = *View();
    m_cDragEnd = point;
    const CPoint start = view.PixelOf(m_cDragStart), end = view.PixelOf(m_cDragEnd);
    const double distance = std::hypot(static_cast<double>(end.x) - start.x, static_cast<double>(end.y) - start.y);
    if (m_nMoveCount == 0) Try(view);
    CClientDC screen(&view);
    if (!m_bLiveDrag) {
        CDC copy;
        view.CopyBaseMap(&copy, &screen, &view.m_cBaseMap);
        CPen pen(PS_DOT, 1, 0xFF0000);
        CPen* const oldPen = copy.SelectObject(&pen);
        const int oldMode = copy.SetROP2(R2_XORPEN);
        copy.MoveTo(m_ptStart);
        copy.LineTo(end);
        copy.SetROP2(oldMode);
        copy.SelectObject(oldPen);
        view.OverlapBaseMap(&copy, 7);
        view.BlitScreen(&screen, &copy);
    } else if (distance > 2.0) {
        view.PanBy(m_cDragStart, m_cDragEnd);
        view.RefreshViewPort();
        view.m_bBaseMapDirty = 1;
        view.OnDraw(&screen);
        view.m_bBaseMapDirty = 0;
    }
    ++m_nMoveCount;
}

unsigned CShowMove::OnDrop(CFPoint point) {
    CTvoViewMgr& view = *View();
    if (m_bLiveDrag) {
        m_nResult = m_nButton == MN_MDOWN ? DTW_NORMAL : DTW_NONE;
    } else {
        const CPoint cursor = view.PixelOf(view.m_cCursor);
        m_cDragEnd = point;
        view._Fun_ShowMove(m_cDragStart, m_cDragEnd);
        view.m_cCursor = view.WorldOf(cursor);
        m_nResult = DTW_NORMAL;
    }
    // Over a command that is a pan itself it goes on.
    if (view.m_cViewStack.GetCount() > 1) {
        const CDtWorkEx* const below = view.m_cViewStack.GetHead().m_pWork;
        m_nResult = below && below->m_strName.CompareNoCase("PAN") == 0 ? DTW_NONE : DTW_NORMAL;
    }
    view.m_bNeedBlit = 1;
    ReleaseCapture();
    return static_cast<unsigned>(m_nResult);
}
