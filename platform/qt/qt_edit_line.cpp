// The line of text: a line edit of the toolkit, with its caret, its clipboard and the input methods of the
// desktop.
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWheelEvent>
#include <utility>

#include "platform/qt/qt_peer.h"

namespace {

/// Keys that the line itself has a use for when its window has seen them.
bool IsLineKey(const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_Insert:
        case Qt::Key_Delete:
            return true;
        default:
            return event.modifiers() & Qt::ControlModifier && TypedText(event).empty();
    }
}

class QtEditLine : public QLineEdit {
public:
    explicit QtEditLine(QWidget* parent) : QLineEdit(parent) {
        setFrame(false);
        setTextMargins(0, 0, 0, 0);
        setAcceptDrops(false);  // files go to the window below
        QObject::connect(this, &QLineEdit::textEdited, [this] { MakeOneLine(); });
    }

    /// Another text; what is being composed goes.
    void Replace(const QString& text) {
        if (std::exchange(m_composing, false)) QGuiApplication::inputMethod()->reset();
        setText(text);
    }

    /// One character at the caret, in the place of what is selected; 8 takes one away.
    void Type(UINT code) {
        const char32_t character = code;
        if (code == VK_BACK) backspace();
        else if (code >= 32 && code != 127) insert(QString::fromUcs4(&character, 1));
    }

protected:
    bool event(QEvent* event) override {
        // Tab would go to the next widget before anybody is asked.
        if (event->type() == QEvent::KeyPress) {
            keyPressEvent(static_cast<QKeyEvent*>(event));
            return true;
        }
        if (event->type() == QEvent::ShortcutOverride) {
            event->accept();
            return true;
        }
        return QLineEdit::event(event);
    }

    // Keys act only when nothing is being composed. The window has them first, characters included; those it
    // wants typed come back through Type.
    void keyPressEvent(QKeyEvent* event) override {
        QtPeer* const peer = QtPeer::Of(this);
        event->accept();
        if (m_composing) return QLineEdit::keyPressEvent(event);
        if (!peer) return;
        const QPointer<QtEditLine> stands = this;
        peer->System().Input().Key(*peer, *event, TypedText(*event));
        if (!stands || !QtPeer::Of(this)) return;
        if (IsLineKey(*event)) QLineEdit::keyPressEvent(event);
        event->accept();
    }

    void inputMethodEvent(QInputMethodEvent* event) override {
        m_composing = !event->preeditString().isEmpty();
        QLineEdit::inputMethodEvent(event);
    }

    void focusInEvent(QFocusEvent* event) override {
        QLineEdit::focusInEvent(event);
        if (QtPeer* const peer = QtPeer::Of(this)) peer->System().SetFocus(peer->Window());
    }

    void focusOutEvent(QFocusEvent* event) override {
        m_composing = false;
        QLineEdit::focusOutEvent(event);
    }

    void wheelEvent(QWheelEvent* event) override {
        event->accept();
        if (QtPeer* const peer = QtPeer::Of(this)) peer->System().Input().Wheel(*peer, *event);
    }

private:
    // Lines that are pasted become one.
    void MakeOneLine() {
        QString one = text();
        one.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
        for (QChar& c : one)
            if (c < QChar(0x20) || c == QChar::LineSeparator || c == QChar::ParagraphSeparator) c = u' ';
        if (one != text()) setText(one);
    }

    bool m_composing = false;  // by an input method
};

class QtEditLinePeer : public QtPeer {
public:
    QtEditLinePeer(CQtWindowSystem& system, CWnd& window, CWnd* parent, QtEditLine* line)
        : QtPeer(system, window, parent, WindowKind::kEditLine, line) {
        Line().setPalette(EditPalette());
    }

    std::string Text() const override { return m_widget ? FromQt(Line().text()) : std::string(); }
    void SetText(const std::string& text) override {
        if (m_widget && Text() != text) Line().Replace(ToQt(text));
    }
    void TypeCharacter(UINT code) override {
        if (m_widget) Line().Type(code);
    }

    // The letters keep to the height of the line.
    void Move(const CRect& place) override {
        QtPeer::Move(place);
        if (!m_widget) return;
        QFont font = Line().font();
        font.setPixelSize(std::clamp(m_place.Height() - 4, 8, 14));
        Line().setFont(font);
    }

    void Recolour() override {
        if (m_widget) Line().setPalette(EditPalette());
    }

private:
    QtEditLine& Line() const { return *static_cast<QtEditLine*>(m_widget.data()); }
};

}  // namespace

std::unique_ptr<QtPeer> MakeEditLinePeer(CQtWindowSystem& system, CWnd& window, CWnd* parent, QWidget* in) {
    return std::make_unique<QtEditLinePeer>(system, window, parent, new QtEditLine(in));
}
