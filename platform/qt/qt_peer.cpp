#include "platform/qt/qt_peer.h"

#include <QDialog>
#include <QGuiApplication>
#include <QScreen>
#include <QTextDocument>
#include <QTimer>
#include <QToolTip>
#include <algorithm>

#include "platform/canvas/system_metrics.h"
#include "platform/qt/qt_cursors.h"

namespace {

constexpr const char* kPeerProperty = "tvoPeer";

}  // namespace

QtPeer::QtPeer(CQtWindowSystem& system, CWnd& window, CWnd* parent, WindowKind kind, QWidget* widget)
    : CWindowPeer(window, parent), m_system(system), m_kind(kind), m_widget(widget) {
    widget->setProperty(kPeerProperty, QVariant::fromValue(static_cast<void*>(this)));
    m_waitsForPicture = IsTopLevel();
    if (!IsTopLevel()) widget->show();
    if (kind == WindowKind::kFrame) system.FrameCame();
}

// A dialog that is asking above the window ends unanswered: it stands on the stack of whoever runs it, and
// must not go with the widget.
QtPeer::~QtPeer() {
    for (const auto& [id, timer] : m_timers)
        if (timer) timer->stop();
    if (m_widget) {
        for (QDialog* const dialog : m_widget->findChildren<QDialog*>()) {
            dialog->reject();
            dialog->setParent(nullptr);
        }
        m_widget->setProperty(kPeerProperty, QVariant());
        m_widget->hide();
        m_widget->deleteLater();
    }
    if (m_kind == WindowKind::kFrame) m_system.FrameWent();
}

QtPeer* QtPeer::Of(const QWidget* widget) {
    return widget ? static_cast<QtPeer*>(widget->property(kPeerProperty).value<void*>()) : nullptr;
}

QPalette EditPalette() {
    const auto role = [](int index) {
        const COLORREF color = GetSysColor(index);
        return QColor(static_cast<int>(color & 0xFF), static_cast<int>(color >> 8 & 0xFF),
                      static_cast<int>(color >> 16 & 0xFF));
    };
    QPalette palette = QGuiApplication::palette();
    palette.setColor(QPalette::Base, role(COLOR_WINDOW));
    palette.setColor(QPalette::Text, role(COLOR_WINDOWTEXT));
    palette.setColor(QPalette::Highlight, role(COLOR_HIGHLIGHT));
    palette.setColor(QPalette::HighlightedText, role(COLOR_HIGHLIGHTTEXT));
    return palette;
}

// ---- place ------------------------------------------------------------------------------------------------

QPoint QtPeer::ParentOrigin() const {
    if (!m_parent) return {};
    CPoint origin;
    m_parent->ClientToScreen(origin);
    return {origin.x, origin.y};
}

CPoint QtPeer::Origin() const {
    if (!m_widget) return {};
    const QPoint origin = m_widget->mapToGlobal(QPoint(0, 0));
    return {origin.x(), origin.y()};
}

void QtPeer::Move(const CRect& place) {
    const CSize before = Client();
    m_place = place;
    m_place.NormalizeRect();
    if (m_kind == WindowKind::kFrame && m_waitsForPicture) m_place = OnScreen(m_place);
    const CSize now = Client();
    if (m_widget) {
        const QPoint at = QPoint(m_place.left, m_place.top) + (IsTopLevel() ? ParentOrigin() : QPoint());
        m_widget->setGeometry(at.x(), at.y(), now.cx, now.cy);
    }
    if (now.cx != before.cx || now.cy != before.cy) m_window.Resized();
}

