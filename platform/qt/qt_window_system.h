// CQtWindowSystem: windows on the screen, through Qt.
#pragma once
#include <QApplication>
#include <QObject>
#include <QPointer>
#include <QTranslator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/qt/qt_input.h"
#include "platform/qt/qt_module.h"
#include "platform/window_system.h"

class QtPeer;

/// Holds the application so that it outlives the windows, which go in the destructor of the window system.
class QtApplicationHolder {
protected:
    QtApplicationHolder(int* argc, char** argv);
    ~QtApplicationHolder();

    std::unique_ptr<QApplication> m_application;
    QTranslator m_translator;
};

/// The system on a screen. It shows pictures and hands over events; every decision is the library's.
class CQtWindowSystem : private QtApplicationHolder, public CWindowSystem {
public:
    CQtWindowSystem(int* argc, char** argv, const TvoQtOptions& options);
    ~CQtWindowSystem() override;

    std::unique_ptr<CWindowPeer> MakePeer(CWnd& window, WindowKind kind, CWnd* parent) override;
    void Wake() override;
    void ShowNow() override;
    int RunLoop() override;
    void Quit() override;
    std::int64_t TicksPerSecond() override { return 1000000; }
    void StartTimer(CWnd& window, unsigned id, int milliseconds) override;
    void StopTimer(CWnd& window, unsigned id) override;
    void ShowBusy(bool busy) override;
    bool RunProgram(const std::vector<std::string>& arguments, bool wait) override;
    ProcessOutput CallProgram(const std::vector<std::string>& arguments, int milliseconds) override;
    std::optional<std::string> ReadSetting(const std::string& path, const std::string& name) override;
    void WriteSetting(const std::string& path, const std::string& name, const std::string& value) override;
    void SetClipboardText(const std::string& text) override;

    // --- for peers and widgets
    QtInput& Input() { return m_input; }
    const TvoQtOptions& Options() const { return m_options; }
    /// A parentless child window that is made next lies in this widget.
    void EmbedIn(QWidget* widget) { m_embed = widget; }
    QWidget* TopWindow() const;  // the one that dialogs belong to; may be null
    QWidget* Frame() const;      // the one that tools stay above; may be null
    void FrameCame() { ++m_frames; }
    void FrameWent();  // with the last one the loop ends
    void PaletteChanged();
    void Shown();  // something stands on the screen

protected:
    int DoDialog(DialogForm& form) override;
    void DoShowMessage(const std::string& text) override;
    std::optional<std::string> DoAskPath(const PathRequest& request) override;
    std::string ReadClipboard() override;
    std::int64_t ReadClock() override;

private:
    TvoQtOptions m_options;
    QtInput m_input;
    /// Calls queued for it end with the system; it sees the surroundings change.
    class Hook : public QObject {
    public:
        explicit Hook(CQtWindowSystem& system) : m_system(system) {}
        bool eventFilter(QObject* watched, QEvent* event) override;

    private:
        CQtWindowSystem& m_system;
    };
    Hook m_hook{*this};
    QPointer<QWidget> m_embed;  // see EmbedIn
    int m_frames = 0;           // that stand
    bool m_awake = false;       // a call of Drain is queued
    bool m_busy = false;        // the wait cursor shows
    bool m_shown = false;
};
