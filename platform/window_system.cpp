#include "platform/window_system.h"

#include <algorithm>

namespace {

CWindowSystem* g_current = nullptr;

UINT ButtonOf(UINT message) {
    switch (message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONUP:
            return MK_LBUTTON;
        case WM_MBUTTONDOWN:
        case WM_MBUTTONUP:
            return MK_MBUTTON;
        case WM_RBUTTONDOWN:
        case WM_RBUTTONUP:
            return MK_RBUTTON;
        default:
            return 0;
    }
}

bool IsPress(UINT message) {
    return message == WM_LBUTTONDOWN || message == WM_MBUTTONDOWN || message == WM_RBUTTONDOWN;
}

/// The characters of UTF-8 text; a byte that belongs to none is passed over.
template <class F>
void ForEachCharacter(const std::string& text, F visit) {
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char lead = static_cast<unsigned char>(text[i++]);
        const int more = lead < 0x80 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : -1;
        if (more < 0) continue;
        UINT code = more == 0 ? lead : lead & (0x3Fu >> more);
        int got = 0;
        for (; got < more && i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80; ++got)
            code = code << 6 | (static_cast<unsigned char>(text[i++]) & 0x3Fu);
        if (got == more) visit(code);
    }
}

}  // namespace

// ---- peers ------------------------------------------------------------------------------------------------

CPoint CWindowPeer::Origin() const {
    CPoint origin = m_place.TopLeft();
    if (m_parent) m_parent->ClientToScreen(origin);
    return origin;
}

void CWindowPeer::Move(const CRect& place) {
    const CSize before = Client();
    m_place = place;
    m_place.NormalizeRect();
    const CSize now = Client();
    if (now.cx != before.cx || now.cy != before.cy) m_window.Resized();
}

// ---- life -------------------------------------------------------------------------------------------------

CWindowSystem::CWindowSystem() : m_before(g_current) { g_current = this; }

CWindowSystem::~CWindowSystem() {
    for (CWnd* window : std::vector<CWnd*>(m_windows)) window->DestroyWindow();
    if (g_current == this) g_current = m_before;
}

CWindowSystem* CWindowSystem::Current() { return g_current; }

std::unique_ptr<CWindowPeer> CWindowSystem::MakePeer(CWnd& window, WindowKind, CWnd* parent) {
    return std::make_unique<CWindowPeer>(window, parent);
}

void CWindowSystem::Enter(CWnd& window) { m_windows.push_back(&window); }

void CWindowSystem::Forget(CWnd& window) {
    std::erase(m_windows, &window);
    std::erase_if(m_posted, [&](const Posted& p) { return p.window == &window; });
    std::erase_if(m_timers, [&](const Timer& t) { return t.window == &window; });
    if (m_focus == &window) m_focus = nullptr;
    if (m_capture == &window) m_capture = nullptr;
    for (CWnd* child : m_windows)
        if (child->m_parent == &window) child->m_parent = nullptr;
    if (m_before) m_before->Forget(window);  // it may have been made in that one
}

// ---- messages ---------------------------------------------------------------------------------------------

void CWindowSystem::Post(CWnd& window, UINT message, WPARAM w, LPARAM l) {
    m_posted.push_back({&window, message, w, l});
    Wake();
}

// A window that goes away meanwhile takes its messages with it, so that each that is taken out names one that
// stands.
void CWindowSystem::Drain() {
    std::vector<CWnd*> painted;
    for (int handled = 0;;) {
        while (!m_posted.empty()) {
            if (handled++ == kMostMessages) {
                Wake();
                return;
            }
            const Posted next = m_posted.front();
            m_posted.pop_front();
            next.window->SendMessage(next.message, next.w, next.l);
        }
        const auto due = std::find_if(m_windows.begin(), m_windows.end(), [&](CWnd* window) {
            return window->m_invalid && !window->m_painting &&
                   std::find(painted.begin(), painted.end(), window) == painted.end();
        });
        if (due == m_windows.end()) break;
        painted.push_back(*due);
        (*due)->Paint();
    }
    for (CWnd* window : std::vector<CWnd*>(m_windows))
        if (std::find(m_windows.begin(), m_windows.end(), window) != m_windows.end()) window->Present();
    // Marked again while it was painted: its turn comes with the next event.
    if (std::any_of(m_windows.begin(), m_windows.end(), [](const CWnd* window) { return window->m_invalid; }))
        Wake();
}

// ---- input ------------------------------------------------------------------------------------------------

