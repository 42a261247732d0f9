// What a person at the view relies on besides commands: where points snap, what is shown, which keys do what.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "fields/backgrnd.h"
#include "model/goujian.h"
#include "model/profile.h"
#include "net/grid_data_base.h"
#include "platform/window_system.h"
#include "shell/cmd_map.h"
#include "shell/prompt_view.h"
#include "shell/tvo_frame_base.h"
#include "view/dt_work_ex.h"
#include "view/tvo_view_mgr.h"

namespace {

/// Waits for points, and keeps the F keys that it asked for.
struct Waiting : CDtWorkEx {
    unsigned OnQueryState() override { return QS_POINT; }
    unsigned OnGetObject(OBJECT_HINT, void*, int) override { return QS_POINT; }
    void RegisterFunctionKey(CArray<unsigned, unsigned>& keys) override {
        for (const unsigned code : {2u, 15u, 29u}) keys.Add(code);
    }
    void OnGetFunctionKey(unsigned code) override { s_keys += std::to_string(code) + " "; }
    static inline std::string s_keys;
};

/// A view of 800 by 600 where pixel (x, y) is (10 x, 6000 - 10 y).
struct ViewServices : testing::Test {
    void SetUp() override {
        g_strPrompt = "命令:";
        g_cCmdMap = CCmdMap();
        CTvoFrameBase::ResetFirstSize();
        m_db.DestroyData();
        m_db.Initialize();
        m_db.m_pFrame = &m_frame;
        m_frame.Create(nullptr, {0, 0, 910, 765}, WindowKind::kFrame);
        m_frame.CreatePanes(&m_db);
        m_system.Drain();
        m_view = m_frame.GetDtView();
        m_view->m_cCoor.Init({0, 6000, 0}, 0.1f, 1);
        m_view->m_nCoorHistory = 0;
        m_view->RefreshViewPort();
    }
    void TearDown() override { m_db.m_pFrame = nullptr; }
    void Begin() {
        auto* const work = new Waiting;
        work->m_pView = m_view;
        m_view->DoWork(work);
        m_system.Drain();
    }
    void Turn() {
        m_view->m_cCoor.m_fAlpha = 0.4f;
        m_view->m_cCoor.m_fBeta = 0.9f;
    }
    CArray<CString>& History() { return m_frame.GetPromptView()->m_aHistory; }
    std::string Last() { return History()[History().GetUpperBound()].GetString(); }
    float Scale() { return m_view->m_cCoor.GetScale(); }
    CPromptInput& Input() { return m_frame.GetPromptView()->m_cInput; }

