#include "platform/qt/qt_window_system.h"

#include <fcntl.h>
#include <unistd.h>

#include <QClipboard>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QScreen>
#include <QSocketNotifier>
#include <QTimer>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <utility>

#include "platform/canvas/system_metrics.h"
#include "platform/process.h"
#include "platform/qt/qt_dialog.h"
#include "platform/qt/qt_peer.h"

namespace {

QtPeer& PeerOf(CWnd& window) { return *static_cast<QtPeer*>(window.Peer()); }

/// Those that stand; one that goes by a visit is passed over.
template <class F>
void ForEachPeer(F visit) {
    std::vector<QPointer<QWidget>> widgets;
    for (QWidget* const widget : QApplication::allWidgets()) widgets.emplace_back(widget);
    for (const auto& widget : widgets)
        if (QtPeer* const peer = QtPeer::Of(widget)) visit(*peer);
}

/// Ends the loop when the program is told to go. While it stands the signals only write to a pipe.
class SignalDoor {
public:
    explicit SignalDoor(std::function<void()> leave) {
        if (::pipe2(s_pipe, O_CLOEXEC | O_NONBLOCK) != 0) return;
        m_notifier = std::make_unique<QSocketNotifier>(s_pipe[0], QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated,
                         [leave = std::move(leave)] { leave(); });
        struct sigaction action {};
        action.sa_handler = [](int) {
            const int kept = errno;
            [[maybe_unused]] const auto written = ::write(s_pipe[1], "x", 1);
            errno = kept;
        };
        for (std::size_t i = 0; i < 2; ++i) ::sigaction(kSignals[i], &action, &m_before[i]);
    }
    ~SignalDoor() {
        if (!m_notifier) return;
        for (std::size_t i = 0; i < 2; ++i) ::sigaction(kSignals[i], &m_before[i], nullptr);
        m_notifier.reset();
        ::close(s_pipe[0]);
        ::close(s_pipe[1]);
    }

private:
    static constexpr int kSignals[2] = {SIGINT, SIGTERM};
    static inline int s_pipe[2] = {-1, -1};
    struct sigaction m_before[2]{};
    std::unique_ptr<QSocketNotifier> m_notifier;
};

QString FilterOf(const PathRequest& request) {
    const QString all = QStringLiteral("所有文件 (*)");
    if (request.m_pattern.empty()) return all;
    return ToQt(request.m_description + " (" + request.m_pattern + ")") + QStringLiteral(";;") + all;
}

/// The extension that a name gets when it is typed without: that of the first pattern.
QString SuffixOf(const PathRequest& request) {
    const QString first = ToQt(request.m_pattern).section(u' ', 0, 0);
    return first.startsWith(QStringLiteral("*.")) ? first.mid(2) : QString();
}

/// The kinds of files in words of the user's, which Qt's translation leaves English.
class FileKinds : public QFileIconProvider {
public:
    QString type(const QFileInfo& info) const override {
        return info.isDir() ? QStringLiteral("文件夹") : info.suffix().toUpper() + QStringLiteral(" 文件");
    }
};

}  // namespace

// ---- life -------------------------------------------------------------------------------------------------

