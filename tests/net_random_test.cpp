// Random edits of the net, and what holds after any of them.
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "geometry/fregion.h"
#include "net/cut_points.h"
#include "net_text.h"

namespace {

/// Draws numbers; the same on every machine.
class Dice {
public:
    explicit Dice(unsigned seed) : m_rng(seed) {}
    int Pick(int n) { return static_cast<int>(m_rng() % static_cast<unsigned>(n)); }
    float Real(float from, float to) { return from + (to - from) * static_cast<float>(m_rng() >> 8) / 16777216.0f; }

private:
    std::mt19937 m_rng;
};

// --- what must hold -----------------------------------------------------------------------------------------

std::string StarsAsLines(CTestNet& net) {
    std::map<CGjNetNode*, std::vector<CGouJianEx*>> star;
    CArray<CGouJianEx*> lines, found;
    net.GetGouJianArray(GJLX_NET_LINE, &lines);  // by identity
    for (CGouJianEx* obj : lines) {
        auto* l = static_cast<CGjNetLine*>(obj);
        star[l->m_pStartNode].push_back(l);
        star[l->m_pEndNode].push_back(l);
        if (net.FindGouJian(l->get_m_dwGouJianID()) != l) return "a line isn't found by its identity";
        if (net.FindGouJian(l->m_dwStartID) != l->m_pStartNode) return "a start node isn't in the store";
        if (net.FindGouJian(l->m_dwEndID) != l->m_pEndNode) return "an end node isn't in the store";
        if (l->m_pStartNode == l->m_pEndNode) return "a line from a node to itself: " + Show(l);
        if (l->m_nCeng != l->m_pStartNode->m_nCeng) return "a line and its node on different storeys";
        if (l->m_nArc && l->m_fBulge > 0) return "an arc that runs clockwise";
        const float dx = l->m_pEndNode->m_fX - l->m_pStartNode->m_fX, dy = l->m_pEndNode->m_fY - l->m_pStartNode->m_fY;
        if (!l->m_nArc && (std::fabs(dx) < 0.1f ? dy < 0 : dx < 0)) return "a line that runs the wrong way: " + Show(l);
    }
    const auto nodes = NodesOf(net);
    if (net.m_mapStar.GetCount() != static_cast<int>(nodes.size())) return "a star too many or too few";
    for (CGjNetNode* n : nodes) {
        found.RemoveAll();
        net.GetConnectedNetLine(n, found);
        if (std::vector<CGouJianEx*>(found.begin(), found.end()) != star[n]) return "star of " + Place(n->m_fX, n->m_fY);
    }
    for (const auto& [ids, held] : net.m_pairs) {
        auto* a = static_cast<CGjNetNode*>(net.FindGouJian(ids.first));
        auto* b = static_cast<CGjNetNode*>(net.FindGouJian(ids.second));
        if (!a || !b) return "a pair of nodes that are gone";
        net.GetNetLineOnNetNode(a, b, found);
        auto expected = held;
        if (const auto back = net.m_pairs.find({ids.second, ids.first}); back != net.m_pairs.end())
            expected.insert(expected.end(), back->second.begin(), back->second.end());
        if (std::vector<CGouJianEx*>(found.begin(), found.end()) != expected) return "lines between two nodes";
    }
    if (net.m_mapBinaryStar.GetCount() > static_cast<int>(net.m_pairs.size())) return "a pair too many";
    return "";
}

std::string NodesApart(CTestNet& net) {
    const auto nodes = NodesOf(net);
    for (std::size_t i = 0; i < nodes.size(); ++i)
        for (std::size_t j = i + 1; j < nodes.size(); ++j) {
            const CGjNetNode *a = nodes[i], *b = nodes[j];
            if (a->m_nCeng == b->m_nCeng && std::hypot(a->m_fX - b->m_fX, a->m_fY - b->m_fY) < 49.99f)
                return "two nodes near " + Place(a->m_fX, a->m_fY);
        }
    return "";
}

std::string NoDoubles(CTestNet& net) {
    CArray<CGouJianEx*> known;
    std::map<std::pair<unsigned, unsigned>, std::vector<CGjNetLine*>> between;
    for (CGjNetLine* l : LinesOf(net)) {
        if (l->m_nArc) continue;
        auto ids = CTestNet::PairOf(l);
        if (ids.first > ids.second) std::swap(ids.first, ids.second);
        between[ids].push_back(l);
    }
    for (const auto& [ids, lines] : between) {
        if (lines.size() < 2) continue;
        net.GetNetLineOnNetNode(lines[0]->m_pStartNode, lines[0]->m_pEndNode, known);
        const auto forgotten = [&](CGjNetLine* l) { return std::find(known.begin(), known.end(), l) == known.end(); };
        if (std::count_if(lines.begin(), lines.end(), [&](CGjNetLine* l) { return !forgotten(l); }) > 1) return "doubled: " + Show(lines[0]);
        if (std::none_of(lines.begin(), lines.end(), forgotten)) return "doubled: " + Show(lines[0]);
    }
    return "";
}

/// What may be left where lines cross. Pieces that snapping has bent are not tested again, so on a net of any
/// slopes a crossing may be left near ends.
struct Allowed {
    double fromOne;   // a crossing no farther than this from the nearest end of one of the two lines
    double fromBoth;  // and no farther than this from the nearest end of the other
};

/// Looks for crossings of straight lines; worked apart from the library, in double.
std::string NoCrossings(CTestNet& net, const Allowed& allowed) {
    const auto lines = LinesOf(net);
    for (std::size_t i = 0; i < lines.size(); ++i)
        for (std::size_t j = i + 1; j < lines.size(); ++j) {
            const CGjNetLine *a = lines[i], *b = lines[j];
            if (a->m_nArc || b->m_nArc || a->m_nCeng != b->m_nCeng) continue;
            const double ax = a->m_fStartX, ay = a->m_fStartY, bx = b->m_fStartX, by = b->m_fStartY;
            const double ux = a->m_fEndX - ax, uy = a->m_fEndY - ay, vx = b->m_fEndX - bx, vy = b->m_fEndY - by;
            const double cross = ux * vy - uy * vx;
            if (std::fabs(cross) <= 1e-9 * std::hypot(ux, uy) * std::hypot(vx, vy)) continue;
            const double s = ((bx - ax) * vy - (by - ay) * vx) / cross, t = ((bx - ax) * uy - (by - ay) * ux) / cross;
            if (s < 0 || s > 1 || t < 0 || t > 1) continue;
            const double fromA = std::min(s, 1 - s) * std::hypot(ux, uy), fromB = std::min(t, 1 - t) * std::hypot(vx, vy);
            if (std::min(fromA, fromB) > allowed.fromOne || std::max(fromA, fromB) > allowed.fromBoth)
                return "crossing: " + Show(lines[i]) + " and " + Show(lines[j]) + ", " + std::to_string(fromA) + " and " +
                       std::to_string(fromB) + " from ends";
        }
    return "";
}

std::string Holds(CTestNet& net, const Allowed& allowed) {
    for (const std::string& fault : {net.m_fault, StarsAsLines(net), NodesApart(net), NoDoubles(net), NoCrossings(net, allowed)})
        if (!fault.empty()) return fault;
    return "";
}

// --- random edits -------------------------------------------------------------------------------------------

struct Kind {
    const char* name;
    bool lattice;   // ends on a coarse lattice, so that touches, overlaps and ties happen often
    bool arcs;
    bool undo;
    Allowed crossings;
    bool octants = false;  // straight lines run in eight directions only, so that no crossing is near an end
};

class Editor {
public:
    Editor(CTestNet& net, const Kind& kind, unsigned seed) : m_net(net), m_kind(kind), m_dice(seed) {}

