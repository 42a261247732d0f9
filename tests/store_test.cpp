// The store of components: the log and its limits, who owns what, families, walks, the view's sets.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "geometry/fcoor.h"
#include "model/draw_graph.h"
#include "model/goujian.h"
#include "model/grid_index_service_object.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "platform/errors.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

namespace {

constexpr unsigned char kType = 20;

/// Counts its live instances and what is called on it.
class CProbe : public CGouJianEx {
public:
    explicit CProbe(float x = 0, float y = 0) : m_x(x), m_y(y) { ++s_live; }
    ~CProbe() override { --s_live; }
    CFRect GetFrect() override { return CFRect(m_x, m_y, m_x + 10, m_y + 10); }
    CFPoint GetSortPoint() override { return {m_x, m_y, 0}; }
    void OnCalcParameters() override { ++m_nCalculated; }
    void OnDestroy() override { ++m_nDestroyed; }
    int DrawGraph(CDrawGraph*) override { return ++m_nDrawn; }
    void On_set_m_byteStatus(unsigned char status) override { m_statuses += std::to_string(status) + " "; }
    int ReGen(CTvoViewMgr* mgr) override {
        m_statuses += mgr ? "regen " : "regen0 ";
        return CGouJianEx::ReGen(mgr);
    }

    static int s_live;
    float m_x, m_y;
    int m_nCalculated = 0, m_nDestroyed = 0, m_nDrawn = 0;
    std::string m_statuses;
};
int CProbe::s_live = 0;

/// The container with its protected parts open.
class CLog : public CObjectUndoContainEx {
public:
    using CObjectUndoContainEx::GetTotalSteps;
    using CObjectUndoContainEx::SetTotalSteps;

    /// A component of its own step.
    CProbe* Put() {
        Start();
        return PutOn();
    }
    CProbe* PutOn() {
        auto* probe = new CProbe;  // the container's
        probe->set_m_dwGouJianID(GetNextID(kType));
        AddGoujian(probe);
        return probe;
    }
    std::string Back() { return Apply(&CObjectUndoContainEx::Undo); }
    std::string Forth() { return Apply(&CObjectUndoContainEx::Redo); }
    int StepsBack() {
        int steps = 0;
        for (; CanUndo(); ++steps) Back();
        return steps;
    }
    std::string Flags() const { return std::string(CanUndo() ? "undo" : "-") + (CanRedo() ? " redo" : " -"); }

private:
    // What was done to the store, in order: "+3" added, "-2" taken out, by sequence number.
    std::string Apply(void (CObjectUndoContainEx::*what)(CWnd*, CFCoor*, CList<CGouJianEx*>&, CArray<CZLX>&)) {
        CList<CGouJianEx*> objects;
        CArray<CZLX> types;
        (this->*what)(nullptr, nullptr, objects, types);
        std::string told;
        int i = 0;
        for (POSITION p = objects.GetHeadPosition(); p; ++i) {
            told += types[i] == CZLX_ADD ? '+' : '-';
            told += std::to_string(objects.GetNext(p)->get_m_dwGouJianID() & 0xFFFFFF);
            told += ' ';
        }
        EXPECT_EQ(i, types.GetSize());
        return told;
    }
};

class Store : public testing::Test {
protected:
    void SetUp() override { CProbe::s_live = 0; }
    void TearDown() override { EXPECT_EQ(CProbe::s_live, 0) << "leaked, or freed twice"; }
};

std::string g_errors;
void KeepError(int code, const char* text) { g_errors += std::to_string(code) + " " + text + "\n"; }

CProbe* Add(CTvoDataBase& db, float x = 0, float y = 0, unsigned char type = kType) {
    auto* probe = new CProbe(x, y);  // the container's
    probe->set_m_dwGouJianID(db.GetNextID(type));
    db.AddGouJian(probe);
    return probe;
}

}  // namespace

// --- the log ------------------------------------------------------------------------------------------------

