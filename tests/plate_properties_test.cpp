// What holds of plates after any edits, told without an oracle for the walks.
#include <gtest/gtest.h>

#include <numbers>

#include "outline_oracle.h"
#include "plate_edits.h"

namespace {

oracle::Polyline ShapeOf(CGjNetLine* l, int depth) {
    return oracle::PointsOf(l->GetStartPoint(), l->GetEndPoint(), static_cast<double>(l->GetFShoot(0).c), l->m_nArc ? depth : 0);
}

/// Direction in which a line leaves a node, along its tangent.
double Leaving(CGjNetLine* l, bool start) {
    const double c = static_cast<double>(l->GetFShoot(0).c), chord = std::atan2(l->m_fEndY - l->m_fStartY, l->m_fEndX - l->m_fStartX);
    return start ? chord + c : chord + std::numbers::pi - c;
}

// Two that all but touch beside a node may have crossed there by a hair, as arcs with a snapped end do.
bool SideBySide(CGjNetLine* a, CGjNetLine* b) {
    for (bool startA : {true, false})
        for (bool startB : {true, false}) {
            if ((startA ? a->m_pStartNode : a->m_pEndNode) != (startB ? b->m_pStartNode : b->m_pEndNode)) continue;
            const double between = std::fabs(std::remainder(Leaving(a, startA) - Leaving(b, startB), 2 * std::numbers::pi));
            if (between > 1e-5 && between < 0.05) return true;
        }
    return false;
}

// Whether no two lines cross or lie on one another: a net of any slopes may have crossings left near ends.
std::string Crossing(CPlateNet& net) {
    const auto lines = LinesOf(net);
    std::vector<oracle::Polyline> shapes;
    std::vector<oracle::Extent> extents;
    for (CGjNetLine* l : lines) {
        shapes.push_back(ShapeOf(l, 6));
        extents.push_back(oracle::ExtentOf(shapes.back()));
    }
    const auto apart = [&](const oracle::Extent& a, const oracle::Extent& b) {
        return a.maxX < b.minX - 2 || b.maxX < a.minX - 2 || a.maxY < b.minY - 2 || b.maxY < a.minY - 2;
    };
    for (std::size_t i = 0; i < lines.size(); ++i)
        for (std::size_t k = 0; k < i; ++k) {
            if (apart(extents[i], extents[k])) continue;
            if (SideBySide(lines[i], lines[k])) return "side by side: " + Show(lines[i]) + " and " + Show(lines[k]);
            for (const oracle::Point& p : oracle::Crossings(shapes[i], shapes[k])) {
                bool shared = false;
                for (CGjNetNode* n : {lines[i]->m_pStartNode, lines[i]->m_pEndNode})
                    if ((n == lines[k]->m_pStartNode || n == lines[k]->m_pEndNode) && std::hypot(p.x - n->m_fX, p.y - n->m_fY) < 1) shared = true;
                if (!shared) return "crossing: " + Show(lines[i]) + " and " + Show(lines[k]);
            }
            for (const auto& [a, b] : {std::pair(i, k), std::pair(k, i)})
                if (oracle::DistanceTo(shapes[a], lines[b]->m_fMidX, lines[b]->m_fMidY) < 1) return "on one another: " + Show(lines[a]);
            for (const auto& [a, b] : {std::pair(i, k), std::pair(k, i)})
                for (CGjNetNode* n : {lines[b]->m_pStartNode, lines[b]->m_pEndNode})
                    if (n != lines[a]->m_pStartNode && n != lines[a]->m_pEndNode && oracle::DistanceTo(shapes[a], n->m_fX, n->m_fY) < 1)
                        return "node on line: " + Show(lines[a]) + " and " + Show(lines[b]);
        }
    return "";
}

// Plates that followed the edits against those formed afresh in a net edited alike.
std::string AsFresh(CPlateNet& followed, CPlateNet& fresh) {
    std::multimap<Border, CMianGouJian*> expected;
    for (CMianGouJian* plate : fresh.Plates()) expected.emplace(Cyclic(BorderOf(fresh, plate)), plate);
    for (CMianGouJian* plate : followed.Plates()) {
        const auto it = expected.find(Cyclic(BorderOf(followed, plate)));
        if (it == expected.end()) return "not among the fresh ones: " + Show(followed, plate);
        const CMianGouJian* other = it->second;
        if (std::hypot(plate->m_fCenterX - other->m_fCenterX, plate->m_fCenterY - other->m_fCenterY) > 2 ||
            std::fabs(plate->GetArea() - other->GetArea()) > 0.01f * other->GetArea())
            return "figures: " + Show(followed, plate) + " and " + Show(fresh, it->second);
        expected.erase(it);
    }
    return expected.empty() ? "" : "missing: " + Show(fresh, expected.begin()->second);
}

// How many plates a net has, by Euler: closed lines less their nodes plus their pieces.
int FacesByEuler(CPlateNet& net) {
    literal::Walker thorns(net);
    thorns.PrepareData();
    std::map<CGjNetNode*, int> piece;  // of a node, by number; pieces are joined by renumbering
    int lines = 0;
    for (CGjNetLine* l : LinesOf(net)) {
        if (thorns.IsCi(l)) continue;
        ++lines;
        const int a = piece.emplace(l->m_pStartNode, lines).first->second, b = piece.emplace(l->m_pEndNode, lines).first->second;
        for (auto& [node, number] : piece)
            if (number == b) number = a;
    }
    std::set<int> pieces;
    for (const auto& [node, number] : piece) pieces.insert(number);
    return lines - static_cast<int>(piece.size()) + static_cast<int>(pieces.size());
}

// Areas of all bounded faces, by half-edges: each leads on to the next one clockwise at its far end, and the cycles
// that run anticlockwise are the faces. The outside of each piece runs clockwise, round as much as its faces cover.
std::string FacesByHalfEdges(CPlateNet& net, std::vector<double>& areas) {
    literal::Walker thorns(net);
    thorns.PrepareData();
    struct HalfEdge {
        CGjNetNode *from, *to;
        oracle::Polyline shape;
        double angle;
        bool passed = false;
    };
    std::vector<HalfEdge> edges;  // an edge's two halves stand together
    for (CGjNetLine* l : LinesOf(net)) {
        if (thorns.IsCi(l)) continue;
        oracle::Polyline shape = ShapeOf(l, 8);
        for (int side = 0; side < 2; ++side) {
            CGjNetNode *a = l->m_pStartNode, *b = l->m_pEndNode;
            if (side) std::swap(a, b);
            edges.push_back({a, b, shape, std::atan2(shape[1].y - shape[0].y, shape[1].x - shape[0].x)});
            std::reverse(shape.begin(), shape.end());
        }
    }
    const auto next = [&](std::size_t h) {
        std::size_t best = h ^ 1;
        double bestTurn = 7;
        for (std::size_t k = 0; k < edges.size(); ++k) {
            if (edges[k].from != edges[h].to || k == (h ^ 1)) continue;
            double turn = edges[h ^ 1].angle - edges[k].angle;
            if (turn <= 0) turn += 2 * std::numbers::pi;
            if (turn < bestTurn) {
                bestTurn = turn;
                best = k;
            }
        }
        return best;
    };
    double inside = 0, outside = 0;
    for (std::size_t first = 0; first < edges.size(); ++first) {
        if (edges[first].passed) continue;
        oracle::Polyline outline;
        for (std::size_t h = first; !edges[h].passed; h = next(h)) {
            edges[h].passed = true;
            outline.insert(outline.end(), edges[h].shape.begin(), edges[h].shape.end());
        }
        const double area = oracle::AreaOf(outline).signedArea;
        if (area > 0) areas.push_back(area);
        (area > 0 ? inside : outside) += area;
    }
    std::sort(areas.begin(), areas.end());
    return std::fabs(inside + outside) <= 1e-6 * inside + 1 ? "" : "no plane";
}

std::string AsFaces(CPlateNet& net) {
    std::vector<double> expected, areas;
    if (const std::string fault = FacesByHalfEdges(net, expected); !fault.empty()) return fault;
    for (CMianGouJian* plate : net.Plates()) areas.push_back(static_cast<double>(plate->GetArea()));
    std::sort(areas.begin(), areas.end());
    if (areas.size() != expected.size()) return std::to_string(areas.size()) + " plates, " + std::to_string(expected.size()) + " faces";
    for (std::size_t i = 0; i < areas.size(); ++i)
        if (std::fabs(areas[i] - expected[i]) > 1e-4 * expected[i] + 1) return "area " + std::to_string(areas[i]) + ", of the face " + std::to_string(expected[i]);
    return "";
}

}  // namespace