// Qt's own answer to a display that it can't reach is to abort.
QtApplicationHolder::QtApplicationHolder(int* argc, char** argv) {
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (type != QtFatalMsg) return;
            const std::string message =
                "error: the editor's window cannot be shown: " + FromQt(text.section(u'\n', 0, 0)) +
                "\nCheck DISPLAY or WAYLAND_DISPLAY, or work without a screen: tvo play, tvo run.\n";
            [[maybe_unused]] const auto written = ::write(STDERR_FILENO, message.data(), message.size());
            ::_exit(1);
        });
    QCoreApplication::setApplicationName(QStringLiteral("tvo"));
    QGuiApplication::setDesktopFileName(QStringLiteral("tvo"));
    QGuiApplication::setQuitOnLastWindowClosed(false);  // the frames are counted here
    m_application = std::make_unique<QApplication>(*argc, argv);
    qInstallMessageHandler(before);
    // The words of the toolkit's own dialogs; without the file they stay English.
    if (m_translator.load(QStringLiteral("qtbase_zh_CN"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_translator);
}

QtApplicationHolder::~QtApplicationHolder() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

CQtWindowSystem::CQtWindowSystem(int* argc, char** argv, const TvoQtOptions& options)
    : QtApplicationHolder(argc, argv), m_options(options), m_input(*this) {
    if (const QScreen* const screen = QGuiApplication::primaryScreen()) {
        const QSize whole = screen->size(), free = screen->availableSize();
        SetSystemMetrics(SM_CXSCREEN, whole.width());
        SetSystemMetrics(SM_CYSCREEN, whole.height());
        SetSystemMetrics(SM_CXFULLSCREEN, free.width());
        SetSystemMetrics(SM_CYFULLSCREEN, free.height());
    }
    PaletteChanged();
    m_application->installEventFilter(&m_hook);
}

// The windows go while the system is whole: their peers tell it.
CQtWindowSystem::~CQtWindowSystem() {
    ShowBusy(false);
    ForEachPeer([](QtPeer& peer) { peer.Window().DestroyWindow(); });
}

std::unique_ptr<CWindowPeer> CQtWindowSystem::MakePeer(CWnd& window, WindowKind kind, CWnd* parent) {
    QWidget* const in = parent                      ? PeerOf(*parent).Widget()
                        : kind == WindowKind::kTool ? Frame()
                                                    : m_embed.data();
    switch (kind) {
        case WindowKind::kEditLine:
            return MakeEditLinePeer(*this, window, parent, in);
        case WindowKind::kEditLog:
            return MakeEditLogPeer(*this, window, parent, in);
        default:
            return MakeCanvasPeer(*this, window, parent, kind, in);
    }
}

QWidget* CQtWindowSystem::TopWindow() const {
    if (QWidget* const modal = QApplication::activeModalWidget()) return modal;
    if (QWidget* const active = QApplication::activeWindow()) return active;
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (QtPeer::Of(widget) && widget->isVisible()) return widget;
    return nullptr;
}

// Not a dialog, which goes while the tool stays.
QWidget* CQtWindowSystem::Frame() const {
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        QtPeer* const peer = QtPeer::Of(widget);
        if (peer && peer->Window().Kind() == WindowKind::kFrame) return widget;
    }
    return nullptr;
}

void CQtWindowSystem::FrameWent() {
    if (--m_frames == 0) Quit();
}

// ---- the loop ---------------------------------------------------------------------------------------------

void CQtWindowSystem::Wake() {
    if (std::exchange(m_awake, true)) return;
    QMetaObject::invokeMethod(
        &m_hook,
        [this] {
            m_awake = false;
            Drain();
        },
        Qt::QueuedConnection);
}

void CQtWindowSystem::ShowNow() {
    m_input.Hold(true);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    m_input.Hold(false);
}

int CQtWindowSystem::RunLoop() {
    if (m_frames == 0) return 0;
    const SignalDoor door([this] { Quit(); });
    Wake();
    return QApplication::exec();
}

void CQtWindowSystem::Quit() { QCoreApplication::exit(0); }

std::int64_t CQtWindowSystem::ReadClock() {
    if (m_options.m_scripted) return CWindowSystem::ReadClock();
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

void CQtWindowSystem::StartTimer(CWnd& window, unsigned id, int milliseconds) {
    if (m_options.m_scripted) CWindowSystem::StartTimer(window, id, milliseconds);
    else if (window.Peer()) PeerOf(window).StartTimer(id, milliseconds);
}

void CQtWindowSystem::StopTimer(CWnd& window, unsigned id) {
    if (m_options.m_scripted) CWindowSystem::StopTimer(window, id);
    else if (window.Peer()) PeerOf(window).StopTimer(id);
}

void CQtWindowSystem::Shown() {
    m_input.Painted();
    if (!std::exchange(m_shown, true) && m_options.m_firstPicture) m_options.m_firstPicture();
}

// ---- surroundings -----------------------------------------------------------------------------------------

void CQtWindowSystem::ShowBusy(bool busy) {
    if (std::exchange(m_busy, busy) == busy) return;
    if (busy) QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    else QGuiApplication::restoreOverrideCursor();
}

bool CQtWindowSystem::Hook::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) m_system.PaletteChanged();
    return false;
}