    /// One random edit in a step of its own; told in the tongue of the tests.
    std::string Step() {
        const int what = m_dice.Pick(100);
        std::string text;
        if (m_kind.undo && what < 12)
            text = what < 7 ? "undo" : "redo";
        else if (what < 30 && Here().size() > 4)
            text = "start; delete " + Middle() + (what < 22 ? " & " + Middle() + " & " + Middle() : "");
        else if (what < 33)
            text = "start; clean";
        else if (what < 36)
            text = "storey " + std::to_string(m_dice.Pick(3) - 1);
        else if (m_kind.arcs && what < 50)
            text = "start; arc " + At() + " " + std::to_string(m_kind.lattice ? 1000 * (1 + m_dice.Pick(4)) : 500 + m_dice.Pick(5000)) + " " +
                   Angle() + " " + Angle();
        else
            text = "start; " + (m_kind.octants ? OctantLine() : At() + " - " + At());
        Build(m_net, text);
        return text;
    }

private:
    std::string At() {
        if (m_kind.lattice) return std::to_string(1000 * m_dice.Pick(7)) + "," + std::to_string(1000 * m_dice.Pick(5));
        char text[64];
        std::snprintf(text, sizeof text, "%.3f,%.3f", static_cast<double>(m_dice.Real(0, 8000)), static_cast<double>(m_dice.Real(0, 6000)));
        return text;
    }
    std::string OctantLine() {
        int x1, y1, dx, dy;
        do {
            x1 = m_dice.Pick(7), y1 = m_dice.Pick(5), dx = m_dice.Pick(7) - x1, dy = m_dice.Pick(5) - y1;
        } while (dx && dy && std::abs(dx) != std::abs(dy));
        const auto at = [](int x, int y) { return std::to_string(1000 * x) + "," + std::to_string(1000 * y); };
        return at(x1, y1) + " - " + at(x1 + dx, y1 + dy);
    }
    std::string Angle() { return std::to_string(m_kind.lattice ? 45 * m_dice.Pick(8) : m_dice.Pick(360)); }
    // Lines of the current storey by place, so that identities don't matter. What merges after a deletion
    // enters the current storey, so deleting elsewhere would carry lines from one storey to another.
    std::vector<CGjNetLine*> Here() {
        auto lines = LinesOf(m_net);
        std::erase_if(lines, [&](CGjNetLine* l) { return l->m_nCeng != m_net.GetCurCeng(); });
        return lines;
    }
    std::string Middle() {
        const auto lines = Here();
        const CGjNetLine* l = lines[static_cast<std::size_t>(m_dice.Pick(static_cast<int>(lines.size())))];
        char text[64];
        std::snprintf(text, sizeof text, "%.9g,%.9g", static_cast<double>(l->m_fMidX), static_cast<double>(l->m_fMidY));
        return text;
    }

