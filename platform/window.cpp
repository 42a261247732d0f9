#include "platform/window.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/canvas/client_dc.h"
#include "platform/canvas/surface.h"
#include "platform/window_system.h"

namespace {

HCURSOR g_cursor = 0;

/// A minimised window, or one before its first layout, still has a picture.
std::shared_ptr<CSurface> PictureOf(const CSize& client, int density) {
    return std::make_shared<CSurface>(std::max(client.cx, 1), std::max(client.cy, 1), density);
}

}  // namespace

// ---- life -------------------------------------------------------------------------------------------------

CWnd::CWnd() = default;

// No WM_DESTROY here: its handler is a derived class's, which is gone.
CWnd::~CWnd() {
    if (CWindowSystem* system = CWindowSystem::Current()) system->Forget(*this);
}

BOOL CWnd::Create(CWnd* parent, const CRect& place, WindowKind kind) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system || m_peer) return 0;
    m_parent = parent;
    m_kind = kind;
    m_shown = true;
    m_peer = system->MakePeer(*this, kind, parent);
    system->Enter(*this);
    SendMessage(WM_CREATE);
    m_peer->Move(place);
    if (!m_surface) Resized();  // a place of no size is no change
    return 1;
}

void CWnd::DestroyWindow() {
    if (!m_peer) return;
    CWindowSystem* const system = CWindowSystem::Current();
    if (system) system->DestroyChildren(*this);
    SendMessage(WM_DESTROY);
    if (system) system->Forget(*this);
    m_peer.reset();
    m_surface.reset();
    m_invalid = m_unshown = false;
}

void CWnd::Resized() {
    if (!m_peer) return;
    const CSize client = m_peer->Client();
    m_surface = PictureOf(client, m_peer->Density());
    SendMessage(WM_SIZE, 0, PointParam({client.cx, client.cy}));
    Invalidate();
}

// ---- messages ---------------------------------------------------------------------------------------------

BOOL CWnd::PostMessage(UINT message, WPARAM w, LPARAM l) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system || !m_peer) return 0;
    system->Post(*this, message, w, l);
    return 1;
}

LRESULT CWnd::SendMessage(UINT message, WPARAM w, LPARAM l) { return WindowProc(message, w, l); }

LRESULT CWnd::WindowProc(UINT message, WPARAM w, LPARAM l) {
    using MouseHandler = void (CWnd::*)(UINT, CPoint);
    const auto mouse = [&](MouseHandler handler) -> LRESULT {
        (this->*handler)(static_cast<UINT>(w), PointFromParam(l));
        return 0;
    };
    switch (message) {
        case WM_CREATE:
            return OnCreate();
        case WM_DESTROY:
            OnDestroy();
            return 0;
        case WM_SIZE:
            OnSize(PointFromParam(l).x, PointFromParam(l).y);
            return 0;
        case WM_SETFOCUS:
            OnSetFocus();
            return 0;
        case WM_CLOSE:
            OnClose();
            return 0;
        case WM_ACTIVATE:
            OnActivate(w != 0);
            return 0;
        case WM_SYSCOLORCHANGE:
            OnSysColorChange();
            return 0;
        case WM_COMMAND:
            return OnCommand(static_cast<int>(w));
        case WM_PAINT:
            OnPaint();
            return 0;
        case WM_ERASEBKGND:
            return OnEraseBkgnd(nullptr);
        case WM_SETCURSOR:
            return OnSetCursor();
        case WM_KEYDOWN:
            OnKeyDown(static_cast<UINT>(w), l);
            return 0;
        case WM_CHAR:
            OnChar(static_cast<UINT>(w));
            return 0;
        case WM_TIMER:
            OnTimer(static_cast<unsigned>(w));
            return 0;
        case WM_MOUSEMOVE:
            return mouse(&CWnd::OnMouseMove);
        case WM_MOUSELEAVE:
            OnMouseLeave();
            return 0;
        case WM_LBUTTONDOWN:
            return mouse(&CWnd::OnLButtonDown);
        case WM_LBUTTONDBLCLK:
            return mouse(&CWnd::OnLButtonDblClk);
        case WM_LBUTTONUP:
            return mouse(&CWnd::OnLButtonUp);
        case WM_MBUTTONDOWN:
            return mouse(&CWnd::OnMButtonDown);
        case WM_MBUTTONUP:
            return mouse(&CWnd::OnMButtonUp);
        case WM_RBUTTONDOWN:
            return mouse(&CWnd::OnRButtonDown);
        case WM_RBUTTONUP:
            return mouse(&CWnd::OnRButtonUp);
        case WM_MOUSEWHEEL:
            return OnMouseWheel(WheelKeys(w), WheelDelta(w), PointFromParam(l));
        default:
            return 0;
    }
}