void CQtWindowSystem::PaletteChanged() {
    UsePalette(QGuiApplication::palette().color(QPalette::Window).lightness() < 128);
    const auto recolour = [] { ForEachPeer([](QtPeer& peer) { peer.Recolour(); }); };
    recolour();
    // A theme that hands its palette to each control afterwards does not have the last word.
    QMetaObject::invokeMethod(&m_hook, recolour, Qt::QueuedConnection);
}

std::optional<std::string> CQtWindowSystem::ReadSetting(const std::string& path, const std::string& name) {
    return m_options.m_readSetting ? m_options.m_readSetting(path, name)
                                   : CWindowSystem::ReadSetting(path, name);
}

void CQtWindowSystem::WriteSetting(const std::string& path, const std::string& name,
                                   const std::string& value) {
    if (m_options.m_writeSetting) m_options.m_writeSetting(path, name, value);
    else CWindowSystem::WriteSetting(path, name, value);
}

std::string CQtWindowSystem::ReadClipboard() {
    return m_options.m_scripted ? CWindowSystem::ReadClipboard()
                                : FromQt(QGuiApplication::clipboard()->text());
}

void CQtWindowSystem::SetClipboardText(const std::string& text) {
    CWindowSystem::SetClipboardText(text);
    if (!m_options.m_scripted) QGuiApplication::clipboard()->setText(ToQt(text));
}

bool CQtWindowSystem::RunProgram(const std::vector<std::string>& arguments, bool wait) {
    return m_options.m_scripted ? CWindowSystem::RunProgram(arguments, wait) : RunProcess(arguments, wait);
}

ProcessOutput CQtWindowSystem::CallProgram(const std::vector<std::string>& arguments, int milliseconds) {
    if (m_options.m_scripted) return CWindowSystem::CallProgram(arguments, milliseconds);
    const ProcessOutput output = ReadProcess(arguments, milliseconds);
    if (m_watcher) m_watcher->OnProgram(output);
    return output;
}

// ---- what the user is asked -------------------------------------------------------------------------------

void CQtWindowSystem::DoShowMessage(const std::string& text) {
    if (m_options.m_scripted) return CWindowSystem::DoShowMessage(text);
    QMessageBox box(QMessageBox::Information, QStringLiteral("tvo"), ToQt(text), QMessageBox::NoButton,
                    TopWindow());
    box.setTextFormat(Qt::PlainText);
    box.addButton(QStringLiteral("确定"), QMessageBox::AcceptRole);
    box.exec();
}

int CQtWindowSystem::DoDialog(DialogForm& form) {
    return m_options.m_scripted ? CWindowSystem::DoDialog(form) : RunQtDialog(*this, TopWindow(), form);
}

std::optional<std::string> CQtWindowSystem::DoAskPath(const PathRequest& request) {
    if (m_options.m_scripted) return CWindowSystem::DoAskPath(request);
    FileKinds kinds;  // the dialog borrows it
    QFileDialog dialog(TopWindow(), ToQt(request.m_title), QString(), FilterOf(request));
    dialog.setIconProvider(&kinds);
    dialog.resize(780, 520);  // room for dates
    dialog.setAcceptMode(request.m_save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(request.m_save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (request.m_save) dialog.setDefaultSuffix(SuffixOf(request));
    dialog.setLabelText(QFileDialog::Accept,
                        request.m_save ? QStringLiteral("保存") : QStringLiteral("打开"));
    dialog.setLabelText(QFileDialog::Reject, QStringLiteral("取消"));
    dialog.setLabelText(QFileDialog::FileName, QStringLiteral("文件名:"));
    dialog.setLabelText(QFileDialog::FileType, QStringLiteral("文件类型:"));
    dialog.setLabelText(QFileDialog::LookIn, QStringLiteral("位置:"));
    if (!request.m_proposed.empty()) {
        const QFileInfo proposed(ToQt(request.m_proposed));
        if (proposed.isAbsolute() || ToQt(request.m_proposed).contains(u'/'))
            dialog.setDirectory(proposed.absolutePath());
        dialog.selectFile(proposed.fileName());
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return FromQt(dialog.selectedFiles().first());
}