    CTestNet& m_net;
    Kind m_kind;
    Dice m_dice;
};

constexpr Allowed kNowhere{0.5, 0.5}, kNearAnEnd{100, 1e9};
constexpr Kind kOctants{"lattice, eight directions", true, false, true, kNowhere, true},
    kLattice{"lattice", true, false, true, kNearAnEnd}, kLatticeArcs{"lattice with arcs", true, true, true, kNearAnEnd},
    kRandom{"random", false, false, true, kNearAnEnd}, kRandomArcs{"random with arcs", false, true, true, kNearAnEnd};

}  // namespace

TEST(NetRandom, EveryEditLeavesTheNetClean) {
    for (const Kind& kind : {kOctants, kLattice, kLatticeArcs, kRandom, kRandomArcs})
        for (unsigned round = 0; round < 60; ++round) {
            CTestNet net;
            net.SetSteps(1000);
            Editor editor(net, kind, round + 1);
            std::string told;
            for (int step = 0; step < 40; ++step) {
                told += editor.Step() + "; ";
                const std::string fault = Holds(net, kind.crossings);
                ASSERT_EQ(fault, "") << kind.name << ", round " << round << ", step " << step << "\n" << told;
            }
        }
}

TEST(NetRandom, UndoToTheStartAndForth) {
    for (const Kind& kind : {kLattice, kLatticeArcs, kRandomArcs})
        for (unsigned round = 0; round < 16; ++round) {
            SCOPED_TRACE(testing::Message() << kind.name << ", round " << round);
            CTestNet net;
            if (round % 2) net.SetSteps(1000);
            Kind edits = kind;
            edits.undo = false;
            Editor editor(net, edits, 1000 + round);
            for (int step = 0; step < (round % 2 ? 80 : 40); ++step) editor.Step();
            std::vector<std::string> before;
            while (net.CanUndo()) {
                before.push_back(Dump(net, true));
                net.Undo();
            }
            ASSERT_EQ(net.GetGouJianCount(), 0);
            ASSERT_EQ(net.m_mapStar.GetCount() + net.m_mapBinaryStar.GetCount(), 0);
            for (auto text = before.rbegin(); text != before.rend(); ++text) {
                net.Redo();
                ASSERT_EQ(Dump(net, true), *text);
            }
            ASSERT_FALSE(net.CanRedo());
            ASSERT_EQ(StarsAsLines(net), "");
        }
}

