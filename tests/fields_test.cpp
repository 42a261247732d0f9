// Fields: their lines, values, colours and pictures, and how they become finer.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <random>
#include <set>
#include <sstream>

#include "fields/chang.h"
#include "fields/mesh_densify.h"
#include "geometry/fcoor.h"
#include "model/profile.h"
#include "platform/canvas/dc.h"

namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

CChangNode Node(int number, double x, double y, double value) {
    CChangNode node;
    node.m_nNumber = number;
    node.m_fX = static_cast<float>(x);
    node.m_fY = static_cast<float>(y);
    node.m_aValue[0] = static_cast<float>(value);
    return node;
}

/// "1 0,0=5; 2 1,0=6 | 1 2 3; 2 3 4": nodes, then triangles.
void Fill(CChang& field, const std::string& text) {
    field.Clear();
    std::istringstream halves(text);
    std::string nodes, triangles, item;
    std::getline(halves, nodes, '|');
    std::getline(halves, triangles);
    for (std::istringstream in(nodes); std::getline(in, item, ';');) {
        int number;
        double x, y, value;
        if (std::sscanf(item.c_str(), "%d %lf,%lf=%lf", &number, &x, &y, &value) == 4)
            field.m_arrNode.Add(Node(number, x, y, value));
    }
    for (std::istringstream in(triangles); std::getline(in, item, ';');) {
        CChangTri tri;
        if (std::sscanf(item.c_str(), "%d %d %d", &tri.m_aNode[0], &tri.m_aNode[1], &tri.m_aNode[2]) == 3)
            field.m_arrTri.Add(tri);
    }
}

template <class Value>
void FillGrid(CChang& field, int columns, int rows, double step, Value value) {
    field.Clear();
    for (int j = 0; j <= rows; ++j)
        for (int i = 0; i <= columns; ++i)
            field.m_arrNode.Add(
                Node(field.m_arrNode.GetSize() + 1, i * step, j * step, value(i * step, j * step)));
    const auto at = [&](int i, int j) { return j * (columns + 1) + i + 1; };
    for (int j = 0; j < rows; ++j)
        for (int i = 0; i < columns; ++i) {
            field.m_arrTri.Add({{at(i, j), at(i + 1, j), at(i + 1, j + 1)}});
            field.m_arrTri.Add({{at(i, j), at(i + 1, j + 1), at(i, j + 1)}});
        }
}

/// A lattice of moved nodes with everything that can be wrong: holes, triangles twice, numbers missing,
/// repeated and shuffled, corners repeated, NaN, infinite places, flat triangles, few distinct values so that
/// levels hit nodes.
void FillWild(CChang& field, std::mt19937& random) {
    const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    FillGrid(field, 2 + pick(6), 2 + pick(5), 1, [&](double, double) { return pick(5); });
    const int nodes = field.m_arrNode.GetSize();
    for (CChangNode& node : field.m_arrNode) {
        node.m_fX += static_cast<float>(pick(5) - 2) / 8;
        node.m_fY += static_cast<float>(pick(5) - 2) / 8;
        if (pick(30) == 0) node.m_aValue[0] = kNan;
        if (pick(60) == 0) node.m_fX = std::numeric_limits<float>::infinity();
    }
    for (int i = field.m_arrTri.GetSize() - 1; i >= 0; --i) {
        if (pick(8) == 0) field.m_arrTri.RemoveAt(i);
        if (pick(15) == 0) field.m_arrTri.Add({{1 + pick(nodes), 1 + pick(nodes), 1 + pick(nodes)}});
    }
    if (pick(2) == 0) return;
    // Numbers of no order, one of them borne twice, one naming nobody.
    const int factor = 1 + 2 * pick(200), shift = pick(2) ? 5 : -90;
    for (CChangNode& node : field.m_arrNode) node.m_nNumber = node.m_nNumber * factor + shift;
    for (CChangTri& tri : field.m_arrTri)
        for (int& corner : tri.m_aNode) corner = corner * factor + shift;
    std::shuffle(field.m_arrNode.begin(), field.m_arrNode.end(), random);
    field.m_arrNode[0].m_nNumber = field.m_arrNode[1].m_nNumber;
}

