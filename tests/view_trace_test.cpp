// Sessions at the view, event by event, on the window system without a screen: what is told, what is awaited, what stands
// on the stack.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "model/goujian.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "net/grid_data_base.h"
#include "platform/canvas/client_dc.h"
#include "platform/window_system.h"
#include "shell/cmd_map.h"
#include "shell/prompt_view.h"
#include "shell/tvo_frame_base.h"
#include "view/rubber_line.h"
#include "view/select_command.h"
#include "view/simple_commands.h"
#include "view/tvo_view_mgr.h"
#include "view/view_commands.h"

namespace {

const char* const kWelcome = "澄岳前处理欢迎您!";
const char* const kSingle = "单选, 按<TAB>键切换到其他选择方式, 鼠标右键结束选择";
const char* const kWindow = "开窗选, 按<TAB>键切换到其他选择方式, 鼠标右键结束选择";

using Texts = std::vector<std::string>;

int g_completed, g_cancelled, g_deleted;
std::vector<unsigned> g_picked;  // identities that a selection handed over

/// The line by two points.
struct DrawLine : CDtWorkEx {
    DrawLine() {
        m_strName = "Line";
        m_strPrompt = "请输入起点";
        SwitchRubberLine(new CLineRubberLine, 0);
    }
    ~DrawLine() override { ++g_deleted; }
    unsigned OnGetObject(OBJECT_HINT, void* object, int) override {
        const CFPoint point = *static_cast<CFPoint*>(object);
        if (!m_given++) {
            m_first = point;
            SetPromptText("请输入终点");
            return QS_POINT;
        }
        m_pDataBase->Start();
        static_cast<CGridDataBase*>(m_pDataBase)->AddNetLine(m_first, point, 0, 0);
        return QS_FINISH;
    }
    unsigned OnQueryState() override {
        SetPromptText(m_given ? "请输入终点" : "请输入起点");
        return QS_POINT;
    }
    void OnComplete() override { ++g_completed; CDtWorkEx::OnComplete(); }
    void OnCancel() override { ++g_cancelled; CDtWorkEx::OnCancel(); }
    int m_given = 0;
    CFPoint m_first;
};

struct Pick : CCmdSimpleSelect {
    Pick(CTvoDataBase* db, CTvoViewMgr* view, bool first) : CCmdSimpleSelect(db, view, 2, 0) {
        m_strPrompt = "请选择对象";
        m_bSelectFirst = first;
        m_pEnd = [](CTvoDataBase*, CTvoViewMgr*, CArray<CGouJianEx*, CGouJianEx*>& objects) {
            for (CGouJianEx* obj : objects) g_picked.push_back(obj->get_m_dwGouJianID());
        };
    }
    ~Pick() override { ++g_deleted; }
    void OnPrepare() override { ++m_prepared; }
    void OnComplete() override { ++g_completed; CCmdSimpleSelect::OnComplete(); }
    void OnCancel() override { ++g_cancelled; CCmdSimpleSelect::OnCancel(); }
    int m_prepared = 0;
};

enum { kLine = 0x20001, kSelect = 0x20002, kPick = 0x20003 };

struct Frame : CTvoFrameBase {
    void InvokeCommand(int id, int arg) override {
        CTvoFrameBase::InvokeCommand(id, arg);
        CDtWorkEx* work = nullptr;
        if (id == kLine) work = new DrawLine;
        else if (id == kSelect || id == kPick) work = new Pick(m_db, m_pView, id == kPick);
        else return;
        work->m_pView = m_pView;
        work->m_pDataBase = m_db;
        m_pView->DoWork(work);
    }
    void AfterCommandComplete(int id) override { m_after.push_back(id); }
    CTvoDataBase* m_db = nullptr;
    std::vector<int> m_after;
};

/// A frame with its view of 800 by 600, and a person at it.
struct ViewTrace : testing::Test {
    void SetUp() override {
        g_cCmdMap = CCmdMap();
        g_cCmdMap.AddBasicCommands();
        g_cCmdMap.AddCommandMap("line", kLine, 0);
        g_cCmdMap.AddCommandMap("sel", kSelect, 0);
        g_cCmdMap.AddCommandMap("pick", kPick, 0);
        g_strPrompt = "命令:";
        g_completed = g_cancelled = g_deleted = 0;
        g_picked.clear();
        CTvoFrameBase::ResetFirstSize();
        m_frame = std::make_unique<Frame>();
        m_db = std::make_unique<CGridDataBase>();
        m_db->DestroyData();
        m_db->Initialize();
        m_frame->m_db = m_db.get();
        m_db->m_pFrame = m_frame.get();
        m_frame->Create(nullptr, {0, 0, 910, 765}, WindowKind::kFrame);
        m_frame->CreatePanes(m_db.get());
        m_view = m_frame->GetDtView();
        m_system.Drain();
    }
    void TearDown() override {
        m_db->m_pFrame = nullptr;
        m_db.reset();
        m_view->m_pDataBase = nullptr;
        m_frame.reset();
    }

