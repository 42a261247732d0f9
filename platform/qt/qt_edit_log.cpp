// The log of text: read, selected and copied, never written by hand.
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextCursor>
#include <QTextDocument>
#include <QWheelEvent>

#include "platform/qt/qt_peer.h"

namespace {

/// What a key says to somebody who waits for characters: also those that control.
std::string CharacterOf(const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Escape:
            return "\x1b";
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return "\r";
        case Qt::Key_Tab:
            return "\t";
        default:
            return TypedText(event);
    }
}

class QtEditLog : public QPlainTextEdit {
public:
    explicit QtEditLog(QWidget* parent) : QPlainTextEdit(parent) {
        setReadOnly(true);
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        setFrameShape(QFrame::NoFrame);
        setUndoRedoEnabled(false);
        setTabChangesFocus(false);
        setAcceptDrops(false);
        viewport()->setAcceptDrops(false);
        document()->setDocumentMargin(2);
    }

protected:
    bool event(QEvent* event) override {
        if (event->type() == QEvent::KeyPress) {
            keyPressEvent(static_cast<QKeyEvent*>(event));
            return true;
        }
        return QPlainTextEdit::event(event);
    }

    void keyPressEvent(QKeyEvent* event) override {
        event->accept();
        QtPeer* const peer = QtPeer::Of(this);
        const std::string typed = CharacterOf(*event);
        const bool function = event->key() >= Qt::Key_F1 && event->key() <= Qt::Key_F12;
        if (peer && (!typed.empty() || function)) peer->System().Input().Key(*peer, *event, typed);
        else QPlainTextEdit::keyPressEvent(event);
    }

    void focusInEvent(QFocusEvent* event) override {
        QPlainTextEdit::focusInEvent(event);
        if (QtPeer* const peer = QtPeer::Of(this)) peer->System().SetFocus(peer->Window());
    }

    void wheelEvent(QWheelEvent* event) override {
        const QPointer<QtEditLog> stands = this;
        if (QtPeer* const peer = QtPeer::Of(this)) peer->System().Input().Wheel(*peer, *event);
        if (stands) QPlainTextEdit::wheelEvent(event);
        event->accept();
    }
};

class QtEditLogPeer : public QtPeer {
public:
    QtEditLogPeer(CQtWindowSystem& system, CWnd& window, CWnd* parent, QtEditLog* log)
        : QtPeer(system, window, parent, WindowKind::kEditLog, log) {
        Recolour();
    }

    /// Text that goes on from what stands is put behind it, so that a selection stays.
    void SetText(const std::string& text) override {
        if (text == m_text || !m_widget) return;
        const bool goesOn = !m_text.empty() && text.starts_with(m_text);
        QString shown = ToQt(goesOn ? text.substr(m_text.size()) : text);
        shown.remove(u'\r');
        m_text = text;
        if (goesOn) {
            QTextCursor end(Log().document());
            end.movePosition(QTextCursor::End);
            end.insertText(shown);
        } else {
            Log().setPlainText(shown);
        }
    }

    void ScrollToEnd() override {
        if (m_widget) Log().verticalScrollBar()->setValue(Log().verticalScrollBar()->maximum());
    }

    void Recolour() override {
        if (!m_widget) return;
        Log().setPalette(EditPalette());
        Log().viewport()->setPalette(EditPalette());  // which a theme may have given one of its own
    }

private:
    QtEditLog& Log() const { return *static_cast<QtEditLog*>(m_widget.data()); }
};

}  // namespace

std::unique_ptr<QtPeer> MakeEditLogPeer(CQtWindowSystem& system, CWnd& window, CWnd* parent, QWidget* in) {
    return std::make_unique<QtEditLogPeer>(system, window, parent, new QtEditLog(in));
}