// ---- the plain versions -----------------------------------------------------------------------------

/// Positions of the corners by looking through all nodes; empty for a triangle to be passed over.
std::vector<int> PlainCorners(const CChang& field, const CChangTri& tri) {
    std::vector<int> at;
    for (const int number : tri.m_aNode) {
        const std::size_t before = at.size();
        for (int i = 0; i < field.m_arrNode.GetSize(); ++i)
            if (field.m_arrNode[i].m_nNumber == number) at.push_back(i);
        if (at.size() != before + 1) return {};
    }
    if (std::set<int>(at.begin(), at.end()).size() != 3) return {};
    for (const int i : at) {
        const CChangNode& n = field.m_arrNode[i];
        if (!std::isfinite(n.m_fX) || !std::isfinite(n.m_fY) || !std::isfinite(n.m_aValue[0])) return {};
    }
    return at;
}

std::vector<std::vector<int>> PlainTriangles(const CChang& field) {
    std::vector<std::vector<int>> triangles;
    for (const CChangTri& tri : field.m_arrTri)
        if (const auto at = PlainCorners(field, tri); !at.empty()) triangles.push_back(at);
    return triangles;
}

std::string Show(const CArray<CArray<CFPoint>>& lines) {
    std::ostringstream text;
    for (const auto& line : lines) {
        for (const CFPoint& p : line) text << p.x << "," << p.y << " ";
        text << "\n";
    }
    return text.str();
}

/// The same lines, up to rounding?
bool Agree(const CArray<CArray<CFPoint>>& a, const CArray<CArray<CFPoint>>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& p, const auto& q) {
        return std::equal(p.begin(), p.end(), q.begin(), q.end(), [](const CFPoint& u, const CFPoint& v) {
            return std::fabs(u.x - v.x) < 1e-5f && std::fabs(u.y - v.y) < 1e-5f;
        });
    });
}

