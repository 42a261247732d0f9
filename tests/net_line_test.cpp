// A net line alone, and how two of them meet.
#include <gtest/gtest.h>

#include <cmath>

#include "geometry/region_measures.h"
#include "model/draw_graph.h"
#include "net_text.h"

namespace {

constexpr float kPi = 3.1415927f;

}  // namespace

// --- a line alone -------------------------------------------------------------------------------------------

TEST(NetLine, Caches) {
    OffNet arc("1000,0 ~ 0,1000 -45");
    float cx, cy, from, to, mx, my;
    arc->GetCenterPoint(cx, cy);
    EXPECT_EQ(cx, 0);
    EXPECT_EQ(cy, 0);
    EXPECT_EQ(arc->GetR(), 1000);
    arc->GetDirectionAngle(from, to);
    EXPECT_EQ(from, 0);
    EXPECT_FLOAT_EQ(to, kPi / 2);
    EXPECT_FLOAT_EQ(arc->GetLength(), 1000 * (kPi / 2));
    EXPECT_FLOAT_EQ(arc->GetChordLength(), 1000 * std::sqrt(2.0f));
    arc->GetMidPoint(mx, my);
    EXPECT_NEAR(mx, 707.107, 0.01);
    EXPECT_NEAR(my, 707.107, 0.01);

    OffNet over("arc 0,0 5000 315..405");
    over->GetDirectionAngle(from, to);
    EXPECT_NEAR(to - from, kPi / 2, 1e-5);
    over->GetMidPoint(mx, my);
    EXPECT_NEAR(mx, 5000, 0.01);

    OffNet half("0,0 ~ 6000,0 -90");
    half->GetCenterPoint(cx, cy);
    EXPECT_EQ(cx, 3000);
    EXPECT_NEAR(cy, 0, 1e-3);

    CGjNetLine fresh;
    EXPECT_EQ(fresh.GetR(), 1000);
    EXPECT_EQ(fresh.m_fEndDir, 90);
    OffNet straight("0,0 - 6000,0");
    EXPECT_EQ(straight->GetCentroid().x, 0) << "the arc centre's fields, for straight lines too";
    EXPECT_EQ(straight->GetSortPoint().x, 3000);
    EXPECT_TRUE(straight->IsTongXiang(straight->m_pStartNode));
    EXPECT_FALSE(straight->IsTongXiang(straight->m_pEndNode));
    EXPECT_TRUE(OffNet("0,0 - 0.09,600")->IsVertical());
    EXPECT_FALSE(OffNet("0,0 - 0.11,600000")->IsVertical());
    EXPECT_TRUE(OffNet("0,0 - 600,0.09")->IsHorizontal());
}

TEST(NetLine, Tangents) {
    const auto at = [](float degrees) { return P(10000 * std::cos(degrees * kPi / 180), 10000 * std::sin(degrees * kPi / 180)); };
    const auto line = [&](float degrees, int arc, float bulge) { return ConstructNetLineObject(P(0, 0), at(degrees), arc, bulge); };
    struct { float chord; int arc; float bulge; double start, end; } const rows[] = {
        {350, 0, 0, 350, 170}, {10, 0, 0, 10, 190}, {10, 1, -20, -10, 210}, {200, 1, -45, 155, 65}, {170, 1, -30, 140, 20},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "chord " << row.chord << " bulge " << row.bulge);
        CGjNetLine* l = line(row.chord, row.arc, row.bulge);
        EXPECT_NEAR(l->GetTangentAngle(l->m_pStartNode), row.start, 1e-3);
        EXPECT_NEAR(l->GetTangentAngle(l->m_pEndNode), row.end, 1e-3);
        EXPECT_EQ(l->GetTangentAngle(nullptr), l->GetTangentAngle(l->m_pEndNode)) << "any other node is taken for the end";
        DeleteNetLineObject(l);
    }
}