TEST_F(Store, StepsGoBackTogether) {
    CLog log;
    log.PutOn();  // before any Start: the first step
    log.PutOn();
    log.Put();
    CGouJianEx* third = log.FindGouJian(kType << 24 | 3);
    log.DeleteGouJian(third);
    EXPECT_EQ(log.Flags(), "undo -");
    EXPECT_EQ(log.Back(), "+3 -3 ") << "newest first";
    EXPECT_EQ(log.Flags(), "undo redo");
    EXPECT_EQ(log.Back(), "-2 -1 ");
    EXPECT_EQ(log.Flags(), "- redo");
    EXPECT_EQ(log.Back(), "");
    EXPECT_EQ(log.Forth(), "+1 +2 ") << "oldest first";
    EXPECT_EQ(log.Forth(), "+3 -3 ");
    EXPECT_EQ(log.Forth(), "");
    EXPECT_EQ(log.GetCount(), 2);
    EXPECT_EQ(log.FindGouJian(kType << 24 | 3), nullptr);
}

TEST_F(Store, FortyNineStepsAreHeld) {
    CLog log;
    for (int i = 0; i < 50; ++i) log.Put();
    EXPECT_EQ(log.StepsBack(), 49);
    EXPECT_EQ(log.GetCount(), 1) << "the first one can't be taken back";
    CLog dropping;  // a dropped step frees what it had deleted
    dropping.DeleteGouJian(dropping.Put());
    EXPECT_EQ(CProbe::s_live, 51);
    for (int i = 0; i < 49; ++i) dropping.Put();
    EXPECT_EQ(CProbe::s_live, 50 + 49);
    CLog lowered;  // the limit was lowered while the log was longer
    for (int i = 0; i < 30; ++i) lowered.Put();
    lowered.SetTotalSteps(10);
    lowered.Put();
    EXPECT_EQ(lowered.StepsBack(), 9);
    lowered.UndoInit();
    EXPECT_EQ(lowered.GetTotalSteps(), 50);
}

TEST_F(Store, AnEditCutsWhatCouldBeRedone) {
    CLog log;
    for (int i = 0; i < 5; ++i) log.Put();
    for (int i = 0; i < 3; ++i) log.Back();
    EXPECT_EQ(CProbe::s_live, 5);
    log.Put();
    EXPECT_EQ(CProbe::s_live, 3) << "what was taken back is freed";
    EXPECT_EQ(log.Flags(), "undo -");
    EXPECT_EQ(log.StepsBack(), 3);
    log.Put();
    EXPECT_EQ(CProbe::s_live, 1) << "after everything was undone the log is cleared";
    EXPECT_EQ(log.StepsBack(), 1);
}

// Everything undone and everything redone are not told apart: an edit then empties the log. Meant.
TEST_F(Store, AnEditAfterTheLastRedoEmptiesTheLog) {
    CLog log;
    for (int i = 0; i < 3; ++i) log.Put();
    log.Back();
    log.Back();
    log.Forth();
    log.Forth();
    EXPECT_EQ(log.Flags(), "undo -");
    EXPECT_EQ(log.Back(), "-3 ") << "undo still works here";
    log.Forth();
    log.Put();
    EXPECT_EQ(log.Back(), "-4 ");
    EXPECT_EQ(log.Flags(), "- redo");
    EXPECT_EQ(log.GetCount(), 3);
    // One redo short of the end nothing is lost.
    CLog other;
    for (int i = 0; i < 3; ++i) other.Put();
    other.Back();
    other.Back();
    other.Forth();
    other.Put();
    EXPECT_EQ(other.StepsBack(), 3);
}

// Going on without a Start after an undo leaves the counter of steps one behind, round its unsigned zero at last.
TEST_F(Store, AWrappedCounterIsNoFullLog) {
    CLog log;
    for (int i = 0; i < 3; ++i) log.Put();
    for (int i = 0; i < 6; ++i) {
        log.Put();
        log.Back();
        log.PutOn();
        log.Back();
    }
    log.Put();
    EXPECT_EQ(log.StepsBack(), 4);
    EXPECT_EQ(log.GetCount(), 0);
}