// What is larger than the screen leaves room for the title and the border that the desktop adds, as large as
// these usually are; a size that just fills the screen was meant so.
CRect QtPeer::OnScreen(CRect place) const {
    constexpr int kBorder = 4, kTitle = 32;
    const QScreen* const screen = QGuiApplication::primaryScreen();
    if (!screen || m_system.Options().m_scripted) return place;
    const QRect free = screen->availableGeometry();
    const auto size = [](int wanted, int most, int frame) {
        return wanted <= most ? wanted : std::max(most - frame, 1);
    };
    const auto from = [](int wanted, int low, int room) {
        return std::clamp(wanted, low, low + std::max(room, 0));
    };
    const int width = size(place.Width(), free.width(), 2 * kBorder);
    const int height = size(place.Height(), free.height(), kTitle + kBorder);
    const int left = from(place.left, free.left(), free.width() - width - kBorder);
    const int top = from(place.top, free.top(), free.height() - height - kBorder);
    return {left, top, left + width, top + height};
}

void QtPeer::UserResized() {
    const QSize size = m_widget->size();
    if (size == QSize(m_place.Width(), m_place.Height())) return;
    m_place.right = m_place.left + size.width();
    m_place.bottom = m_place.top + size.height();
    m_system.DeliverResize(m_window);
}

void QtPeer::UserMoved() {
    const QPoint at = m_widget->geometry().topLeft() - ParentOrigin();
    const int width = m_place.Width(), height = m_place.Height();
    m_place = CRect(at.x(), at.y(), at.x() + width, at.y() + height);
}

void QtPeer::Show(bool show) {
    m_shown = show;
    if (!m_widget || (m_waitsForPicture && show)) return;
    m_widget->setVisible(show);
}

void QtPeer::ShowAtFirst() {
    if (!m_waitsForPicture || !m_widget) return;
    m_waitsForPicture = false;
    if (m_shown) m_widget->show();
}

// ---- pointer and focus ------------------------------------------------------------------------------------

void QtPeer::Focus() {
    if (m_widget) m_widget->setFocus(Qt::OtherFocusReason);
}

void QtPeer::Cursor(HCURSOR cursor) {
    if (!m_widget || cursor == m_cursor) return;
    m_cursor = cursor;
    if (cursor) m_widget->setCursor(CursorPicture(cursor, m_widget->devicePixelRatioF()));
    else m_widget->unsetCursor();
}

void QtPeer::AskForCursor(CPoint client) {
    Cursor(m_system.MouseTarget(m_window, client).SendMessage(WM_SETCURSOR) ? GetCursor() : 0);
}

// Where there is no screen the pointer would stop at its edge, and report that it is there.
void QtPeer::WarpPointer(CPoint client) {
    if (!m_widget || !m_widget->isVisible() || m_system.Options().m_scripted) return;
    const QPoint global = m_widget->mapToGlobal(QPoint(client.x, client.y));
    if (!QGuiApplication::screenAt(global) || QCursor::pos() == global) return;
    m_system.Input().Warped(global);
    QCursor::setPos(global);
}

void QtPeer::Tip(const std::string& text) {
    if (!m_widget) return;
    QString tip = ToQt(text);
    if (Qt::mightBeRichText(tip)) tip = tip.toHtmlEscaped();
    if (m_widget->toolTip() == tip) return;
    m_widget->setToolTip(tip);
    if (QToolTip::isVisible()) QToolTip::hideText();
}

// ---- text -------------------------------------------------------------------------------------------------

std::string QtPeer::Text() const { return m_text; }

void QtPeer::SetText(const std::string& text) {
    m_text = text;
    if (m_widget && IsTopLevel()) m_widget->setWindowTitle(ToQt(text));
}

// ---- timers -----------------------------------------------------------------------------------------------

void QtPeer::StartTimer(unsigned id, int milliseconds) {
    auto& timer = m_timers[id];
    if (!m_widget) return;
    if (!timer) {
        timer = new QTimer(m_widget);
        QObject::connect(timer, &QTimer::timeout, m_widget, [widget = m_widget.data(), id] {
            if (QtPeer* const peer = QtPeer::Of(widget)) peer->System().DeliverTimer(peer->Window(), id);
        });
    }
    timer->start(std::max(milliseconds, 1));
}

void QtPeer::StopTimer(unsigned id) {
    const auto found = m_timers.find(id);
    if (found != m_timers.end() && found->second) found->second->stop();  // not deleted: it may be firing
}