TEST(NetRandom, NothingButTheEditsCounts) {
    for (const Kind& kind : {kLatticeArcs, kRandomArcs})
        for (unsigned round = 0; round < 30; ++round) {
            SCOPED_TRACE(testing::Message() << kind.name << ", round " << round);
            Kind edits = kind;
            edits.undo = false;
            CTestNet first, again, disturbed;
            Editor a(first, edits, 2000 + round), b(again, edits, 2000 + round), c(disturbed, edits, 2000 + round);
            Dice dice(round);
            for (int step = 0; step < 40; ++step) {
                a.Step();
                b.Step();
                // Far off, something is built, in part deleted, and taken back again.
                if (step > 0 && dice.Pick(2)) {
                    Build(disturbed, "start; 100000,0 - 160000,0; 130000,-9000 - 130000,9000; arc 130000,0 5000 0..90; "
                                     "start; delete 130000,4500; undo; undo");
                    for (int i = 0; i < 2; ++i) disturbed.AddNetNode(900000.0f + static_cast<float>(1000 * i), -700000);
                    disturbed.Undo();
                }
                c.Step();
                ASSERT_EQ(Dump(again, true), Dump(first, true)) << "step " << step;
                ASSERT_EQ(Dump(disturbed, false), Dump(first, false)) << "step " << step;
            }
            ASSERT_EQ(disturbed.m_fault, "");
        }
}

// --- deleting many lines against the plain loop -------------------------------------------------------------

namespace {

// The procedure as it reads: ask for the next pair until there is none.
void PlainDelete(CTestNet& net, const std::vector<CGjNetLine*>& doomed) {
    CMap<int, CGjNetNode*> nodes;
    for (CGjNetLine* l : doomed) {
        nodes.SetAt(static_cast<int>(l->m_dwStartID), l->m_pStartNode);
        nodes.SetAt(static_cast<int>(l->m_dwEndID), l->m_pEndNode);
        net.__DeleteNetLineDirect(l);
    }
    CMap<int, CGjNetLine*> lines;
    for (CGjNetNode* n : NodesOf(net)) {
        const int id = static_cast<int>(n->get_m_dwGouJianID());
        if (!nodes.Contains(id)) continue;
        if (net.IsIndependentNetNode(n)) {
            nodes.RemoveKey(id);
            continue;
        }
        CArray<CGouJianEx*> at;
        net.GetConnectedNetLine(n, at);
        for (CGouJianEx* l : at) lines.SetAt(static_cast<int>(l->get_m_dwGouJianID()), static_cast<CGjNetLine*>(l));
    }
    CGjNetLine *l1, *l2;
    CGjNetNode* node;
    int mode;
    while (net.GetSimilarNetLine(nodes, lines, l1, l2, node, mode)) {
        CGjNetLine* merged = net.MergeTowNetLine(l1, l2, mode);
        if (!merged) continue;
        lines.SetAt(static_cast<int>(merged->get_m_dwGouJianID()), merged);
        lines.RemoveKey(static_cast<int>(l1->get_m_dwGouJianID()));
        lines.RemoveKey(static_cast<int>(l2->get_m_dwGouJianID()));
        for (CGjNetNode* n : {l1->m_pStartNode, l1->m_pEndNode, l2->m_pStartNode, l2->m_pEndNode})
            nodes.SetAt(static_cast<int>(n->get_m_dwGouJianID()), n);
    }
}

}  // namespace

