// The frame around the view: screen menu, status bar, tool bar, layout, session log, other programs.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "model/paths.h"
#include "net/grid_data_base.h"
#include "platform/canvas/client_dc.h"
#include "platform/canvas/system_metrics.h"
#include "platform/gbk.h"
#include "platform/process.h"
#include "platform/window_system.h"
#include "shell/cmd_map.h"
#include "shell/outside_programs.h"
#include "shell/prompt_view.h"
#include "shell/scr_menu_view.h"
#include "shell/shell_icons.h"
#include "shell/tvo_frame_base.h"
#include "view/dt_work_ex.h"
#include "view/list_index.h"
#include "view/tvo_view_mgr.h"

namespace {

namespace fs = std::filesystem;

constexpr int kDraw = 0x100, kArc = 0x110, kEdit = 0x120;
constexpr int kLine = 0x201, kCircle = 0x202, kThree = 0x203, kQuiet = 0x1000A, kRanged = 0x300007;

/// Writes down what it is asked to do.
struct Frame : CTvoFrameBase {
    void InvokeCommand(int id, int arg) override {
        CTvoFrameBase::InvokeCommand(id, arg);
        if (id != -1) m_trace << "run " << std::hex << id << "; ";
    }
    void InvokeCommandRange(int base, int index) override {
        CTvoFrameBase::InvokeCommandRange(base, index);
        m_trace << "range " << std::hex << base << "+" << index << "; ";
    }
    void OnExpandNode(CScrMenuItem* item, int open) override {
        m_trace << (open ? "open " : "close ") << item->m_szCaption.Std() << "; ";
    }
    const char* GetMMP_Text(float, float) override { return m_tells ? "轴线 3" : nullptr; }
    std::string Trace() { return std::exchange(m_trace, std::ostringstream()).str(); }
    std::ostringstream m_trace;
    bool m_tells = false;
};

void Fill() {
    CScrMenuData& menu = g_cScrnMenuData;
    menu.ClearAllItems();
    const auto add = [&](const char* line, const char* caption, int id, int parent, int type) {
        menu.AddScrMenuItem(nullptr, 0, line, caption, id, parent, type, "", 0);
    };
    add("", "绘图", kDraw, 0, SCRMENU_BRANCH);
    add("", "编辑", kEdit, 0, SCRMENU_BRANCH);
    add("direct", "直接", kRanged, 0, SCRMENU_COMMAND);
    add("LINE", "直线", kLine, kDraw, SCRMENU_COMMAND);
    add("", "-", -1, kDraw, SCRMENU_SEPARATOR);
    add("圆", "圆", kCircle, kDraw, SCRMENU_COMMAND);
    add("", "弧", kArc, kDraw, SCRMENU_BRANCH);
    add("arc3", "三点", kThree, kArc, SCRMENU_COMMAND);
    add("quiet", "静", kQuiet, kEdit, SCRMENU_COMMAND);
}

/// A frame of 910 by 765, its view 800 by 600, and a person at it.
struct Shell : testing::Test {
    void SetUp() override {
        g_cCmdMap = CCmdMap();
        g_strPrompt = "命令:";
        CTvoFrameBase::ResetFirstSize();
        Fill();
        m_db.DestroyData();
        m_db.Initialize();
        m_frame = std::make_unique<Frame>();
        m_db.m_pFrame = m_frame.get();
        m_frame->Create(nullptr, {0, 0, 910, 765}, WindowKind::kFrame);
        m_frame->CreatePanes(&m_db);
        m_frame->RegisterCommandRange(kRanged);
        m_system.Drain();
    }
    void TearDown() override {
        m_db.m_pFrame = nullptr;
        m_frame.reset();
        UseDarkPalette(false);
    }
    CScrMenuView& Menu() { return *m_frame->GetScrMenuView(); }
    CTvoViewMgr& View() { return *m_frame->GetDtView(); }
    CTvoStatusBar& Bar() { return m_frame->m_cStatusBar; }
    void Click(CWnd& window, CPoint p) {
        m_system.DeliverMouse(window, WM_MOUSEMOVE, 0, p);
        m_system.DeliverMouse(window, WM_LBUTTONDOWN, 0, p);
        m_system.DeliverMouse(window, WM_LBUTTONUP, 0, p);
    }
    /// The rows from the top, an open branch with a star.
    std::string Rows() {
        std::string rows;
        for (const CScrMenuItem& item : Menu().m_aShown) rows += item.m_szCaption.Std() + (item.m_bExpanded ? "* " : " ");
        return rows;
    }
    int MiddleOf(const std::string& caption) {
        int top = 0;
        for (const CScrMenuItem& item : Menu().m_aShown) {
            const int height = item.m_nType == SCRMENU_SEPARATOR ? 2 : 21;
            if (item.m_szCaption == caption.c_str()) return top + height / 2;
            top += height;
        }
        return -1;
    }
    std::string History() {
        CArray<CString>& lines = m_frame->GetPromptView()->m_aHistory;
        return lines.IsEmpty() ? "" : lines[lines.GetUpperBound()].Std();
    }
    std::string Output() { return m_frame->GetPromptView()->m_cOutput.GetWindowText().Std(); }