    /// Pixel (x, y) is world (10 x, 6000 - 10 y).
    void Plan() {
        m_view->m_cCoor.Init({0, 6000, 0}, 0.1f, 1);
        m_view->RefreshViewPort();
        m_view->m_cCursor = CFPoint();
        m_view->Invalidate();
        m_system.Drain();
    }
    CGjNetLine* Line(float x1, float y1, float x2, float y2) {
        m_db->AddNetLine(CFPoint(x1, y1, 0), CFPoint(x2, y2, 0), 0, 0);
        m_system.Drain();
        return OnlyLineFrom(x1, y1);
    }
    CGjNetLine* OnlyLineFrom(float x, float y) {
        CArray<CGouJianEx*, CGouJianEx*> lines;
        m_db->GetGouJianArray(2, &lines);
        for (CGouJianEx* obj : lines) {
            auto* const line = static_cast<CGjNetLine*>(obj);
            if (line->m_pStartNode->m_fX == x && line->m_pStartNode->m_fY == y) return line;
        }
        return nullptr;
    }
    void Move(int x, int y) { m_system.DeliverMouse(*m_view, WM_MOUSEMOVE, 0, {x, y}); }
    void Click(int x, int y) {
        Move(x, y);
        m_system.DeliverMouse(*m_view, WM_LBUTTONDOWN, 0, {x, y});
        m_system.DeliverMouse(*m_view, WM_LBUTTONUP, 0, {x, y});
    }
    void Right(int x = 0, int y = 0) {
        m_system.DeliverMouse(*m_view, WM_RBUTTONDOWN, 0, {x, y});
        m_system.DeliverMouse(*m_view, WM_RBUTTONUP, 0, {x, y});
    }
    void Middle(UINT message, int x, int y) { m_system.DeliverMouse(*m_view, message, 0, {x, y}); }
    void Key(UINT key) { m_system.DeliverKey(Input(), key, false, false, ""); }
    void Type(const std::string& text) { m_system.DeliverKey(Input(), 0, false, false, text); }
    void Enter(const std::string& text) {
        Type(text);
        Key(VK_RETURN);
    }
    CPromptInput& Input() { return m_frame->GetPromptView()->m_cInput; }
    std::string Typed() { return Input().GetWindowText().GetString(); }
    std::string Prompt() { return g_strPrompt.GetString(); }
    Texts History() {
        Texts lines;
        for (const CString& line : m_frame->GetPromptView()->m_aHistory) lines.push_back(line.GetString());
        return lines;
    }
    Texts Since(std::size_t count) {
        Texts all = History();
        return {all.begin() + static_cast<std::ptrdiff_t>(std::min(count, all.size())), all.end()};
    }
    /// Names on the stack, head first; "null" for idle.
    std::string Stack() {
        std::string names;
        for (POSITION p = m_view->m_cViewStack.GetHeadPosition(); p;) {
            const CDtWorkEx* const work = m_view->m_cViewStack.GetNext(p).m_pWork;
            if (!names.empty()) names += ' ';
            names += work ? work->m_strName.GetString() : "null";
        }
        return names;
    }
    std::string Work() { return m_view->m_pWork ? m_view->m_pWork->m_strName.GetString() : "null"; }
    void ExpectIdle() {
        EXPECT_EQ(Work(), "null");
        EXPECT_EQ(Stack(), "");
        EXPECT_EQ(m_view->m_nObjectHint, 0u);
        EXPECT_EQ(m_view->m_nWorkState, 0);
        EXPECT_EQ(m_view->m_nWorkMessage, 0x500u);
        EXPECT_EQ(m_view->m_byteFilter, 255);
        EXPECT_TRUE(m_view->m_pSelectedList->IsEmpty());
        EXPECT_EQ(Prompt(), "命令:");
    }
    void ExpectPoint(const CFPoint& p, float x, float y) {
        EXPECT_NEAR(p.x, x, 0.01);
        EXPECT_NEAR(p.y, y, 0.01);
    }
    /// What is on the glass is the base map with cursor and rubber line, each drawn once.
    void ExpectClean(const char* where) {
        CClientDC screen(m_view);
        CDC seen;
        m_view->CopyBaseMap(&seen, &screen, &screen);
        const int shown = g_bSnapSymbolShown;
        if (shown) m_view->DrawSnapSymbol(&seen, 0x00FFFF, g_cSnapSymbolPoint, g_nSnapSymbolKind);
        m_view->OverlapBaseMap(&seen, 7);
        EXPECT_TRUE(*seen.Surface() == *m_view->m_cBaseMap.Surface()) << where;
        g_bSnapSymbolShown = shown;
    }

