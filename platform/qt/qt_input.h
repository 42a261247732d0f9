// Qt's input events as those of the window system.
#pragma once
#include <QKeyEvent>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QWidget>
#include <QtGlobal>
#include <chrono>
#include <optional>
#include <string>

#include "platform/window_messages.h"

class CQtWindowSystem;
class QMouseEvent;
class QWheelEvent;
class CWnd;
class QtPeer;

/// The virtual key of a Qt key; 0 for one that has none.
UINT VirtualKey(int qtKey);
UINT ModifierBits(Qt::KeyboardModifiers modifiers);  // MK_SHIFT, MK_CONTROL
CPoint PixelOf(QPointF at);                          // the pixel that a place lies in
/// What a key types, in UTF-8: printable characters, "\b" for backspace; empty for all else.
std::string TypedText(const QKeyEvent& event);

/// Turns mouse, wheel and keys over to the window system. Of the moves that come while others wait the newest
/// alone is handed over; presses, releases, keys and the wheel never overtake one, nor are overtaken.
class QtInput {
public:
    explicit QtInput(CQtWindowSystem& system) : m_system(system) {}

    void Mouse(QtPeer& peer, const QMouseEvent& event);
    void Wheel(QtPeer& peer, const QWheelEvent& event);
    void Key(QtPeer& peer, const QKeyEvent& event, const std::string& text);
    void Flush();          // hands over the move that waits
    void Hold(bool hold);  // till it is let go again no move is handed over but by Flush
    /// The pointer was taken there by the program; the window system's own report of that is dropped.
    void Warped(QPoint global) { m_warped = global; }
    void Drawn() { m_drawn = true; }  // a picture has changed, and is on its way to the screen
    void Painted();                   // what the last event drew is on the screen

private:
    void Deliver(QtPeer& peer, UINT message, UINT keys, CPoint at,
                 std::chrono::steady_clock::time_point since);
    void Move(QtPeer& peer, const QMouseEvent& event);
    void FlushLater();
    void ReleaseLost(QtPeer& peer, const QMouseEvent& event);

    struct Waiting {
        QPointer<QWidget> widget;
        UINT keys;
        CPoint at;
        std::chrono::steady_clock::time_point since;
    };
    CQtWindowSystem& m_system;
    std::optional<Waiting> m_waiting;
    QObject m_queue;  // what is queued for it ends with this
    bool m_flushQueued = false;
    bool m_held = false;
    std::optional<QPoint> m_warped;
    const CWnd* m_lastWindow = nullptr;  // where the pointer was last told to be; only compared
    CPoint m_lastPlace;
    UINT m_down = 0;   // buttons that the window system takes for pressed, MK_ bits
    int m_turned = 0;  // of the wheel, less than a step
    QPointer<QWidget> m_wheelOver;

    /// When an event came whose picture is under way.
    struct Unpainted {
        bool move;  // else a press or a release
        std::chrono::steady_clock::time_point since;
    };
    std::optional<Unpainted> m_unpainted;
    bool m_drawn = false;  // since the last event was handed over
};