/// Isolines by looking through all segments for the one that goes on at an edge.
CArray<CArray<CFPoint>> PlainTrace(const CChang& field, double z) {
    struct End {
        std::pair<int, int> edge;
        int mate = -1;  // joined end
    };
    std::vector<End> ends;
    const auto value = [&](int i) { return static_cast<double>(field.m_arrNode[i].m_aValue[0]); };
    for (const std::vector<int>& at : PlainTriangles(field)) {
        for (std::size_t k = 0; k < 3; ++k) {
            const int a = at[k], b = at[(k + 1) % 3];
            if ((value(a) >= z) != (value(b) >= z)) ends.push_back({std::minmax(a, b), -1});
        }
    }
    for (std::size_t i = 0; i < ends.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            if (ends[i].edge == ends[j].edge && ends[j].mate < 0 && ends[i].mate < 0) {
                ends[i].mate = static_cast<int>(j);
                ends[j].mate = static_cast<int>(i);
            }
    CArray<CArray<CFPoint>> lines;
    std::set<std::size_t> used;
    const auto add = [&](CArray<CFPoint>& line, std::size_t end) {
        const auto [a, b] = ends[end].edge;
        const double t = (z - value(a)) / (value(b) - value(a));
        const CChangNode &p = field.m_arrNode[a], &q = field.m_arrNode[b];
        line.Add(CFPoint(
            static_cast<float>((1 - t) * static_cast<double>(p.m_fX) + t * static_cast<double>(q.m_fX)),
            static_cast<float>((1 - t) * static_cast<double>(p.m_fY) + t * static_cast<double>(q.m_fY)), 0));
    };
    for (const bool closed : {false, true})
        for (std::size_t first = 0; first < ends.size(); ++first) {
            if ((!closed && ends[first].mate >= 0) || used.count(first / 2)) continue;
            CArray<CFPoint> line;
            add(line, first);
            for (std::size_t end = first; !used.count(end / 2);) {
                used.insert(end / 2);
                add(line, end ^ 1);
                if (ends[end ^ 1].mate < 0) break;
                end = static_cast<std::size_t>(ends[end ^ 1].mate);
            }
            lines.Add(line);
        }
    return lines;
}

/// The value by trying all triangles; how sure that is, since nobody should mind which side of the tolerance
/// a point is.
struct PlainValue {
    double value = 0;
    bool held = false, sure = true;
    bool byNode = false;  // that stands alone
};
PlainValue PlainValueAt(const CChang& field, const std::vector<std::vector<int>>& triangles, double x,
                        double y) {
    PlainValue result;
    for (const std::vector<int>& at : triangles) {
        long double px[3], py[3], distance = HUGE_VALL, longest = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            px[k] = field.m_arrNode[at[k]].m_fX;
            py[k] = field.m_arrNode[at[k]].m_fY;
        }
        const long double area = (px[1] - px[0]) * (py[2] - py[0]) - (px[2] - px[0]) * (py[1] - py[0]);
        if (area == 0) continue;
        long double sum = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            const std::size_t i = (k + 1) % 3, j = (k + 2) % 3;
            const long double part = ((px[j] - px[i]) * (y - py[i]) - (py[j] - py[i]) * (x - px[i])) / area;
            const long double length = std::hypot(px[j] - px[i], py[j] - py[i]);
            longest = std::max(longest, length);
            distance = std::min(distance, part * std::fabs(area) / length);
            sum += part * field.m_arrNode[at[k]].m_aValue[0];
        }
        for (const auto& [v, p] :
             {std::pair(static_cast<long double>(x), px), std::pair(static_cast<long double>(y), py)})
            distance = std::min({distance, v - *std::min_element(p, p + 3), *std::max_element(p, p + 3) - v});
        if (distance < -2e-6L * longest) continue;
        result.sure = result.sure && distance >= -0.5e-6L * longest;
        result.held = true;
        result.value = static_cast<double>(sum);
        return result;
    }
    for (const CChangNode& n : field.m_arrNode)
        if (!result.held && n.m_fX == static_cast<float>(x) && n.m_fY == static_cast<float>(y) &&
            std::isfinite(n.m_aValue[0]))
            result = {static_cast<double>(n.m_aValue[0]), true, true, true};
    return result;
}

double Length(const CArray<CFPoint>& line) {
    double length = 0;
    for (int i = 0; i + 1 < line.GetSize(); ++i)
        length += std::hypot(static_cast<double>(line[i + 1].x - line[i].x),
                             static_cast<double>(line[i + 1].y - line[i].y));
    return length;
}

/// Levels of values that occur, between them, and beyond.
const float kLevels[] = {-1, 0, 0.5f, 1, 1.7f, 2, 3, 3.999f, 4, 5, kNan};

}  // namespace

TEST(Isolines, OfALinearFieldAreStraight) {
    CChang field;
    FillGrid(field, 8, 5, 2, [](double x, double y) { return 3 * x + 4 * y - 7; });
    for (const double level : {-6.5, 0.0, 21.3, 47.0, 80.9}) {
        ASSERT_EQ(field.TraceOne(static_cast<float>(level)), 1);
        const CArray<CFPoint>& line = field.m_arrPolyline[0];
        for (const CFPoint& p : line)
            EXPECT_NEAR(3 * static_cast<double>(p.x) + 4 * static_cast<double>(p.y) - 7, level, 2e-5);
        // From border to border of 16 by 10.
        const double c = level + 7, left = std::max(0.0, (c - 40) / 3), right = std::min(16.0, c / 3);
        EXPECT_NEAR(Length(line), (right - left) * 5 / 4, 1e-4) << level;
    }
}