TEST(NetRandom, DeletingManyEqualsThePlainLoop) {
    int merged = 0;
    for (unsigned round = 0; round < 300; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        Kind edits = round % 4 == 3 ? kRandomArcs : round % 2 ? kLatticeArcs : kLattice;
        edits.undo = false;
        CTestNet fast, plain;
        Editor a(fast, edits, 3000 + round), b(plain, edits, 3000 + round);
        for (int step = 0; step < 25; ++step) {
            a.Step();
            b.Step();
        }
        ASSERT_EQ(Dump(fast, true), Dump(plain, true));
        const auto linesA = LinesOf(fast), linesB = LinesOf(plain);
        Dice dice(round);
        CArray<CGouJianEx*> doomedA;
        std::vector<CGjNetLine*> doomedB;
        for (std::size_t i = 0; i < linesA.size(); ++i)
            if (dice.Pick(3) == 0) {
                doomedA.Add(linesA[i]);
                doomedB.push_back(linesB[i]);
            }
        const auto identities = fast.m_handedOut.size();
        fast.DeleteNetLine(doomedA);
        PlainDelete(plain, doomedB);
        merged += static_cast<int>(fast.m_handedOut.size() - identities);
        ASSERT_EQ(Dump(fast, true), Dump(plain, true));
        ASSERT_EQ(fast.m_handedOut, plain.m_handedOut);
        ASSERT_EQ(StarsAsLines(fast), "");
    }
    EXPECT_GT(merged, 300) << "the test has lost its point";
}

// --- cut points against their plain loops -------------------------------------------------------------------

TEST(NetRandom, ThinningEqualsTheRestartingLoop) {
    Dice dice(77);
    for (int round = 0; round < 400; ++round) {
        CArray<CFPoint> points;
        const int n = round % 10 == 0 ? 300 : dice.Pick(80);
        const bool lattice = dice.Pick(2), far = dice.Pick(4) == 0;
        const float size = lattice ? 25.0f * static_cast<float>(1 + dice.Pick(40)) : dice.Real(10, 4000), origin = far ? 4e6f : 0;
        for (int i = 0; i < n; ++i) {
            float x = dice.Real(0, size), y = dice.Real(0, round % 3 ? size : 30);
            if (lattice) x = 25 * std::floor(x / 25), y = 25 * std::floor(y / 25);
            points.Add(round % 2 ? P(origin + x, y) : P(y, origin + x));
        }
        CArray<CFPoint> plain = points;
        for (int i = 0; i < plain.GetSize(); ++i)
            for (int j = i + 1; j < plain.GetSize(); ++j)
                if (plain[i].Distance(plain[j]) < 50) {
                    plain.RemoveAt(i);
                    i = -1;
                    break;
                }
        ThinOutCutPoints(points, 50);
        std::string got, expected;
        for (const CFPoint& p : points) got += Place(p.x, p.y) + " ";
        for (const CFPoint& p : plain) expected += Place(p.x, p.y) + " ";
        ASSERT_EQ(got, expected) << "round " << round;
    }
}

TEST(NetRandom, CutPointsGoAlongTheLine) {
    Dice dice(78);
    for (int round = 0; round < 500; ++round) {
        // Steep lines near and far, where x alone no longer tells points apart.
        const float dxs[] = {0, 0.05f, 0.09f, 0.11f, 0.5f, 0.99f, 1.5f, 60, 5000}, x0s[] = {0, 5000, 1e6f, 4e6f};
        const float dx = dxs[dice.Pick(9)], x0 = x0s[dice.Pick(4)], dy = dice.Real(-9000, 9000);
        const CFPoint start = P(x0, 0), end = P(x0 + dx, dy);
        const bool vertical = std::fabs(end.x - start.x) < 0.1f;
        if (vertical && dy < 0) continue;  // such a line points upwards
        CArray<CFPoint> points;
        const int n = 2 + dice.Pick(20);
        for (int i = 0; i < n; ++i) {
            const float t = dice.Real(0, 1);
            points.Add(P(start.x + t * (end.x - start.x), t * dy));
        }
        points.Add(start);
        points.Add(end);
        SortAlongLine(points, start, end, vertical);
        ASSERT_EQ(points.GetSize(), n + 2);
        for (int i = 1; i < points.GetSize(); ++i)
            ASSERT_GE((points[i].y - points[i - 1].y) * (dy < 0 ? -1 : 1), std::fabs(dx) > 1 ? -0.6f * std::fabs(dy / dx) : 0)
                << "round " << round << ", point " << i;
    }
}

TEST(NetRandom, DropFirstPointNearDropsOne) {
    CArray<CFPoint> points;
    for (const float x : {9.0f, 4.0f, 1.0f, 8.0f}) points.Add(P(x, 0));
    DropFirstPointNear(points, P(0, 0), 4);
    ASSERT_EQ(points.GetSize(), 3);
    EXPECT_EQ(points[1].x, 4) << "strictly nearer only, and only the first";
    DropFirstPointNear(points, P(0, 0), 4);
    EXPECT_EQ(points.GetSize(), 3);
}