TEST_F(Store, WhatTheCallerMustNotDoIsHarmless) {
    CLog log;
    CProbe* a = log.Put();
    CProbe outsider;
    outsider.set_m_dwGouJianID(a->get_m_dwGouJianID());
    EXPECT_EQ(log.AddGoujian(nullptr), 0);
    EXPECT_EQ(log.AddGoujian(a), 0) << "twice";
    EXPECT_EQ(log.DeleteGouJian(nullptr), 0);
    EXPECT_EQ(log.DeleteGouJian(&outsider), 0) << "another object of the same identity";
    EXPECT_EQ(log.DeleteGouJian(99ul), 0);
    EXPECT_EQ(log.DeleteGouJian(a->get_m_dwGouJianID()), 1);
    EXPECT_EQ(log.DeleteGouJian(a), 0);
    EXPECT_EQ(log.StepsBack(), 1);
    EXPECT_EQ(log.GetCount(), 0);
    EXPECT_EQ(log.Forth(), "+1 -1 ");
}

TEST_F(Store, IdentitiesAreNeverReused) {
    CLog log;
    EXPECT_EQ(log.GetNextID(200), 200ul << 24 | 1) << "no sign from a high type byte";
    EXPECT_EQ(log.GetNextXuHaoFromMap(200), 2u);
    log.SetNextXuHaoToMap(7, 100);
    EXPECT_EQ(log.GetNextID(7), 7u << 24 | 101);
    log.SetNextXuHaoToMap(7, 50);
    EXPECT_EQ(log.GetNextID(7), 7u << 24 | 102);
    auto* read = new CProbe;  // from a file, with an identity of its own
    read->set_m_dwGouJianID(kType << 24 | 500);
    log.AddGoujian(read);
    EXPECT_EQ(log.GetNextID(kType), kType << 24 | 501);
    log.Back();
    log.UndoInit();
    EXPECT_EQ(log.GetNextID(kType), kType << 24 | 502) << "whatever was undone";

    g_errors.clear();
    ErrorHandler before = SetErrorHandler(KeepError);
    log.SetNextXuHaoToMap(9, 0xFFFFFD);
    EXPECT_EQ(log.GetNextID(9), 9u << 24 | 0xFFFFFE);
    EXPECT_EQ(g_errors, "");
    EXPECT_EQ(log.GetNextID(9), 9u << 24 | 1);
    EXPECT_EQ(log.GetNextID(9), 9u << 24 | 2);
    SetErrorHandler(before);
    const std::string message = "201 错误：同类构件累计数目已超过了设计极限，软件不能继续运行!\n";
    EXPECT_EQ(g_errors, message + message);
}

TEST_F(Store, ModifiedFlagAndExtent) {
    CLog log;
    EXPECT_EQ(log.IfModified(), 0);
    CProbe* a = log.Put();
    EXPECT_EQ(log.IfModified(), 1);
    log.SetModifiedFlag(0);
    log.Back();
    EXPECT_EQ(log.IfModified(), 1) << "undo changes the store too";
    log.Forth();
    CProbe* b = log.Put();
    a->m_x = 100, b->m_x = -50;
    EXPECT_EQ(log.GetMaxRect(nullptr).m_fMinX, -50);
    b->set_m_byteStatus(GJ_STATUS_HIDDEN);
    EXPECT_EQ(log.GetMaxRect(nullptr).m_fMinX, 100);
    a->m_bPhysical = 2;  // physical, but not exactly 1
    EXPECT_EQ(log.GetMaxRect(nullptr).m_fMaxX, 0);
    EXPECT_EQ(log.GetContainNo(), 1);
}

// --- ownership ----------------------------------------------------------------------------------------------