TEST(Isolines, OfAConeAreCirclesAndHyperbolas) {
    CChang field;
    FillGrid(field, 200, 200, 0.1, [](double x, double y) { return std::hypot(x - 10, y - 10); });
    for (const double r : {1.0, 4.0, 9.5}) {
        ASSERT_EQ(field.TraceOne(static_cast<float>(r)), 1);
        const CArray<CFPoint>& line = field.m_arrPolyline[0];
        EXPECT_NEAR(Length(line), 2 * 3.14159265 * r, 0.005 * r) << r;
        EXPECT_EQ(Length(line) > 0 && line[0] == line[line.GetUpperBound()], true);
    }
    // Cut off by the four sides: four arcs in the corners.
    EXPECT_EQ(field.TraceOne(12), 4);
}

TEST(Isolines, AgreeWithThePlainTrace) {
    std::mt19937 random(20250301);
    CChang field;  // one for all rounds: nothing of a former mesh may be left
    for (int round = 0; round < 600; ++round) {
        FillWild(field, random);
        for (const float level : kLevels) {
            const auto plain = PlainTrace(field, static_cast<double>(level));
            ASSERT_EQ(field.TraceOne(level), plain.GetSize()) << "round " << round << ", level " << level;
            ASSERT_TRUE(Agree(field.m_arrPolyline, plain))
                << "round " << round << ", level " << level << ": " << Show(field.m_arrPolyline)
                << "plainly: " << Show(plain);
        }
    }
}

TEST(FieldValues, AgreeWithAllTrianglesTried) {
    std::mt19937 random(20250302);
    CChang field;
    int held = 0;
    for (int round = 0; round < 300; ++round) {
        FillWild(field, random);
        const auto triangles = PlainTriangles(field);
        for (int i = 0; i < 60; ++i) {
            // Half of the points on a lattice with the nodes: corners, edges and places outside.
            const unsigned cells = i % 2 ? 16 : 10007;
            const float x = static_cast<float>(random() % (cells * 9)) / static_cast<float>(cells) - 0.5f;
            const float y = static_cast<float>(random() % (cells * 7)) / static_cast<float>(cells) - 0.5f;
            const PlainValue plain =
                PlainValueAt(field, triangles, static_cast<double>(x), static_cast<double>(y));
            if (!plain.sure) continue;
            held += plain.held;
            ASSERT_EQ(field.PointInChang(x, y), plain.held) << "round " << round << ": " << x << ", " << y;
            ASSERT_NEAR(static_cast<double>(field.Get_Value(x, y)), plain.value, 2e-5)
                << "round " << round << ": " << x << ", " << y;
        }
    }
    EXPECT_GT(held, 3000);
}

