// QtPeer: the screen's side of one window.
#pragma once
#include <QPalette>
#include <QPointer>
#include <QWidget>
#include <map>
#include <memory>
#include <string>

#include "platform/qt/qt_window_system.h"

class QTimer;

inline QString ToQt(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string FromQt(const QString& text) { return text.toStdString(); }

/// Owns the widget of a window. The widget goes later than the peer does: the peer may go in the midst of an
/// event of it, or while a dialog runs in one, so that even the widget may have gone when the event is done.
class QtPeer : public CWindowPeer {
public:
    QtPeer(CQtWindowSystem& system, CWnd& window, CWnd* parent, WindowKind kind, QWidget* widget);
    ~QtPeer() override;

    CPoint Origin() const override;
    void Move(const CRect& place) override;
    void Show(bool show) override;
    void Focus() override;
    void Cursor(HCURSOR cursor) override;
    void WarpPointer(CPoint client) override;
    void Tip(const std::string& text) override;
    std::string Text() const override;
    void SetText(const std::string& text) override;

    void StartTimer(unsigned id, int milliseconds);
    void StopTimer(unsigned id);
    void AskForCursor(CPoint client);  // has the window that takes the mouse there say which one shows now
    void ShowAtFirst();                // a window of its own comes to the screen with its first picture
    void UserResized();                // a window of its own has another size
    void UserMoved();
    virtual void Recolour() { m_window.Invalidate(); }  // the palette is another now

    QWidget* Widget() const { return m_widget; }
    CWnd& Window() { return m_window; }
    CQtWindowSystem& System() { return m_system; }
    bool IsTopLevel() const { return m_kind == WindowKind::kFrame || m_kind == WindowKind::kTool; }
    /// The peer of a widget; null for one that is no window of the system's, or whose window has gone.
    static QtPeer* Of(const QWidget* widget);

protected:
    CQtWindowSystem& m_system;
    WindowKind m_kind;
    QPointer<QWidget> m_widget;  // owned while it stands: a parent that goes takes it along

private:
    QPoint ParentOrigin() const;

    CRect OnScreen(CRect place) const;  // of a first window, where it can be seen whole

    std::map<unsigned, QPointer<QTimer>> m_timers;  // the widget's: one may be firing when this goes
    HCURSOR m_cursor = 0;
    bool m_waitsForPicture = false;
};

/// The colours of an edit control: those of the panes about it.
QPalette EditPalette();

// The peers that windows get
std::unique_ptr<QtPeer> MakeCanvasPeer(CQtWindowSystem& system, CWnd& window, CWnd* parent, WindowKind kind,
                                       QWidget* in);
std::unique_ptr<QtPeer> MakeEditLinePeer(CQtWindowSystem& system, CWnd& window, CWnd* parent, QWidget* in);
std::unique_ptr<QtPeer> MakeEditLogPeer(CQtWindowSystem& system, CWnd& window, CWnd* parent, QWidget* in);
