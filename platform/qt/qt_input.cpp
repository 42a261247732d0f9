#include "platform/qt/qt_input.h"

#include <QMouseEvent>
#include <QWheelEvent>
#include <cmath>

#include "platform/qt/qt_peer.h"

namespace {

struct ButtonMessages {
    Qt::MouseButton button;
    UINT bit, press, twice, release;
};
constexpr ButtonMessages kButtons[] = {
    {Qt::LeftButton, MK_LBUTTON, WM_LBUTTONDOWN, WM_LBUTTONDBLCLK, WM_LBUTTONUP},
    {Qt::MiddleButton, MK_MBUTTON, WM_MBUTTONDOWN, WM_MBUTTONDOWN, WM_MBUTTONUP},
    {Qt::RightButton, MK_RBUTTON, WM_RBUTTONDOWN, WM_RBUTTONDOWN, WM_RBUTTONUP},
};

}  // namespace

CPoint PixelOf(QPointF at) {
    return {static_cast<int>(std::floor(at.x())), static_cast<int>(std::floor(at.y()))};
}

// ---- keys -------------------------------------------------------------------------------------------------

UINT VirtualKey(int qtKey) {
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F12) return VK_F1 + static_cast<UINT>(qtKey - Qt::Key_F1);
    if ((qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9))
        return static_cast<UINT>(qtKey);  // the same numbers
    switch (qtKey) {
        case Qt::Key_Backspace:
            return VK_BACK;
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            return VK_TAB;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return VK_RETURN;
        case Qt::Key_Escape:
            return VK_ESCAPE;
        case Qt::Key_Space:
            return VK_SPACE;
        case Qt::Key_PageUp:
            return VK_PRIOR;
        case Qt::Key_PageDown:
            return VK_NEXT;
        case Qt::Key_End:
            return VK_END;
        case Qt::Key_Home:
            return VK_HOME;
        case Qt::Key_Left:
            return VK_LEFT;
        case Qt::Key_Up:
            return VK_UP;
        case Qt::Key_Right:
            return VK_RIGHT;
        case Qt::Key_Down:
            return VK_DOWN;
        case Qt::Key_Delete:
            return VK_DELETE;
        default:
            return 0;
    }
}

UINT ModifierBits(Qt::KeyboardModifiers modifiers) {
    return (modifiers & Qt::ShiftModifier ? MK_SHIFT : 0u) |
           (modifiers & Qt::ControlModifier ? MK_CONTROL : 0u);
}

// Ctrl with Alt is what some keyboards make of the key beside the space bar, which does type.
std::string TypedText(const QKeyEvent& event) {
    if (event.key() == Qt::Key_Backspace) return "\b";
    const bool control = event.modifiers() & Qt::ControlModifier, alt = event.modifiers() & Qt::AltModifier;
    if (control != alt) return {};
    const QString text = event.text();
    if (text.isEmpty() || text[0] < QChar(0x20) || text[0] == QChar(0x7F)) return {};
    return FromQt(text);
}

void QtInput::Key(QtPeer& peer, const QKeyEvent& event, const std::string& text) {
    const QPointer<QWidget> widget = peer.Widget();
    const UINT key = VirtualKey(event.key());
    if (!key && text.empty()) return;
    Flush();
    if (!QtPeer::Of(widget)) return;
    const UINT bits = ModifierBits(event.modifiers());
    m_system.DeliverKey(peer.Window(), key, bits & MK_SHIFT, bits & MK_CONTROL, text);
}

// ---- mouse ------------------------------------------------------------------------------------------------

void QtInput::Mouse(QtPeer& peer, const QMouseEvent& event) {
    if (event.type() == QEvent::MouseMove) return Move(peer, event);
    const QPointer<QWidget> widget = peer.Widget();
    Flush();
    const bool warped = std::exchange(m_warped, std::nullopt) == event.globalPosition().toPoint();
    for (const ButtonMessages& button : kButtons) {
        if (event.button() != button.button || !QtPeer::Of(widget)) continue;
        const UINT message = event.type() == QEvent::MouseButtonRelease    ? button.release
                             : event.type() == QEvent::MouseButtonDblClick ? button.twice
                                                                           : button.press;
        // A pointer that came here while a dialog had it, or by no move of its own, is here for the view too.
        const CPoint place = PixelOf(event.position());
        if (message != button.release && !warped &&
            (m_lastWindow != &peer.Window() || place != m_lastPlace)) {
            m_lastWindow = &peer.Window();
            m_lastPlace = place;
            m_system.DeliverMouse(peer.Window(), WM_MOUSEMOVE, ModifierBits(event.modifiers()), place);
            if (!QtPeer::Of(widget)) return;
        }
        m_down = message == button.release ? m_down & ~button.bit : m_down | button.bit;
        Deliver(peer, message, ModifierBits(event.modifiers()), place, std::chrono::steady_clock::now());
    }
    if (QtPeer* const stands = QtPeer::Of(widget)) stands->AskForCursor(PixelOf(event.position()));
}