TEST(FieldValues, OfPointsAtBordersAndAlone) {
    CChang field;
    Fill(field,
         "1 0,0=0; 2 1000,0=10; 3 0,1000=20; 9 5000,0=7; 4 2000,2000=1; 5 3000,3000=2; 6 4000,4000=3 | 1 2 "
         "3; 4 5 6");
    struct {
        const char* name;
        float x, y;
        int in;
        float value;
    } const rows[] = {
        {"a corner", 0, 1000, 1, 20},
        {"on a side", 500, 500, 1, 15},
        {"as near as rounding", 500, -0.0009f, 1, 5},
        {"just off", 500, -0.002f, 0, 0},
        {"beyond a sharp corner", 1000.01f, 0, 0, 0},
        {"a node alone", 5000, 0, 1, 7},
        {"near that node", 5000.002f, 0, 1, 7},
        {"a flat triangle's side", 2500, 2500, 0, 0},
        {"its corner", 3000, 3000, 1, 2},
        {"nowhere", kNan, 0, 0, 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(field.PointInChang(row.x, row.y), row.in) << row.name;
        EXPECT_NEAR(static_cast<double>(field.Get_Value(row.x, row.y)), static_cast<double>(row.value), 1e-4)
            << row.name;
    }
    field.m_arrNode.Add(Node(10, 600, 600, 4));
    field.m_arrTri.Add({{2, 10, 3}});
    EXPECT_EQ(field.PointInChang(580, 580), 1) << "the index follows when the mesh has grown";
    field.m_nValue = 3;
    EXPECT_EQ(field.Get_Value(500, 500), 0) << "another of the ten values, none of which was given";
    field.m_nValue = 99;
    EXPECT_EQ(field.Get_Value(500, 500), 15) << "no such value: the first";
}

TEST(FieldValues, ThoseThatAreNotNumbersStayOut) {
    CChang field;
    float min = 5, max = 5;
    EXPECT_EQ(field.GetMinMaxZ(min, max), 0);
    EXPECT_EQ(max, 0);
    Fill(field, "1 0,0=nan; 2 nan,8=4; 3 2,inf=inf; 4 1,-3=-2 | 1 2 3");
    EXPECT_EQ(field.GetMinMaxZ(min, max), 1);
    EXPECT_EQ(min, -2);
    EXPECT_EQ(max, 4);
    const CFRect box = field.GetFRect();
    EXPECT_EQ(box.m_fMinY, -3);
    EXPECT_EQ(box.m_fMaxX, 1);
    EXPECT_EQ(field.TraceOne(1), 0);
}

TEST(FieldColors, FollowTheScheme) {
    CChang field;
    Fill(field, "1 0,0=-1; 2 1,0=1; 3 0,1=0 | 1 2 3");
    struct {
        const char* name;
        int scheme;
        float value;
        COLORREF color;
    } const rows[] = {
        {"lowest", 1, -1, RGB(0, 0, 255)},         {"below it", 1, -9, RGB(0, 0, 255)},
        {"highest", 1, 1, RGB(255, 0, 0)},         {"not finite", 1, kNan, RGB(0, 0, 255)},
        {"the reverse", 2, -1, RGB(255, 0, 0)},    {"no such scheme", 77, 1, RGB(255, 0, 0)},
        {"blue to red", 4, 1, RGB(255, 0, 0)},     {"even, dark end", 5, -1, RGB(68, 1, 84)},
        {"step 128 of 256", 1, 0, RGB(2, 255, 0)},
    };
    for (const auto& row : rows) {
        field.m_nColorScheme = row.scheme;
        EXPECT_EQ(COLORREF{field.GetIndexColor(row.value)}, row.color) << row.name;
    }
    // Even steps of lightness, however the eye weighs colours.
    field.m_nColorScheme = 5;
    for (double v = -1, before = -1; v <= 1; v += 0.1) {
        const COLORREF c = field.GetIndexColor(static_cast<float>(v));
        const double light = 0.299 * GetRValue(c) + 0.587 * GetGValue(c) + 0.114 * GetBValue(c);
        EXPECT_GT(light, before);
        before = light;
    }
    field.m_nColorScheme = 1;
    Fill(field, "1 0,0=3; 2 1,0=3.00000001 |");
    EXPECT_EQ(COLORREF{field.GetIndexColor(3)}, RGB(0, 0, 255)) << "a range below 1e-7";
}

TEST(FieldCloud, PixelsShowTheValueAtTheirCentres) {
    std::mt19937 random(20250303);
    CChang field;
    CDC picture;
    int width = 0, height = 0, painted = 0;
    for (int round = 0; round < 24; ++round) {
        FillWild(field, random);
        const CFRect box = field.GetFRect();
        float min, max;
        field.GetMinMaxZ(min, max);
        if (box.Width() <= 0 || box.Height() <= 0 || max <= min) continue;
        const auto triangles = PlainTriangles(field);
        CFCoor coor;
        coor.SetScale(static_cast<float>(3 + round / 2));
        field.DrawBaseMap(nullptr, &picture, &coor, width, height, 1);
        EXPECT_EQ(width, coor.FPtoDP(box).Width());
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const PlainValue plain = PlainValueAt(
                    field, triangles,
                    static_cast<double>(box.m_fMinX) + (x + 0.5) * static_cast<double>(box.Width()) / width,
                    static_cast<double>(box.m_fMaxY) -
                        (y + 0.5) * static_cast<double>(box.Height()) / height);
                if (!plain.sure || plain.byNode) continue;  // a cloud is of triangles alone
                std::set<std::uint32_t> allowed;            // rounding may decide for a neighbouring colour
                if (!plain.held) allowed = {0};
                for (const double nudge : {-1e-4, 0.0, 1e-4})
                    if (plain.held)
                        allowed.insert(PixelFromColor(
                            COLORREF{field.GetIndexColor(static_cast<float>(plain.value + nudge))}));
                painted += plain.held;
                ASSERT_TRUE(allowed.count(picture.Surface()->At(x, y)))
                    << "round " << round << ": pixel " << x << ", " << y << " is " << std::hex
                    << picture.Surface()->At(x, y) << ", value " << plain.value << ", held " << plain.held;
            }
    }
    EXPECT_GT(painted, 3000);
}

