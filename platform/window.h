// CWnd and what derives from it: windows, without a word about the toolkit that shows them.
#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/string.h"
#include "platform/win_types.h"
#include "platform/window_messages.h"

class CDC;
class CSurface;
class CWindowPeer;

/// What a window is to the system that shows it.
/// kFrame is the program's window, kTool another window of its own that stays above that; the rest lie in
/// their parents.
enum class WindowKind { kFrame, kTool, kView, kPane, kBar, kEditLine, kEditLog };

/// A mouse cursor, by number; 0 is none.
using HCURSOR = int;
constexpr HCURSOR IDC_ARROW = 32512, IDC_WAIT = 32514, IDC_SIZEWE = 32644, IDC_SIZENS = 32645;

/// A window: it owns its peer in the window system and the picture of its client area. Without a peer, before
/// Create or with no window system at all, every call is harmless: it shows nothing, posts nothing, and its
/// client area is empty.
///
/// Messages come one at a time: posted ones in their order, an input event only when none is waiting,
/// painting last.
class CWnd {
public:
    CWnd();
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;
    virtual ~CWnd();

    // --- life
    /// Makes the window at a place in its parent's client area (on the screen without one) and sends
    /// WM_CREATE and WM_SIZE. 0 when there is no window system.
    BOOL Create(CWnd* parent, const CRect& place, WindowKind kind);
    /// Sends WM_DESTROY, and takes the windows that lie in it down first; what is posted to it and not delivered yet is
    /// dropped.
    void DestroyWindow();
    BOOL IsWindow() const { return m_peer != nullptr; }
    CWnd* GetParent() const { return m_parent; }
    CWindowPeer* Peer() const { return m_peer.get(); }  // null without a window
    WindowKind Kind() const { return m_kind; }          // what it was made as

    // --- messages
    BOOL PostMessage(UINT message, WPARAM w = 0, LPARAM l = 0);     // 0 without a window
    LRESULT SendMessage(UINT message, WPARAM w = 0, LPARAM l = 0);  // at once, also without a window
    /// Hands a message to its handler below. Derived classes take theirs out and pass on the rest.
    virtual LRESULT WindowProc(UINT message, WPARAM w, LPARAM l);

    // --- place
    CRect GetClientRect() const;  // from (0, 0); empty without a window
    CRect GetWindowRect() const;  // on the screen
    void ClientToScreen(CPoint& p) const;
    void ScreenToClient(CPoint& p) const;
    void MoveWindow(const CRect& place);
    void ShowWindow(BOOL show);
    BOOL IsWindowVisible() const { return m_peer && m_shown; }

    // --- text: the title of a window of its own, what stands in an edit control
    CString GetWindowText() const;  // empty without a window
    void SetWindowText(const CString& text);
    void SetTip(const CString& text);  // shown at the pointer after a while; empty: none

    // --- painting
    /// Marks a part (null: all) of the client area for repainting. The window is repainted whole, once, when
    /// no message is waiting.
    virtual void InvalidateRect(const CRect* rect, BOOL erase);
    void Invalidate(BOOL erase = TRUE) { InvalidateRect(nullptr, erase); }
    void UpdateWindow();  // now, if marked
    bool IsInvalid() const { return m_invalid; }
    /// The picture of the client area, as large as this is and as dense as the screen; null without a window. What is
    /// drawn there shows at the end of the input event.
    const std::shared_ptr<CSurface>& ClientSurface() const { return m_surface; }
    void ShowLater() { m_unshown = true; }  // something was drawn on the picture

    // --- input
    /// Whether the mouse is this window's at a point of its client area, though a window that lies in it covers that.
    virtual bool Grips(const CPoint&) const { return false; }
    void SetFocus();
    void SetCapture();  // mouse events go to this window till the capture is released or no button is down
    /// Takes the pointer to a pixel of the client area, or outside of it. The move comes back as a message,
    /// behind those that are waiting, with this very pixel.
    void SetCursorPos(const CPoint& p);
    void SetTimer(unsigned id, int milliseconds);  // WM_TIMER again and again
    void KillTimer(unsigned id);

