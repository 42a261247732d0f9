// Sessions of thousands of random events: every command lives and ends as it should, whatever hands do.
#include <gtest/gtest.h>

#include <memory>
#include <cmath>
#include <map>
#include <random>
#include <set>
#include <string>

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

namespace {

/// What became of each command.
struct Fate {
    int completed = 0, cancelled = 0, deleted = 0;
};
std::map<int, Fate> g_fates;
std::set<const CDtWorkEx*> g_living;

/// A command that draws lines, asks for selections and text, undoes, or starts others, as its dice say.
class Whim : public CDtWorkEx {
public:
    Whim(CTvoViewMgr* view, CGridDataBase* db, unsigned seed) : m_id(static_cast<int>(g_fates.size())), m_dice(seed) {
        m_pView = view;
        m_pDataBase = db;
        m_strName = "Whim";
        m_strPrompt = "whim";
        static const int hints[] = {QS_POINT, QS_POINT | QS_TEXT, QS_SELECT, QS_TEXT};
        m_nObjectHint = hints[m_dice() % 4];
        m_byteFilter = 2;
        m_nSelectKind = static_cast<int>(m_dice() % 4) - 1;
        m_bSelectFirst = m_dice() % 8 == 0;
        m_bTakeClicks = m_dice() % 2;
        m_nMouseMask = m_dice() % 4 ? 0 : m_dice() & 127;
        switch (m_dice() % 4) {
            case 0: SwitchRubberLine(new CRectRubberLine, 0); break;
            case 1: SwitchRubberLine(new CArcRubberLine, 0); break;
            case 2: SwitchRubberLine(new CPieRubberLine, 0); break;
            default: SwitchRubberLine(new CPolyRubberLine, 0);
        }
        g_fates[m_id];
        g_living.insert(this);
    }
    ~Whim() override {
        ++g_fates[m_id].deleted;
        g_living.erase(this);
    }
    unsigned OnGetObject(OBJECT_HINT hint, void* object, int) override {
        if (hint == OH_POINT) {
            const CFPoint p = *static_cast<CFPoint*>(object);
            if (m_dice() % 2) static_cast<CGridDataBase*>(m_pDataBase)->AddNetLine(m_last, p, 0, 0);
            m_last = p;
        }
        return Answer();
    }
    unsigned OnMouseNotify(unsigned, unsigned, CFPoint) override {
        static const unsigned codes[] = {DTW_NONE, DTW_NORMAL, DTW_POINT, 2};
        return codes[m_dice() % 4];
    }
    unsigned OnQueryState() override { return m_dice() % 3 ? unsigned{QS_POINT} : Answer(); }
    void OnComplete() override {
        ++g_fates[m_id].completed;
        CDtWorkEx::OnComplete();
        if (m_dice() % 20 == 0) StartAnother();
    }
    void OnCancel() override {
        ++g_fates[m_id].cancelled;
        CDtWorkEx::OnCancel();
    }

private:
    void StartAnother() {
        if (g_fates.size() < 100000) m_pView->DoWork(new Whim(static_cast<CTvoViewMgr*>(m_pView), static_cast<CGridDataBase*>(m_pDataBase), static_cast<unsigned>(m_dice())));
    }
    unsigned Answer() {
        switch (m_dice() % 12) {
            case 0: return QS_FINISH;
            case 1: return QS_CANCEL;
            case 2: return m_dice() % 4 ? unsigned{QS_POINT} : unsigned{QS_RESTART};
            case 3: return SwitchToSelectCommand(static_cast<int>(m_dice() % 3), 2, nullptr);
            case 4: return QS_TEXT;
            case 5: return unsigned{QS_TEXT} | QS_POINT;
            case 6:
                if (m_dice() % 3 == 0) StartAnother();
                return QS_POINT;
            case 7:
                if (m_dice() % 3 == 0) m_pView->ReSetToInitialState(static_cast<int>(m_dice() % 2));
                return QS_POINT;
            case 8: m_pDataBase->Undo(m_pView, &m_pView->m_cCoor); return QS_POINT;
            default: return QS_POINT;
        }
    }
    int m_id;
    std::mt19937 m_dice;
    CFPoint m_last;
};

struct Frame : CTvoFrameBase {
    void InvokeCommand(int id, int arg) override {
        CTvoFrameBase::InvokeCommand(id, arg);
        if (id == 0x20001) m_pView->DoWork(new Whim(m_pView, m_db, ++m_seed));
    }
    CGridDataBase* m_db = nullptr;
    unsigned m_seed = 0;
};

/// Hands that do anything.
class Hands {
public:
    Hands(CWindowSystem& system, Frame& frame, CGridDataBase& db, unsigned seed) : m_system(system), m_frame(frame), m_db(db), m_dice(seed) {}