TEST(FieldCloud, OfASmallFieldIsAsStored) {
    CChang field;
    Fill(field, "1 0,0=0; 2 6,0=4; 3 6,4=8; 4 0,4=2; 5 3,2=6 | 1 2 5; 2 3 5; 3 4 5");  // open on the left
    CDC picture;
    CFCoor coor;
    coor.SetScale(2);
    int width, height;
    std::string bytes;
    for (const int scheme : {1, 5}) {
        field.m_nColorScheme = scheme;
        field.DrawBaseMap(nullptr, &picture, &coor, width, height, 1);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                char pixel[10];
                std::snprintf(pixel, sizeof pixel, x + 1 < width ? "%06X " : "%06X\n",
                              picture.Surface()->At(x, y));
                bytes += pixel;
            }
    }
    std::ifstream stored(TVO_TEST_DATA "/small_cloud.txt", std::ios::binary);
    EXPECT_EQ(bytes, std::string(std::istreambuf_iterator<char>(stored), {}));
}

TEST(FieldCloud, StaysWithinReasonAndApartFromItsBackground) {
    CChang field;
    field.m_nColorScheme = 4;
    Fill(field, "1 0,0=1; 2 1000,0=1; 3 0,200=1; 4 0,0=-1; 5 0,0=3 | 1 2 3");
    g_cTvoProfile.m_crBackground =
        static_cast<std::uint32_t>(field.GetIndexColor(1));  // the colour of all of it
    CDC picture;
    CFCoor coor;
    coor.SetScale(1);
    int width, height;
    field.DrawBaseMap(nullptr, &picture, &coor, width, height, 1000);
    EXPECT_EQ(width, 2048);
    EXPECT_EQ(height, 410);
    const std::uint32_t background = PixelFromColor(COLORREF{g_cTvoProfile.m_crBackground});
    EXPECT_EQ(picture.Surface()->At(2047, 0), background);
    EXPECT_EQ(std::abs(static_cast<int>(picture.Surface()->At(0, 409)) - static_cast<int>(background)), 1);
    g_cTvoProfile.m_crBackground = 0;
    field.Clear();
    field.DrawBaseMap(nullptr, &picture, &coor, width, height, 1000);
    EXPECT_EQ(width * height, 1);
}

TEST(FieldCloud, ManyTrianglesUponEachOtherTakeNoTime) {
    CChang field;
    Fill(field, "1 0,0=0; 2 40,0=4; 3 40,30=8; 4 0,30=9 | 1 2 3; 1 3 4");
    for (int i = 0; i < 300000; ++i) field.m_arrTri.Add({{1, 2, 3}});
    CDC picture;
    CFCoor coor;
    coor.SetScale(50);
    int width, height;
    field.DrawBaseMap(nullptr, &picture, &coor, width, height, 1);
    for (int i = 0; i < 100000; ++i) ASSERT_EQ(field.PointInChang(30, 10), 1);
}

