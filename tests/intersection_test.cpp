// Crossings of straight sections and arcs: what meets, where, and what just doesn't.
#include "platform/intersection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "geometry/angles.h"

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kUntouched = -77777.0f;

struct Section {
    float x0, y0, x1, y1;
};
struct Arc {
    float cx, cy, r, start, end;
};

std::string Text(float x, float y) {
    char text[64];
    std::snprintf(text, sizeof text, "%.3f,%.3f ", x + 0.0f, y + 0.0f);
    return text;
}

// The points that a procedure gives, as text; complains about a point that is touched without being counted.
struct Answer {
    float x[2] = {kUntouched, kUntouched}, y[2] = {kUntouched, kUntouched};
    int count = 0;

    std::string Show() const {
        std::string text;
        for (int i = 0; i < 2; ++i) {
            const bool touched = x[i] != kUntouched || y[i] != kUntouched;
            if (i < count) text += Text(x[i], y[i]);
            else if (touched) text += "TOUCHED ";
        }
        return text;
    }
};

Answer Meet(const Section& a, const Section& b, float tol) {
    Answer r;
    r.count = JH_GetInterPoint_LineSection_LineSection(a.x0, a.y0, a.x1, a.y1, b.x0, b.y0, b.x1, b.y1,
                                                       &r.x[0], &r.y[0], tol);
    return r;
}
Answer MeetEndless(const Section& a, const Section& b) {
    Answer r;
    r.count = JH_GetInterPoint_Line(a.x0, a.y0, a.x1, a.y1, b.x0, b.y0, b.x1, b.y1, &r.x[0], &r.y[0], 0.1f);
    return r;
}
Answer Meet(const Section& a, const Arc& b, float tol) {
    Answer r;
    r.count = JH_GetInterPoint_LineSection_Arc(a.x0, a.y0, a.x1, a.y1, b.cx, b.cy, b.r, b.start, b.end,
                                               &r.x[0], &r.y[0], &r.x[1], &r.y[1], tol);
    return r;
}
Answer Meet(const Arc& a, const Arc& b, float tol) {
    Answer r;
    r.count = JH_GetInterPoint_Arc_Arc(a.cx, a.cy, a.r, a.start, a.end, b.cx, b.cy, b.r, b.start, b.end,
                                       &r.x[0], &r.y[0], &r.x[1], &r.y[1], tol);
    return r;
}

// A section that leaves (x, y) upwards, at an angle to the x axis.
Section From(float x, float y, double degrees, double length = 1000) {
    const double a = degrees * std::numbers::pi / 180;
    return {x, y, static_cast<float>(x + length * std::cos(a)), static_cast<float>(y + length * std::sin(a))};
}

constexpr float kPi = std::numbers::pi_v<float>;
const Arc kUpperHalf{0, 0, 5000, 0, kPi};

}  // namespace

TEST(Crossing, OfTwoSections) {
    const Section base{0, 0, 1000, 0};
    const struct {
        const char* name;
        Section other;
        const char* points;
    } rows[] = {
        {"an upright cross", {500, -10, 500, 10}, "500.000,0.000 "},
        {"ends exactly the tolerance above", From(500, 5, 90), "500.000,0.000 "},
        {"ends a little more above", From(500, 5.01f, 90), ""},
        {"slanted: overshoot is measured along the section", From(500, 4, 30), ""},
        {"slanted and near enough", From(500, 2, 30), "496.536,0.000 "},
        {"a flat cross", {0, 1, 1000, -1}, "500.000,0.000 "},
        {"flat, crossing far outside", {0, 1, 1000, 0.9999f}, ""},
        {"the tolerance beyond the base's end", {1005, -100, 1005, 100}, "1005.000,0.000 "},
        {"a little more beyond it", {1005.01f, -100, 1005.01f, 100}, ""},
        {"the tolerance before its start", {-5, 100, -5, -100}, "-5.000,0.000 "},
        {"end to end", {1000, 0, 1000, 500}, "1000.000,0.000 "},
        {"parallel, one on the other", {200, 0, 700, 0}, ""},
        {"without length, on the base", {500, 0, 500, 0}, ""},
        {"not a number", {500, -10, kNaN, 10}, ""},
        {"endless", {500, -10, std::numeric_limits<float>::infinity(), 10}, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Meet(base, row.other, 5).Show(), row.points);
        const Section back{row.other.x1, row.other.y1, row.other.x0, row.other.y0};
        EXPECT_EQ(Meet(base, back, 5).Show(), row.points) << "reversed";
        EXPECT_EQ(Meet(row.other, base, 5).Show(), row.points) << "exchanged";
    }
}