TEST_F(Store, AddingAgainWhatHasLeft) {
    CLog log;
    CProbe* a = log.Put();
    log.Start();
    log.DeleteGouJian(a);
    log.Start();
    EXPECT_EQ(log.AddGoujian(a), 1);  // the record of the deletion is no longer its owner
    EXPECT_EQ(log.FindGouJian(a->get_m_dwGouJianID()), a);
    for (int i = 0; i < 60; ++i) log.Put();  // drops all three records
    EXPECT_EQ(log.FindGouJian(a->get_m_dwGouJianID()), a) << "in the model, whatever was dropped";
    EXPECT_EQ(a->m_nDestroyed, 0);
    log.Start();
    log.DeleteGouJian(a);
    log.UndoInit();
    EXPECT_EQ(CProbe::s_live, 60) << "the last record that named it has freed it";
}

TEST_F(Store, EachContainerKnowsItsOwn) {
    std::vector<std::unique_ptr<CLog>> logs;  // more than have a number of their own
    std::vector<CProbe*> probes;
    for (int i = 0; i < 70; ++i) probes.push_back(logs.emplace_back(std::make_unique<CLog>())->Put());
    logs[3] = std::make_unique<CLog>();  // takes over the number that the old one gave back
    probes[3] = logs[3]->Put();
    for (std::size_t i = 0; i < logs.size(); ++i)
        for (std::size_t k = 0; k < logs.size(); ++k) {
            ASSERT_EQ(logs[i]->Holds(probes[k]), i == k) << i << ", " << k;
            if (i != k) {
                ASSERT_EQ(logs[i]->DeleteGouJian(probes[k]), 0) << i << ", " << k;
            }
        }
}

TEST_F(Store, RandomEditsLeakNothing) {
    for (unsigned round = 0; round < 200; ++round) {
        std::mt19937 rng(round);
        CLog log;
        log.SetTotalSteps(3 + static_cast<int>(rng() % 12));
        std::vector<CProbe*> left;  // deleted just now, surely alive
        std::set<CGouJianEx*> freed;
        log.SetFreeHook([&](CGouJianEx* obj) {
            ASSERT_FALSE(log.Holds(obj)) << "freed while in the model";
            ASSERT_TRUE(freed.insert(obj).second);
            std::erase(left, static_cast<CProbe*>(obj));
        });
        for (int step = 0; step < 120; ++step) {
            SCOPED_TRACE(testing::Message() << "round " << round << ", step " << step);
            const int what = static_cast<int>(rng() % 100);
            if (what < 40)
                log.Start();
            else if (what < 55)
                freed.erase(log.PutOn());  // an address may come again
            else if (what < 70 && !log.IsEmpty()) {
                auto* victim = static_cast<CProbe*>(log.GetAt(log.FindIndex(static_cast<int>(rng() % static_cast<unsigned>(log.GetCount())))));
                left.push_back(victim);
                log.DeleteGouJian(victim);
            } else if (what < 78 && !left.empty())
                log.AddGoujian(left[rng() % left.size()]);
            else if (what < 88)
                log.Back();
            else if (what < 97)
                log.Forth();
            else if (what == 98)
                log.UndoInit();
            for (POSITION p = log.GetHeadPosition(); p;) {
                CGouJianEx* obj = log.GetNext(p);
                ASSERT_EQ(log.FindGouJian(obj->get_m_dwGouJianID()), obj);
            }
        }
        log.SetFreeHook({});
    }
}

// --- the data base ------------------------------------------------------------------------------------------

TEST_F(Store, EnteringTheModel) {
    CTvoDataBase db;
    db.SetCurCeng(4);
    CProbe* a = Add(db);
    EXPECT_EQ(a->m_nCeng, 4);
    EXPECT_EQ(a->m_nCalculated, 1);
    EXPECT_EQ(a->m_nDrawn, 1);
    EXPECT_EQ(db.AddGouJian(a), 0);
    EXPECT_EQ(db.AddGouJian(static_cast<CGouJianEx*>(nullptr)), 0);
    db.Start();
    EXPECT_EQ(db.DeleteGouJian(a), 1);
    EXPECT_EQ(db.DeleteGouJian(a), 0);
    EXPECT_EQ(a->m_nDestroyed, 1) << "at each deletion";
    db.SetCurCeng(7);
    db.Undo(nullptr, nullptr);
    EXPECT_EQ(a->m_nCeng, 4) << "undo brings it back as it was";
    EXPECT_EQ(a->m_nCalculated, 1);
    EXPECT_EQ(a->m_nDrawn, 1);
    EXPECT_EQ(db.FindGouJian(a->get_m_dwGouJianID()), a);
    EXPECT_TRUE(db.GouJianExists(a));
    db.m_bShowGraph = 0;
    CProbe* quiet = new CProbe;
    quiet->set_m_dwGouJianID(db.GetNextID(kType));
    quiet->m_bSelfDraw = 1;
    db.AddGouJian(quiet);
    EXPECT_EQ(quiet->m_nDrawn, 1) << "by the index, which asks for a graph of every component";
    EXPECT_EQ(db.GetFrect().m_fMaxX, 20000) << "without a frame";
}