    CWindowSystem m_system;
    CGridDataBase m_db;
    std::unique_ptr<Frame> m_frame;
};

std::string FileBytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Folder {
    Folder() : m_path(fs::temp_directory_path() / ("tvo shell " + std::to_string(std::random_device{}()))) { fs::create_directories(m_path); }
    ~Folder() { fs::remove_all(m_path); }
    fs::path m_path;
};

// ---- screen menu ------------------------------------------------------------------------------------------

TEST_F(Shell, MenuClicks) {
    const std::string closed = "主菜单 绘图 编辑 直接 ", open = "主菜单 绘图* 直线 - 圆 弧 编辑 直接 ";
    struct { const char* name; std::vector<const char*> clicks; std::string rows, trace; } const rows[] = {
        {"nothing", {}, closed, ""},
        {"a branch opens", {"绘图"}, open, "open 绘图; "},
        {"again: it closes", {"绘图", "绘图"}, closed, "open 绘图; close 绘图; "},
        {"a third time: it opens", {"绘图", "绘图", "绘图"}, open, "open 绘图; close 绘图; open 绘图; "},
        {"a branch below", {"绘图", "弧"}, "主菜单 绘图* 直线 - 圆 弧* 三点 ", "open 绘图; open 弧; "},
        {"back to the one above", {"绘图", "弧", "绘图"}, open, "open 绘图; open 弧; open 绘图; "},
        {"one beside it", {"绘图", "编辑"}, "主菜单 绘图 编辑* 静 直接 ", "open 绘图; open 编辑; "},
        {"a command runs, the rows stay", {"绘图", "直线"}, open, "open 绘图; run 201; "},
        {"a command of a range", {"直接"}, closed, "range 300000+7; "},
        {"a separator", {"绘图", "-"}, open, "open 绘图; "},
        {"the root closes", {"绘图", "弧", "主菜单"}, closed, "open 绘图; open 弧; close 弧; "},
        {"the root, nothing clicked before", {"主菜单"}, closed, ""},
        {"a right click closes", {"绘图", ">"}, closed, "open 绘图; close 绘图; "},
        {"below all rows", {"?"}, closed, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        TearDown();
        SetUp();
        for (const std::string caption : row.clicks) {
            if (caption == ">") m_system.DeliverMouse(Menu(), WM_RBUTTONDOWN, 0, {50, 50});
            else Click(Menu(), {50, caption == "?" ? 500 : MiddleOf(caption)});
        }
        EXPECT_EQ(Rows(), row.rows);
        EXPECT_EQ(m_frame->Trace(), row.trace);
        EXPECT_EQ(m_system.Focus(), &m_frame->GetPromptView()->m_cInput);
    }
}

TEST_F(Shell, MenuFromCode) {
    Menu().ToggleItem(kDraw, 0);
    EXPECT_EQ(Menu().m_nLastExpand, -1);
    EXPECT_TRUE(Menu().HasChildren(kDraw));
    m_system.DeliverMouse(Menu(), WM_RBUTTONDOWN, 0, {50, 50});
    EXPECT_EQ(m_frame->Trace(), "open 绘图; ") << "no click, so nothing is told closed";
    Menu().ToggleItem(kDraw, 1);
    EXPECT_EQ(m_frame->Trace(), "close 绘图; ");
    Menu().ToggleItem(0x999, 0);
    Menu().ToggleItem(kLine, 0);
    EXPECT_EQ(m_frame->Trace(), "run 201; ");
    Menu().ToggleItem(0, 1);
    Menu().m_bShowBuddies = 0;
    Click(Menu(), {50, MiddleOf("绘图")});
    EXPECT_EQ(Rows(), "主菜单 绘图* 直线 - 圆 弧 ");
    m_frame->Trace();

    // Rows of 21 and 2 pixels; what lies on a border between is none.
    CRect rect;
    EXPECT_EQ(Menu().HitTest(9, 21, rect), nullptr);
    ASSERT_TRUE(Menu().HitTest(9, 22, rect));
    EXPECT_EQ(rect, CRect(5, 21, 109, 42));
    EXPECT_EQ(Menu().GetBorder(1), CRect(9, 22, 105, 43));
    EXPECT_EQ(Menu().GetBorder(4), CRect(9, 66, 105, 87)) << "behind the separator";

    // The tree changes under the rows.
    g_cScrnMenuData.InsertScrMenuItem(nullptr, 0, "rect", "矩形", 0x205, kDraw, SCRMENU_COMMAND, kCircle);
    EXPECT_EQ(Rows(), "主菜单 绘图* 直线 - 圆 弧 ");
    g_cScrnMenuData.RefreshScrMenu();
    EXPECT_EQ(Rows(), "主菜单 绘图* 直线 - 矩形 圆 弧 ");
    CScrMenuItem item;
    g_cScrnMenuData.GetMenuItemProperty(kArc, item);
    item.m_szCaption = "圆弧";
    g_cScrnMenuData.SetMenuItemProperty(kArc, item);
    EXPECT_EQ(Rows(), "主菜单 绘图* 直线 - 矩形 圆 圆弧 ");
    g_cScrnMenuData.DeleteMenuItem(kDraw);
    Click(Menu(), {50, MiddleOf("圆弧")});
    EXPECT_EQ(m_frame->Trace(), "open 圆弧; ") << "a row whose item has gone";
    EXPECT_EQ(g_cScrnMenuData.m_arrItem.GetSize(), 3);
    // Typed, with the case aside; the map of commands comes first.
    g_cScrnMenuData.AddScrMenuItem(nullptr, 0, "PAN", "平移", 0x210, 0, SCRMENU_COMMAND, "", 0);
    for (const char* line : {"QUIET", "pan", "none"}) {
        m_system.DeliverKey(m_frame->GetPromptView()->m_cInput, 0, false, false, line);
        m_system.DeliverKey(m_frame->GetPromptView()->m_cInput, VK_RETURN, false, false, "");
    }
    EXPECT_EQ(m_frame->Trace(), "run 1000a; run 10001; ");
}

TEST_F(Shell, HotRowIsShownAndNotStored) {
    const CPoint at(60, MiddleOf("绘图") + 1);
    const auto pixel = [&] { return CClientDC(&Menu()).GetPixel(100, at.y + 6); };
    EXPECT_EQ(pixel(), COLORREF{12500680});
    m_system.DeliverMouse(Menu(), WM_MOUSEMOVE, 0, at);
    EXPECT_EQ(pixel(), COLORREF{13806250});
    EXPECT_EQ(Menu().m_aShown[1].m_bHot, 0);
    m_system.DeliverMouse(Menu(), WM_MOUSEMOVE, 0, {60, MiddleOf("直接")});
    EXPECT_EQ(pixel(), COLORREF{12500680});
    m_system.UsePalette(true);
    m_system.Drain();
    EXPECT_EQ(pixel(), GetSysColor(COLOR_MENU_BRANCH));
    EXPECT_NE(pixel(), COLORREF{12500680});
}

TEST(ScrMenuData, Table) {
    Fill();
    CScrMenuData data = g_cScrnMenuData;
    CScrMenuItem item;
    EXPECT_EQ(data.GetCmdIdByCmdLine("line"), kLine);
    EXPECT_EQ(data.GetCmdIdByCmdLine("lines"), -1);
    EXPECT_EQ(data.GetCommndDiscByCmdId(kThree), "三点");
    EXPECT_EQ(data.GetCmdLineByCmdId(0x999), "");
    EXPECT_EQ(data.GetParentItem(kDraw, item), 0) << "the root is not stored";
    EXPECT_EQ(data.GetParentItem(0, item), 0);
    EXPECT_EQ(data.GetObjectByID(0), nullptr);
    EXPECT_EQ(data.GetObjectByID(0, item), 1);
    EXPECT_EQ(item.m_szCaption, "主菜单");
    EXPECT_EQ(item.m_hIcon, LoadShellIcon(2028));
    data.DeleteMenuItem(0);
    EXPECT_EQ(data.m_arrItem.GetSize(), 9);
    data.DeleteMenuItem(kLine, kEdit);  // another parent
    EXPECT_TRUE(data.ObjectExists(kLine));
    data.DeleteChildItem(kDraw);
    EXPECT_FALSE(data.ObjectExists(kLine));
    EXPECT_TRUE(data.ObjectExists(kThree));

    // Bytes of GBK: a hanzi is two.
    const char* const sixteen = "一二三四五六七八九十一二三四五六";
    data.AddScrMenuItem(nullptr, 0, sixteen, "a一二三四五六七八九十一二三四五", 0x300, 0, 1, nullptr, 0);
    EXPECT_EQ(data.GetCmdLineByCmdId(0x300), "一二三四五六七八九十一二三四五");
    EXPECT_EQ(data.GetCommndDiscByCmdId(0x300), "a一二三四五六七八九十一二三四");
    data.InsertScrMenuItem(nullptr, 0, sixteen, nullptr, 0x301, 0, 1, 0x999);
    EXPECT_EQ(GbkLength(data.GetCmdLineByCmdId(0x301).View()), 30u);

    // Parents in a circle.
    for (const int id : {1, 2, 3}) data.AddScrMenuItem(nullptr, 0, "", "", id, id % 3 + 1, 0, "", 0);
    CScrMenuItems chain;
    data.GetAncestorItems(1, chain);
    ASSERT_EQ(chain.GetSize(), 2);
    EXPECT_EQ(chain[1].m_nCmdID, 2) << "the nearest is the last";
    data.DeleteMenuItem(2);
    for (const int id : {1, 2, 3}) EXPECT_FALSE(data.ObjectExists(id));
    EXPECT_TRUE(data.ObjectExists(0x300));
}

// ---- status bar -------------------------------------------------------------------------------------------

TEST_F(Shell, StatusBarSwitches) {
    struct { const char* caption; int* flag; UINT key; } const rows[] = {
        {"坐标 F6", &View().m_bShowCoordinate, VK_F6}, {"网格 F7", &View().m_bShowGrid, VK_F7},
        {"正交 F8", &View().m_bOrtho, VK_F8},          {"网格捕捉 F2", &View().m_bGridSnap, VK_F2},
        {"对象捕捉 F3", &View().m_bObjectSnap, VK_F3}, {"角度捕捉 F4", &View().m_bAngleSnap, VK_F4}};
    CClientDC dc(&Bar());
    dc.SelectObject(&Bar().m_cFont);
    int pane = 2, left = Bar().m_rcPane[2].left;
    const int free = left;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.caption);
        const CRect& place = Bar().m_rcPane[pane];
        EXPECT_EQ(Bar().m_szCaption[pane], row.caption);
        EXPECT_EQ(place, CRect(left, 0, left + dc.GetTextExtent(row.caption).cx + 20, 24));
        left = place.right + 1;
        const int before = *row.flag;
        EXPECT_EQ(Bar().m_nState[pane], before);
        Click(Bar(), place.CenterPoint());
        EXPECT_EQ(*row.flag, !before);
        m_system.DeliverKey(m_frame->GetPromptView()->m_cInput, row.key, false, false, "");
        EXPECT_EQ(*row.flag, before);
        EXPECT_EQ(Bar().m_nState[pane], before);
        ++pane;
    }
    EXPECT_EQ(left, 911) << "up to the right edge";
    EXPECT_EQ(Bar().m_rcPane[0], CRect(0, 0, free / 2, 24));
    EXPECT_EQ(Bar().m_rcPane[1], CRect(free / 2, 0, free - 1, 24));
    const std::vector<int> states(Bar().m_nState, Bar().m_nState + 8);
    for (const CPoint p : {CPoint(5, 10), CPoint(free - 5, 10)}) Click(Bar(), p);
    EXPECT_EQ(std::vector<int>(Bar().m_nState, Bar().m_nState + 8), states) << "the fields are no buttons";
    EXPECT_EQ(m_system.Focus(), &m_frame->GetPromptView()->m_cInput);