    CWindowSystem m_system;
    CGridDataBase m_db;
    CTvoFrameBase m_frame;
    CTvoViewMgr* m_view = nullptr;
};

double Far(const CFPoint& a, const CFPoint& b) {
    return std::hypot(static_cast<double>(a.x) - b.x, static_cast<double>(a.y) - b.y);
}

TEST_F(ViewServices, SnapsToObjectsNearTheCursorAlone) {
    std::mt19937 dice(11);
    const auto lattice = [&] {
        return CFPoint(static_cast<float>(dice() % 80) * 100, static_cast<float>(dice() % 60) * 100, 0);
    };
    for (int i = 0; i < 40; ++i) m_db.AddNetLine(lattice(), lattice(), 0, 0);
    std::vector<std::pair<CFPoint, int>> points;
    CGouJianExList all;
    m_db.GetGouJianListAll(all);
    for (POSITION p = all.GetHeadPosition(); p;) {
        CGouJianEx* const obj = all.GetNext(p);
        CArray<CFPoint> own;
        CArray<int> kinds;
        if (obj->IsVisable()) obj->QueryAbsSnapPoint(0xFFFFFFFF, own, kinds);
        for (int i = 0; i < own.GetSize(); ++i) points.emplace_back(own[i], kinds[i]);
    }
    int hits = 0;
    for (const bool turned : {false, true}) {
        if (turned) Turn();
        for (int round = 0; round < 1500; ++round) {
            const CFPoint cursor =
                m_view->WorldOf({static_cast<int>(dice() % 800), static_cast<int>(dice() % 600)});
            CFPoint at = cursor;
            int kind = 0;
            const int hit = m_view->GetSnapPointByObject(at, kind);
            hits += hit;
            bool found = false, missed = false;
            for (const auto& [point, ofKind] : points) {
                const CFPoint seen = m_view->m_cCoor.PointTouYing(point);
                found |= ofKind == kind && Far(point, at) == 0 && Far(seen, cursor) < 90;
                // Candidates come from a box to the lower right of the cursor.
                missed |= !turned && Far(seen, cursor) < 90 && seen.x >= cursor.x && seen.y <= cursor.y;
            }
            ASSERT_TRUE(hit ? found : !missed && Far(at, cursor) == 0 && kind == -1)
                << "turned " << turned << ", round " << round;
        }
    }
    EXPECT_GT(hits, 300);
}

TEST_F(ViewServices, SnapsToTheFirstGridNodeOfAPlainLoop) {
    std::mt19937 dice(12);
    CBackgrnd& grid = m_db.GetBackgrnd();
    const char* const texts[] = {"0.5*6;0.3*4", "-0.4*9", "0.09*20", "1;0*3;2"};
    int hits = 0;
    for (int round = 0; round < 4000; ++round) {
        grid.m_strKuaX = texts[dice() % 4];
        grid.m_strKuaY = texts[dice() % 4];
        grid.m_strKuaZ = texts[dice() % 4];
        grid.m_fX0 = dice() % 2 ? 1000.0f : 1030.0f;
        grid.m_fY0 = 2000;
        grid.m_fZ0 = 50;
        m_view->m_cCoor.m_fAlpha = 0;
        m_view->m_cCoor.m_fBeta = 1.5707964f;
        if (dice() % 2) Turn();
        m_view->m_bPlaneSnap = dice() % 2;
        CArray<float, float> x, y, z;
        grid.GetJianJu(0, x);
        grid.GetJianJu(1, y);
        if (!m_view->m_bPlaneSnap) grid.GetJianJu(2, z);
        const CFPoint cursor =
            m_view->WorldOf({static_cast<int>(dice() % 500), static_cast<int>(dice() % 600)});
        bool found = false;
        CFPoint node(grid.m_fX0, 2000, 50), want = cursor;
        for (int i = 0; i <= x.GetSize() && !found; node.x += i < x.GetSize() ? x[i] : 0, ++i) {
            node.y = 2000;
            for (int j = 0; j <= y.GetSize() && !found; node.y += j < y.GetSize() ? y[j] : 0, ++j) {
                node.z = 50;
                for (int k = 0; k <= z.GetSize() && !found; node.z += k < z.GetSize() ? z[k] : 0, ++k) {
                    const CFPoint seen = m_view->m_cCoor.PointTouYing(node);
                    found = std::hypot(seen.x - cursor.x, seen.y - cursor.y) < 90.0f;
                    if (found) want = CFPoint(node.x, node.y, m_view->m_bPlaneSnap ? 0 : node.z);
                }
            }
        }
        CFPoint at = cursor;
        int kind = 0;
        ASSERT_EQ(m_view->GetSnapPointByBackgrid(at, kind), found) << "round " << round;
        ASSERT_EQ(kind, found ? 0x20002 : -1) << "round " << round;
        ASSERT_TRUE(at.x == want.x && at.y == want.y && at.z == want.z) << "round " << round;
        hits += found;
    }
    EXPECT_GT(hits, 250);
}

TEST_F(ViewServices, ObjectsComeBeforeAnglesAndTheseBeforeTheGrid) {
    m_db.AddNetNode(3000, 3000);
    m_db.GetBackgrnd().m_strKuaX = m_db.GetBackgrnd().m_strKuaY = "1*5";
    m_view->m_bAngleSnap = m_view->m_bGridSnap = 1;
    int kind = 0;
    CFPoint at(3020, 3010, 0);
    EXPECT_EQ(m_view->GetSnapPoint(at, kind), 0) << "idle";
    Begin();
    struct {
        const char* name;
        int points;
        CFPoint cursor;
        int kind;
        CFPoint at;
    } const rows[] = {
        {"an object's point", 1, {3020, 3010, 0}, 0, {3000, 3000, 0}},
        {"no ray without a point", 0, {1030, 4020, 0}, 0x20002, {1000, 4000, 0}},
        {"the ray of 45 degrees", 1, {2010, 1990, 0}, 0x20001, {2000, 2000, 0}},
        {"the base itself", 1, {1000, 1000, 0}, 0x20001, {1000, 1000, 0}},
        {"below the axis by 60", 1, {1500, 134, 0}, 0x20001, {1500, 133.975f, 0}},
        {"a node of the grid off all rays", 1, {3010, 2020, 0}, 0x20002, {3000, 2000, 0}},
        {"exactly the reach away", 0, {2090, 4000, 0}, -1, {2090, 4000, 0}},
    };
    for (const auto& row : rows) {
        m_view->m_aInputPoint[0] = CFPoint(1000, 1000, 0);
        m_view->m_nInputPoint = static_cast<std::int16_t>(row.points);
        at = row.cursor;
        EXPECT_EQ(m_view->GetSnapPoint(at, kind), row.kind != -1) << row.name;
        EXPECT_TRUE(row.kind == 0 || row.kind == kind) << row.name;
        EXPECT_LT(Far(at, row.at), 0.1) << row.name;
    }
    m_view->m_pWork->m_strName = "Zoom";
    EXPECT_EQ(m_view->GetSnapPoint(at = CFPoint(3000, 3000, 0), kind), 0);
    // The symbol stands where a turned view shows the point.
    Turn();
    const CFPoint node(3000, 3000, 500);
    const CPoint pixel = m_view->m_cCoor.FPtoDP(node);
    CDC canvas;
    canvas.Attach(std::make_shared<CSurface>(800, 600));
    for (const int symbol : {1, 8, 16, 0x20002})
        EXPECT_EQ(m_view->DrawSnapSymbol(&canvas, 0xFFFF, node, symbol),
                  CRect(pixel.x - 7, pixel.y - 7, pixel.x + 9, pixel.y + 9))
            << symbol;
    EXPECT_EQ(m_view->DrawSnapSymbol(&canvas, 0xFFFF, node, 0x10001), CRect());
}

TEST_F(ViewServices, EarlierViewsComeBack) {
    m_view->_Fun_ShowPre();
    EXPECT_EQ(Scale(), 0.1f) << "nothing to go back to";
    m_view->_Fun_ShowRect({5, 5, 0}, {5, 900, 0}, 1, 0);
    m_view->_Fun_ShowRect({5, 5, 0}, {NAN, 900, 0}, 1, 0);
    EXPECT_EQ(m_view->m_nCoorHistory, 0);
    for (int i = 0; i < 12; ++i) m_view->_Fun_ShowMove({100, 0, 0}, {0, 0, 0});
    EXPECT_EQ(m_view->m_nCoorHistory, 10);
    for (int i = 0; i < 12; ++i) m_view->_Fun_ShowPre();
    EXPECT_EQ(m_view->m_cCoor.GetOrigin().x, 200) << "the two oldest are gone";
    m_view->SaveCurrentViewState();
    m_view->_Fun_CenterAt(7000, -400);
    EXPECT_LT(Far(m_view->WorldOf({400, 300}), CFPoint(7000, -400, 0)), 0.01);
    m_view->RestoreCurrentViewState();
    EXPECT_NEAR(m_view->m_cCoor.GetOrigin().x, 200, 0.01);
    EXPECT_EQ(m_view->m_nCoorHistory, 2);
    m_view->RestoreCurrentViewState();
    EXPECT_EQ(m_view->m_nCoorHistory, 2) << "nothing is saved any more";
    // What cannot be computed with is no view.
    CFCoor wild({0, 0, 0}, 0, 1), kept;
    m_view->_Fun_SetCurrShow(&wild);
    m_view->_Fun_CenterAt(1e30f, INFINITY);
    EXPECT_EQ(m_view->m_nCoorHistory, 2);
    Turn();
    m_view->_Fun_GetCurrShow(&kept);
    m_view->_Svr_ShowZoomIn();
    m_view->_Fun_SetCurrShow(&kept);
    EXPECT_NEAR(Scale(), 0.1, 1e-6);
    // Between sessions.
    g_cTvoProfile.m_strRegPath = "Software\\";
    g_cTvoProfile.m_strRegSubKey = "Tvo";
    m_view->WriteLastCoordinateToReg();
    EXPECT_EQ(m_system.ReadSetting("Software\\Tvo", "Coor.Beta").value_or(""), "0.9000000");
    m_view->m_cCoor = CFCoor();
    m_view->ReadLastCoordinateFromReg();
    EXPECT_NEAR(m_view->m_cCoor.GetOrigin().x, 200, 0.01);
    EXPECT_NEAR(m_view->m_cCoor.m_fAlpha, 0.4, 1e-6);
    m_system.WriteSetting("Software\\Tvo", "Coor.Scale", "x");
    m_view->m_cCoor = CFCoor();
    m_view->ReadLastCoordinateFromReg();
    EXPECT_EQ(Scale(), 1) << "all of it or nothing";
    g_cTvoProfile.m_strRegPath = "";
}

TEST_F(ViewServices, ZoomingStopsAtTheLimitsAndKeepsItsPlace) {
    const CFPoint middle = m_view->WorldOf({400, 300});
    m_view->_Svr_ShowZoomIn();
    EXPECT_FLOAT_EQ(Scale(), 0.12f);
    EXPECT_LT(Far(m_view->WorldOf({400, 300}), middle), 0.01);
    m_view->m_cCoor.SetScale(9);
    m_view->_Svr_ShowZoomIn();
    EXPECT_EQ(Scale(), 9);
    EXPECT_EQ(Last(), "已到放大极限！");
    m_view->m_cCoor.SetScale(0.0011f);
    m_view->_Svr_ShowZoomOut();
    EXPECT_EQ(Scale(), 0.0011f);
    EXPECT_EQ(Last(), "已到缩小极限！");
    m_view->m_cCoor.Init({0, 6000, 0}, 0.1f, 1);
    const int views = m_view->m_nCoorHistory;
    CPoint screen(200, 100);
    m_view->ClientToScreen(screen);
    const auto wheel = [&](CWnd& window, int delta) { m_system.DeliverWheel(window, 0, delta, screen); };
    wheel(*m_view, 120);
    EXPECT_FLOAT_EQ(Scale(), 0.14f);
    EXPECT_LT(Far(m_view->WorldOf({200, 100}), CFPoint(2000, 5000, 0)), 0.01);
    wheel(Input(), -120);  // wherever the focus is
    EXPECT_FLOAT_EQ(Scale(), 0.084f);
    for (int i = 0; i < 200; ++i) wheel(m_frame.GetPromptView()->m_cOutput, -120);
    EXPECT_LT(Scale(), 1e-11f);
    EXPECT_GE(Scale(), 1e-12f);
    EXPECT_EQ(m_view->m_nCoorHistory, views);
    m_view->m_cCoor.SetScale(9);
    wheel(*m_view, 1);
    EXPECT_EQ(Scale(), 9);
}

TEST_F(ViewServices, KeysSwitchUnlessTheCommandTakesThem) {
    const auto key = [&](UINT k, bool shift = false, bool control = false) {
        m_system.DeliverKey(Input(), k, shift, control, "");
    };
    int* const switches[] = {
        &m_view->m_bGridSnap,       &m_view->m_bObjectSnap, &m_view->m_bAngleSnap, nullptr,
        &m_view->m_bShowCoordinate, &m_view->m_bShowGrid,   &m_view->m_bOrtho};
    for (UINT i = 0; i < 7; ++i) {
        if (!switches[i]) continue;
        const int before = *switches[i];
        key(VK_F2 + i);
        EXPECT_EQ(*switches[i], !before) << "F" << i + 2;
        key(VK_F2 + i);
    }
    const CFPoint base(10, 20, 30);
    struct {
        CFPoint p, moved;
    } const rows[] = {{{20, 25, 0}, {20, 20, 30}},
                      {{20, 30, 0}, {10, 30, 30}},
                      {{0, 30, 0}, {0, 20, 30}},
                      {{0, 10, 0}, {10, 10, 30}},
                      {{20, 10, 0}, {20, 20, 30}}};
    m_view->m_bOrtho = 1;
    for (const auto& row : rows) {
        const CFPoint p = GetOrthoPoint(m_view, base, row.p);
        EXPECT_TRUE(p.x == row.moved.x && p.y == row.moved.y && p.z == 30) << row.p.x << "," << row.p.y;
    }
    key(VK_F5);
    EXPECT_EQ(m_view->m_nCoorHistory, 1);
    Begin();
    Waiting::s_keys.clear();
    key(VK_F5);
    EXPECT_EQ(m_view->m_nCoorHistory, 1) << "the command has it";
    key(VK_F3, true);
    key(VK_F2, false, true);
    key(VK_F1 + 4, true, true);
    EXPECT_EQ(Waiting::s_keys, "29 15 2 ");
    EXPECT_EQ(m_view->m_nCoorHistory, 2) << "with both it is no key of the command's";
}

TEST_F(ViewServices, TheHistoryKeepsTheLast101LinesAndPassesOnWhatIsTypedThere) {
    for (int i = 0; i < 101; ++i) m_frame.AppendPromptText(CString(std::to_string(i)));
    m_frame.AppendPromptText("a qe_inter_cmd_ b");
    EXPECT_EQ(History().GetSize(), 101);
    EXPECT_EQ(std::string(History()[0].GetString()), "0") << "the welcome has gone";
    EXPECT_EQ(Last(), "100");
    CResultOutput& output = m_frame.GetPromptView()->m_cOutput;
    const auto type = [&](const std::string& text) { m_system.DeliverKey(output, 0, false, false, text); };
    const int grid = m_view->m_bGridSnap, views = m_view->m_nCoorHistory;
    type("tq字'");
    EXPECT_EQ(std::string(Input().GetWindowText().GetString()), "tq字'");
    EXPECT_EQ(m_system.Focus(), &Input());
    EXPECT_EQ(m_view->m_nCoorHistory, views) << "t is no F5";
    EXPECT_EQ(m_view->m_bGridSnap, grid) << "q is no F2";
    type("\x1b");
    EXPECT_EQ(Last(), "*tq字' 取消*");
    type("x ");
    EXPECT_EQ(Last(), "***非法命令或参数: x***");
    EXPECT_TRUE(Input().GetWindowText().IsEmpty());
    // The same line for another identity is taken, and never found; a second line for an identity is.
    g_cCmdMap.AddBasicCommands();
    g_cCmdMap.AddCommandMap("PAN", CMD_ZOOM, 5);
    g_cCmdMap.AddCommandMap("pan", 77, 5);
    EXPECT_EQ(g_cCmdMap.m_arrItem.GetSize(), 9);
    struct {
        const char* line;
        int id, data;
    } const rows[] = {
        {"pan", CMD_PAN, 1}, {"PAN", CMD_PAN, 1}, {"p", CMD_PAN, 1}, {"re", CMD_REDO, 0}, {"rex", -1, 9}};
    for (const auto& row : rows) {
        int id = 0, data = 9;
        g_cCmdMap.GetCommandIDByString(row.line, id, data);
        EXPECT_EQ(id, row.id) << row.line;
        EXPECT_EQ(data, row.data) << row.line;
    }
}

}  // namespace
