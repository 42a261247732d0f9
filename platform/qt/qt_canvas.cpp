// The widgets that show pictures of the library's: views, panes, bars, and the windows that hold them.
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QImage>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QPaintEvent>
#include <QPainter>
#include <QUrl>
#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/canvas/surface.h"
#include "platform/qt/qt_peer.h"

namespace {

QString TitlelessName() { return QStringLiteral("tvo"); }

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
        if (isWindow()) setWindowTitle(TitlelessName());
    }

    /// Takes over what differs from the picture that shows.
    void Take(const CSurface& picture) {
        const int width = picture.Width(), height = picture.Height();
        if (m_image.width() != width || m_image.height() != height) {
            m_image = QImage(width, height, QImage::Format_RGB32);
            m_image.fill(Qt::white);
        }
        QRect changed;
        for (int y = 0; y < height; ++y) {
            const QRect part = TakeRow(picture.Row(y), y, width);
            if (part.isValid()) changed = changed.united(part);
        }
        if (changed.isValid()) update(changed);
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        for (const QRect& part : event->region()) {
            painter.drawImage(part.topLeft(), m_image, part);
            if (!m_image.rect().contains(part)) FillBeside(painter, part);
        }
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
            case QEvent::ShortcutOverride: event->accept(); return true;
            case QEvent::KeyPress: {
                const auto& key = *static_cast<QKeyEvent*>(event);
                event->accept();
                peer->System().Input().Key(*peer, key, TypedText(key));
                return true;
            }
            case QEvent::Enter: peer->AskForCursor(); break;
            case QEvent::FocusIn: peer->System().SetFocus(peer->Window()); break;
            case QEvent::ActivationChange:
                if (isWindow()) peer->System().Deliver(peer->Window(), WM_ACTIVATE, isActiveWindow(), 0);
                break;
            case QEvent::Resize:
                if (isWindow()) peer->UserResized();
                break;
            case QEvent::Move:
                if (isWindow()) peer->UserMoved();
                break;
            case QEvent::Close:
                event->ignore();  // the window itself decides
                peer->System().Input().Flush();
                peer->System().DeliverClose(peer->Window());
                return true;
            case QEvent::DragEnter:
            case QEvent::DragMove: Weigh(*static_cast<QDragMoveEvent*>(event)); return true;
            case QEvent::Drop: Drop(*peer, *static_cast<QDropEvent*>(event)); return true;
            case QEvent::UpdateRequest: {
                CQtWindowSystem& system = peer->System();
                const bool done = QWidget::event(event);
                system.Shown();
                return done;
            }
            default: break;
        }
        return QWidget::event(event);
    }

private:
    static Qt::WindowFlags FlagsOf(WindowKind kind) {
        return kind == WindowKind::kFrame ? Qt::Window : kind == WindowKind::kTool ? Qt::Dialog : Qt::Widget;
    }

    QRect TakeRow(const std::uint32_t* from, int y, int width) {
        constexpr std::uint32_t kOpaque = 0xFF000000u;
        auto* const to = reinterpret_cast<std::uint32_t*>(m_image.scanLine(y));
        int left = 0, right = width;
        while (left < right && to[left] == (from[left] | kOpaque)) ++left;
        while (right > left && to[right - 1] == (from[right - 1] | kOpaque)) --right;
        for (int x = left; x < right; ++x) to[x] = from[x] | kOpaque;
        return {left, y, right - left, 1};
    }

    // Between a change of the size and its picture
    void FillBeside(QPainter& painter, const QRect& part) {
        for (const QRect& bare : QRegion(part).subtracted(m_image.rect()))
            painter.fillRect(bare, palette().color(QPalette::Window));
    }

    static std::vector<std::string> FilesOf(const QMimeData& data) {
        std::vector<std::string> files;
        for (const QUrl& url : data.urls())
            if (url.isLocalFile()) files.push_back(FromQt(url.toLocalFile()));
        return files;
    }

    static void Weigh(QDragMoveEvent& event) {
        if (FilesOf(*event.mimeData()).empty()) event.ignore();
        else event.acceptProposedAction();
    }

    void Drop(QtPeer& peer, QDropEvent& event) {
        const auto files = FilesOf(*event.mimeData());
        if (files.empty()) return;
        event.acceptProposedAction();
        CQtWindowSystem& system = peer.System();
        system.Input().Flush();
        // The other program waits for the drop's end: a dialog that asks about the file must not hold it.
        QMetaObject::invokeMethod(
            this,
            [this, files] {
                if (QtPeer* const stands = QtPeer::Of(this)) stands->System().DeliverDrop(stands->Window(), files);
            },
            Qt::QueuedConnection);
    }

    QImage m_image;  // what shows
};

class QtCanvasPeer : public QtPeer {
public:
    QtCanvasPeer(CQtWindowSystem& system, CWnd& window, CWnd* parent, WindowKind kind, QtCanvas* canvas)
        : QtPeer(system, window, parent, kind, canvas) {}

    void Present(const CSurface& picture) override {
        if (!m_widget) return;
        static_cast<QtCanvas*>(m_widget.data())->Take(picture);
        ShowAtFirst();
    }

    std::shared_ptr<CSurface> Shown() const override {
        if (!m_widget) return nullptr;
        const QImage image = m_widget->grab().toImage().convertToFormat(QImage::Format_RGB32);
        auto shown = std::make_shared<CSurface>(image.width(), image.height());
        for (int y = 0; y < shown->Height(); ++y) {
            const auto* const from = reinterpret_cast<const std::uint32_t*>(image.constScanLine(y));
            std::transform(from, from + shown->Width(), shown->Row(y), [](std::uint32_t p) { return p & 0xFFFFFFu; });
        }
        return shown;
    }
};

}  // namespace

std::unique_ptr<QtPeer> MakeCanvasPeer(CQtWindowSystem& system, CWnd& window, CWnd* parent, WindowKind kind, QWidget* in) {
    return std::make_unique<QtCanvasPeer>(system, window, parent, kind, new QtCanvas(in, kind));
}