// A dialog that opens at a press gets the release: it would be down for ever.
void QtInput::ReleaseLost(QtPeer& peer, const QMouseEvent& event) {
    const QPointer<QWidget> widget = peer.Widget();
    for (const ButtonMessages& button : kButtons) {
        if (!(m_down & button.bit) || (event.buttons() & button.button) || !QtPeer::Of(widget)) continue;
        m_down &= ~button.bit;
        m_system.DeliverMouse(peer.Window(), button.release, ModifierBits(event.modifiers()),
                              PixelOf(event.position()));
    }
}

void QtInput::Move(QtPeer& peer, const QMouseEvent& event) {
    if (m_warped) {
        const bool echo = *m_warped == event.globalPosition().toPoint();
        m_warped.reset();
        if (echo) {
            m_lastWindow = &peer.Window();
            m_lastPlace = PixelOf(event.position());
            return;
        }
    }
    const auto now = std::chrono::steady_clock::now();
    const QPointer<QWidget> widget = peer.Widget();
    if (m_waiting && m_waiting->widget != widget) Flush();
    if (!QtPeer::Of(widget)) return;
    ReleaseLost(peer, event);
    if (!QtPeer::Of(widget)) return;
    m_waiting = {widget, ModifierBits(event.modifiers()), PixelOf(event.position()),
                 m_waiting ? m_waiting->since : now};
    FlushLater();
}

void QtInput::FlushLater() {
    if (std::exchange(m_flushQueued, true)) return;
    QMetaObject::invokeMethod(
        &m_queue,
        [this] {
            m_flushQueued = false;
            if (!m_held) Flush();
        },
        Qt::QueuedConnection);
}

void QtInput::Hold(bool hold) {
    m_held = hold;
    if (!hold && m_waiting) FlushLater();
}

void QtInput::Flush() {
    if (!m_waiting) return;
    const Waiting move = *m_waiting;
    m_waiting.reset();
    QtPeer* const peer = QtPeer::Of(move.widget);
    if (!peer) return;
    m_lastWindow = &peer->Window();
    m_lastPlace = move.at;
    Deliver(*peer, WM_MOUSEMOVE, move.keys, move.at, move.since);
    if (QtPeer* const stands = QtPeer::Of(move.widget)) stands->AskForCursor(move.at);
}

// ---- how long it takes ------------------------------------------------------------------------------------

// An event that changes nothing, as a move on the way to a point that is snapped to, has nothing to be shown.
// A press or release that comes before the picture of a move counts for itself.
void QtInput::Deliver(QtPeer& peer, UINT message, UINT keys, CPoint at,
                      std::chrono::steady_clock::time_point since) {
    const auto before = m_unpainted;
    const bool move = message == WM_MOUSEMOVE;
    if (!before || !move) m_unpainted = {move, since};
    m_drawn = false;
    m_system.DeliverMouse(peer.Window(), message, keys, at);
    if (!m_drawn && m_unpainted) m_unpainted = before;
}

void QtInput::Painted() {
    if (!m_unpainted) return;
    const Unpainted shown = *std::exchange(m_unpainted, std::nullopt);
    const auto took = std::chrono::steady_clock::now() - shown.since;
    if (m_system.Options().m_mouseShown)
        m_system.Options().m_mouseShown(shown.move,
                                        std::chrono::duration_cast<std::chrono::microseconds>(took).count());
}

// ---- the wheel --------------------------------------------------------------------------------------------

// Wheels of high resolution turn by parts of a step: these add up. Each whole step is an event of its own,
// since each zooms once.
void QtInput::Wheel(QtPeer& peer, const QWheelEvent& event) {
    constexpr int kStep = 120;
    const QPointer<QWidget> widget = peer.Widget();
    Flush();
    const int turn = event.angleDelta().y();
    if (m_wheelOver != widget || (turn > 0) != (m_turned > 0)) m_turned = 0;
    m_wheelOver = widget;
    m_turned += turn;
    const QPoint global = event.globalPosition().toPoint();
    for (; std::abs(m_turned) >= kStep; m_turned -= m_turned > 0 ? kStep : -kStep) {
        if (!QtPeer::Of(widget)) return;
        m_system.DeliverWheel(peer.Window(), ModifierBits(event.modifiers()), m_turned > 0 ? kStep : -kStep,
                              {global.x(), global.y()});
    }
}