TEST(PlateProperties, FollowedPlatesAreThoseOfAFreshRun) {
    struct { const char* name; Ground ground; bool arcs; int sound; } const rows[] = {
        {"eight directions", Ground::Octants, false, 800},
        {"lattice", Ground::Lattice, false, 650},
        {"lattice with arcs", Ground::Lattice, true, 450},
        {"free", Ground::Free, false, 300},
        {"free with arcs", Ground::Free, true, 100},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        int sound = 0;
        for (unsigned round = 0; round < 20; ++round) {
            CPlateNet net, fresh;
            PlateEditor editor(net, row.ground, row.arcs, 530 + round);
            std::string told;
            bool followed = true;  // no lines crossed after the edit before
            for (int step = 0; step < 40; ++step) {
                const std::string text = editor.Batch();
                told += text + "\n";
                SCOPED_TRACE(testing::Message() << "round " << round << ", step " << step << "\n" << told);
                net.Edit(text);
                fresh.BeCurrent();
                Build(fresh, "start;" + text + ";clean");
                fresh.Form();
                ASSERT_EQ(WaysHold(net), "");
                if (!Crossing(net).empty()) {  // then faces mean nothing, and what is found depends on where a walk begins
                    net.Start();
                    net.Form();
                    followed = false;
                    continue;
                }
                ++sound;
                ASSERT_EQ(fresh.GetGouJianCount(GJLX_MIAN), FacesByEuler(fresh));
                ASSERT_EQ(AsFaces(fresh), "");
                if (followed) {
                    ASSERT_EQ(AsFresh(net, fresh), "");
                } else {
                    net.Start();
                    net.Form();
                }
                followed = true;
            }
        }
        EXPECT_GE(sound, row.sound) << "the test has lost its point";
    }
}

