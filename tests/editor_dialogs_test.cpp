// The editor's dialogs of axis grids, snapping, steps and fields, and the field in space, by scripted
// answers.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "fields/backgrnd.h"
#include "fields/chang.h"
#include "fields/gj_chang.h"
#include "file_fixtures.h"
#include "host/editor/axis_grid.h"
#include "host/editor/axis_grid_dialog.h"
#include "host/editor/axis_grid_view.h"
#include "host/editor/chang_3d_view.h"
#include "host/editor/field_actions.h"
#include "host/editor/setting_dialogs.h"
#include "host/field_edit.h"
#include "host/host_data_base.h"
#include "model/goujian_type.h"
#include "model/profile.h"
#include "platform/canvas/surface.h"
#include "platform/window_system.h"
#include "shell/cmd_map.h"
#include "shell/prompt_view.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

namespace {

// ---- texts ------------------------------------------------------------------------------------------------

TEST(SpacingText, NumbersAreAsShortAsTheirKind) {
    EXPECT_EQ(NumberText(22.1f), "22.1");
    EXPECT_EQ(NumberText(22.1), "22.1");
    EXPECT_EQ(NumberText(static_cast<double>(22.1f)), "22.100000381469727");
    EXPECT_EQ(NumberText(-0.0f), "0");
}

TEST(SpacingText, EachRow) {
    const SpacingRule rule{"开间", 51, 1e6, 500};
    struct {
        const char* name;
        std::string text;
        const char* plain;  // what is read, or what is wrong
    } const rows[] = {
        {"the stated form", "3600*5;6600*5;9000*2", "3600*5;6600*5;9000*2"},
        {"one spacing, blanks, an end", " 3600 ; 4200.5 * 2 ; ", "3600;4200.5*2"},
        {"full width letters", "３６００＊２；4200×3", "3600*2;4200*3"},
        {"nothing", " ; ", "开间: 没有数据"},
        {"no number", "3600;x*2", "开间 第2段 \"x*2\": 间距不是数"},
        {"nothing before the star", "*2", "开间 第1段 \"*2\": * 前缺少间距"},
        {"nothing behind it", "3600*", "开间 第1段 \"3600*\": * 后缺少跨数"},
        {"two stars", "3600*2*2", "开间 第1段 \"3600*2*2\": 多于一个 *"},
        {"half a bay", "3600*1.5", "开间 第1段 \"3600*1.5\": 跨数应为 1 到 500 的整数"},
        {"no bay", "3600*0", "开间 第1段 \"3600*0\": 跨数应为 1 到 500 的整数"},
        {"more than an int", "3600*99999999999", "开间 第1段 \"3600*99999999999\": 跨数应为 1 到 500 的整数"},
        {"too many together", "3600*300;3600*300", "开间 第2段 \"3600*300\": 共 600 跨, 最多 500 跨"},
        {"below zero", "-3600", "开间 第1段 \"-3600\": 间距应在 51 到 1000000 之间"},
        {"no number of this world", "nan;1", "开间 第1段 \"nan\": 间距不是数"},
        {"without end", "1e999", "开间 第1段 \"1e999\": 间距不是数"},
        {"a long unit, cut before a letter", "一二三四五六七八九*2",
         "开间 第1段 \"一二三四五六七八...\": 间距不是数"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Spacings read = ReadSpacings(row.text, rule);
        EXPECT_EQ(read.wrong.empty() ? read.Text() : read.wrong, row.plain);
        EXPECT_TRUE(read.wrong.empty() || read.units.empty());
    }
    // However long, it ends at the limit.
    std::string endless;
    for (int i = 0; i < 300000; ++i) endless += "0*0;";
    EXPECT_EQ(ReadSpacings(endless, {"X", 1, 2, 500, 0}).wrong, "X: 段数过多");
    std::mt19937 dice(3);
    for (int round = 0; round < 3000; ++round) {
        std::string noise;
        for (int i = 0; i < 12; ++i) noise += "0123*;.;-e\xEF\xBC\x8A\xC3\x97 \xFF"[dice() % 17];
        const Spacings read = ReadSpacings(noise, rule);
        if (read.wrong.empty()) {
            ASSERT_EQ(ReadSpacings(read.Text(), rule).All(), read.All()) << "round " << round;
        }
    }
}

// ---- the editor around ------------------------------------------------------------------------------------

/// A frame on the system without a screen. Pixel (x, y) of the view is (100 x, 60000 - 100 y).
struct EditorDialogs : testing::Test {
    void SetUp() override {
        g_cTvoProfile = CTvoProile();
        g_strPrompt = "命令:";
        m_db.Initialize();
        m_db.m_pFrame = &m_frame;
        m_frame.Create(nullptr, {0, 0, 910, 765}, WindowKind::kFrame);
        m_frame.CreatePanes(&m_db);
        m_system.Drain();
        m_view = m_frame.GetDtView();
        m_view->m_cCoor.Init({0, 60000, 0}, 0.01f, 1);
        m_view->RefreshViewPort();
    }
    void TearDown() override { m_db.m_pFrame = nullptr; }

    using Values = std::vector<std::pair<std::string, std::string>>;
    void Answer(const char* dialog, Values values, int button = 0) {
        m_system.m_answers.push_back({dialog, button, std::move(values)});
    }
    void Type(const std::string& text) {
        m_system.Drain();
        CPromptInput& input = m_frame.GetPromptView()->m_cInput;
        m_system.DeliverKey(input, 0, false, false, text);
        m_system.DeliverKey(input, VK_RETURN, false, false, "");
    }
    std::string Last() {
        const auto& history = m_frame.GetPromptView()->m_aHistory;
        return history[history.GetUpperBound()].GetString();
    }
    std::vector<AxisPiece> Lines() {
        std::vector<AxisPiece> lines;
        m_db.m_mapFamily[GJLX_NET_LINE].ForEach([&](unsigned long, CGouJianEx* obj) {
            const auto& line = *static_cast<CGjNetLine*>(obj);
            const CFPoint p = line.GetStartPoint(), q = line.GetEndPoint();
            lines.push_back({{static_cast<double>(p.x), static_cast<double>(p.y)},
                             {static_cast<double>(q.x), static_cast<double>(q.y)},
                             line.m_nArc ? -2 * static_cast<double>(line.m_fBulge) : 0,
                             {}});
        });
        return lines;
    }
    /// All that the dialogs of settings may change.
    std::string Settings() {
        std::string text;
        for (const float angle : m_view->m_fSnapAngle) text += NumberText(static_cast<double>(angle)) + " ";
        for (const int flag : {m_view->m_bShowCoordinate, m_view->m_bShowGrid, m_view->m_bOrtho,
                               m_view->m_bGridSnap, m_view->m_bObjectSnap, m_view->m_bAngleSnap})
            text += std::to_string(flag);
        text += " types";
        for (int type = 1; type < 255; ++type) text += IsSnapEnabled(type) ? "" : " -" + std::to_string(type);
        text += " size " + std::to_string(g_cTvoProfile.m_nSymbolSize) + " step " +
                NumberText(static_cast<double>(m_view->m_fKbdStep));
        const CBackgrnd& grid = m_db.GetBackgrnd();
        return text + " grid " + grid.m_strKuaX.GetString() + " " + grid.m_strKuaY.GetString() + " " +
               grid.m_strKuaZ.GetString();
    }

    CWindowSystem m_system;
    CTvoHostDataBase m_db;
    CTvoFrameBase m_frame;
    CTvoViewMgr* m_view = nullptr;
};

// ---- axis grids -------------------------------------------------------------------------------------------

/// Each expected piece stands there once, within a millimetre; and nothing else does.
void ExpectSame(std::vector<AxisPiece> found, const std::vector<AxisPiece>& expected) {
    EXPECT_EQ(found.size(), expected.size());
    const auto near = [](AxisPoint a, AxisPoint b) { return std::hypot(a.x - b.x, a.y - b.y) < 1; };
    for (const AxisPiece& piece : expected) {
        const auto at = std::find_if(found.begin(), found.end(), [&](const AxisPiece& line) {
            const bool along = near(line.from, piece.from) && near(line.to, piece.to);
            const bool against = near(line.from, piece.to) && near(line.to, piece.from);
            return std::fabs(line.sweep - piece.sweep) < 1e-3 && (along || (against && piece.sweep == 0));
        });
        ASSERT_NE(at, found.end()) << piece.from.x << "," << piece.from.y << " - " << piece.to.x << ","
                                   << piece.to.y << " " << piece.sweep;
        found.erase(at);
    }
}

AxisPoint Turned(double x, double y, double degrees) {
    const double a = degrees * 3.14159265358979323846 / 180;
    return {x * std::cos(a) - y * std::sin(a), x * std::sin(a) + y * std::cos(a)};
}

TEST_F(EditorDialogs, AGridStandsWhereItWasPutAsOneStep) {
    Answer("orthogonal-axes",
           {{"across", "3600*2;4200"}, {"deep", "6000;2400"}, {"turn", "10"}, {"insert", "3"}});
    AskAxisGrid(m_db, *m_view, false);
    Type("30");
    Type("8000,-5000");
    const double xs[] = {-11400, -7800, -4200, 0}, ys[] = {-8400, -2400, 0};  // from the upper right corner
    const auto at = [](double x, double y) {
        const AxisPoint p = Turned(x, y, 30);
        return AxisPoint{p.x + 8000, p.y - 5000};
    };
    std::vector<AxisPiece> expected;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 2; ++j) expected.push_back({at(xs[i], ys[j]), at(xs[i], ys[j + 1]), 0, {}});
    for (int j = 0; j < 3; ++j)
        for (int i = 0; i < 3; ++i) expected.push_back({at(xs[i], ys[j]), at(xs[i + 1], ys[j]), 0, {}});
    ExpectSame(Lines(), expected);
    EXPECT_EQ(m_db.m_mapFamily[GJLX_NET_NODE].GetCount(), 12);
    m_view->_Svr_Undo(0);
    EXPECT_TRUE(Lines().empty());
    EXPECT_FALSE(m_db.CanUndo());
    m_view->_Svr_Redo(0);
    ExpectSame(Lines(), expected);

    // A model whose plates follow gets the plates of the grid with it.
    m_db.FormPlates();
    Answer("orthogonal-axes", {{"across", "3000*2"}, {"deep", "3000"}, {"insert", "0"}});
    AskAxisGrid(m_db, *m_view, false);
    Type("50000,0");
    EXPECT_EQ(m_db.m_mapFamily[GJLX_MIAN].GetCount(), 6 + 2);
}

TEST_F(EditorDialogs, ARoundGridStandsAboutItsCentre) {
    struct {
        const char *name, *across, *inner;
        bool closed;
    } const rows[] = {{"open", "30*2;45", "5000", false},
                      {"to the centre", "30*2;45", "0", false},
                      {"closed", "90*4", "5000", true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Answer("arc-axes", {{"across", row.across},
                            {"inner", row.inner},
                            {"deep", "4000*2"},
                            {"turn", "20"},
                            {"insert", "0"}});
        AskAxisGrid(m_db, *m_view, true);
        Type("1000,2000");
        const std::vector<double> angles =
            row.closed ? std::vector<double>{20, 110, 200, 290, 380} : std::vector<double>{20, 50, 80, 125};
        const double first = std::stod(row.inner);
        const auto on = [&](double r, double degrees) {
            const AxisPoint p = Turned(r, 0, degrees);
            return AxisPoint{p.x + 1000, p.y + 2000};
        };
        std::vector<AxisPiece> expected;
        for (std::size_t i = 0; i < angles.size() - row.closed; ++i)
            for (int j = 0; j < 2; ++j)
                expected.push_back(
                    {on(first + 4000 * j, angles[i]), on(first + 4000 * (j + 1), angles[i]), 0, {}});
        for (std::size_t i = 0; i + 1 < angles.size(); ++i)
            for (int j = first > 0 ? 0 : 1; j < 3; ++j)
                expected.push_back({on(first + 4000 * j, angles[i]),
                                    on(first + 4000 * j, angles[i + 1]),
                                    angles[i + 1] - angles[i],
                                    {}});
        ExpectSame(Lines(), expected);
        EXPECT_EQ(Last(), "生成轴网: " + std::to_string(expected.size()) + " 段轴线");
        m_view->_Svr_Undo(0);
    }
}

TEST_F(EditorDialogs, AGridThatCannotStandIsRefused) {
    struct {
        const char* name;
        bool arc;
        Values values;
        const char* wrong;
    } const rows[] = {
        {"depth", false, {{"deep", "6000;;x"}}, "进深 第2段 \"x\": 间距不是数"},
        {"within the tolerance",
         false,
         {{"across", "50*3"}},
         "开间 第1段 \"50*3\": 间距应在 51 到 1000000 之间"},
        {"angle", false, {{"turn", "400"}}, "转角: 应在 -360 到 360 之间"},
        {"too many crossings",
         false,
         {{"across", "3600*300"}, {"deep", "3600*300"}},
         "轴线交点 90601 个, 最多 40000 个"},
        {"more than a turn", true, {{"across", "100*4"}}, "圆弧开间角: 合计 400 度, 最多 360 度"},
        {"radius", true, {{"inner", "-1"}}, "内半径: 应在 0 到 1000000 之间"},
        {"narrow at the innermost arc",
         true,
         {{"inner", "100"}, {"across", "10*3"}},
         "内半径: 最内圈上相邻轴线只相距 17.4 mm, 应大于 50 mm"},
        {"a turn but for a hair",
         true,
         {{"across", "90*3;89.9"}},
         "内半径: 最内圈上相邻轴线只相距 10.5 mm, 应大于 50 mm"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        m_system.m_messages.clear();
        Answer(row.arc ? "arc-axes" : "orthogonal-axes", row.values);
        AskAxisGrid(m_db, *m_view, row.arc);
        EXPECT_EQ(m_system.m_messages, std::vector<std::string>{row.wrong});
        EXPECT_EQ(m_view->m_nWorkState, 0);
    }
    Answer("orthogonal-axes", {}, -1);
    AskAxisGrid(m_db, *m_view, false);
    EXPECT_EQ(m_view->m_nWorkState, 0);
    // At the prompt.
    Answer("orthogonal-axes", {});
    AskAxisGrid(m_db, *m_view, false);
    Type("abc");
    EXPECT_EQ(Last(), "*转角: \"abc\" 不是数*");
    Type("1e30,0");
    EXPECT_EQ(Last(), "*插入点太远*");
    EXPECT_FALSE(m_db.CanUndo());
    EXPECT_EQ(m_view->m_nWorkState, 1);
}

TEST_F(EditorDialogs, TheGridAtThePointerLeavesNoTrace) {
    Answer("arc-axes", {{"across", "30*3"}, {"deep", "6000*2"}});
    AskAxisGrid(m_db, *m_view, true);
    m_system.Drain();
    const auto move = [&](int x, int y) { m_system.DeliverMouse(*m_view, WM_MOUSEMOVE, 0, {x, y}); };
    move(300, 300);
    const CSurface before = *m_view->ClientSurface();
    move(500, 200);
    Type("45");
    move(420, 310);
    const CSurface turned = *m_view->ClientSurface();
    Type("0");
    move(300, 300);
    EXPECT_TRUE(before == *m_view->ClientSurface());
    EXPECT_FALSE(before == turned);
}

/// Runs of pixels in the colour of axes along a row or column of the preview.
int Crossings(const CSurface& s, bool row, int at) {
    const std::uint32_t axis = PixelFromColor(RGB(224, 80, 80));
    int runs = 0;
    bool in = false;
    for (int i = 0; i < (row ? s.Width() : s.Height()); ++i) {
        const bool on = (row ? s.At(i, at) : s.At(at, i)) == axis;
        runs += on && !in;
        in = on;
    }
    return runs;
}

TEST_F(EditorDialogs, ThePreviewShowsTheAxes) {
    AxisGridView view;
    view.Create(nullptr, {0, 0, 420, 320}, WindowKind::kView);
    std::string wrong;
    view.m_grid = ReadAxisGrid(false, {"6000*4", "9000;6000*2", "0", "0", "0"}, 50, wrong);
    EXPECT_EQ(wrong, "");
    view.m_valid = true;
    m_system.Drain();
    // Within a bay, clear of the axes.
    EXPECT_EQ(Crossings(*view.ClientSurface(), true, 165), 5);
    EXPECT_EQ(Crossings(*view.ClientSurface(), false, 190), 4);
    view.m_valid = false;
    view.Invalidate();
    m_system.Drain();
    EXPECT_EQ(Crossings(*view.ClientSurface(), true, 165), 0);
}

// ---- settings ---------------------------------------------------------------------------------------------

TEST_F(EditorDialogs, EachDialogChangesWhatItSays) {
    const std::string plain =
        "-60 -45 -30 0 30 45 60 90 180 270 110010 types size 17 step 1000 grid 6*40 6*25 0*0";
    ASSERT_EQ(Settings(), plain);
    const auto angles = [](EditorDialogs& t) { AskSnapAngles(*t.m_view); };
    const auto snap = [](EditorDialogs& t) { AskSnapSwitches(*t.m_view); };
    const auto steps = [](EditorDialogs& t) { AskSteps(t.m_db, *t.m_view); };
    struct {
        const char* name;
        const char* dialog;
        void (*ask)(EditorDialogs&);
        Values values;
        const char *from, *to;  // of what Settings tells
        const char* wrong;      // or what is wrong
    } const rows[] = {
        {"angles",
         "snap-angles",
         angles,
         {{"angle1", "15.5"}, {"angle10", " -90 "}},
         "-60 -45 -30 0 30 45 60 90 180 270",
         "15.5 -45 -30 0 30 45 60 90 180 -90",
         ""},
        {"no angle", "snap-angles", angles, {{"angle3", "x"}}, "", "", "第3角度: \"x\" 不是数"},
        {"an angle too far",
         "snap-angles",
         angles,
         {{"angle10", "361"}},
         "",
         "",
         "第10角度: 应在 -360 到 360 之间"},
        {"switches",
         "snap",
         snap,
         {{"coordinates", "0"}, {"ortho", "1"}, {"angle-snap", "1"}},
         "110010",
         "011011",
         ""},
        {"others",
         "snap",
         snap,
         {{"grid", "0"}, {"grid-snap", "1"}, {"object-snap", "0"}},
         "110010",
         "100100",
         ""},
        {"types", "snap", snap, {{"types", "10110111"}}, "types", "types -2 -6", ""},
        {"size", "snap", snap, {{"size", "25"}}, "size 17", "size 25", ""},
        {"types that are none", "snap", snap, {{"types", "1011"}}, "", "", "对象捕捉类型: 应为 8 个 0 或 1"},
        {"size 1000", "snap", snap, {{"size", "1000"}}, "", "", "靶标大小: 应在 5 到 65 之间"},
        {"step", "steps", steps, {{"step", "0.3"}}, "step 1000", "step 300", ""},
        {"grid", "steps", steps, {{"grid-x", "３＊４；7.5"}, {"grid-z", ""}}, "6*40", "3*4;7.5", ""},
        {"step 0", "steps", steps, {{"step", "0"}}, "", "", "键盘步长: 应在 0.1 到 100 之间"},
        {"grid without end",
         "steps",
         steps,
         {{"grid-y", "1*99999999"}},
         "",
         "",
         "背景网格Y 第1段 \"1*99999999\": 跨数应为 0 到 99999 的整数"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        m_system.m_messages.clear();
        Answer(row.dialog, row.values, -1);
        row.ask(*this);
        ASSERT_EQ(Settings(), plain) << "cancelled";
        Answer(row.dialog, row.values);
        row.ask(*this);
        std::string expected = plain;
        if (*row.wrong == 0) expected.replace(expected.find(row.from), std::string(row.from).size(), row.to);
        EXPECT_EQ(Settings(), expected);
        EXPECT_EQ(m_system.m_messages,
                  *row.wrong ? std::vector<std::string>{row.wrong} : std::vector<std::string>{});
        // All back as it was, by the settings as they stood at the start.
        for (int i = 0; i < 10; ++i) m_view->m_fSnapAngle[i] = CTvoViewMgr().m_fSnapAngle[i];
        Answer("snap", {{"coordinates", "1"},
                        {"grid", "1"},
                        {"ortho", "0"},
                        {"grid-snap", "0"},
                        {"object-snap", "1"},
                        {"angle-snap", "0"},
                        {"types", "11111111"},
                        {"size", "17"}});
        AskSnapSwitches(*m_view);
        Answer("steps", {{"step", "1"}, {"grid-x", "6*40"}});
        AskSteps(m_db, *m_view);
        ASSERT_EQ(Settings(), plain);
    }
}

TEST_F(EditorDialogs, SettingsComeBackAndSpoiltOnesDoNot) {
    Answer("snap-angles", {{"angle2", "12"}});
    AskSnapAngles(*m_view);
    Answer("snap", {{"ortho", "1"}, {"types", "01111111"}, {"size", "31"}});
    AskSnapSwitches(*m_view);
    Answer("steps", {{"step", "2.5"}});
    AskSteps(m_db, *m_view);
    const std::string kept = Settings();
    m_view->m_fSnapAngle[1] = 0;
    m_view->m_bOrtho = 0;
    EnableSnap(1);
    g_cTvoProfile.m_nSymbolSize = 17;
    m_view->m_fKbdStep = 1;
    ReadSnapSettings(*m_view);
    EXPECT_EQ(Settings(), kept);
    for (const char* name : {"angle1", "angle2", "ortho", "types", "size", "step"})
        m_system.WriteSetting("snap", name, "nan\xFF");
    ReadSnapSettings(*m_view);
    EXPECT_EQ(Settings(), kept);
    EnableSnap(1);
}

// ---- fields -----------------------------------------------------------------------------------------------

/// A strip of squares of 1 m from (0, 0); values by the function.
template <class Value>
std::unique_ptr<CChang> Strip(int wide, int high, Value value) {
    auto field = std::make_unique<CChang>();
    for (int y = 0; y <= high; ++y)
        for (int x = 0; x <= wide; ++x)
            field->m_arrNode.Add({field->m_arrNode.GetSize() + 1,
                                  static_cast<float>(x),
                                  static_cast<float>(y),
                                  {value(x, y)}});
    for (int y = 0; y < high; ++y)
        for (int x = 0; x < wide; ++x) {
            const int a = y * (wide + 1) + x + 1, b = a + wide + 1;
            field->m_arrTri.Add({{a, a + 1, b + 1}});
            field->m_arrTri.Add({{a, b + 1, b}});
        }
    return field;
}

TEST_F(EditorDialogs, FieldsAreOpenedLookedAtAndTakenBack) {
    const TempFolder folder;
    const std::string file = folder.path + "field.txt";
    std::ofstream(file)
        << "node 1 0 0 1 10\nnode 2 4 0 2 20\nnode 3 4 4 3 30\nnode 4 0 4 4 40\ntri 1 2 3\ntri 1 3 4\n";
    for (const bool cancel : {true, false}) {
        m_system.m_paths.push_back(file);
        Answer("field-value", {{"value", "1"}}, cancel ? -1 : 0);
        OpenField(m_db, *m_view);
        EXPECT_EQ(m_db.CanUndo() != 0, !cancel);
    }
    CGjChang* field = CurrentField(m_db);
    ASSERT_TRUE(field);
    EXPECT_EQ(Last(), "场 1 (4 节点, 2 三角形), 范围: 10 到 40, 分 20 级, 每级 1.5");
    AskFieldValues(m_db, *m_view);
    Type("4000,1000");
    EXPECT_EQ(Last(), "值 = 22.5, 场坐标 (4, 1)");
    Type("5000,1000");
    EXPECT_EQ(Last(), "*此点不在场内*");
    m_view->ReSetToInitialState(1);

    ShowFieldsAs(m_db, *m_view, FIELD_DISPLAY_ISOLINE);
    EXPECT_EQ(field->m_arrColor.GetSize(), 20);
    SwitchFieldMesh(m_db, *m_view);
    EXPECT_EQ(field->m_bDrawGrid, 1);
    Answer("field-look", {{"value", "0"}, {"scheme", "3"}, {"scale", "-2"}, {"mesh", "0"}, {"display", "2"}});
    AskFieldLook(m_db, *m_view);
    EXPECT_EQ(field->m_pChang->m_nValue, 0);
    EXPECT_EQ(field->m_nColorScheme, 4);
    EXPECT_EQ(field->m_fValueScale, -2);
    EXPECT_EQ(field->m_nDisplay, FIELD_DISPLAY_DIGIT);
    EXPECT_EQ(field->m_bDrawGrid, 0);
    for (const auto& bad : {Values{{"scale", "x"}}, Values{{"value", "7"}}, Values{{"field", "3"}}}) {
        Answer("field-look", bad);
        AskFieldLook(m_db, *m_view);
        EXPECT_EQ(field->m_fValueScale, -2);
    }

    DensifyCurrentField(m_db, *m_view);
    EXPECT_EQ(CurrentField(m_db)->m_pChang->m_arrTri.GetSize(), 8);
    EXPECT_EQ(CurrentField(m_db)->m_nColorScheme, 4);
    m_view->_Svr_Undo(0);
    ASSERT_EQ(CurrentField(m_db), field);
    DeleteCurrentField(m_db, *m_view);
    EXPECT_FALSE(CurrentField(m_db));
    m_view->_Svr_Undo(0);
    EXPECT_EQ(CurrentField(m_db), field);

    // A second one is shown alone, until the first is chosen again.
    AddField(m_db, Strip(2, 1, [](int x, int) { return static_cast<float>(x); }), 9, {}, GJ_STATUS_HIDDEN);
    Answer("field-look", {{"field", "1"}});
    AskFieldLook(m_db, *m_view);
    EXPECT_EQ(CurrentField(m_db)->m_dwTag, 9u);
    EXPECT_FALSE(field->IsVisable());

    m_system.m_paths.push_back(file + ".none");
    m_system.m_messages.clear();
    OpenField(m_db, *m_view);
    EXPECT_EQ(m_system.m_messages.size(), 1u);
    std::remove(file.c_str());
}

// ---- in space ---------------------------------------------------------------------------------------------

constexpr COLORREF kOutline = RGB(0, 0, 255);

/// The colour of each pixel of a picture without light and shade is its value's: step i is (i, 200, 0).
std::unique_ptr<CSurface> Painted(const CChang& field, const ReliefView& view) {
    ReliefColors colors;
    for (int i = 0; i < 256; ++i) colors[static_cast<std::size_t>(i)] = RGB(i, 200, 0);
    auto surface = std::make_unique<CSurface>(200, 200);
    PaintRelief(FieldRelief(field), view, colors, kOutline, surface->Bounds(), *surface);
    return surface;
}

TEST(FieldInSpace, ValuesAreSharesOfTheRulersRange) {
    const auto field = Strip(2, 2, [](int x, int) { return x == 0 ? 0.0f : 10.0f; });
    field->m_arrNode.Add({field->m_arrNode.GetSize() + 1, 0, 0, {40}});  // a node that no triangle has
    const FieldRelief relief(*field);
    float most = 0;
    for (const FieldRelief::Point& p : relief.Points()) most = std::max(most, p.t);
    EXPECT_EQ(most, 0.25f);
}

TEST(FieldInSpace, EachPixelShowsTheNearestTriangle) {
    // The oracle looks along a pixel's line of sight through all triangles, by plain vectors in double.
    std::mt19937 dice(8);
    for (int round = 0; round < 12; ++round) {
        const auto field = Strip(6, 4, [&](int, int) { return static_cast<float>(dice() % 9); });
        ReliefView view;
        view.alpha = static_cast<float>(dice() % 628) / 100;
        view.beta = static_cast<float>(dice() % 300) / 100 - 1.5f;
        view.lift = 0.9f;
        view.x = view.y = 100.2;
        view.scale = 90;
        const auto picture = Painted(*field, view);
        const FieldRelief relief(*field);
        const double ca = std::cos(view.alpha), sa = std::sin(view.alpha), cb = std::cos(view.beta),
                     sb = std::sin(view.beta);
        struct P {
            double u, v, d, t;
        };
        const auto see = [&](int i) {
            const auto& p = relief.Points()[static_cast<std::size_t>(i)];
            const double z = (static_cast<double>(p.t) - 0.5) * static_cast<double>(view.lift), x = p.x,
                         y = p.y, w = y * ca - x * sa;
            return P{x * ca + y * sa, z * cb + w * sb, z * sb - w * cb, p.t};
        };
        int shown = 0, off = 0;
        for (int py = 1; py < 200; py += 3)
            for (int px = 1; px < 200; px += 3) {
                const double u = (px + 0.5 - view.x) / view.scale, v = (view.y - py - 0.5) / view.scale;
                double nearest = -9, value = -1;
                for (const auto& t : relief.Triangles()) {
                    const P a = see(t[0]), b = see(t[1]), c = see(t[2]);
                    const double det = (b.u - a.u) * (c.v - a.v) - (b.v - a.v) * (c.u - a.u);
                    const double p = ((u - a.u) * (c.v - a.v) - (v - a.v) * (c.u - a.u)) / det;
                    const double q = ((b.u - a.u) * (v - a.v) - (b.v - a.v) * (u - a.u)) / det;
                    if (!(p >= 0 && q >= 0 && p + q <= 1)) continue;
                    const double d = a.d + p * (b.d - a.d) + q * (c.d - a.d);
                    if (d > nearest) nearest = d, value = a.t + p * (b.t - a.t) + q * (c.t - a.t);
                }
                const COLORREF c = ColorFromPixel(picture->At(px, py));
                if (c == kOutline) continue;
                shown += value >= 0;
                // Light darkens all parts alike, so their ratio tells the step.
                const double step = GetGValue(c) ? 200.0 * GetRValue(c) / GetGValue(c) : -256;
                off += std::fabs(step - (value < 0 ? -256 : std::min(value * 256, 255.0))) > 4;
            }
        EXPECT_GT(shown, 300) << "round " << round;
        // Along silhouettes a millionth decides.
        EXPECT_LE(off, 3) << "round " << round;
    }
}

TEST_F(EditorDialogs, TheFieldInSpaceTurnsZoomsAndComesBack) {
    const CGjChang* const field =
        AddField(m_db, Strip(150, 100, [](int x, int y) { return static_cast<float>(x * y); }), 1, {},
                 GJ_STATUS_NORMAL);
    const float corner = field->m_pChang->m_arrNode[150].m_aValue[0];
    CChang3DView view(m_db, field->get_m_dwGouJianID());
    view.Create(&m_frame, {0, 0, 800, 600}, WindowKind::kTool);
    m_system.Drain();
    const CSurface first = *view.ClientSurface();
    const auto differs = [&] { return !(first == *view.ClientSurface()); };
    const auto mouse = [&](UINT message, int x, int y) { m_system.DeliverMouse(view, message, 0, {x, y}); };
    const auto key = [&](UINT code) { m_system.DeliverKey(view, code, false, false, ""); };

    mouse(WM_LBUTTONDOWN, 400, 300);
    mouse(WM_MOUSEMOVE, 450, 320);
    const CSurface moving = *view.ClientSurface();
    mouse(WM_LBUTTONUP, 450, 320);
    EXPECT_FALSE(moving == *view.ClientSurface());  // few triangles, then all
    EXPECT_NEAR(view.Sight().alpha, -1.0, 1e-5);
    EXPECT_NEAR(view.Sight().beta, 0.85, 1e-5);
    key(VK_HOME);
    EXPECT_FALSE(differs());

    // The wheel keeps what lies under the pointer.
    const ReliefView sight = view.Sight();
    m_system.DeliverWheel(view, 0, 240, {300, 200});
    const ReliefView zoomed = view.Sight();
    EXPECT_NEAR(zoomed.scale / sight.scale, 1.44, 1e-9);
    EXPECT_NEAR((300 - zoomed.x) / zoomed.scale, (300 - sight.x) / sight.scale, 1e-9);
    for (int i = 0; i < 100; ++i) m_system.DeliverWheel(view, 0, 100000, {300, 200});
    key(VK_HOME);
    m_system.Advance(1000);
    m_system.Drain();
    EXPECT_FALSE(differs());

    // The slider lifts; the box sets how far it goes.
    const float lift = view.Sight().lift;
    mouse(WM_LBUTTONDOWN, 200, 580);
    mouse(WM_MOUSEMOVE, 9999, 580);
    mouse(WM_LBUTTONUP, 9999, 580);
    EXPECT_NEAR(view.Sight().lift / lift, CChang3DView::kFirstMost, 1e-6);
    mouse(WM_LBUTTONDOWN, 360, 580);
    m_system.DeliverKey(view, VK_BACK, false, false, "\b");
    m_system.DeliverKey(view, 0, false, false, "2x.5");
    key(VK_RETURN);
    EXPECT_NEAR(view.Sight().lift / lift, 2.5, 1e-6);
    mouse(WM_LBUTTONDOWN, 360, 580);
    m_system.DeliverKey(view, 0, false, false, "..");
    key(VK_RETURN);
    EXPECT_EQ(m_system.m_messages, std::vector<std::string>{"比例最大值: \"2.5..\" 不是数"});
    key('R');
    EXPECT_FALSE(differs());

    // The field goes, the picture stays until it is asked for anew.
    EXPECT_EQ(field->m_pChang->m_arrNode[150].m_aValue[0], corner);
    m_db.Start();
    m_db.DeleteGouJian(m_db.FindGouJian(field->get_m_dwGouJianID()));
    view.Invalidate();
    m_system.Drain();
    EXPECT_FALSE(differs());
    key(VK_F5);
    EXPECT_FALSE(view.HasField());
    key(VK_ESCAPE);
    EXPECT_FALSE(view.IsWindow());
}

}  // namespace
