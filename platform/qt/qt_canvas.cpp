// The widgets that show pictures of the library's: views, panes, bars, and the windows that hold them.
#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QEnterEvent>
#include <QImage>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QPaintEvent>
#include <QPainter>
#include <QRegion>
#include <QUrl>
#include <algorithm>
#include <utility>
#include <vector>

#include "platform/canvas/surface.h"
#include "platform/qt/qt_peer.h"

namespace {

/// Shows a picture pixel by pixel and hands all events of its window over.
class QtCanvas : public QWidget {
public:
    QtCanvas(QWidget* parent, WindowKind kind) : QWidget(parent, FlagsOf(kind)) {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setAttribute(Qt::WA_NoSystemBackground);
        setAttribute(Qt::WA_InputMethodEnabled, false);
        setFocusPolicy(Qt::NoFocus);  // the command line keeps it; a window that wants it asks for it
        setMouseTracking(true);
        setAcceptDrops(true);
        if (isWindow()) setWindowTitle(QStringLiteral("tvo"));
    }

    /// Takes over what differs from the picture that shows; false when nothing does.
    bool Take(const CSurface& picture) {
        const int width = picture.Width(), height = picture.Height();
        m_density = picture.Density();
        if (m_image.width() != width || m_image.height() != height) {
            m_image = QImage(width, height, QImage::Format_RGB32);
            m_image.fill(palette().color(QPalette::Window));
        }
        QRegion changed;
        for (int top = 0; top < height; top += kTile) changed += TakeTiles(picture, top);
        if (changed.isEmpty()) return false;
        m_scaled = QImage();
        update(changed);
        return true;
    }

    /// Pixels of the picture for a unit of the window, along each side: as many as the screen has, or, where
    /// that is no whole number, more, which are then put together.
    int WantedDensity() const { return devicePixelRatioF() > 1 ? CSurface::kMaxDensity : 1; }

protected:
    // In the screen's own pixels, each of which is that of the picture; on a screen with parts of a unit the
    // picture is scaled down once, between the pixels that border this window.
    void paintEvent(QPaintEvent* event) override {
        if (WantedDensity() != m_density) AskForDensity();
        QPainter painter(this);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.setClipRegion(event->region());
        if (m_image.width() < width() * m_density || m_image.height() < height() * m_density)
            painter.fillRect(rect(), palette().color(QPalette::Window));  // its picture is on the way
        const qreal ratio = devicePixelRatioF();
        const QPoint at = mapTo(window(), QPoint(0, 0));
        const auto pixel = [&](int unit) { return qRound(unit * ratio); };
        const QPointF off(pixel(at.x()) - at.x() * ratio, pixel(at.y()) - at.y() * ratio);
        painter.scale(1 / ratio, 1 / ratio);
        painter.translate(off);
        if (ratio == m_density) {
            painter.drawImage(QPoint(0, 0), m_image);
            return;
        }
        const int units = std::max(m_density, 1);
        const QSize size(pixel(at.x() + m_image.width() / units) - pixel(at.x()),
                         pixel(at.y() + m_image.height() / units) - pixel(at.y()));
        if (m_scaled.size() != size)
            m_scaled = m_image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        painter.drawImage(QPoint(0, 0), m_scaled);
    }

    bool event(QEvent* event) override {
        QtPeer* const peer = QtPeer::Of(this);
        if (!peer) return QWidget::event(event);
        switch (event->type()) {
            case QEvent::MouseMove:
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonRelease:
            case QEvent::MouseButtonDblClick:
                event->accept();
                peer->System().Input().Mouse(*peer, *static_cast<QMouseEvent*>(event));
                return true;
            case QEvent::Wheel:
                event->accept();
                peer->System().Input().Wheel(*peer, *static_cast<QWheelEvent*>(event));
                return true;
            case QEvent::ShortcutOverride:
                event->accept();
                return true;
            case QEvent::KeyPress: {
                const auto& key = *static_cast<QKeyEvent*>(event);
                event->accept();
                peer->System().Input().Key(*peer, key, TypedText(key));
                return true;
            }
            case QEvent::Close:
                event->ignore();  // the window itself decides
                Close(*peer);
                return true;
            case QEvent::DragEnter:
            case QEvent::DragMove:
                Weigh(*static_cast<QDragMoveEvent*>(event));
                return true;
            case QEvent::Drop:
                Drop(*peer, *static_cast<QDropEvent*>(event));
                return true;
            case QEvent::UpdateRequest: {
                CQtWindowSystem& system = peer->System();
                const bool done = QWidget::event(event);
                system.Shown();
                return done;
            }
            default: {
                const QPointer<QtCanvas> stands = this;
                Tell(*peer, *event);
                return stands ? QWidget::event(event) : true;
            }
        }
    }

private:
    static Qt::WindowFlags FlagsOf(WindowKind kind) {
        return kind == WindowKind::kFrame ? Qt::Window : kind == WindowKind::kTool ? Qt::Dialog : Qt::Widget;
    }

    /// What the window learns of and the toolkit handles. The window may go by it.
    void Tell(QtPeer& peer, const QEvent& event) {
        CQtWindowSystem& system = peer.System();
        switch (event.type()) {
            case QEvent::Enter: {
                const QPointF at = static_cast<const QEnterEvent&>(event).position();
                peer.AskForCursor(PixelOf(at));
                break;
            }
            case QEvent::Leave:
                system.DeliverLeave(peer.Window());
                break;
            case QEvent::FocusIn:
                system.SetFocus(peer.Window());
                break;
            case QEvent::ActivationChange:
                if (isWindow()) system.Deliver(peer.Window(), WM_ACTIVATE, isActiveWindow(), 0);
                break;
            case QEvent::Resize:
                if (isWindow()) peer.UserResized();
                break;
            case QEvent::Move:
                if (isWindow()) peer.UserMoved();
                break;
            default:
                break;
        }
    }