TEST_F(Store, Walks) {
    CTvoDataBase db;
    CProbe* a = Add(db, 0, 0, kType);
    CProbe* b = Add(db, 0, 0, kType);
    CProbe* last = Add(db, 0, 0, 255);
    db.Start();
    db.DeleteGouJian(a);
    db.Undo(nullptr, nullptr);  // now behind b in its family, and before it by identity
    EXPECT_EQ(db.GetGouJianCount(), 3);
    EXPECT_EQ(db.GetGouJianCount(kType), 2);
    CArray<CGouJianEx*> array;
    CList<CGouJianEx*> list;
    CMap<unsigned long, CGouJianEx*> map;
    array.Add(last);
    EXPECT_EQ(db.GetGouJianArray(kType, &array), 2) << "emptied first";
    EXPECT_EQ(array[0], a);
    EXPECT_EQ(array[1], b);
    EXPECT_EQ(db.GetGouJianArrayExcept(kType, &array, a), 2) << "the family's size";
    EXPECT_EQ(array.GetSize(), 3);
    EXPECT_EQ(db.GetGouJianList(kType, list), 2);
    EXPECT_EQ(db.GetGouJianListAll(list), 5) << "the size of the list, appended to";
    EXPECT_EQ(list.GetTail(), last);
    EXPECT_EQ(db.GetGouJianArrayWithList(255, array, &list), 4);
    EXPECT_EQ(db.GetGouJianArrayWithList(kType, array, nullptr), 6);
    EXPECT_EQ(db.GetGouJianListAll(map, 0), 0) << "nothing is entered: meant";
    EXPECT_EQ(db.GetGouJianListAll(map, 1), 3);
    EXPECT_EQ(db.GetGouJianArrayWithMap(255, array, &map), 7);
    EXPECT_EQ(db.GetGouJianMap(kType, map), 2) << "emptied first";
    EXPECT_EQ(db.FindGouJianByBH(kType, 99), nullptr);
    b->set_m_dwGouJianNO(99);
    EXPECT_EQ(db.FindGouJianByBH(kType, 99), b);
    EXPECT_EQ(db.AddGouJian(list), 1);
    EXPECT_EQ(db.GetGouJianCount(), 3);
    EXPECT_EQ(db.DeleteGouJian(list), 1);
    EXPECT_EQ(db.GetGouJianCount(), 0);
}

TEST_F(Store, TagsAndStatus) {
    CTvoDataBase db;
    CProbe *a = Add(db), *b = Add(db), *c = Add(db);
    a->m_dwTag = b->m_dwTag = 5;
    c->m_dwTag = 9;
    const auto statuses = [&] {
        std::string text;
        for (CProbe* p : {a, b, c}) text += std::to_string(p->get_m_byteStatus());
        return text;
    };
    EXPECT_EQ(db.GetNextTagID(kType), 10u);
    EXPECT_EQ(db.GetNextTagID(0), 0u);
    EXPECT_EQ(db.GetNextTagID(33), 1u);
    db.Hide_GouJian(kType, 5);
    EXPECT_EQ(statuses(), "220");
    db.Show_GouJian(kType, 9);
    EXPECT_EQ(c->m_statuses, "0 ") << "told also of the status it had";
    db.Set_GouJian_Status(kType, 1);
    EXPECT_EQ(statuses(), "111");
    EXPECT_EQ(c->m_statuses, "0 1 ") << "no view, no redrawing";
    db.Hide_GouJian(kType);
    db.Show_GouJian(kType, 5);
    EXPECT_EQ(statuses(), "002");
    db.SelectGouJian(kType, 1);
    EXPECT_EQ(c->m_statuses, "0 1 2 1 regen0 ");
    db.Start();
    db.Clear_GouJian(kType, 5);
    EXPECT_EQ(db.GetGouJianCount(), 1);
    db.Clear_GouJian(kType);
    EXPECT_EQ(db.GetGouJianCount(), 0);
    db.Undo(nullptr, nullptr);
    EXPECT_EQ(db.GetGouJianCount(), 3) << "clearing can be undone";
}