    // The grid comes and goes in the picture by the bar as by the key.
    View().m_cCoor.Init({0, 6000, 0}, 0.1f, 1);
    View().m_bBaseMapDirty = 1;
    View().Invalidate();
    m_system.Drain();
    const CSurface with = *View().m_cBaseMap.Surface();
    Click(Bar(), Bar().m_rcPane[3].CenterPoint());
    EXPECT_FALSE(*View().m_cBaseMap.Surface() == with);
    Click(Bar(), Bar().m_rcPane[3].CenterPoint());
    EXPECT_TRUE(*View().m_cBaseMap.Surface() == with);
}

TEST_F(Shell, StatusBarTexts) {
    const auto pane = [&](int i) { return Bar().GetPaneText(i).Std(); };
    m_frame->SetLocate({1, 2.005f, -3});
    m_frame->SetOffset({0, 0.5f, 0});
    EXPECT_EQ(pane(0) + "|" + pane(1), "1.00,2.01,-3.00|0.00,0.50,0.00");
    m_frame->SetStatusPrompt("提示");
    EXPECT_EQ(pane(1), "提示");
    m_frame->m_tells = true;
    m_frame->SetMouseMousePromptText(0, 0);
    EXPECT_EQ(pane(1), "轴线 3");
    m_frame->m_bClosing = 1;
    m_frame->SetStatusPrompt("x");
    m_frame->SetMouseMousePromptText(0, 0);
    EXPECT_EQ(pane(1), "x");
    View()._Svr_SwitchCoordDisplay();
    m_frame->SetLocate({7, 7, 7});
    EXPECT_EQ(pane(0), "") << "switched off";

    EXPECT_EQ(Bar().GetProgress(), -1);
    for (const auto& [told, shown] : {std::pair{0, 1}, {200, 100}, {-7, 1}, {42, 42}}) {
        m_frame->ShowProgress(told);
        EXPECT_EQ(Bar().GetProgress(), shown);
    }
    EXPECT_EQ(Bar().m_pProgress->Text(), "42%");
    m_frame->ShutDownProgress();
    EXPECT_EQ(Bar().GetProgress(), -1);
    m_frame->ShowProgress(42);
    EXPECT_EQ(Bar().GetProgress(), 42);
}

