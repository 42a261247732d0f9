// Windows of the toolkit that go in the midst of their own events, and keys while an input method composes.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QEventLoop>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSlider>
#include <QTimer>
#include <QTreeWidget>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

#include "platform/canvas/system_metrics.h"
#include "platform/qt/qt_module.h"
#include "platform/window_system.h"

// What these libraries keep to the end of the process is theirs.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\nleak:libQt6\nleak:libdbus\nleak:libglib\n";
}

namespace {

/// The window system of the module, on a screen that nobody sees; one for the process.
class QtWindows : public ::testing::Environment {
public:
    void SetUp() override {
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
        void* const module = ::dlopen(TVO_QT_MODULE, RTLD_NOW | RTLD_LOCAL);
        ASSERT_TRUE(module) << ::dlerror();
        auto* const make = reinterpret_cast<TvoMakeWindowSystem*>(::dlsym(module, kTvoMakeWindowSystem));
        ASSERT_TRUE(make);
        m_system.reset(make(&m_count, m_arguments, nullptr));
    }
    void TearDown() override { m_system.reset(); }

private:
    char m_name[4] = "tvo";
    char* m_arguments[2] = {m_name, nullptr};
    int m_count = 1;
    std::unique_ptr<CWindowSystem> m_system;
};
const auto* const g_windows = ::testing::AddGlobalTestEnvironment(new QtWindows);

class Probe : public CWnd {
public:
    ~Probe() override { DestroyWindow(); }
    std::function<void()> m_happens = [] {};

protected:
    void OnTimer(unsigned) override { m_happens(); }
    void OnLButtonDown(UINT, CPoint) override { m_happens(); }
    void OnMouseLeave() override { m_happens(); }
    void OnClose() override { m_happens(); }
};

QWidget* WidgetOf(const char* title) {
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (widget->windowTitle() == QLatin1String(title)) return widget;
    return nullptr;
}

/// Has the toolkit work till something is so; false if it never is.
bool Comes(const std::function<bool()>& so) {
    QEventLoop loop;
    QTimer look;
    int turns = 0;
    QObject::connect(&look, &QTimer::timeout, [&] {
        if (so() || ++turns > 5000) loop.quit();
    });
    look.start(1);
    loop.exec();
    return so();
}

void Send(QWidget& widget, QEvent&& event) { QCoreApplication::sendEvent(&widget, &event); }

void Key(QWidget& widget, int key, const char* text) {
    Send(widget, QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier, QString::fromLatin1(text)));
}

}  // namespace

TEST(QtWindows, GoInTheMidstOfTheirOwnEvents) {
    const struct {
        const char* name;
        std::function<void(Probe&, QWidget&)> event;
    } events[] = {
        {"a timer", [](Probe& window, QWidget&) { window.SetTimer(1, 1); }},
        {"a press",
         [](Probe&, QWidget& widget) {
             Send(widget, QMouseEvent(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton,
                                      Qt::LeftButton, Qt::NoModifier));
         }},
        {"the pointer leaves", [](Probe&, QWidget& widget) { Send(widget, QEvent(QEvent::Leave)); }},
        {"it is closed", [](Probe&, QWidget& widget) { widget.close(); }},
    };
    CWindowSystem& system = *CWindowSystem::Current();
    for (const bool asks : {false, true}) {
        for (const auto& row : events) {
            SCOPED_TRACE(std::string(row.name) + (asks ? ", while a dialog asks in it" : ""));
            Probe window;
            ASSERT_TRUE(window.Create(nullptr, CRect(0, 0, 200, 100), WindowKind::kTool));
            window.SetWindowText("probe");
            const QPointer<QWidget> widget = WidgetOf("probe");
            ASSERT_TRUE(widget);
            int button = -2;
            bool happened = false;
            window.m_happens = [&] {
                if (std::exchange(happened, true)) return;
                if (!asks) return window.DestroyWindow();
                QTimer::singleShot(1, [&] { window.DestroyWindow(); });
                DialogForm form;
                button = system.RunDialog(form);
            };
            QTimer::singleShot(0,
                               [&] { row.event(window, *widget); });  // from within the loop, as all events
            EXPECT_TRUE(Comes([&] { return !widget; }));
            EXPECT_EQ(button, asks ? -1 : -2);
        }
    }
}