TEST_F(Store, HooksRunInOrder) {
    struct Told : CTvoDataBase {
        void OnAddGouJian(CGouJianEx* obj) override {
            CTvoDataBase::OnAddGouJian(obj);
            Tell("add", obj);
        }
        void OnDelGouJian(CGouJianEx* obj) override {
            CTvoDataBase::OnDelGouJian(obj);
            Tell("del", obj);
        }
        void BeforeUndo(CList<CGouJianEx*>& l) override { Tell("before", l); }
        void AfterUndo(CList<CGouJianEx*>& l) override { Tell("after", l); }
        void BeforeRedo(CList<CGouJianEx*>& l) override { Tell("before", l); }
        void AfterRedo(CList<CGouJianEx*>& l) override { Tell("after", l); }
        // Store and family are told apart: "s" or "-", "f" or "-".
        void Tell(const char* what, CGouJianEx* obj) {
            const unsigned long id = obj->get_m_dwGouJianID();
            told += std::string(what) + std::to_string(id & 0xFFFFFF) + (FindGouJian(id) ? "s" : "-") +
                    (m_mapFamily[kType].Contains(id) ? "f " : "- ");
        }
        void Tell(const char* what, CList<CGouJianEx*>& l) {
            if (l.IsEmpty()) told += std::string(what) + "0 ";
            for (POSITION p = l.GetHeadPosition(); p;) Tell(what, l.GetNext(p));
        }
        std::string Take() { return std::exchange(told, ""); }
        std::string told;
    } db;
    CProbe* a = Add(db);
    EXPECT_EQ(db.Take(), "add1sf ");
    db.Start();
    db.DeleteGouJian(a);
    EXPECT_EQ(db.Take(), "del1s- ") << "the hook runs first, the store follows";
    db.Undo(nullptr, nullptr);
    EXPECT_EQ(db.Take(), "before1s- add1sf after1sf ");
    db.Redo(nullptr, nullptr);
    EXPECT_EQ(db.Take(), "before1-f del1-- after1-- ");
    db.m_bBianHaoDirty = 0;
    db.Redo(nullptr, nullptr);
    EXPECT_EQ(db.Take(), "before0 after0 ") << "also with nothing to redo";
    EXPECT_EQ(db.m_bBianHaoDirty, 1);
}