// ---- place ------------------------------------------------------------------------------------------------

CRect CWnd::GetClientRect() const {
    if (!m_peer) return {};
    const CSize size = m_peer->Client();
    return {0, 0, size.cx, size.cy};
}

CRect CWnd::GetWindowRect() const {
    CPoint origin;
    ClientToScreen(origin);
    const CRect client = GetClientRect();
    return {origin.x, origin.y, origin.x + client.right, origin.y + client.bottom};
}

void CWnd::ClientToScreen(CPoint& p) const {
    if (!m_peer) return;
    const CPoint origin = m_peer->Origin();
    p.Offset(origin.x, origin.y);
}

void CWnd::ScreenToClient(CPoint& p) const {
    if (!m_peer) return;
    const CPoint origin = m_peer->Origin();
    p.Offset(-origin.x, -origin.y);
}

void CWnd::MoveWindow(const CRect& place) {
    if (m_peer) m_peer->Move(place);
}

void CWnd::ShowWindow(BOOL show) {
    m_shown = show != 0;
    if (m_peer) m_peer->Show(show != 0);
}

CString CWnd::GetWindowText() const { return Peer() ? CString(Peer()->Text()) : CString(); }

void CWnd::SetWindowText(const CString& text) {
    if (Peer()) Peer()->SetText(text.GetString());
}

void CWnd::SetTip(const CString& text) {
    if (m_peer) m_peer->Tip(text.GetString());
}

// ---- painting ---------------------------------------------------------------------------------------------

void CWnd::InvalidateRect(const CRect*, BOOL) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system || !m_peer || m_invalid) return;
    m_invalid = true;
    system->Wake();
}

void CWnd::Paint() {
    if (m_painting) return;
    m_painting = true;
    m_invalid = false;
    SendMessage(WM_PAINT);
    m_painting = false;
    ShowLater();
}

void CWnd::Present() {
    if (m_peer && m_surface && std::exchange(m_unshown, false)) m_peer->Present(*m_surface);
}

void CWnd::UpdateWindow() {
    if (m_invalid) Paint();
    if (!m_unshown) return;  // a progress bar is told the same percentage many times
    Present();
    if (m_peer) m_peer->ShowNow();
}

void CView::OnPaint() {
    CClientDC dc(this);
    OnDraw(&dc);
}

// ---- input ------------------------------------------------------------------------------------------------

void CWnd::SetFocus() {
    CWindowSystem* const system = CWindowSystem::Current();
    if (system && m_peer) system->SetFocus(*this);
}

void CWnd::SetCapture() {
    CWindowSystem* const system = CWindowSystem::Current();
    if (system && m_peer) system->SetCapture(this);
}

void CWnd::SetCursorPos(const CPoint& p) {
    if (!m_peer) return;
    m_peer->WarpPointer(p);
    PostMessage(WM_MOUSEMOVE, 0, PointParam(p));
}

void CWnd::SetTimer(unsigned id, int milliseconds) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (system && m_peer) system->StartTimer(*this, id, milliseconds);
}

void CWnd::KillTimer(unsigned id) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (system && m_peer) system->StopTimer(*this, id);
}

HCURSOR SetCursor(HCURSOR cursor) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (system && (cursor == IDC_WAIT) != (g_cursor == IDC_WAIT)) system->ShowBusy(cursor == IDC_WAIT);
    return std::exchange(g_cursor, cursor);
}
HCURSOR GetCursor() { return g_cursor; }

CWnd* GetCapture() {
    const CWindowSystem* const system = CWindowSystem::Current();
    return system ? system->Capture() : nullptr;
}

void ReleaseCapture() {
    if (CWindowSystem* system = CWindowSystem::Current()) system->SetCapture(nullptr);
}

bool IsKeyDown(UINT key) {
    const CWindowSystem* const system = CWindowSystem::Current();
    return system && system->IsKeyDown(key);
}

std::int64_t QueryPerformanceCounter() {
    if (CWindowSystem* system = CWindowSystem::Current()) return system->Ticks();
    return std::chrono::steady_clock::now().time_since_epoch().count();
}

std::int64_t QueryPerformanceFrequency() {
    if (CWindowSystem* system = CWindowSystem::Current()) return system->TicksPerSecond();
    return std::chrono::steady_clock::period::den / std::chrono::steady_clock::period::num;
}

// ---- edit controls ----------------------------------------------------------------------------------------

void CEdit::AppendText(const CString& text) {
    if (Peer()) Peer()->AppendText(text.GetString());
}

void CEdit::ScrollToEnd() {
    if (Peer()) Peer()->ScrollToEnd();
}

void CEdit::OnChar(UINT code) {
    if (Peer()) Peer()->TypeCharacter(code);
}