    void Close(QtPeer& peer) {
        const QPointer<QtCanvas> stands = this;
        peer.System().Input().Flush();
        if (!stands) return;
        if (QtPeer* const left = QtPeer::Of(this)) left->System().DeliverClose(left->Window());
    }

    // The lines of a crosshair cross all of the window and change little of it: what comes to the screen is
    // gathered by squares of this side.
    static constexpr int kTile = 64;

    /// Takes over a row of squares; those that differed, in units of the window.
    QRegion TakeTiles(const CSurface& picture, int top) {
        const int width = picture.Width(), bottom = std::min(top + kTile, picture.Height());
        QRegion changed;
        for (int left = 0; left < width; left += kTile) {
            const int count = std::min(kTile, width - left);
            bool differs = false;
            for (int y = top; y < bottom; ++y) {
                const std::uint32_t* const from = picture.Row(y) + left;
                auto* const to = reinterpret_cast<std::uint32_t*>(m_image.scanLine(y)) + left;
                // Of a length that the compiler knows it does many pixels at once.
                if (count == kTile ? TakePixels(from, to, kTile) : TakePixels(from, to, count))
                    differs = true;
            }
            if (differs) changed += UnitsOf(QRect(left, top, count, bottom - top));
        }
        return changed;
    }

    // All differences are gathered before they are looked at: no way out amid the pixels.
    static inline bool TakePixels(const std::uint32_t* from, std::uint32_t* to, int count) {
        constexpr std::uint32_t kOpaque = 0xFF000000u;
        std::uint32_t differ = 0;
        for (int x = 0; x < count; ++x) differ |= to[x] ^ (from[x] | kOpaque);
        if (!differ) return false;
        for (int x = 0; x < count; ++x) to[x] = from[x] | kOpaque;
        return true;
    }

    QRect UnitsOf(const QRect& pixels) const {
        const int last = m_density - 1;
        return QRect(QPoint(pixels.left() / m_density, pixels.top() / m_density),
                     QPoint((pixels.right() + last) / m_density, (pixels.bottom() + last) / m_density))
            .adjusted(-last, -last, last, last);
    }

    // On another screen, or when the desktop changes it. Not while it is being painted.
    void AskForDensity() {
        if (std::exchange(m_asking, true)) return;
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_asking = false;
                if (QtPeer* const peer = QtPeer::Of(this)) peer->Window().Resized();
            },
            Qt::QueuedConnection);
    }

    static std::vector<std::string> FilesOf(const QMimeData& data) {
        std::vector<std::string> files;
        for (const QUrl& url : data.urls())
            if (url.isLocalFile()) files.push_back(FromQt(url.toLocalFile()));
        return files;
    }

    /// A dialog asks about what stands: no other file comes in between.
    static bool IsBlocked() { return QApplication::activeModalWidget() != nullptr; }

    static void Weigh(QDragMoveEvent& event) {
        if (IsBlocked() || FilesOf(*event.mimeData()).empty()) event.ignore();
        else event.acceptProposedAction();
    }

    void Drop(QtPeer& peer, QDropEvent& event) {
        const auto files = FilesOf(*event.mimeData());
        if (files.empty() || IsBlocked()) return event.ignore();
        event.acceptProposedAction();
        const QPointer<QtCanvas> stands = this;
        peer.System().Input().Flush();
        if (!stands) return;
        // The other program waits for the drop's end: a dialog that asks about the file must not hold it.
        QMetaObject::invokeMethod(
            this,
            [this, files] {
                QtPeer* const left = QtPeer::Of(this);
                if (left && !IsBlocked()) left->System().DeliverDrop(left->Window(), files);
            },
            Qt::QueuedConnection);
    }

    QImage m_image;   // what shows
    QImage m_scaled;  // the same in pixels of a screen with parts of a unit; null when it is not up to date
    int m_density = 1;
    bool m_asking = false;  // for a picture of another density
};

class QtCanvasPeer : public QtPeer {
public:
    QtCanvasPeer(CQtWindowSystem& system, CWnd& window, CWnd* parent, WindowKind kind, QtCanvas* canvas)
        : QtPeer(system, window, parent, kind, canvas) {}

    void Present(const CSurface& picture) override {
        if (!m_widget) return;
        if (Canvas().Take(picture)) m_system.Input().Drawn();
        ShowAtFirst();
    }

    void ShowNow() override {
        if (m_widget && m_widget->isVisible()) m_widget->repaint();
    }

    int Density() const override { return m_widget ? Canvas().WantedDensity() : 1; }

    std::shared_ptr<CSurface> Shown() const override {
        if (!m_widget) return nullptr;
        const QImage image = m_widget->grab().toImage().convertToFormat(QImage::Format_RGB32);
        auto shown = std::make_shared<CSurface>(image.width(), image.height());
        for (int y = 0; y < shown->Height(); ++y) {
            const auto* const from = reinterpret_cast<const std::uint32_t*>(image.constScanLine(y));
            std::transform(from, from + shown->Width(), shown->Row(y),
                           [](std::uint32_t p) { return p & 0xFFFFFFu; });
        }
        return shown;
    }

private:
    QtCanvas& Canvas() const { return *static_cast<QtCanvas*>(m_widget.data()); }
};

}  // namespace

std::unique_ptr<QtPeer> MakeCanvasPeer(CQtWindowSystem& system, CWnd& window, CWnd* parent, WindowKind kind,
                                       QWidget* in) {
    return std::make_unique<QtCanvasPeer>(system, window, parent, kind, new QtCanvas(in, kind));
}