    void DoSomething() {
        CTvoViewMgr& view = *m_frame.GetDtView();
        static const UINT buttons[] = {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_MBUTTONDOWN, WM_MBUTTONUP, WM_RBUTTONDOWN, WM_RBUTTONUP};
        static const UINT keys[] = {VK_RETURN, VK_TAB, VK_ESCAPE, VK_LEFT, VK_UP, VK_F2, VK_F3, VK_F4, VK_F5, VK_F7, VK_F8, 'A'};
        static const char* const texts[] = {"whim", "z", "e", "@1000,500", "3<90", "w", "9e37,1", "垃圾", "u", "re", "pan", "1,1", ","};
        const CPoint p(static_cast<int>(m_dice() % 500) - 20, static_cast<int>(m_dice() % 400) - 20);
        switch (m_dice() % 16) {
            case 0: case 1: case 2: case 3: Mouse(view, WM_MOUSEMOVE, p); break;
            case 4: case 5: case 6: Mouse(view, WM_MOUSEMOVE, p); Mouse(view, WM_LBUTTONDOWN, p); Mouse(view, WM_LBUTTONUP, p); break;
            case 7: Mouse(view, buttons[m_dice() % 6], p); break;
            case 8: case 9: Key(keys[m_dice() % 12]); break;
            case 10: case 11: case 12: Type(texts[m_dice() % 13]); if (m_dice() % 4) Key(VK_RETURN); break;
            case 13: m_system.DeliverWheel(view, 0, m_dice() % 2 ? 120 : -120, p); break;
            case 14: Service(view); break;
            default: if (m_dice() % 8 == 0) m_frame.MoveWindow({0, 0, static_cast<int>(m_dice() % 600), static_cast<int>(m_dice() % 600)}); else Type("whim"), Key(VK_RETURN);
        }
        m_system.Drain();
    }

private:
    void Mouse(CTvoViewMgr& view, UINT message, CPoint p) { m_system.DeliverMouse(view, message, 0, p); }
    void Key(UINT key) { m_system.DeliverKey(m_frame.GetPromptView()->m_cInput, key, m_dice() % 9 == 0, m_dice() % 9 == 0, ""); }
    void Type(const char* text) { m_system.DeliverKey(m_frame.GetPromptView()->m_cInput, 0, false, false, text); }
    void Service(CTvoViewMgr& view) {
        switch (m_dice() % 10) {
            case 0: view._Svr_EditWSelect(); break;
            case 1: view._Svr_EditSSelect(); break;
            case 2: view._Svr_EditMSelect(); break;
            case 3: view._Svr_ShowRect(); break;
            case 4: view._Svr_ShowPre(); break;
            case 5: view.SaveCurrentViewState(); break;
            case 6: view.RestoreCurrentViewState(); break;
            case 7: view._Svr_Undo(1); break;
            case 8: m_db.UndoInit(); break;
            default: view._Fun_CenterAt(static_cast<float>(m_dice() % 9000), 1e30f * static_cast<float>(m_dice() % 2));
        }
    }
    CWindowSystem& m_system;
    Frame& m_frame;
    CGridDataBase& m_db;
    std::mt19937 m_dice;
};

void ExpectSound(CTvoViewMgr& view, CGridDataBase& db, const std::string& where) {
    const auto lives = [&](const CDtWorkEx* work) {
        return !work || view.IsStockObject(work) || g_living.count(work) || work->m_strName == "Zoom" || work->m_strName == "ShowMove";
    };
    ASSERT_TRUE(lives(view.m_pWork)) << where;
    for (POSITION p = view.m_cViewStack.GetHeadPosition(); p;) ASSERT_TRUE(lives(view.m_cViewStack.GetNext(p).m_pWork)) << where;
    if (view.m_nWorkState == 0) {
        ASSERT_EQ(view.m_pWork, nullptr) << where;
        ASSERT_TRUE(view.m_cViewStack.IsEmpty()) << where;
        ASSERT_EQ(view.m_nObjectHint, 0u) << where;
    }
    for (POSITION p = view.m_pSelectedList->GetHeadPosition(); p;) {
        CGouJianEx* const obj = view.m_pSelectedList->GetNext(p);  // freed memory if it is not what it seems
        ASSERT_EQ(obj->m_pDataBase, &db) << where;
    }
    ASSERT_TRUE(std::isfinite(view.m_cCoor.GetScale()) && view.m_cCoor.GetScale() > 0) << where;
}

TEST(ViewRandom, EveryCommandEndsOnce) {
    for (unsigned round = 1; round <= 12; ++round) {
        g_fates.clear();
        g_living.clear();
        g_strPrompt = "命令:";
        g_cCmdMap = CCmdMap();
        g_cCmdMap.AddBasicCommands();
        g_cCmdMap.AddCommandMap("whim", 0x20001, 0);
        CWindowSystem system;
        auto db = std::make_unique<CGridDataBase>();
        db->DestroyData();
        db->Initialize();
        auto frame = std::make_unique<Frame>();
        frame->m_db = db.get();
        frame->m_seed = round * 1000;
        db->m_pFrame = frame.get();
        frame->Create(nullptr, {0, 0, 510, 565}, WindowKind::kFrame);
        frame->CreatePanes(db.get());
        system.Drain();
        Hands hands(system, *frame, *db, round);
        for (int i = 0; i < 800; ++i) {
            hands.DoSomething();
            ExpectSound(*frame->GetDtView(), *db, "round " + std::to_string(round) + ", event " + std::to_string(i));
            if (testing::Test::HasFatalFailure()) return;
        }
        db->m_pFrame = nullptr;
        frame.reset();
        EXPECT_TRUE(g_living.empty()) << "round " << round;
        // An end by Enter in a selection cancels and completes; a reset over a running command does neither.
        for (const auto& [id, fate] : g_fates) {
            EXPECT_EQ(fate.deleted, 1) << "round " << round << ", command " << id;
            EXPECT_LE(fate.completed, 1) << "round " << round << ", command " << id;
            EXPECT_LE(fate.cancelled, 1) << "round " << round << ", command " << id;
        }
    }
}

/// A screen of some density.
struct Screen : CWindowSystem {
    explicit Screen(int density) : m_density(density) {}
    std::unique_ptr<CWindowPeer> MakePeer(CWnd& window, WindowKind, CWnd* parent) override {
        struct Peer : CWindowPeer {
            Peer(CWnd& w, CWnd* p, int density) : CWindowPeer(w, p), m_density(density) {}
            int Density() const override { return m_density; }
            int m_density;
        };
        return std::make_unique<Peer>(window, parent, m_density);
    }
    int m_density;
};

/// Erasing what is over the picture gives the picture: on the glass and after any event, with no switch that paints there.
void ExpectOverlaysComeOff(int density) {
    g_strPrompt = "命令:";
    g_cCmdMap = CCmdMap();
    g_cCmdMap.AddBasicCommands();
    Screen system(density);
    CGridDataBase db;
    db.DestroyData();
    db.Initialize();
    Frame frame;
    db.m_pFrame = &frame;
    frame.m_db = &db;
    frame.Create(nullptr, {0, 0, 510, 565}, WindowKind::kFrame);
    frame.CreatePanes(&db);
    system.Drain();
    CTvoViewMgr& view = *frame.GetDtView();
    std::mt19937 dice(7);
    for (int i = 0; i < 30; ++i)
        db.AddNetLine(CFPoint(static_cast<float>(dice() % 200000), static_cast<float>(dice() % 150000), 0),
                      CFPoint(static_cast<float>(dice() % 200000), static_cast<float>(dice() % 150000), 0), 0, 0);
    system.Drain();
    for (int i = 0; i < 600; ++i) {
        const CPoint p(static_cast<int>(dice() % 400), static_cast<int>(dice() % 400));
        const auto key = [&](UINT k, const char* text) { system.DeliverKey(frame.GetPromptView()->m_cInput, k, false, false, text); };
        switch (dice() % 8) {
            case 0: key(0, "z"); key(VK_RETURN, ""); key(0, "w"); key(VK_RETURN, ""); break;
            case 1: system.DeliverMouse(view, WM_LBUTTONDOWN, 0, p); break;
            case 2: key(VK_LEFT, ""); break;
            case 3: if (dice() % 3 == 0) key(VK_ESCAPE, ""); break;
            case 4: key(VK_F3, ""); break;
            default: system.DeliverMouse(view, WM_MOUSEMOVE, 0, p);
        }
        CClientDC screen(&view);
        CDC seen;
        view.CopyBaseMap(&seen, &screen, &screen);
        if (g_bSnapSymbolShown) view.DrawSnapSymbol(&seen, 0x00FFFF, g_cSnapSymbolPoint, g_nSnapSymbolKind);
        view.OverlapBaseMap(&seen, 7);
        ASSERT_EQ(seen.Density(), density);
        ASSERT_TRUE(*seen.Surface() == *view.m_cBaseMap.Surface()) << "event " << i;
    }
    db.m_pFrame = nullptr;
}

TEST(ViewRandom, OverlaysComeOffTheGlass) {
    for (const int density : {1, 2}) {
        SCOPED_TRACE(density);
        ASSERT_NO_FATAL_FAILURE(ExpectOverlaysComeOff(density));
    }
}

}  // namespace
