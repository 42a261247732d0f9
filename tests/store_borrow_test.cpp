// Who may hold on to a component, and what is found far out: borrowed pointers, two models at once, the index.
#include <gtest/gtest.h>

#include <limits>

#include "model/grid_index_service_object.h"
#include "net/grid_data_base.h"
#include "platform/window.h"
#include "shell/switch_container.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

namespace {

using Components = CArray<CGouJianEx*, CGouJianEx*>;

CFPoint P(float x, float y) { return {x, y, 0}; }

CGouJianEx* Point(CTvoDataBase& db, float x, float y) { return db.DrawPoint(x, y, 0xFFFFFF, 0, GJ_STATUS_NORMAL, 1); }

bool Offers(CTvoDataBase& db, CFRect place, CGouJianEx* wanted) {
    Components found;
    db.GetInterRect(place, found);
    return std::find(found.begin(), found.end(), wanted) != found.end();
}

TEST(TwoModels, AComponentOfTheOtherIsNeitherAddedNorDeleted) {
    CTvoDataBase mine, other;
    CGouJianEx* p = Point(mine, 0, 0);
    Point(other, 0, 0);  // has the same identity
    EXPECT_EQ(other.AddGouJian(p), 0);
    EXPECT_EQ(other.DeleteGouJian(p), 0);
    EXPECT_EQ(mine.GetContain().GetCount(), 1);
    EXPECT_EQ(other.GetContain().GetCount(), 1);
    EXPECT_EQ(mine.DeleteGouJian(p), 1);
}

TEST(TwoModels, OneThatMovedIsNotFreedByTheLogItLeft) {
    CTvoDataBase second;  // freed last
    CGouJianEx* p = nullptr;
    {
        CTvoDataBase first;
        p = Point(first, 0, 0);
        first.DeleteGouJian(p);
        second.AddGouJian(p);
        first.UndoInit();
    }
    EXPECT_EQ(second.FindGouJian(p->get_m_dwGouJianID()), p);
}

TEST(Container, OfTwoWithOneIdentityEachCanBeDeleted) {
    CTvoDataBase db;
    auto* a = new CGouJianEx;
    auto* b = new CGouJianEx;
    for (CGouJianEx* obj : {a, b}) {
        obj->set_m_dwGouJianID(0x20000007);
        db.AddGouJian(obj);
    }
    EXPECT_EQ(db.DeleteGouJian(a), 1);
    EXPECT_EQ(db.DeleteGouJian(a), 0);
    EXPECT_EQ(db.DeleteGouJian(b), 1);
    EXPECT_EQ(db.GetContain().GetCount(), 0);
}

TEST(NumberedArray, StaysWhenTheLogIsEmptiedAndGoesWithWhatItNames) {
    CTvoDataBase db;
    CGouJianEx* gone = Point(db, 5000, 0);
    Point(db, 0, 0);
    db.DeleteGouJian(gone);
    db.SortBianHao(GJLX_POINT);
    ASSERT_EQ(db.m_arrBianHao[GJLX_POINT].GetSize(), 1);
    db.UndoInit();
    EXPECT_EQ(db.m_arrBianHao[GJLX_POINT].GetSize(), 1) << "it never named the freed one";

    // A type that SortBianHaoAll leaves out: its array is not made anew while the numbers count as fresh.
    auto* last = new CGouJianEx;
    last->set_m_dwGouJianID(0xFF000001);
    db.AddGouJian(last);
    db.SortBianHao(255);
    db.DeleteGouJian(last);
    db.SortBianHaoAll();
    db.UndoInit();
    EXPECT_EQ(db.m_arrBianHao[255].GetSize(), 0);
}

TEST(Cursor, AQueryLeavesAWaitCursorOfSomebodyElse) {
    CTvoFrameBase frame;  // borrowed by the data base, so it goes after it
    CTvoDataBase db;
    Point(db, 0, 0);
    Components found;
    CFRect place(0, 0, 1, 1);
    for (const HCURSOR shown : {0, 7, static_cast<int>(IDC_WAIT)}) {
        SetCursor(shown);
        db.GetInterRect(place, found);
        EXPECT_EQ(GetCursor(), shown);
    }
    // With a frame the pool waits, and from 1001 components on the query shows a wait cursor of its own.
    db.m_pFrame = &frame;
    for (const HCURSOR shown : {0, 7}) {
        for (int i = 0; i < 1001; ++i) Point(db, static_cast<float>(i), 0);
        SetCursor(shown);
        db.WAIT_FOR_COMPLETE_INDEX();
        EXPECT_EQ(GetCursor(), IDC_WAIT);
        db.FinishIndex();
        db.RESTORE_CURSOR();
        EXPECT_EQ(GetCursor(), shown);
    }
    SetCursor(0);
}

TEST(Index, NothingIsLostFarOut) {
    const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    // Two corners of a model, as far apart as it gets; whatever lies in between must still be found.
    for (const float stray : {4e8f, 3e9f, 1e12f, 1e20f, 3e38f}) {
        CTvoDataBase db;
        CArray<CGouJianEx*> points;
        for (const float x : {-stray, stray, 7980.0f, -19.0f, 0.0f, 1e6f}) points.Add(Point(db, x, x));
        int i = 0;
        for (const float x : {-stray, stray, 7980.0f, -19.0f, 0.0f, 1e6f}) {
            const float reach = std::fabs(x) * 1e-6f;
            EXPECT_TRUE(Offers(db, CFRect(x - reach, x - reach, x + reach, x + reach), points[i])) << stray << " at " << x;
            EXPECT_TRUE(Offers(db, CFRect(-inf, -inf, inf, inf), points[i])) << stray << " at " << x;
            EXPECT_FALSE(Offers(db, CFRect(nan, 0, nan, 0), points[i])) << stray << " at " << x;
            EXPECT_FALSE(Offers(db, CFRect(3e38f, 0, -3e38f, 3e38f), points[i])) << stray << " the wrong way round, at " << x;
            ++i;
        }
    }
}

// A device context is not needed: the order of painting shows in the order of the calls.
struct Painted : CGouJianEx {
    explicit Painted(CArray<unsigned long>* to) : log(to) { m_bSelfDraw = 1; }
    int Draw(CDC*, CFCoor*) override {
        log->Add(get_m_dwGouJianID());
        return 1;
    }
    CArray<unsigned long>* log;
};

TEST(View, PaintsInTheSameOrderWhateverWasUndone) {
    CTvoFrameBase frame;
    CTvoViewMgr view;
    frame.m_pView = &view;
    CTvoDataBase db;
    db.m_pFrame = &frame;
    CArray<unsigned long> log;
    CArray<CGouJianEx*> all;
    for (int i = 0; i < 3; ++i) {
        auto* obj = new Painted(&log);
        obj->set_m_dwGouJianID(db.GetNextID(20));
        db.AddGouJian(obj);
        all.Add(obj);
    }
    db.Start();
    db.DeleteGouJian(all[0]);
    db.Undo(nullptr, nullptr);
    db.Draw(nullptr, nullptr, 0, GJ_STATUS_NORMAL);
    ASSERT_EQ(log.GetSize(), 3);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(log[i], all[i]->get_m_dwGouJianID());
}

TEST(View, SwitchContainerShowsTheOtherModelAndLetsGoOfTheFirst) {
    CTvoFrameBase frame;
    CTvoViewMgr view;
    frame.m_pView = &view;
    EXPECT_EQ(g_pCurrentView, &view);
    CGridDataBase first, second;
    first.m_pFrame = second.m_pFrame = &frame;
    first.GetNetLine(P(0, 0), P(1000, 0), 0, 0);
    view.m_mapViewPort.RemoveAll();
    second.GetNetLine(P(0, 0), P(1000, 0), 0, 0);
    SwitchContainer(&first, 1);
    EXPECT_EQ(g_pCurrentDataBase, &first);
    EXPECT_EQ(g_pGridDataBase, &first);
    EXPECT_EQ(view.m_pDataBase, &first);
    EXPECT_EQ(view.m_mapViewPort.GetCount(), 3);
    view.m_mapViewPort.ForEach([&](unsigned long id, CGouJianEx* obj) { EXPECT_EQ(first.FindGouJian(id), obj); });
    SwitchContainer(&second, 0);
    EXPECT_EQ(g_pGridDataBase, &second);
    EXPECT_EQ(view.m_pDataBase, &first);
}

}  // namespace