TEST(Densify, NumbersAndMeans) {
    struct {
        const char* name;
        std::string in, out;
    } const rows[] = {
        {"one triangle", "1 0,0=1; 2 4,0=3; 3 0,8=7 | 1 2 3",
         "1 0,0=1; 2 4,0=3; 3 0,8=7; 4 2,0=2; 5 2,4=5; 6 0,4=4 | 1 4 6; 4 5 6; 4 2 5; 5 3 6"},
        {"two of one sense: two nodes on the side between",
         "1 0,0=0; 2 4,0=0; 3 4,4=8; 4 0,4=0 | 1 2 3; 1 3 4",
         "1 0,0=0; 2 4,0=0; 3 4,4=8; 4 0,4=0; 5 2,0=0; 6 4,2=4; 7 2,2=4; 8 2,2=4; 9 2,4=4; 10 0,2=0 | "
         "1 5 7; 5 6 7; 5 2 6; 6 3 7; 1 8 10; 8 9 10; 8 3 9; 9 4 10"},
        {"a side twice in one direction: the later number in both",
         "1 0,0=0; 2 4,0=2; 3 0,4=0; 4 0,-4=0 | 1 2 3; 1 2 4",
         "1 0,0=0; 2 4,0=2; 3 0,4=0; 4 0,-4=0; 5 2,0=1; 6 2,2=1; 7 0,2=0; 8 2,0=1; 9 2,-2=1; 10 0,-2=0 | "
         "1 8 7; 8 6 7; 8 2 6; 6 3 7; 1 8 10; 8 9 10; 8 2 9; 9 4 10"},
        {"numbers with gaps", "10 0,0=1; 20 4,0=3; 30 0,8=7 | 10 20 30",
         "10 0,0=1; 20 4,0=3; 30 0,8=7; 31 2,0=2; 32 2,4=5; 33 0,4=4 | 10 31 33; 31 32 33; 31 20 32; 32 30 "
         "33"},
        {"nodes of no triangle take numbers away", "1 0,0=1; 2 4,0=3; 3 0,8=7; 4 9,9=9; 5 8,8=8 | 1 2 3",
         "1 0,0=1; 2 4,0=3; 3 0,8=7; 4 9,9=9; 5 8,8=8; 6 0,4=4 | 1 4 6; 4 5 6; 4 2 5; 5 3 6"},
        {"a node missing", "1 0,0=1; 2 4,0=3 | 1 2 3",
         "1 0,0=1; 2 4,0=3; 4 2,0=2 | 1 4 6; 4 5 6; 4 2 5; 5 3 6"},
        {"no triangles", "1 0,0=1; 2 4,0=3 |", "1 0,0=1; 2 4,0=3 | "},
        {"no number left", "1 0,0=1; 2 4,0=3 | 1 2 2147483646", "1 0,0=1; 2 4,0=3 | "},
    };
    for (const auto& row : rows) {
        CChang source, target;
        Fill(source, row.in);
        for (CChangNode& node : source.m_arrNode) node.m_aValue[9] = -node.m_aValue[0];
        Fill(target, "1 0,0=0 | 1 1 1");  // goes
        wange_ge_jia_mi(&source, &target);
        std::ostringstream text;
        for (const CChangNode& n : target.m_arrNode) {
            text << (&n == &target.m_arrNode[0] ? "" : "; ") << n.m_nNumber << " " << n.m_fX << "," << n.m_fY
                 << "=" << n.m_aValue[0];
            EXPECT_EQ(n.m_aValue[9], -n.m_aValue[0]);
        }
        text << " | ";
        for (int i = 0; i < target.m_arrTri.GetSize(); ++i)
            text << (i ? "; " : "") << target.m_arrTri[i].m_aNode[0] << " " << target.m_arrTri[i].m_aNode[1]
                 << " " << target.m_arrTri[i].m_aNode[2];
        EXPECT_EQ(text.str(), row.out) << row.name;
    }
}
