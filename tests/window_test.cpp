// Windows and their messages on the system without a screen.
#include "platform/window.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/canvas/client_dc.h"
#include "platform/window_system.h"

namespace {

constexpr UINT kWork = 0x501;

/// Writes down what reaches it; what a message makes it do stands in m_react.
class Recorder : public CView {
public:
    explicit Recorder(std::vector<std::string>& log, std::string name = "")
        : m_log(log), m_name(std::move(name)) {}
    ~Recorder() override { DestroyWindow(); }

    LRESULT WindowProc(UINT message, WPARAM w, LPARAM l) override {
        if (message == kWork) Note("work " + std::to_string(w));
        if (message == kWork && m_react) m_react(w);
        return CView::WindowProc(message, w, l);
    }
    void OnDraw(CDC*) override {
        Note("paint");
        if (m_paints) m_paints();
    }
    void OnSize(int width, int height) override {
        Note("size " + std::to_string(width) + "x" + std::to_string(height));
    }
    void OnTimer(unsigned id) override { Note("timer " + std::to_string(id)); }
    void OnLButtonDown(UINT, CPoint p) override {
        Note("down " + At(p));
        PostMessage(kWork, 1);
        PostMessage(kWork, 2);
    }
    void OnLButtonUp(UINT, CPoint p) override { Note("up " + At(p)); }
    void OnMouseMove(UINT, CPoint p) override { Note("move " + At(p)); }
    void OnKeyDown(UINT key, LPARAM) override {
        Note(std::string(IsKeyDown(VK_SHIFT) ? "shift " : "") + (IsKeyDown(VK_CONTROL) ? "control " : "") +
             std::to_string(key));
    }

