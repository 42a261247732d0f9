#include "geometry/fregion.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "geometry/edge.h"

using namespace outline;
using tolerance::kBorder;
using tolerance::kFullTurn;
using tolerance::kHalfTurn;
using tolerance::kMergePoints;

namespace {

constexpr int kMostPoints = 10;  // room that callers of Intersect provide

Edge EdgeAt(const CFRegion& region, int i) {
    return EdgeOf(region[i], region[i + 1 < region.GetSize() ? i + 1 : 0]);
}

std::vector<Edge> EdgesOf(const CFRegion& region) {
    std::vector<Edge> edges;
    edges.reserve(static_cast<std::size_t>(region.GetSize()));
    for (int i = 0; i < region.GetSize(); ++i) edges.push_back(EdgeAt(region, i));
    return edges;
}

int WindingOf(const std::vector<Edge>& edges, double x, double y) {
    int winding = 0;
    for (const Edge& e : edges) winding += Winding(e, x, y);
    return winding;
}

Box United(const Box& a, const Box& b) {
    return {std::fmin(a.minX, b.minX), std::fmin(a.minY, b.minY), std::fmax(a.maxX, b.maxX),
            std::fmax(a.maxY, b.maxY)};
}

// By more than any tolerance that a test with arcs allows.
bool FarApart(const Box& a, const Box& b) {
    return a.minX > b.maxX + kMergePoints || b.minX > a.maxX + kMergePoints ||
           a.minY > b.maxY + kMergePoints || b.minY > a.maxY + kMergePoints;
}

// Of a region that isn't empty.
Box BoxOfRegion(const CFRegion& region) {
    Box box = BoxOf(EdgeAt(region, 0));
    for (int i = 1; i < region.GetSize(); ++i) box = United(box, BoxOf(EdgeAt(region, i)));
    return box;
}

bool OutlinesTouch(const std::vector<Edge>& a, const std::vector<Edge>& b, const Box& boxOfB) {
    std::vector<Box> boxes;
    boxes.reserve(b.size());
    for (const Edge& e : b) boxes.push_back(BoxOf(e));
    for (const Edge& e : a) {
        const Box box = BoxOf(e);
        if (FarApart(box, boxOfB)) continue;
        for (std::size_t i = 0; i < b.size(); ++i)
            if (!FarApart(box, boxes[i]) && Touch(e, b[i])) return true;
    }
    return false;
}

// Joins stretches that overlap, and drops places that lie in one or that are one with the place before.
std::vector<Stretch> Joined(std::vector<Stretch> in) {
    std::sort(in.begin(), in.end(), [](const Stretch& a, const Stretch& b) {
        return a.low != b.low ? a.low < b.low : a.high < b.high;
    });
    std::vector<Stretch> out;
    for (const Stretch& s : in) {
        if (out.empty() || s.low - out.back().high >= kMergePoints) {
            out.push_back(s);
        } else if (s.high - s.low >= kMergePoints || out.back().high - out.back().low >= kMergePoints) {
            out.back().high = std::max(out.back().high, s.high);
        }
    }
    return out;
}

}  // namespace

CFRegion::CFRegion(const CFRect& rect) {
    Reserve(4);
    Add(CFShoot(rect.m_fMinX, rect.m_fMinY, 0));
    Add(CFShoot(rect.m_fMaxX, rect.m_fMinY, 0));
    Add(CFShoot(rect.m_fMaxX, rect.m_fMaxY, 0));
    Add(CFShoot(rect.m_fMinX, rect.m_fMaxY, 0));
}

void CFRegion::Init(const CFPoint* points, int n) {
    RemoveAll();
    if (!points || n <= 0) return;
    Reserve(n);
    for (int i = 0; i < n; ++i) Add(CFShoot(points[i], 0));
}

void CFRegion::Init(const float* px, const float* py, int n) {
    RemoveAll();
    if (!px || !py || n <= 0) return;
    Reserve(n);
    for (int i = 0; i < n; ++i) Add(CFShoot(px[i], py[i], 0));
}