TEST(Crossing, OfEndlessLines) {
    EXPECT_EQ(MeetEndless({0, 0, 1, 0}, {5000, 1, 5000, 2}).Show(), "5000.000,0.000 ");
    EXPECT_EQ(MeetEndless({0, 0, 1000, 0}, {0, 5, 1000, 5}).Show(), "") << "parallel";
    EXPECT_EQ(MeetEndless({0, 0, 1, 0}, {0, 3e38f, 1e38f, 2.999e38f}).Show(), "") << "farther than a float";
}

TEST(Crossing, OfSectionAndArc) {
    const struct {
        const char* name;
        Section line;
        Arc arc;
        const char* points;
    } rows[] = {
        {"ends below the arc by less than the tolerance", {0, 4000, 0, 4996}, kUpperHalf, "0.000,5000.000 "},
        {"ends below it by more", {0, 4000, 0, 4994}, kUpperHalf, ""},
        {"passes over it within the tolerance: the foot",
         {-6000, 5003, 6000, 5003},
         kUpperHalf,
         "0.000,5003.000 "},
        {"at the tolerance", {-6000, 5005, 6000, 5005}, kUpperHalf, "0.000,5005.000 "},
        {"passes over it farther away", {-6000, 5006, 6000, 5006}, kUpperHalf, ""},
        {"cuts off a shallow cap",
         {-6000, 4999, 6000, 4999},
         kUpperHalf,
         "-99.995,4999.000 99.995,4999.000 "},
        {"points come along the section",
         {6000, 4999, -6000, 4999},
         kUpperHalf,
         "99.995,4999.000 -99.995,4999.000 "},
        {"two points nearer than the tolerance are one",
         {-6000, 4999.9995f, 6000, 4999.9995f},
         kUpperHalf,
         "0.000,5000.000 "},
        {"only the upper half is there", {100, -6000, 100, 6000}, kUpperHalf, "100.000,4999.000 "},
        {"an arc over the zero direction", {4000, 0, 6000, 0}, {0, 0, 5000, 6.1f, 6.5f}, "5000.000,0.000 "},
        {"directions count modulo a full turn",
         {-6000, 3, 6000, 3},
         {0, 0, 5000, 9.0f, 9.6f},
         "-4999.999,3.000 "},
        {"just below an arc's end", {4000, -4, 6000, -4}, kUpperHalf, "4999.999,-4.000 "},
        {"just inside the arc's other end", {-6000, 25, -4000, 25}, kUpperHalf, "-4999.938,25.000 "},
        {"too far below it", {4000, -6, 6000, -6}, kUpperHalf, ""},
        {"a full circle",
         {-6000, 0, 6000, 0},
         {0, 0, 5000, 0, 6.2831855f},
         "-5000.000,0.000 5000.000,0.000 "},
        {"wholly inside the circle", {-1000, 0, 1000, 0}, {0, 0, 5000, 0, 6.2831855f}, ""},
        {"a section without length on the arc", {0, 5000, 0, 5000}, kUpperHalf, ""},
        {"no radius to speak of", {-10, 0, 10, 0}, {0, 0, -1, 0, 1}, ""},
        {"not a number", {-6000, kNaN, 6000, 0}, kUpperHalf, ""},
        {"an arc that is no number", {-6000, 0, 6000, 0}, {kNaN, 0, 5000, 0, 1}, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Meet(row.line, row.arc, 5).Show(), row.points);
    }
}

