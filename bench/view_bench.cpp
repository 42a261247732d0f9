// The interactive view on a window of 1920 x 1080: the base map, a move of the mouse, a step of the wheel. Processor time,
// the least of several runs.
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

#include "model/profile.h"
#include "net/grid_data_base.h"
#include "platform/canvas/client_dc.h"
#include "platform/window_system.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

namespace {

double ProcessorSeconds() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

double BestMilliseconds(int runs, const std::function<void()>& work) {
    double best = 1e9;
    for (int run = 0; run < runs; ++run) {
        const double start = ProcessorSeconds();
        work();
        best = std::min(best, ProcessorSeconds() - start);
    }
    return best * 1e3;
}

void Row(const std::string& what, double milliseconds, const char* goal) {
    std::printf("| %-66s | %9.3f ms | %-6s |\n", what.c_str(), milliseconds, goal);
    std::fflush(stdout);
}

/// A frame whose view has 1920 by 1080 pixels, over a net of crossing axes, 1 m apart.
class Desk {
public:
    /// `axes` each way, so that there are 2 axes (axes + 1) lines.
    explicit Desk(int axes) : m_axes(axes) {
        m_db.DestroyData();
        m_db.Initialize();
        m_db.m_bAutoBreak = 0;  // drawn in pieces: the same net, and soon
        const auto at = [](int i) { return static_cast<float>(i) * 1000; };
        for (int i = 0; i <= axes; ++i)
            for (int j = 0; j < axes; ++j) {
                m_db.AddNetLine(CFPoint(at(i), at(j), 0), CFPoint(at(i), at(j + 1), 0), 0, 0);
                m_db.AddNetLine(CFPoint(at(j), at(i), 0), CFPoint(at(j + 1), at(i), 0), 0, 0);
            }
        m_frame.m_bShowScrnMenu = 0;
        m_db.m_pFrame = &m_frame;
        m_frame.Create(nullptr, {0, 0, 1920, 1080 + 165}, WindowKind::kFrame);
        m_frame.CreatePanes(&m_db);
        View().m_bShowGrid = 0;
        View()._Svr_Extends();
        m_system.Drain();
    }
    ~Desk() { m_db.m_pFrame = nullptr; }
    CTvoViewMgr& View() { return *m_frame.GetDtView(); }
    int Lines() { return m_db.GetGouJianCount(GJLX_NET_LINE); }
    /// Shows a square of the model with this many axes, in its middle.
    void ShowAxes(double axes) {
        const float middle = static_cast<float>(m_axes) * 500, half = static_cast<float>(axes) * 500;
        View()._Fun_ShowRect({middle - half, middle - half, 0}, {middle + half, middle + half, 0}, 1, 0);
        m_system.Drain();
    }
    double BaseMap() {
        CClientDC dc(&View());
        return BestMilliseconds(5, [&] { View().CreateBaseMap(&dc); });
    }
    double Move() {
        View().m_nWorkState = 1;  // snapping works while a command runs
        View().m_bObjectSnap = View().m_bGridSnap = 1;
        constexpr int kMoves = 400;
        const double all = BestMilliseconds(3, [&] {
            for (int i = 0; i < kMoves; ++i)
                m_system.DeliverMouse(View(), WM_MOUSEMOVE, 0, {200 + i * 3, 150 + i * 2});
        });
        View().m_nWorkState = 0;
        return all / kMoves;
    }
    double Refresh() {
        return BestMilliseconds(5, [&] { View().RefreshViewPort(); });
    }

private:
    CWindowSystem m_system;
    CGridDataBase m_db;
    CTvoFrameBase m_frame;
    int m_axes;
};

}  // namespace

int main() {
    std::printf("| %-66s | %12s | %-6s |\n|---|---|---|\n", "view of 1920 x 1080", "time", "goal");
    g_cTvoProfile.m_bShowLineDirection = 0;
    {
        Desk desk(223);
        const std::string lines = std::to_string(desk.Lines()) + " lines";
        Row("base map of " + lines + ", arrows off", desk.BaseMap(), "60");
        Row("a move of the mouse with snapping over " + lines, desk.Move(), "0.3");
    }
    g_cTvoProfile.m_bShowLineDirection = 1;
    {
        Desk desk(223);
        Row("base map of " + std::to_string(desk.Lines()) + " lines, with arrows", desk.BaseMap(), "150");
    }
    g_cTvoProfile.m_bShowLineDirection = 0;
    {
        Desk desk(577);  // with its nodes a million components
        const std::string all = std::to_string(desk.Lines()) + " lines and their nodes";
        desk.ShowAxes(130);
        Row("view port refreshed, " + std::to_string(desk.View().m_mapViewPort.GetCount()) + " of " + all + " in view", desk.Refresh(), "20");
        desk.ShowAxes(600);
        Row("view port refreshed, all of them", desk.Refresh(), "200");
    }
}