int CFRegion::IsOrder() const {
    const int n = GetSize();
    if (n == 0) return 0;
    const CFShoot& first = GetAt(0);
    const CFShoot& last = GetAt(n - 1);
    const double leaving = direction_of(first, GetAt(n > 1 ? 1 : 0)) + first.c;
    const double arriving = direction_of(first, last) - last.c;
    double turn = std::fmod(arriving - leaving, kFullTurn);
    if (turn < 0) turn += kFullTurn;
    return turn < kHalfTurn;
}

int CFRegion::InRegion(const CFPoint& p) const {
    int winding = 0;
    for (int i = 0; i < GetSize(); ++i) {
        const Edge e = EdgeAt(*this, i);
        if (Within(e, p.x, p.y, kBorder)) return 1;
        winding += Winding(e, p.x, p.y);
    }
    return winding != 0;
}

void CFRegion::GetRect(CFPoint& min, CFPoint& max) const {
    min = max = CFPoint();
    if (IsEmpty()) return;
    const Box box = BoxOfRegion(*this);
    min = CFPoint(static_cast<float>(box.minX), static_cast<float>(box.minY), 0);
    max = CFPoint(static_cast<float>(box.maxX), static_cast<float>(box.maxY), 0);
}

int CFRegion::Intersect(const CFRegion& other, int outlinesOnly) const {
    if (IsEmpty() || other.IsEmpty()) return 0;
    const Box boxOfB = BoxOfRegion(other);
    if (FarApart(BoxOfRegion(*this), boxOfB)) return 0;
    const std::vector<Edge> a = EdgesOf(*this), b = EdgesOf(other);
    if (OutlinesTouch(a, b, boxOfB)) return 1;
    if (outlinesOnly) return 0;
    // Outlines that are apart: either area holds the other's outline whole, or nothing of it.
    return WindingOf(a, b[0].x0, b[0].y0) != 0 || WindingOf(b, a[0].x0, a[0].y0) != 0;
}

int CFRegion::Intersect(const CFShape& shape, CFPoint* points) const {
    const Edge along = EdgeOf(shape);
    const Box box = BoxOf(along);
    // Ends in polar form are no better than their angle's last bits; more than a merge they never get.
    const double tol = std::clamp(5e-7 * along.Length(), kBorder, kMergePoints);
    std::vector<outline::Stretch> places;
    for (int i = 0; i < GetSize(); ++i) {
        const Edge e = EdgeAt(*this, i);
        if (FarApart(box, BoxOf(e))) continue;
        const Shared shared = SharedPlaces(along, e, tol);
        places.insert(places.end(), shared.stretches, shared.stretches + shared.count);
    }

    CFPoint found[kMostPoints];
    int count = 0;
    const auto enter = [&](double place) {
        const CFPoint p = PointAt(along, place);
        const auto isP = [&](const CFPoint& q) {
            return std::hypot(p.x - q.x, p.y - q.y) < tolerance::kDuplicatePoint;
        };
        if (count < kMostPoints && std::none_of(found, found + count, isP)) found[count++] = p;
    };
    places = Joined(std::move(places));
    // Round a full circle the last stretch goes on in the first one: its start is no end of either.
    if (along.IsFull() && places.size() > 1 && places.front().low < kMergePoints &&
        along.Length() - places.back().high < kMergePoints && places.front().high > places.front().low &&
        places.back().high > places.back().low) {
        places.front().low = places.front().high;
        places.back().high = places.back().low;
    }
    for (const outline::Stretch& s : places) {
        enter(s.low);
        if (s.high > s.low) enter(s.high);
    }
    if (count == 0) return -1;
    if (points) std::copy(found, found + count, points);
    return count;
}

void CFRegion::Offset(const CFPoint& d) {
    for (CFShoot& s : *this) s.Offset(d);
}

void CFRegion::Rotate(const CFPoint& centre, double angle) {
    for (CFShoot& s : *this) s.Rotate(centre, angle);
}

void CFRegion::Stretch(const CFPoint& centre, double factor) {
    for (CFShoot& s : *this) s.Stretch(centre, factor);
}

void CFRegion::Mirror(const CFPoint& p1, const CFPoint& p2) {
    for (CFShoot& s : *this) {
        s.Mirror(p1, p2);
        s.c = -s.c;
    }
}