TEST(Crossing, OfTwoArcs) {
    const auto upperHalf = [](float cx) { return Arc{cx, 0, 5000, 0, kPi}; };
    const Arc whole{0, 0, 5000, 0, 6.2831855f};
    const struct {
        const char* name;
        Arc other;
        const char* points;
        Arc first = kUpperHalf;
    } rows[] = {
        {"upper halves cross above", upperHalf(6000), "3000.000,4000.000 "},
        {"apart by less than the tolerance: midway", upperHalf(10004), "5002.000,0.000 "},
        {"apart by more", upperHalf(10006), ""},
        {"the same circle", upperHalf(0), ""},
        {"the same circle within the tolerance", upperHalf(5), ""},
        {"one inside the other", {0, 0, 1000, 0, kPi}, ""},
        {"touching from inside", {3998, 0, 1000, 0, 6.2831855f}, "4999.000,0.000 ", whole},
        {"held by a larger one, a gap within the tolerance",
         {-4996, 0, 10000, 0, 6.2831855f},
         "5002.000,0.000 ",
         whole},
        {"two points come along the first",
         {6000, 0, 5000, 0, 6.2831855f},
         "3000.000,4000.000 3000.000,-4000.000 ",
         whole},
        {"nearer than the tolerance: their middle",
         {9999.999f, 0, 5000, 0, 6.2831855f},
         "5000.000,0.000 ",
         whole},
        {"not a number", {kNaN, 0, 5000, 0, kPi}, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Meet(row.first, row.other, 5).Show(), row.points);
    }
}

TEST(DistanceToSection, IsToTheClampedFoot) {
    const struct {
        const char* name;
        float px, py;
        Section s;
        float distance;
    } rows[] = {
        {"beside", 500, 30, {0, 0, 1000, 0}, 30},
        {"on it", 500, 0, {0, 0, 1000, 0}, 0},
        {"behind the end", 1003, 4, {0, 0, 1000, 0}, 5},
        {"before the start", -3, -4, {0, 0, 1000, 0}, 5},
        {"a section without length", 3, 4, {0, 0, 0, 0}, 5},
    };
    for (const auto& r : rows)
        EXPECT_EQ(JH_GetMinDist_PointToLineSection(r.px, r.py, r.s.x0, r.s.y0, r.s.x1, r.s.y1), r.distance)
            << r.name;
    EXPECT_FALSE(JH_GetMinDist_PointToLineSection(kNaN, 0, 0, 0, 1, 0) < 1e30f) << "never near, never NaN";
}

TEST(LevellingAngle, MakesALineLevel) {
    std::mt19937 rng(31);
    std::uniform_real_distribution<float> coordinate(-1000, 1000);
    for (int round = 0; round < 200; ++round) {
        const float ax = coordinate(rng), ay = coordinate(rng);
        float bx = coordinate(rng), by = coordinate(rng);
        const float length = get_dist(ax, ay, bx, by);
        const float angle = JH_GetAngle(ax, ay, bx, by);
        bx -= ax;
        by -= ay;
        rotate_coordinate(angle, &bx, &by);
        ASSERT_NEAR(bx, length, 1e-3) << "round " << round;
        ASSERT_NEAR(by, 0, 1e-3) << "round " << round;
    }
}