TEST(NetLine, ChainsAndClones) {
    OffNet arc("arc 0,0 5000 0..90");
    CFShoot s = arc->GetFShoot(1);
    EXPECT_FLOAT_EQ(s.GetC(), kPi / 4);
    EXPECT_NEAR(s.y, 5000, 0.01);
    EXPECT_FLOAT_EQ(arc->GetFShoot(0).GetC(), -kPi / 4);
    struct { CFShoot a, b; const char* out; } const rows[] = {
        {{0, 0, 0}, {5, 5, 0}, "0,0 - 5,5"},
        {{5, 5, 0}, {0, 0, 0}, "0,0 - 5,5"},
        {{0, 9, 0}, {0.009f, 0, 0}, "0,0 - 0,9"},
        {{5000, 0, -kPi / 4}, {0, 5000, 0}, "5000,0 ~ 0,5000 -45"},
        {{0, 5000, kPi / 4}, {5000, 0, 0}, "5000,0 ~ 0,5000 -45"},
    };
    for (const auto& row : rows) {
        CGjNetLine* l = GetNetLineFromShoot(row.a, row.b);
        EXPECT_EQ(Show(l), row.out);
        DeleteNetLineObject(l);
    }

    CTestNet net;
    CGjNetLine* stored = net.GetArc(P(0, 0), 5000, 0, 90);
    const auto before = net.m_handedOut.size();
    CGjNetLine* clone = stored->Clone();
    EXPECT_EQ(net.m_handedOut.size(), before + 1);
    EXPECT_EQ(clone->m_nArc, 0) << "a clone reads as straight until told";
    EXPECT_EQ(clone->m_fBulge, stored->m_fBulge);
    EXPECT_EQ(clone->m_fR, stored->m_fR);
    EXPECT_EQ(clone->m_pStartNode, stored->m_pStartNode);
    EXPECT_EQ(net.FindGouJian(clone->get_m_dwGouJianID()), nullptr);
    delete clone;

    CGjNetLine* bare = new CGjNetLine;
    DeleteNetLineObject(bare);  // no nodes: only the line
    for (const int arrows : {0, 1}) {
        g_cTvoProfile.m_bShowLineDirection = arrows;
        CTestNet other;
        EXPECT_EQ(other.GetNetLine(P(0, 0), P(6000, 0), 0, 0)->GetDrawGraph()->m_aEntity.GetSize(), arrows ? 4 : 1);
        EXPECT_EQ(other.GetArc(P(0, 0), 5000, 0, 90)->GetDrawGraph()->m_aEntity.GetSize(), arrows ? 4 : 1);
    }
}

// --- how two lines meet -------------------------------------------------------------------------------------

TEST(NetIntersection, HowTwoLinesMeet) {
    struct { const char* name; const char* l1; const char* l2; int result, count; const char* points; } const rows[] = {
        {"tail", "0,0 - 6000,0", "4000,0 - 10000,0", 1, -1, ""},
        {"head", "4000,0 - 10000,0", "0,0 - 6000,0", 2, -1, ""},
        {"second in first", "0,0 - 6000,0", "1000,0 - 2000,3", 4, -1, ""},
        {"the same line", "0,0 - 6000,0", "0,0 - 6000,0", 4, -1, ""},
        {"a short one lying across counts as on it", "0,0 - 6000,0", "3000,-4 - 3000,4", 4, -1, ""},
        {"first in second", "1000,0 - 2000,0", "0,0 - 6000,0", 8, -1, ""},
        {"overlap in opposite directions is none", "0,0 - 6000,0", "10000,0 - 4000,0", 0, 0, ""},
        {"unless one lies on the other", "0,0 - 6000,0", "4000,0 - 2000,0", 4, -1, ""},
        {"end to start", "0,0 - 6000,0", "6000,0 - 10000,0", 0x20, 1, "6000,0 "},
        {"end to start with a gap: the first line's end", "0,0 - 6000,0", "6030,0 - 10000,0", 0x20, 1, "6000,0 "},
        {"start to end with a gap: the second line's end", "6000,0 - 10000,0", "0,0 - 5970,0", 0x10, 1, "5970,0 "},
        {"crossing", "0,0 - 6000,0", "3000,-1000 - 3000,1000", 0x40, 1, "3000,0 "},
        {"crossing at the start", "0,0 - 6000,0", "0,-1000 - 0,1000", 0x10, 1, "0,0 "},
        {"crossing at the end", "0,0 - 6000,0", "6000,-1000 - 6000,1000", 0x20, 1, "6000,0 "},
        {"a T", "3000,3 - 3000,4000", "0,0 - 6000,0", 0x10, 1, "3000,0 "},
        {"apart", "0,0 - 6000,0", "3000,6 - 3000,4000", 0, 0, ""},

        {"line through an arc", "0,0 - 8000,8000", "arc 0,0 5000 0..90", 0x40, 1, "3535.5,3535.5 "},
        {"arc through a line", "arc 0,0 5000 0..90", "0,0 - 8000,8000", 0x40, 1, "3535.5,3535.5 "},
        {"twice", "-6000,3000 - 6000,3000", "arc 0,0 5000 0..180", 0x40, 2, "-4000,3000 4000,3000 "},
        {"a point at the line's start has two bits", "5000,0 - 8000,0", "arc 0,0 5000 0..90", 0x50, 1, "5000,0 "},
        {"and speaks of the line in the other order too", "arc 0,0 5000 0..90", "5000,0 - 8000,0", 0x50, 1, "5000,0 "},
        {"a point at the line's end has one", "8000,0 - 5000,0", "arc 0,0 5000 0..90", 0x20, 1, "5000,0 "},
        {"no point, but ends are near: start and start", "5003,-3.9 - 5403,-2003.9", "arc 0,0 5000 0..90", 0x10, 1, "5003,-3.9 "},
        {"end and start", "5403,-2003.9 - 5003,-3.9", "arc 0,0 5000 0..90", 0x20, 1, "5003,-3.9 "},
        {"arc first: start and start", "arc 0,0 5000 0..90", "5003,-3.9 - 5403,-2003.9", 0x10, 1, "5003,-3.9 "},
        {"arc first: the line's end at its start", "arc 0,0 5000 0..90", "5403,-2003.9 - 5003,-3.9", 0x10, 1, "5003,-3.9 "},
        {"an arc that begins just below a full turn", "arc 0,0 5000 359.9..450", "4000,1000 - 6000,1000", 0x40, 1, "4899,1000 "},
        {"line and arc apart", "0,0 - 1000,0", "arc 0,0 5000 0..90", 0, 0, ""},

        {"arc: second in first", "arc 0,0 5000 0..90", "arc 0,0 5000 0..45", 4, -1, ""},
        {"arc: first in second", "arc 0,0 5000 0..45", "arc 0,0 5000 0..90", 8, -1, ""},
        {"arc: the same", "arc 0,0 5000 0..45", "arc 0,0 5000 0..45", 4, -1, ""},
        {"arc: tail", "arc 0,0 5000 0..90", "arc 0,0 5000 45..135", 1, -1, ""},
        {"arc: head", "arc 0,0 5000 45..135", "arc 0,0 5000 0..90", 2, -1, ""},
        {"arc: end to start", "arc 0,0 5000 0..45", "arc 0,0 5000 45..90", 0x20, 1, "3535.5,3535.5 "},
        {"arc: start to end", "arc 0,0 5000 45..90", "arc 0,0 5000 0..45", 0x10, 1, "3535.5,3535.5 "},
        {"arcs cross", "arc 0,0 5000 0..180", "arc 6000,0 5000 0..180", 0x80, 1, "3000,4000 "},
        {"arcs apart", "arc 0,0 5000 0..180", "arc 6000,0 5000 180..360", 0, 0, ""},
    };
    CTestNet net;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        OffNet l1(row.l1), l2(row.l2);
        float x[2] = {-1, -1}, y[2] = {-1, -1};
        int count = 99;
        EXPECT_EQ(net.TestNetLineIntersection(l1, l2, x, y, count, 5), row.result);
        EXPECT_EQ(count, row.count);
        std::string points;
        for (int i = 0; i < count; ++i) points += Place(x[i], y[i]) + " ";
        EXPECT_EQ(points, row.points);
        if (count == -1) {
            EXPECT_EQ(x[0], -1) << "an overlap writes no points";
        }
    }
}