// --- extremes -----------------------------------------------------------------------------------------------

TEST(NetRandom, NearlyVerticalLines) {
    Dice dice(79);
    for (int round = 0; round < 100; ++round) {
        CTestNet net;
        std::string told;
        const float origin = round % 3 == 2 ? 1e6f : 0;
        for (int i = 0; i < 12; ++i) {
            const float leans[] = {0, 0.0005f, 0.05f, 0.2f, 0.7f, 1.3f, 4, 49, 51};
            const float x = origin + 3000.0f * static_cast<float>(dice.Pick(2)), dx = leans[dice.Pick(9)] * (dice.Pick(2) ? 1.0f : -1.0f);
            const float y1 = 600.0f * static_cast<float>(dice.Pick(16)), y2 = 600.0f * static_cast<float>(dice.Pick(16));
            char text[128];
            if (dice.Pick(4))
                std::snprintf(text, sizeof text, "%.9g,%.9g - %.9g,%.9g; ", static_cast<double>(x), static_cast<double>(y1),
                              static_cast<double>(x + dx), static_cast<double>(y2));
            else
                std::snprintf(text, sizeof text, "%.9g,%.9g - %.9g,%.9g; ", static_cast<double>(origin - 500), static_cast<double>(y1),
                              static_cast<double>(origin + 4000), static_cast<double>(y2));
            told += text;
            Build(net, text);
            ASSERT_EQ(Holds(net, {1e9, 1e9}), "") << "round " << round << "\n" << told;
        }
    }
}

TEST(NetRandom, ExtremeCoordinatesAreHarmless) {
    const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    const float values[] = {0, 6000, nan, inf, -inf, 1e30f, -1e30f, 3.4e38f, 1e-40f, 4e8f, 2147483648.0f, -9.3e18f};
    Dice dice(80);
    const auto pick = [&] { return values[dice.Pick(12)]; };
    for (int round = 0; round < 60; ++round) {
        CTestNet net;
        Build(net, "0,0 - 6000,0");
        for (int i = 0; i < 25; ++i) {
            const float a = pick(), b = pick(), c = pick(), d = pick(), e = pick();
            net.Start();
            switch (dice.Pick(6)) {
                case 0: net.AddNetNode(a, b); break;
                case 1: net.AddNetLine(P(a, b), P(c, d), 1, dice.Pick(2) ? -45.0f : e); break;
                case 2: net.AddArc(P(a, b), c, d, e); break;
                case 3: net.AddArc(P(a, b), P(c, d), P(e, 6000)); break;
                default: net.AddNetLine(P(a, b), P(c, d), 0, 0); break;
            }
            CFRect rect(a, b, c, d);
            CArray<CGouJianEx*> offered;
            net.GetInterRect(rect, offered);
            CFRegion region(rect);
            net.GetInterPoly(region, offered);
        }
        const auto lines = LinesOf(net);
        CArray<CGouJianEx*> doomed;
        for (CGjNetLine* l : lines) doomed.Add(l);
        net.DeleteNetLine(doomed);
        while (net.CanUndo()) net.Undo();
        ASSERT_EQ(net.GetGouJianCount(), 0) << "round " << round;
        while (net.CanRedo()) net.Redo();
        ASSERT_EQ(net.m_fault, "");
    }
}

TEST(NetRandom, VeryLongLinesStillCross) {
    struct { const char* name; CFPoint a, b; } const rows[] = {
        {"level, to 1e30", P(-1e30f, 100), P(1e30f, 100)}, {"level, one way", P(-6000, 100), P(1e30f, 100)},
        {"upright, to 1e30", P(3000, -1e30f), P(3000, 1e30f)}, {"upright, one way", P(3000, -6000), P(3000, 1e30f)},
        {"level, to 1e12", P(-1e12f, 100), P(1e12f, 100)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        CTestNet net;
        Build(net, "0,-6000 - 0,6000; -6000,2000 - 6000,2000");
        net.AddNetLine(row.a, row.b, 0, 0);
        EXPECT_EQ(net.GetGouJianCount(GJLX_NET_LINE), 7);  // 4 of the cross, 1 more there, 2 of its own
    }
}