TEST_F(Store, ViewIsKeptInStep) {
    struct Seen : CTvoViewMgr {
        void InvalidateRect(const CRect*, BOOL) override { ++m_nInvalid; }
        int m_nInvalid = 0;
    } view;
    CTvoFrameBase frame;
    frame.m_pView = &view;
    CTvoDataBase db;
    db.m_pFrame = &frame;
    const auto shown = [&](CGouJianEx* obj) { return view.m_mapViewPort.Contains(obj->get_m_dwGouJianID()); };
    view.m_bBaseMapDirty = 0;
    CProbe *a = Add(db), *b = Add(db, 1000, 0);
    EXPECT_TRUE(shown(a) && shown(b));
    EXPECT_EQ(view.m_bBaseMapDirty, 1);
    EXPECT_EQ(view.m_nInvalid, 2);
    db.m_bNoRefresh = 1;
    view.m_bBaseMapDirty = 0;
    db.Start();
    db.DeleteGouJian(a);
    EXPECT_FALSE(shown(a));
    EXPECT_EQ(view.m_bBaseMapDirty, 1) << "stale, though not repainted";
    EXPECT_EQ(view.m_nInvalid, 2);
    db.Undo(&view, &view.m_cCoor);
    EXPECT_TRUE(shown(a));
    EXPECT_EQ(view.m_nInvalid, 3) << "its place, by the log";
    db.m_bNoRefresh = 0;
    db.Redo(&view, &view.m_cCoor);
    EXPECT_FALSE(shown(a));
    EXPECT_EQ(view.m_nInvalid, 5) << "its place, and the whole";
    view.m_pSelectedList->AddTail(b);
    view.m_pSelectedList->AddTail(a);  // selected, and gone
    CArray<CGouJianEx*> inPort;
    EXPECT_EQ(db.CopyGouJianInViewPort(kType, inPort), 1);
    EXPECT_EQ(db.GetFrect().m_fMaxX, 1010);
    db.UndoInit();  // frees a
    EXPECT_EQ(view.m_pSelectedList->GetCount(), 1) << "whoever borrowed it has let go";
    CProbe* ghost = new CProbe;
    ghost->m_bPhysical = 0;
    ghost->set_m_dwGouJianID(db.GetNextID(kType));
    db.AddGouJian(ghost);
    EXPECT_FALSE(shown(ghost));
    db.m_bShowGraph = 0;
    EXPECT_FALSE(shown(Add(db)));
    db.DestroyData();
    EXPECT_TRUE(view.m_mapViewPort.IsEmpty());
    EXPECT_TRUE(view.m_pSelectedList->IsEmpty());
    EXPECT_EQ(CProbe::s_live, 0);
    db.Initialize();
    EXPECT_EQ(db.GetCurCeng(), -1);
    EXPECT_EQ(db.m_bShowGraph, 1);
    EXPECT_EQ(Add(db)->get_m_dwGouJianID(), kType << 24 | 1) << "a new model counts anew";
    EXPECT_EQ(db.CanUndo(), 1);
    db.m_pFrame = nullptr;
}

TEST_F(Store, InitializeOnALivingModelIndexesItAnew) {
    CTvoDataBase db;
    CProbe* a = Add(db);
    db.Initialize();
    CFRect rect(0, 0, 10, 10);
    CArray<CGouJianEx*> found;
    EXPECT_EQ(db.GetInterRect(rect, found), 1);
    db.DeleteGouJian(a);
    found.RemoveAll();
    EXPECT_EQ(db.GetInterRect(rect, found), 0);
    EXPECT_EQ(g_pCurrentDataBase, &db);
}

TEST_F(Store, Numbering) {
    CTvoDataBase db;
    CProbe *a = Add(db, 6000, 0), *b = Add(db, 0, 40), *c = Add(db, 0, 6000), *other = Add(db, 0, 0, 255);
    const auto numbers = [&] {
        std::string text;
        for (CProbe* p : {a, b, c, other}) text += std::to_string(p->get_m_dwGouJianNO()) + " ";
        return text;
    };
    other->set_m_dwGouJianNO(77);
    db.SortBianHaoAll();
    EXPECT_EQ(numbers(), "2 1 3 77 ") << "type 255 has no numbers";
    EXPECT_EQ(db.m_arrBianHao[kType].GetSize(), 3);
    EXPECT_EQ(db.m_bBianHaoDirty, 0);
    db.m_cSortDir = 'y';
    db.SortBianHaoAll();
    EXPECT_EQ(numbers(), "2 1 3 77 ") << "nothing was edited";
    CProbe* d = Add(db, 0, -6000);
    db.SortBianHaoAll();
    EXPECT_EQ(db.m_cSortDir, 'Y');
    EXPECT_EQ(numbers() + std::to_string(d->get_m_dwGouJianNO()), "4 2 3 77 1");
    CArray<CGouJianEx*> some;
    int counter = 10;
    some.Add(a);
    some.Add(c);
    db.SortBianHao(kType, some, counter);
    EXPECT_EQ(counter, 12);
    EXPECT_EQ(some.GetSize(), 0);
    EXPECT_EQ(db.m_arrBianHao[kType].GetSize(), 6) << "appended";
    db.SortBianHao(33);
    EXPECT_EQ(db.m_arrBianHao[33].GetSize(), 0);

    db.Start();
    db.DeleteGouJian(a);
    db.SortBianHao(kType);
    db.UndoInit();  // frees a, which the numbers of before had named
    EXPECT_EQ(db.m_arrBianHao[kType].GetSize(), 3) << "numbers given after the edit stay";
}