TEST(NetIntersection, PointOnLine) {
    struct { const char* line; float x, y; int where; } const rows[] = {
        {"0,0 - 6000,0", 3000, 4, 3},     {"0,0 - 6000,0", 3000, 6, 0},   {"0,0 - 6000,0", 2, 0, 1},
        {"0,0 - 6000,0", 5998, 0, 2},     {"0,0 - 6000,0", -4, 0, 1},     {"0,0 - 6000,0", -6, 0, 0},
        {"0,0 - 6000,0", 6006, 0, 0},     {"0,0 - 6000,0", -4, -4, 3},    {"0,0 - 3000,4000", 1500, 2000, 3},
        {"0,0 - 3000,4000", 1503.2f, 1997.6f, 3}, {"0,0 - 3000,4000", 1504.8f, 1996.4f, 0},
        {"0,6000 - 3000,2000", 1500, 4000, 3},    {"0,6000 - 3000,2000", 1500, 4020, 0},
        {"arc 0,0 5000 10..20", 4829.6f, 1294.1f, 3},   // at 15 degrees
        {"arc 0,0 5000 10..20", -4698.46f, -1710.1f, 3},  // at 200 degrees: degrees meet radians, and it counts
        {"arc 0,0 5000 10..20", 5000, 8, 0},              // at 0.09 degrees, below the start in radians
        {"arc 0,0 5000 10..20", 4839.6f, 1294.1f, 0},
        {"arc 0,0 5000 10..20", 4924.04f, 868.24f, 1},
        {"arc 0,0 5000 10..20", 4698.46f, 1710.1f, 2},
    };
    CTestNet net;
    for (const auto& row : rows) {
        OffNet line(row.line);
        EXPECT_EQ(net.IsNodeOnNetLine(row.x, row.y, line, 5), row.where) << row.line << " and " << row.x << "," << row.y;
    }
    OffNet line("0,0 - 6000,0");
    EXPECT_TRUE(net.IsDuanPoint(line, 0, 49));
    EXPECT_FALSE(net.IsDuanPoint(line, 0, 50));
    EXPECT_TRUE(net.IsDuanPoint(line, 6049, 0));
}