TEST(PlateProperties, UndoToTheStartAndForth) {
    for (unsigned round = 0; round < 12; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        CPlateNet net;
        if (round % 2) net.SetSteps(1000);
        PlateEditor editor(net, round % 3 == 0 ? Ground::Octants : round % 3 == 1 ? Ground::Lattice : Ground::Free, round % 3 != 0, 3000 + round);
        net.m_bRefuseOuter = round % 4 != 3;
        const auto all = [&] { return Dump(net, true) + ShowPlates(net) + WaysHold(net); };
        for (int step = 0; step < (round % 2 ? 80 : 40); ++step) {
            net.Edit(editor.Batch());
            if (step % 5 == 4)  // loads are components of the step too
                for (CMianGouJian* plate : net.Plates())
                    if (!net.LoadOn(plate)) net.AddLoad(plate, step);
        }
        std::vector<std::string> before;
        while (net.CanUndo()) {
            before.push_back(all());
            net.Undo();
        }
        ASSERT_EQ(net.GetGouJianCount() + net.m_mapPlateWay.GetCount(), 0);
        for (auto text = before.rbegin(); text != before.rend(); ++text) {
            net.Redo();
            ASSERT_EQ(all(), *text);
        }
        ASSERT_FALSE(net.CanRedo());
    }
}