// ---- frame ------------------------------------------------------------------------------------------------

TEST_F(Shell, Layout) {
    EXPECT_EQ(View().m_nCoorHistory, 2) << "the first size shows all, and so does F5";
    struct { const char* name; int width, height, menu, prompt, bar; CRect view; int menuWidth, promptHeight; } const rows[] = {
        {"all", 910, 765, 1, 1, 1, {0, 28, 800, 628}, 109, 109},
        {"no menu", 910, 765, 0, 1, 1, {0, 28, 910, 628}, 0, 109},
        {"no status bar", 910, 765, 1, 1, 0, {0, 28, 800, 628}, 109, 133},
        {"no prompt: as much as there is", 910, 765, 1, 0, 1, {0, 28, 800, 741}, 109, 0},
        {"narrower than the menu", 100, 765, 1, 1, 1, {0, 28, 0, 628}, 100, 109},
        {"lower than the prompt", 910, 100, 1, 1, 1, {0, 28, 800, 28}, 109, 48},
        {"nothing at all", 0, 0, 1, 1, 1, {0, 28, 0, 28}, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        m_frame->MoveWindow({0, 0, row.width, row.height});
        m_frame->ShowScrnMenu(row.menu);
        m_frame->ShowPromptWnd(row.prompt);
        m_frame->ShowStatusBar(row.bar);
        m_system.Drain();
        EXPECT_EQ(View().GetWindowRect(), row.view);
        EXPECT_EQ(Menu().GetClientRect().Width(), row.menuWidth);
        EXPECT_EQ(m_frame->GetPromptView()->GetClientRect().Height(), row.promptHeight);
    }
}

TEST_F(Shell, BarsAreDragged) {
    CWnd& inner = *View().GetParent();
    CWnd& outer = *inner.GetParent();
    const auto drag = [&](CWnd& window, CPoint from, CPoint to) {
        m_system.DeliverMouse(window, WM_LBUTTONDOWN, 0, from);
        m_system.DeliverMouse(window, WM_MOUSEMOVE, 0, to);
        m_system.DeliverMouse(window, WM_LBUTTONUP, 0, to);
        m_system.DeliverMouse(window, WM_MOUSEMOVE, 0, {0, 0});
    };
    drag(outer, {400, 602}, {400, 502});
    drag(inner, {800, 100}, {700, 100});
    EXPECT_EQ(View().GetClientRect(), CRect(0, 0, 700, 500));
    m_frame->MoveWindow({0, 0, 1010, 865});
    EXPECT_EQ(View().GetClientRect(), CRect(0, 0, 800, 600)) << "menu and prompt keep what they were given";
    drag(Menu(), {3, 100}, {-97, 100});
    EXPECT_EQ(View().GetClientRect().Width(), 800) << "the menu is not the bar";
    drag(Menu(), {2, 100}, {-98, 100});
    EXPECT_EQ(View().GetClientRect().Width(), 700) << "but for its edge, since the bar is a pixel alone";
    drag(inner, {700, 100}, {-300, 100});
    EXPECT_EQ(View().GetClientRect().Width(), 10);
    drag(outer, {400, 300}, {400, 100});
    EXPECT_EQ(View().GetClientRect().Height(), 600) << "taken beside the bar";
    m_frame->ShowPromptWnd(0);
    m_frame->ShowStatusBar(0);
    const int height = View().GetClientRect().Height();
    drag(outer, {400, height + 1}, {400, 100});
    EXPECT_EQ(View().GetClientRect().Height(), height) << "without the prompt the bar stands still";
}

TEST_F(Shell, ToolBar) {
    const auto scale = [&] { return View().m_cCoor.GetScale(); };
    View().m_cCoor.Init({0, 6000, 0}, 0.1f, 1);
    CTvoToolBar& tools = m_frame->m_cToolBar;
    const auto at = [&](int id) { return tools.ButtonRect(id).CenterPoint(); };
    Click(tools, at(ID_SHOW_ZOOM_IN));
    EXPECT_FLOAT_EQ(scale(), 0.1f * 1.2f);
    Click(tools, at(ID_SHOW_PRE));
    EXPECT_FLOAT_EQ(scale(), 0.1f);
    m_system.DeliverMouse(tools, WM_LBUTTONDOWN, 0, at(ID_SHOW_ZOOM_OUT));
    m_system.DeliverMouse(tools, WM_LBUTTONUP, 0, at(ID_SHOW_PRE));
    EXPECT_FLOAT_EQ(scale(), 0.1f) << "released beside it";
    tools.EnableButton(ID_SHOW_ZOOM_OUT, false);
    Click(tools, at(ID_SHOW_ZOOM_OUT));
    EXPECT_FLOAT_EQ(scale(), 0.1f) << "dead";
    struct { int id; const char* last; } const rows[] = {
        {ID_SHOW_MOVE, "ShowMove"}, {ID_SHOW_RECT, "ShowRect"}, {ID_EDIT_WSELECT, "ShowRect"}};
    for (const auto& row : rows) {
        Click(tools, at(row.id));
        ASSERT_TRUE(View().m_pWork);
        EXPECT_EQ(View().m_pWork->m_strName, row.last);
    }
    View().ReSetToInitialState(1);
    m_db.GetContain().Start();
    m_db.AddNetLine({0, 0, 0}, {1000, 0, 0}, 0, 0);
    for (const auto& [id, lines] : {std::pair<int, int>{ID_UNDO, 0}, {ID_REDO, 1}}) {
        Click(tools, at(id));
        EXPECT_EQ(m_db.GetGouJianCount(2), lines);
    }
    EXPECT_EQ(History(), "REDO: 重做一步");
    EXPECT_EQ(m_frame->OnCommand(57023), 0);
    EXPECT_EQ(m_system.Focus(), &m_frame->GetPromptView()->m_cInput);
}

TEST_F(Shell, RepeatsTheLastCommand) {
    m_frame->RepeatCommand();
    EXPECT_EQ(m_frame->Trace(), "") << "none yet";
    m_frame->InvokeAny(kRanged);
    m_frame->RepeatCommand();
    m_frame->InvokeCommand(0x301, 5);
    m_system.DeliverMouse(View(), WM_RBUTTONDOWN, 0, {5, 5});
    EXPECT_EQ(m_frame->m_nCurrentArg, 0) << "the argument isn't used again";
    EXPECT_EQ(m_frame->Trace(), "range 300000+7; range 300000+7; run 301; run 301; ");
    m_frame->InvokeCommand(CMD_PAN, 0);
    m_frame->PostMessage(WM_CLOSE);
    m_system.Drain();
    EXPECT_EQ(m_frame->m_bClosing, 1);
    EXPECT_FALSE(View().IsWindow() || Menu().IsWindow() || Bar().IsWindow());
}

TEST_F(Shell, TurningSign) {
    m_frame->AppendPromptText("长任务");
    const std::string before = Output();
    m_frame->SetTickTagMode(1);
    std::string signs;
    for (int i = 0; i < 9; ++i) {
        m_system.Advance(50);
        ASSERT_EQ(Output().substr(0, Output().size() - 1), before);
        signs += Output().back();
    }
    EXPECT_EQ(signs, "|\\-/|\\-/|");
    m_frame->AppendPromptText("还在算");
    m_system.Advance(50);
    EXPECT_EQ(Output(), before + "\r\n还在算\\") << "no letter of the new line was eaten";
    m_frame->SetTickTagMode(0);
    EXPECT_EQ(Output(), before + "\r\n还在算");
    m_system.Advance(500);
    EXPECT_EQ(Output(), before + "\r\n还在算");
}

TEST_F(Shell, SessionLogInGbk) {
    const Folder folder;
    const CString oldPath = std::exchange(G_strWorkPath, CString((folder.m_path / "new").string() + "/"));
    WriteQeTvoSessionLog(1);
    {
        Frame frame;
        frame.AppendPromptText("直线\r\n圆");
        frame.AppendPromptText("qe_inter_cmd_ 7");
        WriteQeTvoSessionLog(0);
        frame.AppendPromptText("unheard");
        WriteQeTvoSessionLog(1);
    }
    const std::string text = GbkToUtf8(FileBytes(folder.m_path / "new" / "QeSession.log"));
    std::string shape;  // digits of the times left out
    for (const char c : text)
        if (c < '0' || c > '9') shape += c;
    EXPECT_EQ(shape, "New session started at -- ::\n[-- ::] 直线 圆\nSession ended at -- ::\n");
    G_strWorkPath = CString((folder.m_path / "new" / "QeSession.log").string() + "/");  // a file where a folder should be
    { Frame().AppendPromptText("x"); }
    G_strWorkPath = CString(folder.m_path.string() + "/");  // a pipe that nobody reads
    ASSERT_EQ(::mkfifo((folder.m_path / "QeSession.log").c_str(), 0600), 0);
    { Frame().AppendPromptText("x"); }
    WriteQeTvoSessionLog(0);
    G_strWorkPath = oldPath;
}

/// A view that asks for a layout before its frame has all panes.
TEST_F(Shell, AViewMayShowPanesWhileItIsMade) {
    struct Hasty : CTvoViewMgr {
        int OnCreate() override {
            m_pFrame->ShowScrnMenu(0);
            return CTvoViewMgr::OnCreate();
        }
    };
    struct HastyFrame : CTvoFrameBase {
        CTvoViewMgr* GetGraphicView() override { return new Hasty; }
    } frame;
    CGridDataBase db;
    frame.Create(nullptr, {0, 0, 800, 600}, WindowKind::kFrame);
    frame.CreatePanes(&db);
    EXPECT_EQ(frame.GetDtView()->GetClientRect().Width(), 800);
}

// ---- other programs ---------------------------------------------------------------------------------------

TEST_F(Shell, OutsidePrograms) {
    const Folder folder;
    const CString oldPath = std::exchange(G_strWorkPath, CString(folder.m_path.string()));
    for (const char* name : {"a b.TXT", "r.out", "x.dat", "a.b"}) std::ofstream(folder.m_path / name) << "1";
    m_system.WriteSetting("OutsidePrograms", "TextEditor", "edit --new");
    const std::string under = folder.m_path.string() + "/";
    for (const char* name : {"a b.TXT", "r.out", "x.dat", "a.b", "none.txt"}) OpenJJS(name, 0);
    OpenJJS((under + "x.dat").c_str(), 1);
    std::vector<std::string> ran;
    for (const auto& program : m_system.m_programs) {
        EXPECT_FALSE(program.m_wait);
        ran.push_back(testing::PrintToString(program.m_arguments));
    }
    const auto words = [](std::vector<std::string> list) { return testing::PrintToString(list); };
    EXPECT_EQ(ran, (std::vector<std::string>{words({"edit", "--new", under + "a b.TXT"}), words({"edit", "--new", under + "r.out"}),
                                             words({"xdg-open", under + "x.dat"}), words({"xdg-open", under + "x.dat"})}));
    EXPECT_EQ(History(), "无法确定文件a.b的文件类型");
    G_strWorkPath = oldPath;

    ExecuteAndWait("/opt/my prog", "-f  \"a b\" c\"d e\"", 0, 1);
    EXPECT_EQ(m_system.m_programs.back().m_arguments, (std::vector<std::string>{"/opt/my prog", "-f", "a b", "cd e"}));
    EXPECT_TRUE(m_system.m_programs.back().m_wait && m_system.m_messages.empty());
    m_system.m_canRun = false;
    ExecuteAndWait("none", "", 1, 0);
    EXPECT_TRUE(m_system.m_messages.empty());
    ExecuteAndWait("none", nullptr, 0, 0);
    EXPECT_EQ(m_system.m_messages, std::vector<std::string>{"程序运行失败！"});
}

TEST(Process, RunsWithoutAShell) {
    const Folder folder;
    const std::string out = (folder.m_path / "out").string();
    EXPECT_TRUE(RunProcess({"sh", "-c", "sleep 0.1; printf '%s|' \"$@\" > \"$0\"", out, "a b", "$HOME;", ""}, true));
    EXPECT_EQ(FileBytes(out), "a b|$HOME;||") << "it was waited for";
    EXPECT_FALSE(RunProcess({"/no/such/program"}, true));
    EXPECT_FALSE(RunProcess({}, false));
}

TEST(Process, GivesWhatAProgramWrites) {
    const ProcessOutput said = ReadProcess({"sh", "-c", "cat; echo out; echo err >&2; exit 3"}, 60000);
    EXPECT_EQ(said.m_text + said.m_errors, "out\nerr\n");
    EXPECT_EQ(said.m_status, 3);
    EXPECT_EQ(ReadProcess({"sh", "-c", "head -c 3000000 /dev/zero"}, 60000).m_text.size(), 1u << 20);
    const ProcessOutput endless = ReadProcess({"sh", "-c", "echo one; exec sleep 600"}, 300);
    EXPECT_TRUE(endless.m_timedOut);
    EXPECT_EQ(ReadProcess({"sh", "-c", "exec >&- 2>&-; exec sleep 600"}, 100).m_timedOut, true);
    EXPECT_EQ(ReadProcess({"sh", "-c", "kill -9 $$"}, 60000).m_status, -1);
    EXPECT_FALSE(ReadProcess({"/no/such/program"}, 60000).m_started);
}

TEST(ListIndex, AgreesWithThePlainLoop) {
    std::mt19937 dice(8);
    std::vector<CGouJianEx> pool(12);
    for (int round = 0; round < 300; ++round) {
        CGouJianExList list;
        std::vector<CGouJianEx*> plain;
        CListIndex index;
        for (int step = 0; step < 40; ++step) {
            CGouJianEx* const one = &pool[dice() % pool.size()];
            if (dice() % 2) {
                list.AddTail(one);
                plain.push_back(one);
            } else {
                index.Drop(list, one);
                std::erase(plain, one);
            }
            std::vector<CGouJianEx*> left;
            for (POSITION p = list.GetHeadPosition(); p;) left.push_back(list.GetNext(p));
            ASSERT_EQ(left, plain) << "round " << round << ", step " << step;
        }
    }
}

}  // namespace
