// How components use their display list: extent, hits, snapping, making it anew.
#include <gtest/gtest.h>

#include <vector>

#include "display_show.h"
#include "geometry/fregion.h"
#include "model/draw_graph.h"
#include "model/goujian.h"
#include "view/tvo_view_mgr.h"

namespace {

class Gripped : public CGouJianEx {
public:
    int GetJiaDian(CArray<CFPoint>& grips) override {
        grips.Add(CFPoint(-7, 3, 0));
        grips.Add(CFPoint(2, 90, 0));
        return 1;
    }
    int DrawGraph(CDrawGraph* graph) override {
        ++generated;
        graph->Draw_Line(0, 0, 10, 10, 1, 'A', 1, 13);
        return 1;
    }
    void OnCalcParameters() override { ++calculated; }
    int generated = 0, calculated = 0;
};

TEST(ComponentDisplay, ExtentCoversPictureAndGrips) {
    Gripped gj;
    EXPECT_EQ(Show(gj.GetFrect()), "-7,0 2,90") << "an empty list counts as the origin";
    gj.DrawGraph(gj.GetDrawGraph());
    EXPECT_EQ(Show(gj.GetFrect()), "-7,0 10,90");
}

TEST(ComponentDisplay, HiddenOnesAreNotHitButStayInTheIndex) {
    CGouJianEx gj;
    gj.GetDrawGraph()->Draw_Line(0, 0, 10, 10, 1, 'A', 1, 13);
    const CFRect there(5, 0, 20, 20);
    EXPECT_EQ(gj.HitTest(there, 0), 1);
    EXPECT_EQ(gj.HitTest(CFRegion(there), 0), 1);
    gj.set_m_byteStatus(GJ_STATUS_HIDDEN);
    EXPECT_EQ(gj.HitTest(there, 0), 0);
    EXPECT_EQ(gj.HitTest(CFRegion(there), 0), 0);
    EXPECT_EQ(gj.IndexHitTest(there, 0), 1);
}

TEST(ComponentDisplay, SnapSwitchOfTheTypeDecides) {
    CGouJianEx gj;
    gj.set_Gjlx(77);
    gj.GetDrawGraph()->Draw_Line(0, 0, 10, 10, 1, 'A', 1, 13);
    CArray<CFPoint> points;
    CArray<int> kinds;
    points.Add(CFPoint(1, 2, 3));
    DisableSnap(77);
    EXPECT_EQ(gj.QueryAbsSnapPoint(2, points, kinds), 0);
    EXPECT_EQ(ShowSnap(points, (kinds.Add(9), kinds)), "9@1,2 ") << "both arrays as they were";
    EnableSnap(77);
    EXPECT_EQ(gj.QueryAbsSnapPoint(4, points, kinds), 1);
    EXPECT_EQ(points.GetSize(), 1) << "emptied first";
    EXPECT_EQ(kinds.GetSize(), 2) << "never emptied";
    EXPECT_EQ(gj.QueryAbsSnapPoint(8, points, kinds), 1) << "1 though nothing was found";
    EXPECT_EQ(points.GetSize(), 0);
}

struct CountingView : CTvoViewMgr {
    void InvalidateRect(const CRect* rect, BOOL) override { places.push_back(*rect); }
    std::vector<CRect> places;
};

TEST(ComponentDisplay, GeneratedPicturesAreMadeAnewAndFixedOnesStay) {
    Gripped gj;
    EXPECT_EQ(gj.ReGen(nullptr), 1);
    EXPECT_EQ(gj.calculated, 1);
    EXPECT_EQ(gj.generated, 0) << "no view, no picture";
    gj.GetDrawGraph()->Draw_Point(500, 1, 'A', 1, 13);
    CountingView view;
    EXPECT_EQ(gj.ReGen(&view), 1);
    ASSERT_EQ(view.places.size(), 1u);
    EXPECT_GE(view.places[0].right, 500) << "the view forgets the old picture, before it goes";
    EXPECT_EQ(gj.GetDrawGraph()->m_aEntity.GetSize(), 1) << "emptied, then filled";
    EXPECT_EQ(gj.GetDrawGraph()->m_aEntity[0]->GetGraphType(), 2u);
    gj.m_bGraphBuilt = 1;
    gj.ClearDrawGraph();
    EXPECT_EQ(gj.m_pDrawGraph, nullptr);
    EXPECT_EQ(gj.m_bGraphBuilt, 1);

    gj.GetDrawGraph()->m_bFixed = 1;
    gj.ReDraw(&view);
    EXPECT_EQ(gj.generated, 1);
    EXPECT_EQ(view.places.size(), 2u) << "the view hears of it all the same";
    gj.GetDrawGraph()->m_bFixed = 0;
    gj.m_bSelfDraw = 1;
    gj.ReDraw(&view);
    EXPECT_EQ(gj.generated, 1);
    gj.m_bDrawBoth = 1;
    gj.ReDraw(&view);
    EXPECT_EQ(gj.generated, 2);
    EXPECT_EQ(view.places.size(), 4u);
}

}  // namespace