namespace {

// Places turned by a right angle, mirrored, or both.
struct Motion {
    const char* name;
    bool turned, mirrored;
    void Move(float& x, float& y) const {
        if (mirrored) x = -x;
        if (turned) std::swap(x, y), x = -x;
    }
    std::string Place(float x, float y) const {
        Move(x, y);
        char text[64];
        std::snprintf(text, sizeof text, "%.9g,%.9g", static_cast<double>(x), static_cast<double>(y));
        return text;
    }
    std::string Text(const std::string& text) const {
        std::string out;
        for (const char* p = text.c_str(); *p;) {
            float x, y;
            int used = 0;
            if (std::isdigit(static_cast<unsigned char>(*p)) && std::sscanf(p, "%f,%f%n", &x, &y, &used) == 2) {
                out += Place(x, y);
                p += used;
            } else {
                out += *p++;
            }
        }
        return out;
    }
};

std::string SamePlates(CPlateNet& net, CPlateNet& moved, const Motion& motion) {
    auto others = moved.Plates();
    for (CMianGouJian* plate : net.Plates()) {
        float x = plate->m_fCenterX, y = plate->m_fCenterY;
        motion.Move(x, y);
        const auto it = std::find_if(others.begin(), others.end(), [&](const CMianGouJian* o) {
            return std::hypot(o->m_fCenterX - x, o->m_fCenterY - y) < 0.1f && std::fabs(o->GetArea() - plate->GetArea()) < 1e-5f * plate->GetArea() &&
                   o->m_arrBoundery.GetSize() == plate->m_arrBoundery.GetSize() && o->m_nXingZhuangBian == plate->m_nXingZhuangBian;
        });
        if (it == others.end()) return "no counterpart: " + Show(net, plate);
        others.erase(it);
    }
    return others.empty() ? "" : "too many: " + Show(moved, others[0]);
}

}  // namespace

TEST(PlateProperties, TurningAndMirroringChangeCoordinatesAlone) {
    for (const Motion& motion : {Motion{"turned", true, false}, Motion{"mirrored", false, true}, Motion{"both", true, true}})
        for (unsigned round = 0; round < 30; ++round) {
            SCOPED_TRACE(testing::Message() << motion.name << ", round " << round);
            CPlateNet net, moved;
            PlateEditor editor(net, round % 2 ? Ground::Lattice : Ground::Octants, false, 4000 + round);
            std::string told;
            for (int step = 0; step < 30; ++step) {
                const std::string text = editor.Batch();
                told += text + "\n";
                net.Edit(text);
                moved.Edit(motion.Text(text));
                if (!Crossing(net).empty()) break;
                ASSERT_EQ(moved.m_fault, "");
                ASSERT_EQ(SamePlates(net, moved, motion), "") << "step " << step << "\n" << told;
            }
        }
}

// A wall between two rooms moves by d. Each room's centroid moves by d / 2, and its area by d times its height.
TEST(PlateProperties, LoadsStayWhilePlatesMoveLittle) {
    const CToleranceScope tolerance(1);  // else the wall's new ends would snap to the old ones
    Dice dice(81);
    int stayed = 0, gone = 0;
    for (int round = 0; round < 200; ++round) {
        const float width = 4000 + 500 * static_cast<float>(dice.Pick(9)), height = 3000, x = 90 * static_cast<float>(2 + dice.Pick(40)), d = dice.Real(-6, 6);
        if (std::fabs(d) < 1.2f) continue;
        CPlateNet net;
        const auto wall = [&](float at) { return Number(at, 4) + ",0 - " + Number(at, 4) + "," + Number(height); };
        net.Edit("0,0 - " + Number(width) + ",0;" + Number(width) + ",0 - " + Number(width) + "," + Number(height) + ";0," + Number(height) +
                 " - " + Number(width) + "," + Number(height) + ";0,0 - 0," + Number(height) + ";" + wall(x));
        ASSERT_EQ(net.Plates().size(), 2u);
        for (CMianGouJian* plate : net.Plates()) net.AddLoad(plate, plate->m_fCenterX < x ? 1 : 2);
        net.Edit("delete " + Number(x) + "," + Number(height / 2) + "; clean;" + wall(x + d));
        ASSERT_EQ(net.Plates().size(), 2u);
        for (CMianGouJian* plate : net.Plates()) {
            const bool left = plate->m_fCenterX < x;
            const float before = left ? x : width - x, after = left ? x + d : width - x - d;
            const float part = std::fabs(d) / std::min(before, after);
            if (std::fabs(std::fabs(d) / 2 - 2) < 0.01f || std::fabs(part - 0.01f) < 1e-4f) continue;  // too near to tell
            const bool stays = std::fabs(d) / 2 < 2 && part < 0.01f;
            const CTestLoad* load = net.LoadOn(plate);
            ASSERT_EQ(load != nullptr, stays) << "round " << round << ": wall at " << x << " of " << width << " by " << d;
            if (load) {
                ASSERT_EQ(load->m_nValue, left ? 1 : 2) << "round " << round;
            }
            ++(stays ? stayed : gone);
        }
    }
    EXPECT_GT(std::min(stayed, gone), 50);
}