TEST(QtWindows, KeysActOnlyWhenNothingIsComposed) {
    class Line : public CEdit {
    public:
        std::string m_keys;

    protected:
        void OnKeyDown(UINT key, LPARAM) override { m_keys += std::to_string(key) + " "; }
    };
    const auto compose = [](QWidget& line, const char16_t* letters, const char16_t* done) {
        QInputMethodEvent event(QString::fromUtf16(letters), {});
        event.setCommitString(QString::fromUtf16(done));
        QCoreApplication::sendEvent(&line, &event);
    };
    Probe window;
    Line edit;
    window.Create(nullptr, CRect(0, 0, 200, 100), WindowKind::kTool);
    window.SetWindowText("probe");
    edit.Create(&window, CRect(0, 0, 200, 20), WindowKind::kEditLine);
    auto* const line = WidgetOf("probe")->findChild<QLineEdit*>();
    ASSERT_TRUE(line);
    const auto keys = [&] {
        Key(*line, Qt::Key_Space, " ");
        Key(*line, Qt::Key_Return, "\r");
        Key(*line, Qt::Key_Escape, "\x1b");
        return std::exchange(edit.m_keys, {});
    };
    compose(*line, u"zhixian", u"");
    EXPECT_EQ(keys(), "") << "letters are being composed";
    compose(*line, u"", u"直线");
    EXPECT_STREQ(edit.GetWindowText().GetString(), " 直线")
        << "a blank that the input method lets pass is text";
    EXPECT_EQ(keys(), "32 13 27 ") << "they have become text";
    compose(*line, u"zhi", u"");
    edit.SetWindowText("圆");
    EXPECT_EQ(keys(), "32 13 27 ") << "the program has set another text";
    edit.DestroyWindow();
}

TEST(QtWindows, ColoursFollowTheDesktopWhileTheyStand) {
    class Pane : public CWnd {
    public:
        ~Pane() override { DestroyWindow(); }
        int m_told = 0;

    protected:
        void OnSysColorChange() override { ++m_told; }
    } pane;
    CEdit log;
    pane.Create(nullptr, CRect(0, 0, 200, 100), WindowKind::kTool);
    pane.SetWindowText("pane");
    log.Create(&pane, CRect(0, 0, 200, 50), WindowKind::kEditLog);
    auto* const text = WidgetOf("pane")->findChild<QPlainTextEdit*>();
    ASSERT_TRUE(text);
    const auto ground = [&] {
        const QColor colour = text->viewport()->palette().color(QPalette::Base);
        return RGB(colour.red(), colour.green(), colour.blue());
    };
    const QPalette light = QApplication::palette();
    const COLORREF before = GetSysColor(COLOR_BTNFACE);
    QApplication::setPalette(QPalette(QColor(40, 40, 40)));
    EXPECT_TRUE(Comes([&] { return GetSysColor(COLOR_BTNFACE) != before; }));
    EXPECT_EQ(pane.m_told, 1);
    QCoreApplication::processEvents();
    EXPECT_EQ(ground(), GetSysColor(COLOR_WINDOW));
    QApplication::setPalette(light);
    EXPECT_TRUE(Comes([&] { return GetSysColor(COLOR_BTNFACE) == before; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(ground(), GetSysColor(COLOR_WINDOW));
    log.DestroyWindow();
}

TEST(QtWindows, DialogsTellEachStepOfASliderAndEachTick) {
    class Preview : public CView {
    public:
        ~Preview() override { DestroyWindow(); }
        void OnDraw(CDC*) override { ++m_drawn; }
        int m_drawn = 0;
    } preview;
    using Kind = DialogField::Kind;
    DialogForm form;
    form.m_fields = {{Kind::kFrame, "frame", "框", "", {}},
                     {Kind::kPreview, "preview", "", "", {}},
                     {Kind::kSlider, "size", "大小", "17", {}, 5, 65},
                     {Kind::kTicks, "layers", "", "01", {"A\t1", "一个很长的名字\t2"}, 0, 0, {"图层", "数"}},
                     {Kind::kWarning, "warning", "", "", {}}};
    form.m_preview = &preview;
    std::string told;
    form.m_check = [&](DialogForm& f) {
        told += f.Value("size") + "/" + f.Value("layers") + " ";
        f.SetValue("warning", f.Value("size") == "65" ? "大" : "");
        preview.Invalidate();
        return std::string();
    };
    std::string warned;
    QTimer::singleShot(0, [&] {
        auto* const dialog = QApplication::activeModalWidget();
        auto* const slider = dialog->findChild<QSlider*>();
        auto* const list = dialog->findChild<QTreeWidget*>("layers");
        auto* const warning = dialog->findChild<QLabel*>("warning");
        const int drawn = preview.m_drawn;
        warned += warning->isVisible() ? "1" : "0";
        slider->setValue(30);
        slider->setValue(1000);
        warned += warning->isVisible() ? "1" : "0";
        list->topLevelItem(0)->setCheckState(0, Qt::Checked);
        EXPECT_EQ(list->topLevelItem(1)->toolTip(0), QString::fromUtf8("一个很长的名字"));
        EXPECT_TRUE(Comes([&] { return preview.m_drawn > drawn; }));
        dialog->findChild<QPushButton*>()->click();
    });
    EXPECT_EQ(CWindowSystem::Current()->RunDialog(form), 0);
    EXPECT_EQ(told, "17/01 30/01 65/01 65/11 ");
    EXPECT_EQ(warned, "01");
    EXPECT_EQ(form.Value("size") + form.Value("layers"), "6511");
}