    CWindowSystem m_system;
    std::unique_ptr<Frame> m_frame;
    std::unique_ptr<CGridDataBase> m_db;
    CTvoViewMgr* m_view = nullptr;
};

TEST_F(ViewTrace, StartShowsModelAndGrid) {
    EXPECT_EQ(History(), Texts{kWelcome});
    EXPECT_EQ(m_view->GetClientRect(), CRect(0, 0, 800, 600));
    EXPECT_EQ(m_view->m_nCoorHistory, 2);
    EXPECT_NEAR(m_view->m_cCoor.GetScale(), 800.0 / 240000, 1e-8);
    ExpectPoint(m_view->m_cCoor.GetOrigin(), 0, 165000);
    ExpectIdle();
    ExpectClean("start");
}

TEST_F(ViewTrace, LineByTwoClicks) {
    Plan();
    Enter("line");
    EXPECT_EQ(Stack(), "null");
    EXPECT_EQ(Prompt(), "请输入起点");
    EXPECT_EQ(History(), (Texts{kWelcome, "命令: line"}));
    EXPECT_EQ(Typed(), "");
    EXPECT_EQ(m_view->m_nObjectHint, 32u);
    EXPECT_EQ(m_view->m_nWorkMessage, 0x501u);
    ExpectClean("started");
    Click(100, 100);
    EXPECT_EQ(m_view->m_nInputPoint, 1);
    EXPECT_EQ(Prompt(), "请输入终点");
    ExpectClean("one point");
    Move(200, 100);
    ExpectPoint(m_view->m_cCursor, 2000, 5000);
    EXPECT_EQ(m_frame->m_cStatusBar.GetPaneText(0).Std(), "2000.00,5000.00,0.00");
    EXPECT_EQ(m_frame->m_cStatusBar.GetPaneText(1).Std(), "1000.00,0.00,0.00");
    ExpectClean("rubber line");
    Click(200, 100);
    ExpectIdle();
    EXPECT_EQ(m_view->m_nInputPoint, 2);
    EXPECT_EQ(History(), (Texts{kWelcome, "命令: line", "请输入起点"}));
    EXPECT_EQ(m_frame->m_after, std::vector<int>{kLine});
    EXPECT_EQ(m_db->GetGouJianCount(2), 1);
    EXPECT_EQ(std::tie(g_completed, g_cancelled, g_deleted), std::make_tuple(1, 0, 1));
    ExpectClean("drawn");
    Enter("u");
    EXPECT_EQ(m_db->GetGouJianCount(2), 0);
    EXPECT_EQ(History().back(), "UNDO: 回退一步");
}

TEST_F(ViewTrace, SnapAndTypedCoordinates) {
    Plan();
    m_db->AddNetNode(1000, 5000);
    m_system.Drain();
    Enter("line");
    Move(103, 98);
    EXPECT_EQ(m_view->m_bSnapHit, 1);
    EXPECT_EQ(g_bSnapSymbolShown, 1);
    ExpectPoint(m_view->m_cCursor, 1000, 5000);
    ExpectClean("snapped");
    m_system.DeliverMouse(*m_view, WM_LBUTTONDOWN, 0, {103, 98});
    ExpectPoint(m_view->m_aInputPoint[0], 1000, 5000);
    Enter("@1000<0");
    EXPECT_EQ(History().back(), "请输入终点 @1000<0");
    ExpectIdle();
    const CGjNetLine* line = OnlyLineFrom(1000, 5000);
    ASSERT_TRUE(line);
    ExpectPoint(CFPoint(line->m_pEndNode->m_fX, line->m_pEndNode->m_fY, 0), 2000, 5000);

    Enter("line");
    Enter("@1,1");
    EXPECT_EQ(m_frame->m_cStatusBar.GetPaneText(1).Std(), "第一点不能是相对坐标");
    EXPECT_EQ(History().back(), "请输入起点 @1,1");
    EXPECT_EQ(m_view->m_nInputPoint, 0);
    struct { const char* text; bool point; float x, y; } const rows[] = {
        {"10", false, 0, 0}, {"1,2,3", false, 0, 0}, {"1e999,0", false, 0, 0}, {"5", false, 0, 0},
        {"3<90", true, 0, 3}, {"a,b", true, 0, 0}, {"inf,nan", true, 0, 0}, {"1,", true, 1, 0}, {"-1.5,2e3", true, -1.5f, 2000}};
    for (const auto& row : rows) {
        float values[2] = {};
        int polar = 0, relative = 0;
        CFPoint point;
        EXPECT_EQ(m_view->ProcessInputCoor(row.text, point), row.point) << row.text;
        if (row.point) ExpectPoint(point, row.x, row.y);
        EXPECT_EQ(ParseCoordString(row.text, values, &polar, &relative), row.point) << row.text;
    }
}

TEST_F(ViewTrace, RightClicks) {
    Plan();
    Enter("line");
    Type("1000,2000");
    Right();
    EXPECT_EQ(m_view->m_nInputPoint, 1);
    EXPECT_EQ(Prompt(), "请输入终点");
    EXPECT_EQ(Typed(), "");
    Right();
    ExpectIdle();
    EXPECT_EQ(std::tie(g_completed, g_cancelled, g_deleted), std::make_tuple(1, 0, 1));
    EXPECT_TRUE(m_frame->m_after.empty()) << "a command that a right click ends doesn't report";
    ExpectClean("ended");
    const std::size_t told = History().size();
    Right();
    EXPECT_EQ(Work(), "Line") << "idle it repeats";
    EXPECT_EQ(History().size(), told);
    Key(VK_ESCAPE);
    Enter("z");
    Right();
    ExpectIdle();
    EXPECT_EQ(m_frame->m_after, std::vector<int>{CMD_ZOOM});
}

TEST_F(ViewTrace, TabDuringASelectionAndHandOver) {
    Plan();
    CGjNetLine* const a = Line(1000, 1000, 2000, 1000);
    Enter("sel");
    EXPECT_EQ(Stack(), "CCmdSimpleSelect null");
    EXPECT_EQ(Work(), "SingleSelect");
    EXPECT_EQ(Since(1), (Texts{"命令: sel", kSingle}));
    EXPECT_EQ(m_view->m_nSelectKind, 0);
    Key(VK_TAB);
    EXPECT_EQ(Work(), "WindowSelect");
    EXPECT_EQ(Stack(), "CCmdSimpleSelect null");
    ExpectClean("window");
    Click(50, 550);
    EXPECT_EQ(m_view->m_nObjectHint, 32u);
    Move(250, 450);
    ExpectClean("window drawn");
    Click(250, 450);
    EXPECT_EQ(a->get_m_byteStatus(), 1);
    EXPECT_EQ(Work(), "SingleSelect") << "nothing has been handed over yet";
    EXPECT_EQ(Stack(), "CCmdSimpleSelect null");
    EXPECT_TRUE(g_picked.empty());
    Right();
    EXPECT_EQ(g_picked, std::vector<unsigned>{a->get_m_dwGouJianID()});
    EXPECT_EQ(a->get_m_byteStatus(), 0);
    EXPECT_EQ(m_frame->m_after, std::vector<int>{kSelect});
    ExpectIdle();
    EXPECT_EQ(m_view->m_bKeepSelected, 1);
    EXPECT_EQ(History(), (Texts{kWelcome, "命令: sel", kSingle, kWindow, "请选择对象", "对象被选中", kSingle, "请选择对象"}));
    EXPECT_EQ(std::tie(g_completed, g_cancelled, g_deleted), std::make_tuple(1, 0, 1));
}

TEST_F(ViewTrace, MiddleButtonPansOverACommand) {
    Plan();
    Enter("line");
    Click(100, 100);
    Move(200, 200);
    Middle(WM_MBUTTONDOWN, 200, 200);
    EXPECT_EQ(Work(), "ShowMove");
    EXPECT_EQ(Stack(), "Line null");
    EXPECT_EQ(Prompt(), "请拖动鼠标移动查看");
    Middle(WM_MOUSEMOVE, 220, 200);
    ExpectPoint(m_view->m_cCoor.GetOrigin(), -200, 6000);
    ExpectPoint(m_view->m_cCursor, 2000, 4000);
    Middle(WM_MOUSEMOVE, 221, 200);
    ExpectPoint(m_view->m_cCoor.GetOrigin(), -200, 6000);
    Middle(WM_MBUTTONUP, 221, 200);
    EXPECT_EQ(Work(), "Line");
    EXPECT_EQ(Stack(), "null");
    EXPECT_EQ(m_view->m_nInputPoint, 1);
    ExpectPoint(m_view->m_aInputPoint[0], 1000, 5000);
    EXPECT_EQ(Since(3), (Texts{"请输入终点", "请拖动鼠标移动查看"}));
    EXPECT_EQ(Prompt(), "请输入终点");
    EXPECT_EQ(GetCapture(), nullptr);
    ExpectClean("panned");
    Key(VK_ESCAPE);
    const std::size_t told = History().size();
    Middle(WM_MBUTTONDOWN, 10, 10);
    Middle(WM_MBUTTONUP, 10, 10);
    ExpectIdle();
    EXPECT_EQ(History().size(), told);
    // Over a window selection after its first corner: that stays where it is in the world.
    Enter("sel");
    Key(VK_TAB);
    Click(300, 300);
    const CFPoint corner = m_view->m_aInputPoint[0];
    Middle(WM_MBUTTONDOWN, 10, 10);
    EXPECT_EQ(Stack(), "WindowSelect CCmdSimpleSelect null");
    Middle(WM_MOUSEMOVE, 60, 80);
    Middle(WM_MBUTTONUP, 60, 80);
    EXPECT_EQ(Work(), "WindowSelect");
    EXPECT_EQ(m_view->m_nInputPoint, 1);
    ExpectPoint(m_view->m_aInputPoint[0], corner.x, corner.y);
    EXPECT_EQ(m_view->m_nObjectHint, 32u);
    ExpectClean("panned over a window");
}

TEST_F(ViewTrace, Escape) {
    Plan();
    CGjNetLine* const a = Line(1000, 1000, 2000, 1000);
    Enter("line");
    Click(100, 100);
    Type("abc");
    Key(VK_ESCAPE);
    EXPECT_EQ(History().back(), "*abc 取消*");
    EXPECT_EQ(Typed(), "");
    EXPECT_EQ(Work(), "Line");
    Key(VK_ESCAPE);
    EXPECT_EQ(History().back(), "请输入终点 *ESC 取消*");
    ExpectIdle();
    EXPECT_EQ(std::tie(g_completed, g_cancelled, g_deleted), std::make_tuple(0, 1, 1));
    ExpectClean("cancelled");
    a->set_m_byteStatus(1);
    m_view->m_pSelectedList->AddTail(a);
    Key(VK_ESCAPE);
    EXPECT_EQ(a->get_m_byteStatus(), 0);
    const std::size_t told = History().size();
    Key(VK_ESCAPE);
    EXPECT_EQ(History().size(), told);
    Enter("sel");
    Key(VK_ESCAPE);
    EXPECT_EQ(History().back(), std::string(kSingle) + " *ESC 取消*");
    ExpectIdle();
    EXPECT_EQ(std::tie(g_cancelled, g_deleted), std::make_tuple(2, 2));
}

TEST_F(ViewTrace, AClickBeginsAWindow) {
    Plan();
    CGjNetLine* const b = Line(3000, 3000, 3000, 5000);
    Enter("sel");
    Click(350, 350);
    EXPECT_EQ(Work(), "WindowSelect");
    EXPECT_EQ(m_view->m_nInputPoint, 1);
    ExpectPoint(m_view->m_aInputPoint[0], 3500, 2500);
    Move(250, 200);
    ExpectClean("dashed window");
    Click(250, 200);
    EXPECT_EQ(b->get_m_byteStatus(), 1) << "to the left by touching";
    EXPECT_EQ(Work(), "SingleSelect");
    Key(VK_RETURN);
    EXPECT_EQ(Work(), "SingleSelect") << "Enter doesn't end a selection whose command awaits no text";
    Click(350, 350);
    Click(250, 200);
    EXPECT_EQ(b->get_m_byteStatus(), 0) << "a second time takes it out";
    Click(350, 350);
    Click(250, 340);
    EXPECT_TRUE(m_view->m_pSelectedList->IsEmpty());
    Texts all = History();
    EXPECT_NE(std::find(all.begin(), all.end(), "没有对象被选中"), all.end());
}

TEST_F(ViewTrace, APolygonSelectsByItsSenseAndFollowsEachPoint) {
    for (const bool anticlockwise : {true, false}) {
        SCOPED_TRACE(anticlockwise);
        g_picked.clear();
        Plan();
        CGjNetLine* const inside = Line(1500, 1000, 2500, 1000);
        CGjNetLine* const across = Line(3000, 1500, 6000, 1500);
        Enter("sel");
        Key(VK_TAB);
        Key(VK_TAB);
        EXPECT_EQ(Work(), "PolygonSelect");
        const CPoint corners[] = {{50, 550}, {400, 550}, {400, 300}, {50, 300}};
        for (int i = 0; i < 4; ++i) {
            const CPoint p = corners[anticlockwise ? i : (5 - i) % 4];
            Click(p.x, p.y);
            ExpectClean("point");
            EXPECT_EQ(m_view->m_pSelectedList->IsEmpty(), i < 2);
        }
        EXPECT_EQ(inside->get_m_byteStatus(), 1);
        EXPECT_EQ(across->get_m_byteStatus(), anticlockwise ? 0 : 1);
        EXPECT_EQ(Prompt(), "对象被选中");
        Right();
        EXPECT_EQ(g_picked.size(), anticlockwise ? 1u : 2u);
        ExpectIdle();
        m_db->DeleteGouJian(inside);
        m_db->DeleteGouJian(across);
        m_system.Drain();
    }
}

TEST_F(ViewTrace, ZoomWindow) {
    const std::string prompt = "[放大<I>/缩小<O>/全部<A>/扩展<E>/开窗<W>]<扩展<E>";
    Plan();
    const int views = m_view->m_nCoorHistory;
    Enter("z");
    EXPECT_EQ(Prompt(), prompt);
    Enter("x");
    EXPECT_EQ(History().back(), prompt + " x");
    EXPECT_EQ(Prompt(), "*x: 未知命令参数* \t" + prompt);
    Enter("w");
    EXPECT_EQ(Prompt(), "请给定第1角点");
    Click(100, 100);
    EXPECT_EQ(Prompt(), "请给定第2角点");
    ExpectClean("one corner");
    Click(300, 300);
    EXPECT_EQ(m_view->m_nCoorHistory, views + 1);
    EXPECT_NEAR(m_view->m_cCoor.GetScale(), 0.3, 1e-6);
    ExpectPoint(m_view->m_cCoor.GetOrigin(), 666.667f, 5000);
    EXPECT_EQ(m_frame->m_after, std::vector<int>{CMD_ZOOM});
    ExpectIdle();
    ExpectClean("zoomed");
    // A right click after the first corner shows nothing else.
    Enter("z");
    Enter("w");
    Click(100, 100);
    Right();
    EXPECT_NEAR(m_view->m_cCoor.GetScale(), 0.3, 1e-6);
    ExpectIdle();
}

TEST_F(ViewTrace, PickWithAnOwnerEndsByAPostedTwo) {
    Plan();
    CGjNetLine* const a = Line(1000, 1000, 2000, 1000);
    Enter("pick");
    EXPECT_EQ(Work(), "SingleSelect");
    EXPECT_EQ(Stack(), "null");
    EXPECT_EQ(Prompt(), "请选择对象");
    Right();
    EXPECT_EQ(Work(), "SingleSelect") << "the owner's answer to a right click is none";
    Click(150, 500);
    EXPECT_EQ(g_picked, std::vector<unsigned>{a->get_m_dwGouJianID()});
    EXPECT_EQ(m_frame->m_after, std::vector<int>{kPick});
    EXPECT_EQ(std::tie(g_completed, g_cancelled, g_deleted), std::make_tuple(1, 0, 1));
    ExpectIdle();
    EXPECT_EQ(a->get_m_byteStatus(), 0);
    ExpectClean("picked");
}

// A pick whose last hook goes on to draw a line: that one must not go down with it, nor lose its prompt.
TEST_F(ViewTrace, AFinishedCommandMayStartTheNext) {
    for (const bool first : {false, true}) {
        SCOPED_TRACE(first ? "picked by a click" : "selected first, then the right button");
        g_completed = g_cancelled = g_deleted = 0;
        Plan();
        CGjNetLine* const a = Line(1000, 1000, 2000, 1000);
        auto* const pick = new Pick(m_db.get(), m_view, first);
        pick->m_pEnd = [](CTvoDataBase*, CTvoViewMgr* view, CArray<CGouJianEx*, CGouJianEx*>&) {
            view->m_pFrame->InvokeCommand(kLine, 0);
        };
        m_view->DoWork(pick);
        m_system.Drain();
        Click(150, 500);
        if (!first) {
            Click(50, 450);
            Right();
        }
        EXPECT_EQ(Work(), "Line");
        EXPECT_EQ(m_view->m_nObjectHint, 32u);
        EXPECT_EQ(Prompt(), "请输入起点");
        EXPECT_EQ(g_deleted, 1);
        ExpectClean("next");
        Key(VK_ESCAPE);
        ExpectIdle();
        EXPECT_EQ(std::tie(g_completed, g_deleted), std::make_tuple(1, 2));
        m_db->DeleteGouJian(a);
        m_system.Drain();
    }
}

// What an owner awaits after the view was moved may be its end.
TEST_F(ViewTrace, AnOwnerMayCancelWhenItComesBack) {
    struct Fickle : Pick {
        using Pick::Pick;
        unsigned OnQueryState() override { return QS_CANCEL; }
    };
    Plan();
    m_view->DoWork(new Fickle(m_db.get(), m_view, true));
    m_system.Drain();
    Middle(WM_MBUTTONDOWN, 10, 10);
    Middle(WM_MBUTTONUP, 10, 10);
    ExpectIdle();
    EXPECT_EQ(std::tie(g_completed, g_cancelled, g_deleted), std::make_tuple(0, 1, 1));
}

TEST_F(ViewTrace, ACommandIsMarkedCompletedBeforeOrAfterItsHook) {
    static int seen;
    struct Watch : DrawLine {
        void OnComplete() override {
            seen = m_bCompleted;
            m_pView->SendMessage(WM_DTVIEW_WORK, DTW_NORMAL);  // as from a dialog
            DrawLine::OnComplete();
        }
    };
    Plan();
    for (const bool finish : {false, true}) {
        g_completed = g_deleted = 0;
        seen = -1;
        auto* const watch = new Watch;
        watch->m_pView = m_view;
        watch->m_pDataBase = m_db.get();
        m_view->DoWork(watch);
        m_system.Drain();
        if (finish) {
            Click(100, 100);
            Click(200, 100);
        } else {
            Right();
        }
        EXPECT_EQ(seen, finish ? 1 : 0);
        EXPECT_EQ(std::tie(g_completed, g_deleted), std::make_tuple(1, 1));
        ExpectIdle();
    }
}

TEST_F(ViewTrace, ASelectionOfTheCommandsOwnTypes) {
    DrawLine command;
    command.m_pView = m_view;
    for (const std::uint8_t type : {std::uint8_t{3}, std::uint8_t{5}}) command.m_aFilter.Add(type);
    EXPECT_EQ(command.SwitchToSelectCommand(1, 2, nullptr), 8u);
    EXPECT_EQ(m_view->m_aFilter.GetSize(), 0) << "null leaves both as they were";
    command.SwitchToSelectCommand(1, 2, &command.m_aFilter);
    EXPECT_EQ(command.m_aFilter.GetSize(), 2);
    EXPECT_EQ(m_view->m_aFilter.GetSize(), 2);
    EXPECT_EQ(std::make_tuple(m_view->m_nSelectKind, int{m_view->m_byteFilter}), std::make_tuple(1, 2));
}

TEST_F(ViewTrace, ASelectionFromOutsidePushesTwice) {
    for (const bool cancel : {false, true}) {
        SCOPED_TRACE(cancel);
        g_completed = g_cancelled = g_deleted = 0;
        g_picked.clear();
        m_view->m_bKeepSelected = 0;
        Plan();
        CGjNetLine* const a = Line(1000, 1000, 2000, 1000);
        auto* const pick = new Pick(m_db.get(), m_view, false);
        m_view->DoWork(pick);
        m_view->_Svr_EditWSelect();
        EXPECT_EQ(Stack(), "CCmdSimpleSelect CCmdSimpleSelect null");
        m_system.Drain();
        EXPECT_EQ(Work(), "WindowSelect");
        EXPECT_EQ(pick->m_prepared, 0);
        Click(50, 550);
        Click(250, 450);
        EXPECT_EQ(Work(), "WindowSelect");
        EXPECT_EQ(m_view->m_cViewStack.GetCount(), 3);
        if (cancel) Key(VK_ESCAPE);
        else Right();
        ExpectIdle();
        EXPECT_EQ(g_deleted, 1);
        EXPECT_EQ(g_completed + g_cancelled, 1);
        EXPECT_EQ(g_picked.size(), cancel ? 0u : 1u);
        m_db->DeleteGouJian(a);
        m_system.Drain();
    }
}

TEST_F(ViewTrace, KeyboardPointsAndAReplacedCommand) {
    Plan();
    Enter("line");
    Move(100, 100);
    Key(VK_RIGHT);
    ExpectPoint(m_view->m_cCursor, 2000, 5000);
    EXPECT_EQ(m_view->m_bKbdMoved, 0) << "the echo has come";
    ExpectClean("moved by key");
    Key(VK_RETURN);
    EXPECT_EQ(m_view->m_nInputPoint, 1);
    ExpectPoint(m_view->m_aInputPoint[0], 2000, 5000);
    Key(VK_TAB);
    EXPECT_EQ(Prompt(), "*当前操作不允许做对象选择*");
    EXPECT_EQ(History().back(), "请输入终点");
    m_frame->InvokeCommand(CMD_ZOOM, 0);
    m_system.Drain();
    EXPECT_EQ(Work(), "Zoom");
    EXPECT_EQ(Stack(), "null");
    EXPECT_EQ(std::tie(g_completed, g_cancelled, g_deleted), std::make_tuple(0, 1, 1));
    ExpectClean("replaced");
}

}  // namespace