    std::function<void(WPARAM)> m_react;
    std::function<void()> m_paints;

private:
    static std::string At(CPoint p) { return std::to_string(p.x) + "," + std::to_string(p.y); }
    void Note(const std::string& what) { m_log.push_back(m_name + what); }
    std::vector<std::string>& m_log;
    std::string m_name;
};

using Log = std::vector<std::string>;

struct WindowTest : testing::Test {
    CWindowSystem system;
    Log log;
    Log Taken() { return std::exchange(log, {}); }
};

TEST_F(WindowTest, PostedMessagesPrecedeInputAndPaintComesLast) {
    Recorder view(log);
    ASSERT_TRUE(view.Create(nullptr, {10, 20, 110, 70}, WindowKind::kView));
    system.Drain();
    EXPECT_EQ(Taken(), (Log{"size 100x50", "paint"}));
    view.m_react = [&](WPARAM w) {
        view.Invalidate();
        if (w == 1) view.PostMessage(kWork, 3);
    };
    system.DeliverMouse(view, WM_LBUTTONDOWN, 0, {3, 4});
    system.DeliverMouse(view, WM_MOUSEMOVE, 0, {5, 4});
    EXPECT_EQ(Taken(), (Log{"down 3,4", "work 1", "work 2", "work 3", "paint", "move 5,4"}));
    // The pointer may be taken anywhere; its move waits behind what is posted.
    view.m_react = nullptr;
    view.PostMessage(kWork, 4);
    view.SetCursorPos({-70000, 90000});
    system.Drain();
    EXPECT_EQ(Taken(), (Log{"work 4", "move -70000,90000"}));
    // So does an event, behind what was posted outside of any.
    view.PostMessage(kWork, 5);
    system.DeliverMouse(view, WM_MOUSEMOVE, 0, {1, 1});
    EXPECT_EQ(Taken(), (Log{"work 5", "move 1,1"}));
    // A window that is marked while it is painted waits for the next event.
    view.m_paints = [&] { view.Invalidate(); };
    view.Invalidate();
    system.Drain();
    EXPECT_EQ(Taken(), Log{"paint"});
    view.m_paints = nullptr;
    system.DeliverKey(view, VK_F1, true, false, "");
    EXPECT_EQ(Taken(), (Log{"shift 112", "paint"}));
    // One that posts for ever gives the others their turn.
    view.m_react = [&](WPARAM w) { view.PostMessage(kWork, w); };
    view.PostMessage(kWork, 9);
    system.Drain();
    EXPECT_EQ(Taken().size(), static_cast<std::size_t>(CWindowSystem::kMostMessages));
    view.m_react = nullptr;
    system.Drain();
    EXPECT_TRUE(system.IsIdle());
}

TEST_F(WindowTest, PlacesCaptureAndPictures) {
    Recorder frame(log, "frame "), view(log, "view "), other(log, "other ");
    frame.Create(nullptr, {100, 100, 900, 700}, WindowKind::kFrame);
    view.Create(&frame, {10, 20, 410, 320}, WindowKind::kView);
    other.Create(&frame, {500, 20, 600, 120}, WindowKind::kPane);
    system.Drain();
    Taken();
    CPoint p(5, 5);
    view.ClientToScreen(p);
    EXPECT_EQ(p, CPoint(115, 125));
    EXPECT_EQ(view.GetWindowRect(), CRect(110, 120, 510, 420));
    view.ScreenToClient(p);
    EXPECT_EQ(p, CPoint(5, 5));
    // While the button is down all goes to the one that has the capture, in its own coordinates.
    system.DeliverMouse(view, WM_LBUTTONDOWN, 0, {1, 1});
    view.SetCapture();
    system.DeliverMouse(other, WM_MOUSEMOVE, 0, {2, 3});
    system.DeliverMouse(other, WM_LBUTTONUP, 0, {2, 3});
    EXPECT_EQ(GetCapture(), nullptr) << "no button is down";
    system.DeliverMouse(other, WM_MOUSEMOVE, 0, {2, 3});
    EXPECT_EQ(Taken(), (Log{"view down 1,1", "view work 1", "view work 2", "view move 492,3", "view up 492,3",
                            "other move 2,3"}));
    // The picture is as large as the client area, and never nothing.
    EXPECT_EQ(CClientDC(&view).Surface()->Width(), 400);
    view.MoveWindow({0, 0, 0, 0});
    EXPECT_EQ(CClientDC(&view).Surface()->Width(), 1);
    EXPECT_EQ(view.GetClientRect(), CRect());
    view.MoveWindow({0, 0, 30, 40});
    view.MoveWindow({5, 5, 35, 45});  // moved, not resized
    system.Drain();
    EXPECT_EQ(Taken(), (Log{"view size 0x0", "view size 30x40", "view paint"}));
}

TEST_F(WindowTest, TimersFireInTheirOrder) {
    Recorder view(log);
    view.Create(nullptr, {0, 0, 10, 10}, WindowKind::kView);
    system.Drain();
    Taken();
    view.SetTimer(1, 50);
    view.SetTimer(2, 30);
    system.Advance(100);
    EXPECT_EQ(Taken(), (Log{"timer 2", "timer 1", "timer 2", "timer 2", "timer 1"}));
    view.KillTimer(2);
    const auto before = QueryPerformanceCounter();
    system.Advance(50);
    EXPECT_EQ(Taken(), Log{"timer 1"});
    EXPECT_DOUBLE_EQ(static_cast<double>(QueryPerformanceCounter() - before) /
                         static_cast<double>(QueryPerformanceFrequency()),
                     0.05);
}

TEST_F(WindowTest, EditsTakeTextAndKeys) {
    CEdit edit;
    EXPECT_EQ(edit.GetWindowText(), "") << "before it stands";
    edit.Create(nullptr, {0, 0, 100, 17}, WindowKind::kEditLine);
    system.DeliverKey(edit, 0, false, false, "a轴\r\t€");
    EXPECT_EQ(edit.GetWindowText(), "a轴€");
    system.DeliverKey(edit, VK_BACK, false, false, "\b");
    system.DeliverKey(edit, VK_BACK, false, false, "\b\xFF\xE8");  // and bytes that are no text
    EXPECT_EQ(edit.GetWindowText(), "a");
    edit.AppendText("bc");
    EXPECT_EQ(edit.GetWindowText(), "abc");
    edit.DestroyWindow();
    edit.SetWindowText("nowhere");
    EXPECT_EQ(edit.GetWindowText(), "");
}

TEST(Windows, AreHarmlessWithoutASystemAndAfterIt) {
    Log log;
    Recorder never(log);
    EXPECT_FALSE(never.Create(nullptr, {0, 0, 10, 10}, WindowKind::kView));
    EXPECT_FALSE(never.PostMessage(kWork));
    EXPECT_EQ(CClientDC(&never).GetPixel(0, 0), CLR_INVALID);
    never.Invalidate();
    never.SetFocus();
    never.SetCapture();
    EXPECT_TRUE(log.empty());
    Recorder outlives(log);
    {
        CWindowSystem system;
        outlives.Create(nullptr, {0, 0, 10, 10}, WindowKind::kView);
        {
            CWindowSystem inner;
            outlives.PostMessage(kWork, 1);
            Recorder gone(log, "gone ");
            gone.Create(nullptr, {0, 0, 5, 5}, WindowKind::kView);
            gone.PostMessage(kWork, 2);
        }
        log.clear();
        system.Drain();
        EXPECT_EQ(log, Log{"paint"}) << "what was posted in a system went with it";
    }
    EXPECT_FALSE(outlives.IsWindow());
    outlives.Invalidate();
}

}  // namespace
