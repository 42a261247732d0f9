// The seam to the window toolkit. The classes here work by themselves, without a screen; a backend overrides
// what it can show.
#pragma once
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/dialog.h"
#include "platform/process.h"
#include "platform/window.h"

/// The system's side of one window; owned by the window. This one keeps place and text in memory.
class CWindowPeer {
public:
    CWindowPeer(CWnd& window, CWnd* parent) : m_window(window), m_parent(parent) {}
    CWindowPeer(const CWindowPeer&) = delete;
    CWindowPeer& operator=(const CWindowPeer&) = delete;
    virtual ~CWindowPeer() = default;

    virtual CSize Client() const { return {m_place.Width(), m_place.Height()}; }
    virtual CPoint Origin() const;  // of the client area on the screen
    /// To a place in the parent's client area. Calls Resized of the window if its size changes.
    virtual void Move(const CRect& place);
    virtual void Show(bool show) { m_shown = show; }
    virtual void Present(const CSurface& /*picture*/) {}  // to the screen
    virtual void ShowNow() {}  // what was presented, without waiting for the end of what is being handled
    /// What the screen shows of it, read back; null where there is no screen.
    virtual std::shared_ptr<CSurface> Shown() const { return nullptr; }
    virtual void Focus() {}
    virtual void Capture(bool /*on*/) {}
    virtual void Cursor(HCURSOR /*cursor*/) {}
    virtual void WarpPointer(CPoint /*client*/) {}  // the move itself is no business of the peer's
    virtual void Tip(const std::string& /*text*/) {}  // shown at the pointer after a while; empty: none
    /// Pixels of the picture's side for one of the client area: 1 or 2.
    virtual int Density() const { return 1; }
    // The title of a window of its own, the text of an edit control
    virtual std::string Text() const { return m_text; }
    virtual void SetText(const std::string& text) { m_text = text; }
    virtual void AppendText(const std::string& text) { SetText(Text() + text); }
    virtual void ScrollToEnd() {}
    /// A character is typed into an edit control, where its caret is: behind the text without a screen. 8 takes one away,
    /// other codes below 32 change nothing.
    virtual void TypeCharacter(UINT code);

protected:
    CWnd& m_window;            // its owner
    CWnd* m_parent = nullptr;  // borrowed
    CRect m_place;             // in the parent
    bool m_shown = true;
    std::string m_text;  // UTF-8
};

/// Somebody who looks on at what goes into the window system: a recorder of sessions.
class CWindowWatcher {
public:
    virtual ~CWindowWatcher() = default;
    // Before the event is handled; points in the client area, as the backend gave them.
    virtual void OnMouse(CWnd& /*window*/, UINT /*message*/, UINT /*keys*/, CPoint) {}
    virtual void OnWheel(CWnd& /*window*/, UINT /*keys*/, int /*delta*/, CPoint /*screen*/) {}
    virtual void OnKey(CWnd& /*window*/, UINT /*key*/, bool /*shift*/, bool /*control*/, const std::string& /*text*/) {}
    virtual void OnDrop(CWnd& /*window*/, const std::vector<std::string>& /*files*/) {}
    virtual void OnClose(CWnd& /*window*/) {}
    /// A window of its own has another size now.
    virtual void OnResize(CWnd& /*window*/, CSize) {}
    virtual void OnTimer(CWnd& /*window*/, unsigned /*id*/) {}
    virtual void OnLeave(CWnd& /*window*/) {}  // by the pointer
    virtual void OnPalette(bool /*dark*/) {}   // another one is about to be in force
    /// An event of those above and all that came of it are done. One that came while a dialog of another was open
    /// is done before that.
    virtual void OnSettled() {}
    /// The user is about to be asked or told something: what comes before the answer happens while he is.
    virtual void OnAsk() {}
    virtual void OnTold() {}  // a message was read
    // After the user has answered.
    virtual void OnDialog(const DialogForm&, int /*button*/) {}
    virtual void OnPath(const PathRequest&, const std::optional<std::string>& /*path*/) {}
    virtual void OnClipboard(const std::string& /*text*/) {}  // it was read
    virtual void OnProgram(const ProcessOutput&) {}            // a program was called and wrote this
    virtual void OnTicks(std::int64_t /*ticks*/) {}            // the clock was read
};