    /// For the window system: the client area has another size or density now.
    void Resized();

protected:
    // --- handlers; keys and buttons as MK_ bits, points in the client area
    virtual int OnCreate() { return 0; }
    virtual void OnDestroy() {}
    /// The user closes this window of its own. By default it goes.
    virtual void OnClose() { DestroyWindow(); }
    virtual void OnActivate(bool /*active*/) {}
    /// Files were dropped here; 0 passes them on to the parent.
    virtual BOOL OnDropFiles(const std::vector<std::string>& /*files*/) { return 0; }
    virtual void OnSize(int /*width*/, int /*height*/) {}
    virtual void OnSetFocus() {}
    virtual void OnSysColorChange() {}  // another palette is in force; a repaint follows
    /// A command of a menu or a tool bar, by its number; 0 when it is none of this window's.
    virtual BOOL OnCommand(int /*id*/) { return 0; }
    virtual void OnPaint() {}
    virtual BOOL OnEraseBkgnd(CDC*) { return 1; }
    virtual BOOL OnSetCursor() { return 0; }
    virtual void OnKeyDown(UINT /*key*/, LPARAM /*flags*/) {}
    virtual void OnChar(UINT /*code*/) {}
    virtual void OnTimer(unsigned /*id*/) {}
    virtual void OnMouseMove(UINT /*keys*/, CPoint) {}
    virtual void OnMouseLeave() {}  // the pointer has left the window
    virtual void OnLButtonDown(UINT /*keys*/, CPoint) {}
    virtual void OnLButtonUp(UINT /*keys*/, CPoint) {}
    /// The second press of a double click, in the place of OnLButtonDown.
    virtual void OnLButtonDblClk(UINT keys, CPoint p) { OnLButtonDown(keys, p); }
    virtual void OnMButtonDown(UINT /*keys*/, CPoint) {}
    virtual void OnMButtonUp(UINT /*keys*/, CPoint) {}
    virtual void OnRButtonDown(UINT /*keys*/, CPoint) {}
    virtual void OnRButtonUp(UINT /*keys*/, CPoint) {}
    virtual BOOL OnMouseWheel(UINT /*keys*/, int /*delta*/, CPoint /*screen*/) { return 0; }

private:
    friend class CWindowSystem;
    void Paint();    // WM_PAINT, unless it is being painted already
    void Present();  // the picture to the screen, if anything was drawn

    std::unique_ptr<CWindowPeer> m_peer;  // owned; null without a window
    std::shared_ptr<CSurface> m_surface;  // picture of the client area
    CWnd* m_parent = nullptr;             // borrowed
    bool m_invalid = false;               // to be repainted
    bool m_painting = false;              // WM_PAINT is on its way
    bool m_unshown = false;               // the picture has changed since it was shown
    bool m_shown = true;                  // not hidden by ShowWindow
    WindowKind m_kind = WindowKind::kFrame;
};

/// A window that shows something of its host's: it draws all of itself in OnDraw.
class CView : public CWnd {
public:
    virtual void OnDraw(CDC* dc) = 0;
    /// Once, when all panes of the frame stand.
    virtual void OnInitialUpdate() {}

protected:
    void OnPaint() override;
};

/// A line or a log of text. The text is the system's, which may have an input method of its own.
class CEdit : public CWnd {
public:
    void AppendText(const CString& text);  // the caret behind it
    void ScrollToEnd();

protected:
    /// Types a character. A derived class keeps to itself those that are keys and no text.
    void OnChar(UINT code) override;
};

HCURSOR SetCursor(HCURSOR cursor);  // makes a cursor the one that is shown; returns the one before
HCURSOR GetCursor();
CWnd* GetCapture();  // the window that has the mouse, or null
void ReleaseCapture();
bool IsKeyDown(UINT key);  // VK_SHIFT, VK_CONTROL: as it was at the event that is being handled
/// Ticks of the clock, and how many make a second: those of the window system, else the processor's steady
/// clock.
std::int64_t QueryPerformanceCounter();
std::int64_t QueryPerformanceFrequency();
