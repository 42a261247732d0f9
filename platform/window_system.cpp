#include "platform/window_system.h"

#include <algorithm>

#include "platform/canvas/system_metrics.h"
#include "platform/code_page.h"

namespace {

CWindowSystem* g_current = nullptr;

UINT ButtonOf(UINT message) {
    switch (message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
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
    return message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK || message == WM_MBUTTONDOWN || message == WM_RBUTTONDOWN;
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

void CWindowPeer::TypeCharacter(UINT code) {
    std::string text = Text();
    if (code == VK_BACK) {
        while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80) text.pop_back();
        if (!text.empty()) text.pop_back();
    } else if (code >= 32 && code != 127) {
        AppendUtf8(text, code);
    }
    SetText(text);
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

void CWindowSystem::DestroyChildren(CWnd& parent) {
    const auto child = [&] {
        const auto found = std::find_if(m_windows.begin(), m_windows.end(),
                                        [&](const CWnd* window) { return window->m_parent == &parent; });
        return found == m_windows.end() ? nullptr : *found;
    };
    while (CWnd* window = child()) window->DestroyWindow();
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
    if (m_onIdle) m_onIdle();
    for (CWnd* window : std::vector<CWnd*>(m_windows))
        if (std::find(m_windows.begin(), m_windows.end(), window) != m_windows.end()) window->Present();
    // Marked again while it was painted: its turn comes with the next event.
    if (std::any_of(m_windows.begin(), m_windows.end(), [](const CWnd* window) { return window->m_invalid; }))
        Wake();
}

// ---- input ------------------------------------------------------------------------------------------------

namespace {

/// Tells the watcher at the end of an event, whoever that is by then.
class Settling {
public:
    explicit Settling(CWindowSystem& system) : m_system(system) {}
    Settling(const Settling&) = delete;
    Settling& operator=(const Settling&) = delete;
    ~Settling() {
        if (m_system.m_watcher) m_system.m_watcher->OnSettled();
    }

private:
    CWindowSystem& m_system;
};

}  // namespace

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

CWnd& CWindowSystem::MouseTarget(CWnd& window, CPoint& client) const {
    const auto in = [&](CWnd& other) {
        CPoint p = client;
        window.ClientToScreen(p);
        other.ScreenToClient(p);
        return p;
    };
    CWnd* target = &window;
    if (m_capture) target = m_capture;
    else if (CWnd* const parent = window.GetParent(); parent && parent->Grips(in(*parent))) target = parent;
    if (target != &window) client = in(*target);
    return *target;
}

void CWindowSystem::DeliverMouse(CWnd& window, UINT message, UINT keys, CPoint client) {
    const Settling settling(*this);
    if (m_watcher) m_watcher->OnMouse(window, message, keys, client);
    if (!CatchUp(window)) return;  // it may take or release the capture
    CWnd* const target = &MouseTarget(window, client);
    if (const UINT button = ButtonOf(message))
        m_buttons = IsPress(message) ? m_buttons | button : m_buttons & ~button;
    m_shift = keys & MK_SHIFT;
    m_control = keys & MK_CONTROL;
    Deliver(*target, message, keys | m_buttons, PointParam(client));
    // A command that ended during a drag may not have seen the button come up.
    if (m_buttons == 0 && m_capture) SetCapture(nullptr);
}

void CWindowSystem::DeliverWheel(CWnd& window, UINT keys, int delta, CPoint screen) {
    const Settling settling(*this);
    if (m_watcher) m_watcher->OnWheel(window, keys, delta, screen);
    if (!CatchUp(window)) return;
    m_shift = keys & MK_SHIFT;
    m_control = keys & MK_CONTROL;
    Deliver(window, WM_MOUSEWHEEL, WheelParam(keys | m_buttons, delta), PointParam(screen));
}

void CWindowSystem::DeliverKey(CWnd& window, UINT key, bool shift, bool control, const std::string& text) {
    const Settling settling(*this);
    if (m_watcher) m_watcher->OnKey(window, key, shift, control, text);
    if (!CatchUp(window)) return;
    m_shift = shift;
    m_control = control;
    if (key) Deliver(window, WM_KEYDOWN, key, 0);
    ForEachCharacter(text, [&](UINT code) {
        if (std::find(m_windows.begin(), m_windows.end(), &window) != m_windows.end())
            Deliver(window, WM_CHAR, code, 0);
    });
}

void CWindowSystem::DeliverDrop(CWnd& window, const std::vector<std::string>& files) {
    const Settling settling(*this);
    if (m_watcher) m_watcher->OnDrop(window, files);
    if (!CatchUp(window)) return;
    for (CWnd* taker = &window; taker && !taker->OnDropFiles(files);) taker = taker->GetParent();
    Drain();
}

void CWindowSystem::DeliverClose(CWnd& window) {
    const Settling settling(*this);
    if (m_watcher) m_watcher->OnClose(window);
    Deliver(window, WM_CLOSE, 0, 0);
}

void CWindowSystem::DeliverResize(CWnd& window) {
    const Settling settling(*this);
    if (m_watcher) m_watcher->OnResize(window, window.Peer()->Client());
    if (!CatchUp(window)) return;
    window.Resized();
    Drain();
}

void CWindowSystem::DeliverTimer(CWnd& window, unsigned id) {
    const Settling settling(*this);
    if (m_watcher) m_watcher->OnTimer(window, id);
    Deliver(window, WM_TIMER, id, 0);
}

void CWindowSystem::DeliverLeave(CWnd& window) {
    const Settling settling(*this);
    if (m_watcher) m_watcher->OnLeave(window);
    Deliver(window, WM_MOUSELEAVE, 0, 0);
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

void CWindowSystem::UsePalette(bool dark) {
    const Settling settling(*this);
    if (m_watcher) m_watcher->OnPalette(dark);
    UseDarkPalette(dark);
    for (CWnd* window : std::vector<CWnd*>(m_windows)) {
        if (std::find(m_windows.begin(), m_windows.end(), window) == m_windows.end()) continue;
        window->SendMessage(WM_SYSCOLORCHANGE);
        window->Invalidate();
    }
}

bool CWindowSystem::RunProgram(const std::vector<std::string>& arguments, bool wait) {
    m_programs.push_back({arguments, wait});
    return m_canRun;
}

ProcessOutput CWindowSystem::CallProgram(const std::vector<std::string>& arguments, int) {
    m_programs.push_back({arguments, true});
    ProcessOutput output;
    if (!m_outputs.empty()) {
        output = std::move(m_outputs.front());
        m_outputs.pop_front();
    }
    if (m_watcher) m_watcher->OnProgram(output);
    return output;
}

int CWindowSystem::RunDialog(DialogForm& form) {
    const std::vector<DialogField> before = form.m_fields;
    if (m_watcher) m_watcher->OnAsk();
    int button = DoDialog(form);
    if (button < 0 || button + 1 >= static_cast<int>(form.m_buttons.size())) {
        button = -1;
        form.m_fields = before;
    }
    if (m_watcher) m_watcher->OnDialog(form, button);
    return button;
}

// An answer that the form itself refuses is told, and cancels: nobody is there to mend it.
int CWindowSystem::DoDialog(DialogForm& form) {
    if (form.m_check) form.m_check(form);
    if (m_onAsk) m_onAsk();
    // An answer for another dialog, which never came, must not stand in the way of all others.
    while (!m_answers.empty() && m_answers.front().m_dialog != form.m_name) m_answers.pop_front();
    if (m_answers.empty()) return -1;
    const DialogAnswer answer = std::move(m_answers.front());
    m_answers.pop_front();
    if (answer.m_button < 0) return -1;
    for (const auto& [name, value] : answer.m_values) {
        form.SetValue(name, value);
        if (!form.m_check) continue;
        if (const std::string wrong = form.m_check(form); !wrong.empty() && &answer.m_values.back().first == &name) {
            ShowMessage(wrong);
            return -1;
        }
    }
    return answer.m_button;
}

std::optional<std::string> CWindowSystem::AskPath(const PathRequest& request) {
    if (m_watcher) m_watcher->OnAsk();
    auto path = DoAskPath(request);
    if (m_watcher) m_watcher->OnPath(request, path);
    return path;
}

std::optional<std::string> CWindowSystem::DoAskPath(const PathRequest&) {
    if (m_onAsk) m_onAsk();
    if (m_paths.empty()) return std::nullopt;
    auto answer = std::move(m_paths.front());
    m_paths.pop_front();
    return answer;
}

void CWindowSystem::ShowMessage(const std::string& text) {
    if (m_watcher) m_watcher->OnAsk();
    DoShowMessage(text);
    if (m_watcher) m_watcher->OnTold();
}

void CWindowSystem::DoShowMessage(const std::string& text) {
    m_messages.push_back(text);
    if (m_onAsk) m_onAsk();
}

std::string CWindowSystem::ClipboardText() {
    std::string text = ReadClipboard();
    if (m_watcher) m_watcher->OnClipboard(text);
    return text;
}

std::int64_t CWindowSystem::Ticks() {
    const std::int64_t ticks = ReadClock();
    if (m_watcher) m_watcher->OnTicks(ticks);
    return ticks;
}

std::int64_t CWindowSystem::ReadClock() {
    if (!m_ticks.empty()) {
        m_now += m_ticks.front();
        m_ticks.pop_front();
    }
    return m_now;
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
        DeliverTimer(*due.window, due.id);
    }
    m_now = std::max(m_now, end);
}