TEST_F(Store, GraphicsAndTexts) {
    CTvoDataBase db;
    CGouJianEx* line = db.DrawLine(0, 0, 100, 50, 1, 0xFF, 5, GJ_STATUS_NORMAL, 0);
    EXPECT_EQ(line->get_m_dwGouJianID(), static_cast<unsigned>(GJLX_LINE) << 24 | 1);
    EXPECT_EQ(line->get_m_dwGouJianNO(), 1u);
    EXPECT_EQ(line->m_dwTag, 5u);
    EXPECT_EQ(line->GetDrawGraph()->m_bFixed, 1);
    EXPECT_EQ(line->GetDrawGraph()->m_aEntity[0]->CanSnap(), 0);
    EXPECT_EQ(line->GetFrect().m_fMaxX, 100);
    db.DrawPoint(0, 0, 0, 5, 0, 1);
    db.DrawArc(0, 0, 10, 0, 90, 1, 0, 5, 0, 1);
    db.DrawCircle(0, 0, 10, 1, 0, 5, 0, 1);
    db.DrawCircleRgn(0, 0, 10, 0, 5, GJ_STATUS_HIDDEN, 1);
    CArray<CFPoint> corners;
    for (const float v : {0.0f, 10.0f, 20.0f}) corners.Add(CFPoint(v, v * v, 0));
    db.DrawPolygonRgn(corners, 0, 6, 0, 1);
    for (const int type : {GJLX_POINT, GJLX_LINE, GJLX_ARC, GJLX_CIRCLE, GJLX_CIRCLE_RGN, GJLX_POLYGON_RGN})
        EXPECT_EQ(db.GetGouJianCount(static_cast<unsigned char>(type)), 1) << type;
    db.HideLine(5);
    EXPECT_FALSE(line->IsVisable());
    db.ShowLine(4);
    EXPECT_FALSE(line->IsVisable());
    db.ClearCircle(5);
    db.ClearPolygonRgn(5);
    EXPECT_EQ(db.GetGouJianCount(), 5);

    CProbe* text = Add(db, 0, 0, GJLX_TEXT);
    text->m_dwTag = 3;
    CGraph_Text* drawn = text->GetDrawGraph()->Draw_Text(0, 0, 100, 0, "A", 'A');
    CProbe* foreign = Add(db, 0, 0, 255);
    CGraph_Text* untouched = foreign->GetDrawGraph()->Draw_Text(0, 0, 100, 0, "A", 'A');
    db.ScaleText(2, nullptr);
    EXPECT_EQ(drawn->m_fHeight, 200);
    EXPECT_EQ(untouched->m_fHeight, 100) << "type 255 is left out";
    db.ScaleTextGouJianOnly(-1);
    EXPECT_EQ(drawn->m_fHeight, 0) << "never negative";
    db.SetTextHeightTextGouJianOnly(80);
    EXPECT_EQ(drawn->m_fHeight, 80);
    text->set_m_byteStatus(GJ_STATUS_SELECTED);
    db.SwitchText(3);
    EXPECT_EQ(text->get_m_byteStatus(), GJ_STATUS_HIDDEN);
    db.SwitchText(3);
    EXPECT_EQ(text->get_m_byteStatus(), GJ_STATUS_NORMAL) << "not what it was";
    db.ClearTextGouJianAll();
    EXPECT_EQ(db.GetGouJianCount(GJLX_TEXT), 0);
}
