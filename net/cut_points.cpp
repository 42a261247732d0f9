#include "net/cut_points.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "model/value_arrays.h"

namespace {

constexpr int kFewPoints = 48;  // up to here comparing each with each is fastest

// Removes the marked points, keeping order.
void RemoveMarked(CArray<CFPoint>& points, const std::vector<char>& crowded) {
    int kept = 0;
    for (int i = 0; i < points.GetSize(); ++i)
        if (!crowded[static_cast<std::size_t>(i)]) points[kept++] = points[i];
    points.SetSize(kept);
}

}  // namespace

void DropFirstPointNear(CArray<CFPoint>& points, const CFPoint& end, float reach) {
    for (int i = 0; i < points.GetSize(); ++i)
        if (points[i].Distance(end) < static_cast<double>(reach)) {
            points.RemoveAt(i);
            return;
        }
}

// The plain loop starts over after each removal. A point is only ever compared with points behind it, and those
// are all still there when its turn comes, so one pass over the input decides the same: a point stays unless
// some later input point is too near. Many points are first put in order along the longer side of their extent,
// so that each is compared with its neighbours alone.
void ThinOutCutPoints(CArray<CFPoint>& points, float tolerance) {
    const int n = points.GetSize();
    const double limit = tolerance;
    std::vector<char> crowded(static_cast<std::size_t>(n), 0);
    if (n <= kFewPoints) {
        for (int i = 0; i < n; ++i)
            for (int j = i + 1; j < n && !crowded[static_cast<std::size_t>(i)]; ++j)
                crowded[static_cast<std::size_t>(i)] = points[i].Distance(points[j]) < limit;
        RemoveMarked(points, crowded);
        return;
    }
    const auto [x0, x1] = std::minmax_element(points.begin(), points.end(), [](auto& a, auto& b) { return a.x < b.x; });
    const auto [y0, y1] = std::minmax_element(points.begin(), points.end(), [](auto& a, auto& b) { return a.y < b.y; });
    const bool byX = x1->x - x0->x >= y1->y - y0->y;
    const auto along = [&](int i) { return byX ? points[i].x : points[i].y; };
    std::vector<int> order(static_cast<std::size_t>(n));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return along(a) < along(b); });
    for (std::size_t a = 0; a < order.size(); ++a)
        for (std::size_t b = a + 1; b < order.size(); ++b) {
            const int i = order[a], j = order[b];
            // No nearer than this along one axis; half a unit of slack for the rounding of far coordinates.
            if (static_cast<double>(along(j)) - along(i) > limit + 0.5) break;
            const int earlier = std::min(i, j), later = std::max(i, j);
            if (points[earlier].Distance(points[later]) < limit) crowded[static_cast<std::size_t>(earlier)] = 1;
        }
    RemoveMarked(points, crowded);
}

// Sorted by one coordinate. On a steep line that coordinate may fail to tell the points apart, since far from
// the origin a float has steps of its own; pieces in the wrong order would lie on one another, so the order
// along the chord is taken then.
void SortAlongLine(CArray<CFPoint>& points, const CFPoint& start, const CFPoint& end, bool vertical) {
    const double dx = static_cast<double>(end.x) - start.x, dy = static_cast<double>(end.y) - start.y;
    const double sign = (vertical ? dy : dx) < 0 ? -1 : 1;
    const auto along = [&](const CFPoint& p) {
        return sign * ((static_cast<double>(p.x) - start.x) * dx + (static_cast<double>(p.y) - start.y) * dy);
    };
    const auto before = [&](const CFPoint& a, const CFPoint& b) { return along(a) < along(b); };
    if (vertical || std::fabs(dx) >= 1.0) {
        SortFloatPointArray(points, vertical ? 'Y' : 'X');
        if (std::is_sorted(points.begin(), points.end(), before)) return;
    }
    std::stable_sort(points.begin(), points.end(), before);
}