// What was posted outside of an event, as by a host's menu, comes before the event: a point before the next move.
bool CWindowSystem::CatchUp(const CWnd& window) {
    if (m_posted.empty()) return true;
    Drain();
    return std::find(m_windows.begin(), m_windows.end(), &window) != m_windows.end();
}

void CWindowSystem::Deliver(CWnd& window, UINT message, WPARAM w, LPARAM l) {
    if (!CatchUp(window)) return;
    window.SendMessage(message, w, l);
    Drain();
}

void CWindowSystem::DeliverMouse(CWnd& window, UINT message, UINT keys, CPoint client) {
    if (!CatchUp(window)) return;  // it may take or release the capture
    CWnd* target = &window;
    if (m_capture && m_capture != target) {
        target->ClientToScreen(client);
        m_capture->ScreenToClient(client);
        target = m_capture;
    }
    if (const UINT button = ButtonOf(message))
        m_buttons = IsPress(message) ? m_buttons | button : m_buttons & ~button;
    m_shift = keys & MK_SHIFT;
    m_control = keys & MK_CONTROL;
    Deliver(*target, message, keys | m_buttons, PointParam(client));
    // A command that ended during a drag may not have seen the button come up.
    if (m_buttons == 0 && m_capture) SetCapture(nullptr);
}

void CWindowSystem::DeliverWheel(CWnd& window, UINT keys, int delta, CPoint screen) {
    if (!CatchUp(window)) return;
    m_shift = keys & MK_SHIFT;
    m_control = keys & MK_CONTROL;
    Deliver(window, WM_MOUSEWHEEL, WheelParam(keys | m_buttons, delta), PointParam(screen));
}

void CWindowSystem::DeliverKey(CWnd& window, UINT key, bool shift, bool control, const std::string& text) {
    if (!CatchUp(window)) return;
    m_shift = shift;
    m_control = control;
    if (key) Deliver(window, WM_KEYDOWN, key, 0);
    ForEachCharacter(text, [&](UINT code) {
        if (std::find(m_windows.begin(), m_windows.end(), &window) != m_windows.end())
            Deliver(window, WM_CHAR, code, 0);
    });
}

void CWindowSystem::SetFocus(CWnd& window) {
    if (m_focus == &window) return;
    m_focus = &window;
    window.Peer()->Focus();
    window.SendMessage(WM_SETFOCUS);
}

void CWindowSystem::SetCapture(CWnd* window) {
    if (m_capture == window) return;
    if (m_capture && m_capture->Peer()) m_capture->Peer()->Capture(false);
    m_capture = window;
    if (window) window->Peer()->Capture(true);
}

// ---- services ---------------------------------------------------------------------------------------------

std::optional<std::string> CWindowSystem::AskSavePath(const std::string&, const std::string&) {
    if (m_savePaths.empty()) return std::nullopt;
    auto answer = m_savePaths.front();
    m_savePaths.pop_front();
    return answer;
}

std::optional<std::string> CWindowSystem::ReadSetting(const std::string& path, const std::string& name) {
    const auto found = m_settings.find({path, name});
    if (found == m_settings.end()) return std::nullopt;
    return found->second;
}

void CWindowSystem::WriteSetting(const std::string& path, const std::string& name, const std::string& value) {
    m_settings[{path, name}] = value;
}

// ---- timers -----------------------------------------------------------------------------------------------

void CWindowSystem::StartTimer(CWnd& window, unsigned id, int milliseconds) {
    StopTimer(window, id);
    const std::int64_t period =
        std::max<std::int64_t>(1, TicksPerSecond() * std::max(milliseconds, 1) / 1000);
    m_timers.push_back({&window, id, period, m_now + period});
}

void CWindowSystem::StopTimer(CWnd& window, unsigned id) {
    std::erase_if(m_timers, [&](const Timer& t) { return t.window == &window && t.id == id; });
}

void CWindowSystem::Advance(int milliseconds) {
    const std::int64_t end = m_now + TicksPerSecond() * milliseconds / 1000;
    for (;;) {
        const auto next = std::min_element(m_timers.begin(), m_timers.end(),
                                           [](const Timer& a, const Timer& b) { return a.due < b.due; });
        if (next == m_timers.end() || next->due > end) break;
        m_now = std::max(m_now, next->due);
        next->due += next->period;
        const Timer due = *next;  // its handler may stop it
        Deliver(*due.window, WM_TIMER, due.id, 0);
    }
    m_now = std::max(m_now, end);
}