TEST(NetIntersection, SameLine) {
    struct { const char* a; const char* b; int same; } const rows[] = {
        {"0,0 - 6000,0", "0,0.09 - 6000,0", 1},           {"0,0 - 6000,0", "0,0.11 - 6000,0", 0},
        {"0,0 - 6000,0", "6000,0 - 0,0", 0},              {"0,0 - 6000,0", "0,0 ~ 6000,0 -45", 0},
        {"arc 0,0 5000 0..90", "arc 0,0 5000 0..90.05", 1}, {"arc 0,0 5000 0..90", "arc 0,0 5000 0..90.2", 0},
        {"arc 0,0 5000 0..90", "arc 0,0 5001 0..90", 1},  // the radius is not compared
        {"arc 0,0 5000 0..90", "arc 1,0 5000 0..90", 0},
    };
    CTestNet net;
    for (const auto& row : rows) {
        OffNet a(row.a), b(row.b);
        EXPECT_EQ(net.IsSameNetLine(a, b), row.same) << row.a << " and " << row.b;
    }
}

TEST(NetIntersection, SectionsUseUpIdentities) {
    CTestNet net;
    CGjNetLine* line = net.GetNetLine(P(0, 0), P(6000, 0), 0, 0);
    const CFPLine across(P(3000, -1000), P(3000, 1000)), away(P(0, 500), P(6000, 500)), on(P(1000, 0), P(2000, 0));
    const CFPArc arc(0, 0, 5000, -45, 45);
    float x[2], y[2];
    const auto used = [&](int expected, int count, const char* ids) {
        static std::pair<unsigned long, unsigned long> last;
        const std::pair<unsigned long, unsigned long> now{net.GetNextID(1) & 0xFFFFFF, net.GetNextID(2) & 0xFFFFFF};
        const std::string text = std::to_string(now.first - last.first - 1) + "/" + std::to_string(now.second - last.second - 1);
        last = now;
        if (!*ids) return;
        EXPECT_EQ(count, expected);
        EXPECT_EQ(text, ids);
    };
    used(0, 0, "");
    used(1, net.GetInterPointOfLineSections(across, line, x, y, 5), "2/1");
    EXPECT_EQ(Place(x[0], y[0]), "3000,0");
    used(0, net.GetInterPointOfLineSections(across, CFPLine(P(0, 2000), P(6000, 2000)), x, y, 5), "4/2");
    used(0, net.GetInterPointOfLineSections(away, line, x, y, 5), "2/1");
    used(-1, net.GetInterPointOfLineSections(on, line, x, y, 5), "2/1");
    used(1, net.GetInterPointOfLineSections(arc, line, x, y, 5), "2/1");
    EXPECT_EQ(Place(x[0], y[0]), "5000,0");
    used(2, net.GetInterPointOfLineSections(arc, CFPArc(8000, 0, 5000, 90, 270), x, y, 5), "4/2");
    used(1, net.GetInterPointOfLineSections(arc, away, x, y, 5), "4/2");
    EXPECT_EQ(Count(net), "2/1") << "nothing entered the net";
    EXPECT_EQ(net.m_fault, "");
}

TEST(NetIntersection, Outlines) {
    const auto box = [](float x0, float y0, float x1, float y1) { return CFRegion(CFRect(x0, y0, x1, y1)); };
    CFRegion big = box(0, 0, 6000, 6000), small = box(1000, 1000, 2000, 2000), far = box(9000, 0, 9500, 500),
             across = box(5000, 5000, 8000, 8000), disc, hollow;
    disc.Add(CFShoot(1000, 3000, -kPi / 2));  // two half circles, anticlockwise
    disc.Add(CFShoot(5000, 3000, -kPi / 2));
    hollow.Add(CFShoot(3000, 3000, -kPi / 2));
    hollow.Add(CFShoot(3500, 3000, -kPi / 2));
    CTestNet net;
    struct { const char* name; CFRegion *a, *b; int result, inside; } const rows[] = {
        // inside: is the second inside the first
        {"itself: edges meet", &big, &big, 2, 1},
        {"first holds second", &big, &small, 0, 1},
        {"second holds first", &small, &big, 1, 0},
        {"apart", &small, &far, 3, 0},
        {"crossing counts as inside", &big, &across, 2, 1},
        {"a box holds a disc", &big, &disc, 0, 1},
        {"a disc holds a disc", &disc, &hollow, 0, 1},
        {"a disc in a box", &disc, &big, 1, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(net.TestRegionIntersection(*row.a, *row.b), row.result);
        EXPECT_EQ(IsRegionInsideRegion(&net, *row.a, *row.b), row.inside);
    }
}