// Oracles: the pieces walked in small steps. A lattice makes ties and exact tolerances happen often.
namespace {

struct Walker {
    std::mt19937 rng{20240611};
    float Lattice() { return static_cast<float>(std::uniform_int_distribution<int>(-6, 6)(rng)) * 500; }
    Section NextSection() { return {Lattice(), Lattice(), Lattice(), Lattice()}; }
    Arc NextArc() {
        const float start = static_cast<float>(std::uniform_int_distribution<int>(0, 15)(rng)) * kPi / 8;
        const float sweep = static_cast<float>(std::uniform_int_distribution<int>(1, 16)(rng)) * kPi / 8;
        const float r = static_cast<float>(std::uniform_int_distribution<int>(1, 6)(rng)) * 500;
        return {Lattice(), Lattice(), r, start, start + sweep};
    }
};

double DistanceTo(const Section& s, double x, double y) {
    const double ux = static_cast<double>(s.x1) - s.x0, uy = static_cast<double>(s.y1) - s.y0;
    const double uu = ux * ux + uy * uy;
    const double t = uu > 0 ? std::clamp(((x - s.x0) * ux + (y - s.y0) * uy) / uu, 0.0, 1.0) : 0;
    return std::hypot(x - s.x0 - t * ux, y - s.y0 - t * uy);
}
double DistanceTo(const Arc& a, double x, double y) {
    double offset = std::fmod(std::atan2(y - a.cy, x - a.cx) - a.start, 2 * std::numbers::pi);
    if (offset < 0) offset += 2 * std::numbers::pi;
    if (offset <= a.end - a.start) return std::fabs(std::hypot(x - a.cx, y - a.cy) - a.r);
    const auto toEnd = [&](double angle) {
        return std::hypot(x - a.cx - a.r * std::cos(angle), y - a.cy - a.r * std::sin(angle));
    };
    return std::min(toEnd(a.start), toEnd(a.end));
}
std::vector<std::pair<double, double>> Steps(const Section& s, int n) {
    std::vector<std::pair<double, double>> points;
    for (int i = 0; i <= n; ++i) {
        const double t = static_cast<double>(i) / n;
        points.emplace_back(s.x0 + t * (s.x1 - s.x0), s.y0 + t * (s.y1 - s.y0));
    }
    return points;
}
std::vector<std::pair<double, double>> Steps(const Arc& a, int n) {
    std::vector<std::pair<double, double>> points;
    for (int i = 0; i <= n; ++i) {
        const double angle = a.start + static_cast<double>(a.end - a.start) * i / n;
        points.emplace_back(a.cx + a.r * std::cos(angle), a.cy + a.r * std::sin(angle));
    }
    return points;
}

// Every point found lies on both; where a walk along the first comes very near the second and leaves it again
// at a fair angle, a point was found.
template <class A, class B>
void Judge(const A& a, const B& b, int round) {
    const float tol = 5;
    const Answer found = Meet(a, b, tol);
    ASSERT_EQ(found.Show().find("TOUCHED"), std::string::npos) << "round " << round;
    for (int i = 0; i < found.count; ++i) {
        ASSERT_LE(DistanceTo(a, found.x[i], found.y[i]), tol + 0.01) << "round " << round;
        ASSERT_LE(DistanceTo(b, found.x[i], found.y[i]), tol + 0.01) << "round " << round;
    }
    const auto steps = Steps(a, 4000);
    for (std::size_t i = 0; i + 100 < steps.size(); ++i) {
        if (i < 100 || DistanceTo(b, steps[i].first, steps[i].second) > 1) continue;
        // Not where the two run side by side.
        if (DistanceTo(b, steps[i - 100].first, steps[i - 100].second) < 10 ||
            DistanceTo(b, steps[i + 100].first, steps[i + 100].second) < 10)
            continue;
        bool near = false;
        for (int k = 0; k < found.count; ++k)
            near |= std::hypot(found.x[k] - steps[i].first, found.y[k] - steps[i].second) < 60;
        ASSERT_TRUE(near) << "round " << round << " misses "
                          << Text(static_cast<float>(steps[i].first), static_cast<float>(steps[i].second));
    }
}

}  // namespace

TEST(Crossing, AgreesWithAWalk) {
    Walker walker;
    for (int round = 0; round < 400; ++round) {
        const Section s = walker.NextSection(), s2 = walker.NextSection();
        const Arc a = walker.NextArc(), a2 = walker.NextArc();
        Judge(s, s2, round);
        Judge(s, a, round);
        Judge(a, a2, round);
        if (HasFatalFailure()) return;
    }
}

TEST(Crossing, ComputedAgainOfEndlessLinesIsTheSamePoint) {
    Walker walker;
    int met = 0;
    for (int round = 0; round < 2000; ++round) {
        const Section a = walker.NextSection(), b = walker.NextSection();
        const Answer sections = Meet(a, b, 5);
        if (sections.count == 0) continue;
        ++met;
        const Answer lines = MeetEndless(a, b);
        ASSERT_EQ(sections.x[0], lines.x[0]) << "round " << round;
        ASSERT_EQ(sections.y[0], lines.y[0]) << "round " << round;
    }
    EXPECT_GT(met, 200);
}