/// The system that windows live in, one at a time for the process. This one has no screen: its clock stands
/// still until it is moved, its dialogs answer what a test or a script has laid ready, its settings are
/// forgotten at the end.
///
/// Order of events: an input event is handled, then everything that was posted meanwhile, then each window
/// that is marked is painted once; only then comes the next input event. Commands rely on it: the point of a
/// click must have reached the command before the next move draws.
class CWindowSystem {
public:
    CWindowSystem();  // becomes the current one
    CWindowSystem(const CWindowSystem&) = delete;
    CWindowSystem& operator=(const CWindowSystem&) = delete;
    virtual ~CWindowSystem();         // its windows lose their peers; the system before becomes current again
    static CWindowSystem* Current();  // null: there are no windows

    // --- input, called by backends, scripts and tests
    /// Handles one event of a window, then drains. Mouse events go to the window that has the capture.
    void Deliver(CWnd& window, UINT message, WPARAM w, LPARAM l);
    void DeliverMouse(CWnd& window, UINT message, UINT keys, CPoint client);
    /// The window that takes a mouse event at a point of this one's client area: the one that has the capture, or a
    /// parent that grips there. The point becomes one of its own.
    CWnd& MouseTarget(CWnd& window, CPoint& client) const;
    void DeliverWheel(CWnd& window, UINT keys, int delta, CPoint screen);
    /// The key goes to the window; `text` is what it types there (empty: nothing).
    void DeliverKey(CWnd& window, UINT key, bool shift, bool control, const std::string& text);
    /// Files were dropped on a window: OnDropFiles of it, or of the nearest parent that takes them.
    void DeliverDrop(CWnd& window, const std::vector<std::string>& files);
    void DeliverClose(CWnd& window);  // the user closes a window of its own: its OnClose
    void DeliverResize(CWnd& window);  // the user has resized a window of its own
    void DeliverTimer(CWnd& window, unsigned id);
    void DeliverLeave(CWnd& window);  // the pointer has left it
    /// All that is posted, then painting. Stops after kMostMessages, with Wake called: a command may post for
    /// ever.
    void Drain();
    static constexpr int kMostMessages = 200;
    bool IsIdle() const { return m_posted.empty(); }
    std::function<void()> m_onIdle;  // called when nothing is left to do after an event; may be empty

    // --- for CWnd
    void Post(CWnd& window, UINT message, WPARAM w, LPARAM l);
    void Enter(CWnd& window);   // into the row of windows
    void Forget(CWnd& window);  // everything that names it
    const std::vector<CWnd*>& Windows() const { return m_windows; }  // in the order of their making
    void DestroyChildren(CWnd& parent);
    CWnd* Focus() const { return m_focus; }
    void SetFocus(CWnd& window);
    CWnd* Capture() const { return m_capture; }
    void SetCapture(CWnd* window);
    bool IsKeyDown(UINT key) const { return key == VK_SHIFT ? m_shift : key == VK_CONTROL && m_control; }

