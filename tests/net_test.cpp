// What a user of the net sees: ends snap, crossings break, overlaps are rewritten, pieces merge.
#include <gtest/gtest.h>

#include <cmath>

#include "net_text.h"

namespace {

std::string WithoutRider(std::string text, const std::string& rider) {
    for (std::size_t at; (at = text.find(rider)) != std::string::npos;) text.erase(at, rider.size());
    return text;
}

}  // namespace

// --- ends and crossings -------------------------------------------------------------------------------------

TEST(Net, EndsSnapAndCrossingsBreak) {
    struct { const char* name; const char* in; const char* out; } const rows[] = {
        {"a line alone", "0,0 - 6000,0", "0,0 - 6000,0"},
        {"from right to left it is turned", "6000,0 - 0,0", "0,0 - 6000,0"},
        {"vertical runs upwards", "0,6000 - 0,0", "0,0 - 0,6000"},
        {"nearly vertical, within 0.1, too", "0,6000 - 0.05,0", "0.1,0 - 0,6000"},
        {"an L corner", "0,0 - 6000,0; 6020,30 - 6000,4000", "0,0 - 6000,0; 6000,0 - 6000,4000"},
        {"the tolerance itself doesn't snap", "0,0; 50,0", "0,0; 50,0"},
        {"just below it snaps to what stands", "0,0; 49.5,0", "0,0"},
        {"of several near nodes the first made wins, not the nearest", "0,0; 60,0; 35,0 - 35,6000", "0,0 - 35,6000; 60,0"},
        {"too short: one node", "0,0 - 20,0", "0,0"},
        {"exactly the tolerance: two nodes and no line", "0,0 - 50,0", "0,0; 50,0"},
        {"the same line again, reversed", "0,0 - 6000,0; 6000,0 - 0,0", "0,0 - 6000,0"},
        {"a cross", "0,0 - 6000,0; 3000,-1000 - 3000,1000",
         "0,0 - 3000,0; 3000,-1000 - 3000,0; 3000,0 - 3000,1000; 3000,0 - 6000,0"},
        {"three crossings", "1000,-1000 - 1000,1000; 2000,-1000 - 2000,1000; 3000,-1000 - 3000,1000; 0,0 - 4000,0",
         "0,0 - 1000,0; 1000,-1000 - 1000,0; 1000,0 - 1000,1000; 1000,0 - 2000,0; 2000,-1000 - 2000,0; 2000,0 - 2000,1000; "
         "2000,0 - 3000,0; 3000,-1000 - 3000,0; 3000,0 - 3000,1000; 3000,0 - 4000,0"},
        {"a T on the line", "0,0 - 10000,0; 5000,0 - 5000,4000", "0,0 - 5000,0; 5000,0 - 5000,4000; 5000,0 - 10000,0"},
        {"a T 4 short: joint at the end", "0,0 - 10000,0; 5000,4 - 5000,4000",
         "0,0 - 5000,4; 5000,4 - 5000,4000; 5000,4 - 10000,0"},
        {"a T 6 short: no joint", "0,0 - 10000,0; 5000,6 - 5000,4000", "0,0 - 10000,0; 5000,6 - 5000,4000"},
        {"a T 30 beyond: joint at the end", "0,0 - 10000,0; 5000,-30 - 5000,4000",
         "0,0 - 5000,-30; 5000,-30 - 5000,4000; 5000,-30 - 10000,0"},
        {"a T 60 beyond: joint on the line", "0,0 - 10000,0; 5000,-60 - 5000,4000",
         "0,0 - 5000,0; 5000,-60 - 5000,0; 5000,0 - 5000,4000; 5000,0 - 10000,0"},
        {"a crossing within the tolerance of an end of both is absorbed", "0,0 - 6000,0; 30,-30 - 30,4000",
         "0,0 - 30,4000; 0,0 - 6000,0"},
        {"two crossings nearer than the tolerance: the lower index goes", "2970,-1000 - 2970,1000; 3005,-2000 - 3005,2000; 0,0 - 6000,0",
         "0,0 - 3005,0; 2970,-1000 - 3005,0; 2970,1000 - 3005,0; 3005,-2000 - 3005,0; 3005,0 - 3005,2000; 3005,0 - 6000,0"},
        {"a line crosses an arc twice", "arc 0,0 5000 0..180; -6000,3000 - 6000,3000",
         "-6000,3000 - -4000,3000; -4000,3000 ~ -5000,0 -18.435; -4000,3000 - 4000,3000; 4000,3000 ~ -4000,3000 -53.13; "
         "4000,3000 - 6000,3000; 5000,0 ~ 4000,3000 -18.435"},
        {"an arc crosses a line", "-6000,3000 - 0,3000; arc 0,0 5000 90..180",
         "-6000,3000 - -4000,3000; -4000,3000 ~ -5000,0 -18.435; -4000,3000 - 0,3000; 0,5000 ~ -4000,3000 -26.565"},
        {"two arcs cross", "arc 0,0 5000 0..90; arc 6000,0 5000 90..180",
         "3000,4000 ~ 0,5000 -18.435; 3000,4000 ~ 1000,0 -26.565; 5000,0 ~ 3000,4000 -26.565; 6000,5000 ~ 3000,4000 -18.435"},
        {"an arc and a line between the same nodes stand side by side", "0,0 - 6000,0; 6000,0 ~ 0,0 -45",
         "0,0 - 6000,0; 6000,0 ~ 0,0 -45"},
        {"breaking off: a crossing stays", "break 0; 0,0 - 6000,0; 3000,-1000 - 3000,1000", "0,0 - 6000,0; 3000,-1000 - 3000,1000"},
        {"storeys don't mix: no snap, no break", "0,0 - 6000,0; storey 2; 10,0; 3000,-1000 - 3000,1000",
         "0,0 - 6000,0; 3000,-1000 - 3000,1000 on 2; 10,0 on 2"},
        {"back on the first storey it breaks", "0,0 - 6000,0; storey 2; 0,0 - 6000,0; storey -1; 3000,0 - 3000,1000",
         "0,0 - 3000,0; 0,0 - 6000,0 on 2; 3000,0 - 3000,1000; 3000,0 - 6000,0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Net(row.in), row.out);
    }
}

TEST(Net, KnownCounts) {
    std::string grid;
    for (int i = 0; i <= 5; ++i) grid += std::to_string(i * 6000) + ",0 - " + std::to_string(i * 6000) + ",24000; ";
    for (int j = 0; j <= 4; ++j) grid += "0," + std::to_string(j * 6000) + " - 30000," + std::to_string(j * 6000) + "; ";
    struct { const char* name; std::string in; const char* count; } const rows[] = {
        {"overlap, then two verticals", "0,0 - 6000,0; 4000,0 - 10000,0", "4/1"},
        {"and verticals through it", "0,0 - 6000,0; 4000,0 - 10000,0; 2000,-3000 - 2000,3000; 8000,-3000 - 8000,3000", "10/7"},
        {"a grid", grid, "30/49"},
        {"with its diagonal", grid + "start; 0,0 - 30000,24000", "37/64"},
        {"and back", grid + "start; 0,0 - 30000,24000; undo", "30/49"},
        {"and forth", grid + "start; 0,0 - 30000,24000; undo; redo", "37/64"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(NetCount(row.in), row.count);
    }
}

// --- overlaps: three ways by who has riders -----------------------------------------------------------------

namespace {

struct OverlapRow {
    const char* name;
    const char* old;       // the line that stands, then the place of its middle
    const char* oldMiddle;
    const char* fresh;     // the new one, made without breaking
    const char* freshMiddle;
    const char* none;      // result without riders
    const char* onNew;     // with rider a on the new line
    const char* onBoth;    // with b on the old one as well; with b alone: the same without a
};

void CheckOverlaps(const OverlapRow& row) {
    SCOPED_TRACE(row.name);
    const auto run = [&](bool riderOnNew, bool riderOnOld) {
        std::string text = row.old;
        if (riderOnOld) text += std::string("; b @ ") + row.oldMiddle;
        text += std::string("; get") + row.fresh;
        if (riderOnNew) text += std::string("; a @ ") + row.freshMiddle;
        return Net(text + "; cut " + row.freshMiddle);
    };
    EXPECT_EQ(run(false, false), row.none) << "no riders";
    EXPECT_EQ(run(true, false), row.onNew) << "riders on the new line";
    EXPECT_EQ(run(true, true), row.onBoth) << "riders on both";
    EXPECT_EQ(run(false, true), WithoutRider(row.onBoth, " {a}")) << "riders on the old line";
}

}  // namespace

TEST(Net, StraightOverlaps) {
    const OverlapRow rows[] = {
        {"the old one runs on past the end", "4000,0 - 10000,0", "7000,0", " 0,0 - 6000,0", "3000,0",
         "0,0 - 10000,0; 4000,0; 6000,0",
         "0,0 - 6000,0 {a}; 6000,0 - 10000,0; 4000,0",
         "0,0 - 4000,0 {a}; 4000,0 - 10000,0 {b}; 6000,0"},
        {"the old one comes in from before the start", "0,0 - 6000,0", "3000,0", " 4000,0 - 10000,0", "7000,0",
         "0,0 - 10000,0; 4000,0; 6000,0",
         "0,0 - 4000,0; 4000,0 - 10000,0 {a}; 6000,0",
         "0,0 - 6000,0 {b}; 6000,0 - 10000,0 {a}; 4000,0"},
        {"the old one lies on the new one", "2000,0 - 4000,0", "3000,0", " 0,0 - 7000,0", "3500,0",
         "0,0 - 7000,0; 2000,0; 4000,0",
         "0,0 - 7000,0 {a}; 2000,0; 4000,0",
         "0,0 - 2000,0 {a}; 2000,0 - 4000,0 {b}; 4000,0 - 7000,0 {a}"},
        {"the new one lies on the old one", "0,0 - 7000,0", "3500,0", " 2000,0 - 4000,0", "3000,0",
         "0,0 - 7000,0; 2000,0; 4000,0",
         "0,0 - 2000,0; 2000,0 - 4000,0 {a}; 4000,0 - 7000,0",
         "0,0 - 7000,0 {b}; 2000,0; 4000,0"},
    };
    for (const auto& row : rows) CheckOverlaps(row);
}

// The first row is the other way round from all the rest: a merged arc is made only when the new one has
// riders (which are lost), and none are merged without.
TEST(Net, ArcOverlaps) {
    const OverlapRow rows[] = {
        {"the old one runs on past the end", "arc 0,0 5000 45..135", "0,5000", "arc 0,0 5000 0..90", "3536,3535",
         "0,5000 ~ -3535.5,3535.5 -22.5; 5000,0 ~ 0,5000 -45; 3535.5,3535.5",
         "5000,0 ~ -3535.5,3535.5 -67.5; 0,5000; 3535.5,3535.5",
         "3535.5,3535.5 ~ -3535.5,3535.5 -45 {b}; 5000,0 ~ 3535.5,3535.5 -22.5 {a}; 0,5000"},
        {"the old one comes in from before the start", "arc 0,0 5000 0..90", "3536,3535", "arc 0,0 5000 45..135", "0,5000",
         "5000,0 ~ -3535.5,3535.5 -67.5; 0,5000; 3535.5,3535.5",
         "3535.5,3535.5 ~ -3535.5,3535.5 -45 {a}; 5000,0 ~ 3535.5,3535.5 -22.5; 0,5000",
         "0,5000 ~ -3535.5,3535.5 -22.5 {a}; 5000,0 ~ 0,5000 -45 {b}; 3535.5,3535.5"},
        {"the old one lies on the new one", "arc 0,0 5000 45..90", "1913,4619", "arc 0,0 5000 0..135", "1914,4620",
         "5000,0 ~ -3535.5,3535.5 -67.5; 0,5000; 3535.5,3535.5",
         "5000,0 ~ -3535.5,3535.5 -67.5 {a}; 0,5000; 3535.5,3535.5",
         "0,5000 ~ -3535.5,3535.5 -22.5 {a}; 3535.5,3535.5 ~ 0,5000 -22.5 {b}; 5000,0 ~ 3535.5,3535.5 -22.5 {a}"},
        {"the new one lies on the old one", "arc 0,0 5000 0..135", "1914,4620", "arc 0,0 5000 45..90", "1913,4619",
         "5000,0 ~ -3535.5,3535.5 -67.5; 0,5000; 3535.5,3535.5",
         "0,5000 ~ -3535.5,3535.5 -22.5; 3535.5,3535.5 ~ 0,5000 -22.5 {a}; 5000,0 ~ 3535.5,3535.5 -22.5",
         "5000,0 ~ -3535.5,3535.5 -67.5 {b}; 0,5000; 3535.5,3535.5"},
    };
    for (const auto& row : rows) CheckOverlaps(row);
}

// Each piece is an overlap of its own, one call deeper.
TEST(Net, OneLineOverTenThousandPieces) {
    CTestNet net;
    constexpr int kPieces = 10000;
    for (int i = 0; i < kPieces; ++i) net.GetNetLine(P(static_cast<float>(100 * i), 0), P(static_cast<float>(100 * i + 100), 0), 0, 0);
    ASSERT_EQ(Count(net), "10001/10000");
    net.Start();
    net.AddNetLine(P(0, 0), P(100 * kPieces, 0), 0, 0);
    EXPECT_EQ(Count(net), "10001/1");
    EXPECT_EQ(Show(LineAt(net, 0, 0)), "0,0 - 1000000,0");
    net.Undo();
    EXPECT_EQ(Count(net), "10001/10000");
}

TEST(Net, RidersFollowTheirLines) {
    struct { const char* name; const char* in; const char* out; } const rows[] = {
        {"a break hands riders to every part", "0,0 - 6000,0; a @ 3000,0; b @ 3000,0; 2000,-1000 - 2000,1000",
         "0,0 - 2000,0 {a} {b}; 2000,-1000 - 2000,0; 2000,0 - 2000,1000; 2000,0 - 6000,0 {a} {b}"},
        {"an arc likewise", "arc 0,0 5000 0..90; a @ 3500,3500; 0,0 - 6000,6000",
         "0,0 - 3535.5,3535.5; 3535.5,3535.5 ~ 0,5000 -22.5 {a}; 3535.5,3535.5 - 6000,6000; 5000,0 ~ 3535.5,3535.5 -22.5 {a}"},
        {"deleting a line takes its riders along", "0,0 - 6000,0; a @ 3000,0; delete 3000,0", "0,0; 6000,0"},
        {"a rider keeps two pieces apart", "0,0 - 6000,0; 3000,-1000 - 3000,0; a @ 1500,0; delete 3000,-500; clean",
         "0,0 - 3000,0 {a}; 3000,0 - 6000,0"},
        {"undo brings it back", "0,0 - 6000,0; a @ 3000,0; start; 2000,-1000 - 2000,1000; undo", "0,0 - 6000,0 {a}"},
        {"a steep line on a steep line with a rider", "0,0 - 2,600; a @ 1,300; 2,600 - 6,-3000", "0,0 - 2,600 {a}; 0,0 - 6,-3000"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Net(row.in), row.out);
    }
    EXPECT_EQ(NetCount("0,0 - 2,600; a @ 1,300; 2,600 - 6,-3000"), "3/2");
}

// --- merging ------------------------------------------------------------------------------------------------

TEST(Net, DeletingHealsTheNet) {
    const std::string comb = "0,0 - 9000,0; 3000,-1000 - 3000,1000; 6000,-1000 - 6000,1000; ";
    struct { const char* name; std::string in; const char* out; } const rows[] = {
        {"three pieces, both crossing lines deleted together",
         comb + "delete 3000,-500 & 3000,500 & 6000,-500 & 6000,500; clean", "0,0 - 9000,0"},
        {"one by one", comb + "delete 3000,-500; delete 3000,500; delete 6000,-500; delete 6000,500; clean", "0,0 - 9000,0"},
        {"a third line at the node stops it", "0,0 - 9000,0; 3000,-1000 - 3000,1000; delete 3000,-500; clean",
         "0,0 - 3000,0; 3000,0 - 3000,1000; 3000,0 - 9000,0"},
        {"merging switched off", "0,0 - 9000,0; 3000,-1000 - 3000,0; merge 0; delete 3000,-500; clean",
         "0,0 - 3000,0; 3000,0 - 9000,0"},
        {"a turn of 0.4 degrees: the straight line replaces both",
         "0,0 - 5000,0; 5000,0 - 10000,34.907; 5000,0 - 5000,3000; delete 5000,1500", "0,0 - 10000,34.9; 5000,0; 5000,3000"},
        {"a turn of 0.52 degrees: none", "0,0 - 5000,0; 5000,0 - 10000,45.38; 5000,0 - 5000,3000; delete 5000,1500; clean",
         "0,0 - 5000,0; 5000,0 - 10000,45.4"},
        {"vertical pieces", "0,0 - 0,9000; 0,4000 - 1000,4000; delete 500,4000; clean", "0,0 - 0,9000"},
        {"an arc broken at one point", "arc 0,0 5000 0..90; 0,0 - 8000,8000; delete 1800,1800 & 5000,5000; clean",
         "5000,0 ~ 0,5000 -45"},
        {"an arc over direction 0", "arc 0,0 5000 315..45; 0,0 - 8000,0; delete 2500,0 & 6500,0; clean",
         "3535.5,-3535.5 ~ 3535.5,3535.5 -45"},
        {"two half circles: a circle has no two nodes, both are gone",
         "arc 0,0 5000 0..180; arc 0,0 5000 180..360; 5000,0 - 8000,0; delete 6500,0; clean", ""},
        {"a straight line and an arc are never one", "0,0 - 5000,0; 5000,0 ~ 5000,3000 -90; 5000,0 - 5000,-3000; delete 5000,-1500; clean",
         "0,0 - 5000,0; 5000,0 ~ 5000,3000 -90"},
        {"undo after healing", "0,0 - 9000,0; 3000,-1000 - 3000,0; start; delete 3000,-500; undo",
         "0,0 - 3000,0; 3000,-1000 - 3000,0; 3000,0 - 9000,0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Net(row.in), row.out);
    }
}

TEST(Net, MergingIsTheHostsWord) {
    CGridDataBase plain;  // its own answer is no
    plain.AddNetLine(P(0, 0), P(6000, 0), 0, 0);
    plain.AddNetLine(P(3000, -1000), P(3000, 0), 0, 0);
    EXPECT_EQ(Count(plain), "4/3");
    plain.DeleteNetLine(LineAt(plain, 3000, -500));
    plain.DeleteIndependentNetNode();
    EXPECT_EQ(Count(plain), "4/2");

    CTestNet net;
    net.m_eMerging = CTestNet::kAlways;
    Build(net, "0,0 - 6000,0; 3000,-1000 - 3000,0; a @ 1500,0; b @ 4500,0; delete 3000,-500; clean");
    EXPECT_EQ(Show(net), "0,0 - 6000,0 {a} {b}");
    EXPECT_EQ(net.m_calls, "merge4 ");
}

TEST(Net, SimilarityIsStrict) {
    CTestNet net;
    OffNet a("0,0 - 5000,0"), b("5000,0 - 10000,43.6"), back("10000,0 - 5000,0"), arc("arc 0,0 5000 0..90"), wider("arc 0,0 5049 90..180"),
        far("arc 0,0 5050 90..180");
    const float turn = std::atan2(43.6f, 5000.0f) * 180.0f / 3.1415927f;
    EXPECT_EQ(net.IsSimilarNetLine(a, b, turn), 0);
    EXPECT_EQ(net.IsSimilarNetLine(a, b, std::nextafter(turn, 1.0f)), 1);
    EXPECT_EQ(net.IsSimilarNetLine(a, back, 0.5f), 0);  // the sense counts
    EXPECT_EQ(net.IsSimilarNetLine(a, arc, 0.5f), 0);
    EXPECT_EQ(net.IsSimilarNetLine(arc, wider, 0.5f), 1);
    EXPECT_EQ(net.IsSimilarNetLine(arc, far, 0.5f), 0);
    OffNet up("0,0 - 5000,4"), down("0,0 - 5000,-4");  // either side of direction 0
    EXPECT_EQ(net.IsSimilarNetLine(up, down, 0.5f), 1);
}

// --- results and flags --------------------------------------------------------------------------------------

TEST(Net, ResultsOfAdding) {
    CTestNet net;
    const auto flags = [&] {
        return std::string(net.m_bLineSwapped ? "swapped " : "") + (net.m_bLineDegenerate ? "degenerate " : "") +
               (net.m_bLineExisted ? "existed " : "");
    };
    EXPECT_EQ(net.AddNetLine(P(0, 0), P(6000, 0), 0, 0), nullptr) << "a line that may have been broken is never returned";
    EXPECT_EQ(flags(), "");
    EXPECT_EQ(Count(net), "2/1");
    CGjNetLine* line = LineAt(net, 3000, 0);

    const auto next = [&] { return net.m_handedOut.size(); };
    const auto before = next();
    EXPECT_EQ(net.AddNetLine(P(6000, 0), P(0, 0), 0, 0), line);
    EXPECT_EQ(flags(), "swapped existed ");
    EXPECT_EQ(next(), before) << "an identity was used up";

    EXPECT_EQ(net.AddNetLine(P(100, 3000), P(120, 3000), 0, 0), nullptr);
    EXPECT_EQ(flags(), "degenerate ");
    EXPECT_EQ(net.AddNetLine(P(100, 5000), P(150, 5000), 0, 0), nullptr);
    EXPECT_EQ(flags(), "degenerate ");
    EXPECT_EQ(Count(net), "5/1");

    net.m_bAutoBreak = 0;
    CGjNetLine* made = net.GetNetLine(P(0, 9000), P(6000, 9000), 0, 0);
    ASSERT_TRUE(made);
    EXPECT_EQ(Show(made), "0,9000 - 6000,9000");
    EXPECT_EQ(net.m_bAutoBreak, 1) << "whatever it was before";
    net.m_bAutoBreak = 0;
    EXPECT_EQ(Show(net.AddNetLine(P(6000, 8000), P(0, 8000), 0, 0)), "0,8000 - 6000,8000") << "without breaking it is returned";
    EXPECT_EQ(flags(), "swapped ");

    EXPECT_EQ(net.AddNetNode(10, 9020), made->m_pStartNode);
    EXPECT_EQ(net.IsDuplicateNetNode(made->m_pStartNode), made->m_pStartNode) << "a node finds itself";
    EXPECT_EQ(net.IsDuplicateNetNode(50, 9000), nullptr);
}

TEST(Net, ArcsBetweenTwoNodes) {
    CTestNet net;
    net.m_bAutoBreak = 0;
    CGjNetLine* first = net.AddNetLine(P(0, 0), P(6000, 0), 1, -45);
    EXPECT_EQ(net.AddNetLine(P(0, 0), P(6000, 0), 1, -45.0625f), first);
    CGjNetLine* other = net.AddNetLine(P(0, 0), P(6000, 0), 1, -45.125f);
    EXPECT_NE(other, first);
    CGjNetLine* reversed = net.AddNetLine(P(6000, 0), P(0, 0), 1, -45);
    EXPECT_EQ(net.m_bLineSwapped, 0) << "arcs never turn";
    EXPECT_EQ(Show(reversed), "6000,0 ~ 0,0 -45");
    CGjNetLine* straight = net.AddNetLine(P(6000, 0), P(0, 0), 0, 0);
    CArray<CGouJianEx*> between;
    EXPECT_EQ(net.GetNetLineOnNetNode(first->m_pStartNode, first->m_pEndNode, between), 4);
    EXPECT_EQ(between[0], first);
    EXPECT_EQ(between[1], other);
    EXPECT_EQ(between[2], straight);
    EXPECT_EQ(between[3], reversed);
}

TEST(Net, ArcsByAngleAndByPoints) {
    const float h = 5000 * std::sqrt(0.5f);
    struct { const char* name; float start, end; const char* out; } const byAngle[] = {
        {"a quarter", 0, 90, "5000,0 ~ 0,5000 -45"},
        {"over direction 0", 350, 10, "4924,-868.2 ~ 4924,868.2 -10"},
        {"negative start", -90, 90, "0,-5000 ~ 0,5000 -90"},
        {"both negative", -90, -45, "0,-5000 ~ 3535.5,-3535.5 -22.5"},
    };
    for (const auto& row : byAngle) {
        SCOPED_TRACE(row.name);
        CTestNet net;
        EXPECT_EQ(Show(net.GetArc(P(0, 0), 5000, row.start, row.end)), row.out);
        EXPECT_EQ(net.m_bAutoBreak, 1);
        CTestNet other;
        EXPECT_EQ(other.AddArc(P(0, 0), 5000, row.start, row.end), nullptr);
        EXPECT_EQ(Show(other), row.out);
    }
    struct { const char* name; CFPoint a, b, c; const char* out; } const byPoints[] = {
        {"anticlockwise from a", P(5000, 0), P(0, 5000), P(h, h), "5000,0 ~ 0,5000 -45"},
        {"clockwise from a is turned", P(0, 5000), P(5000, 0), P(h, h), "5000,0 ~ 0,5000 -45"},
        {"the long way round", P(5000, 0), P(0, 5000), P(-h, -h), "0,5000 ~ 5000,0 -135"},
        {"collinear", P(0, 0), P(6000, 0), P(3000, 0), "null"},
        {"the point is an end", P(0, 0), P(6000, 0), P(0, 0), "null"},
    };
    for (const auto& row : byPoints) {
        SCOPED_TRACE(row.name);
        CTestNet net;
        EXPECT_EQ(Show(net.GetArc(row.a, row.b, row.c)), row.out);
    }
}

// --- stars --------------------------------------------------------------------------------------------------

TEST(Net, DeletingOneOfTwoLinesForgetsTheOther) {
    CTestNet net;
    CGjNetLine* straight = net.GetNetLine(P(0, 0), P(6000, 0), 0, 0);
    CGjNetLine* arc = net.GetNetLine(P(0, 0), P(6000, 0), 1, -45);
    CGjNetNode *a = arc->m_pStartNode, *b = arc->m_pEndNode;
    CArray<CGouJianEx*> found;
    EXPECT_EQ(net.GetNetLineOnNetNode(a, b, found), 2);
    EXPECT_EQ(net.GetNetLineOnNetNode(b, a, found), 2) << "asked the other way round";
    net.DeleteNetLine(straight);
    EXPECT_EQ(net.GetNetLineOnNetNode(a, b, found), 0);
    EXPECT_EQ(found.GetSize(), 0) << "the array is emptied";
    found.Add(nullptr);
    EXPECT_EQ(net.GetConnectedNetLine(a, found), 1);
    EXPECT_EQ(found.GetSize(), 2) << "here it is appended to";
    EXPECT_EQ(found[1], arc);
    EXPECT_NE(net.MakeBinaryStar(a, b), net.MakeBinaryStar(b, a));
    CGjNetNode loner;
    EXPECT_EQ(net.GetConnectedNetLine(&loner, found), 0);
}

TEST(Net, StarsAsObjects) {
    OffNet l("0,0 - 6000,0"), m("0,0 - 0,6000");
    CStar star;
    EXPECT_EQ(star.AddMapElement(l->m_pStartNode, l), 0) << "not the centre";
    star.m_pNode = l->m_pStartNode;
    EXPECT_EQ(star.AddMapElement(l->m_pStartNode, l), 1);
    EXPECT_EQ(star.AddMapElement(l->m_pStartNode, l), 0) << "there already";
    CStar copy(star);
    EXPECT_EQ(copy.RemoveMapElement(m), 0);
    EXPECT_EQ(copy.RemoveMapElement(l), 1);
    EXPECT_EQ(star.m_mapLine.GetCount(), 1);

    CBinaryStar pair, other;
    pair.m_nKey = other.m_nKey = 7;
    pair.m_pNode1 = l->m_pStartNode;
    EXPECT_EQ(pair.AddMapElement(8, l), 0) << "a foreign key";
    EXPECT_EQ(pair.AddMapElement(7, l), 1);
    EXPECT_EQ(pair.AddMapElement(7, l), 0);
    EXPECT_EQ(pair.RemoveMapElement(7, m), 0);
    other.CopyData(pair);
    EXPECT_EQ(other.m_aLine.GetSize(), 1);
    EXPECT_EQ(other.m_pNode1, nullptr) << "the nodes are not copied";
    pair.RemoveAll();
    EXPECT_EQ(pair.m_nKey, 0);
    EXPECT_EQ(pair.m_pNode1, l->m_pStartNode);
}

TEST(Net, EditsAreGatheredForPlates) {
    CTestNet net;
    net.PrepareDPC();
    Build(net, "0,0 - 6000,0; 3000,0 - 3000,1000");  // the first line was added and removed: it stands in both
    EXPECT_EQ(net.m_mapBanBianInsert.GetCount(), 4);
    EXPECT_EQ(net.m_mapBanBianRemove.GetCount(), 1);
    net.CompleteDPC();
    EXPECT_EQ(net.m_mapBanBianInsert.GetCount() + net.m_mapBanBianRemove.GetCount(), 0);
}