    // --- what a backend provides
    virtual std::unique_ptr<CWindowPeer> MakePeer(CWnd& window, WindowKind kind, CWnd* parent);
    virtual void Wake() {}  // have Drain called soon
    /// What was drawn comes to the screen now, without any input being handled meanwhile.
    virtual void ShowNow() {}
    /// Handles events until Quit; the program's exit status. Without a screen there are none.
    virtual int RunLoop() { return 0; }
    virtual void Quit() {}
    virtual std::int64_t TicksPerSecond() { return 1000000; }
    virtual void StartTimer(CWnd& window, unsigned id, int milliseconds);
    virtual void StopTimer(CWnd& window, unsigned id);
    virtual void ShowBusy(bool /*busy*/) {}  // the wait cursor, whatever the pointer is over
    /// Starts a program, found in the search path, with its arguments, and may wait for its end. False if it can't be
    /// started. Without a screen it is only written down.
    virtual bool RunProgram(const std::vector<std::string>& arguments, bool wait);
    /// Runs a program for what it writes, a while at most. Without a screen none is there, except as m_outputs has it.
    virtual ProcessOutput CallProgram(const std::vector<std::string>& arguments, int milliseconds);
    /// A setting of the user's, by the path of its group and its name.
    virtual std::optional<std::string> ReadSetting(const std::string& path, const std::string& name);
    virtual void WriteSetting(const std::string& path, const std::string& name, const std::string& value);

    /// Takes up the dark palette or the light one, and has every window drawn with it.
    void UsePalette(bool dark);

    // --- what the user is asked; the watcher learns of the answer
    std::int64_t Ticks();
    /// Shows a dialog and waits for it: the index of the button, with the values in the form, or -1 when it was closed
    /// or its last button was pressed; the values are then as they were.
    int RunDialog(DialogForm& form);
    std::optional<std::string> AskPath(const PathRequest& request);  // nothing for a cancel
    std::string ClipboardText();
    void ShowMessage(const std::string& text);
    virtual void SetClipboardText(const std::string& text) { m_clipboard = text; }
    CWindowWatcher* m_watcher = nullptr;  // borrowed; may be null

    // --- the system without a screen, for scripts and tests
    void Advance(int milliseconds);  // moves the clock; timers that are due fire in order
    void Tick(std::int64_t ticks) { m_now += ticks; }
    std::deque<DialogAnswer> m_answers;                // of RunDialog, the next first; none left: cancel
    std::deque<std::optional<std::string>> m_paths;    // of AskPath; none left: cancel
    std::deque<std::int64_t> m_ticks;                  // by so much the clock goes on at each reading; none left: it stands
    std::string m_clipboard;
    std::vector<std::string> m_messages;  // what ShowMessage was given
    struct Program {
        std::vector<std::string> m_arguments;
        bool m_wait = false;
    };
    std::vector<Program> m_programs;  // what RunProgram and CallProgram were given
    bool m_canRun = true;             // the answer of RunProgram
    std::deque<ProcessOutput> m_outputs;  // of CallProgram; none left: it can't be started
    std::function<void()> m_onAsk;    // called while a dialog, a question for a path or a message stands; may be empty

protected:
    // What a backend shows. Values of a form that was cancelled don't matter.
    virtual int DoDialog(DialogForm& form);
    virtual std::optional<std::string> DoAskPath(const PathRequest& request);
    virtual void DoShowMessage(const std::string& text);
    virtual std::string ReadClipboard() { return m_clipboard; }
    virtual std::int64_t ReadClock();

private:
    struct Posted {
        CWnd* window;
        UINT message;
        WPARAM w;
        LPARAM l;
    };
    struct Timer {
        CWnd* window;
        unsigned id;
        std::int64_t period, due;  // ticks
    };

    bool CatchUp(const CWnd& window);  // drains; false if the window has gone by it

    CWindowSystem* m_before = nullptr;  // the current one before this
    std::vector<CWnd*> m_windows;       // in the order of their making; borrowed
    std::deque<Posted> m_posted;
    std::vector<Timer> m_timers;
    CWnd* m_focus = nullptr;    // borrowed
    CWnd* m_capture = nullptr;  // borrowed
    UINT m_buttons = 0;         // those that are down, MK_ bits
    bool m_shift = false, m_control = false;
    std::int64_t m_now = 0;  // of the clock that is moved by hand
    std::map<std::pair<std::string, std::string>, std::string> m_settings;
};
