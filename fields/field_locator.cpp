#include "fields/field_locator.h"

#include <algorithm>
#include <cmath>

namespace {

struct Vec {
    double x, y;
};

Vec Place(const CChangNode& n) { return {static_cast<double>(n.m_fX), static_cast<double>(n.m_fY)}; }
Vec operator-(const Vec& a, const Vec& b) { return {a.x - b.x, a.y - b.y}; }
double Cross(const Vec& a, const Vec& b) { return a.x * b.y - a.y * b.x; }

double Square(const Vec& v) { return v.x * v.x + v.y * v.y; }

double LongestSquare(const Vec& a, const Vec& b, const Vec& c) {
    return std::max({Square(b - a), Square(c - b), Square(a - c)});
}

bool InSpan(double v, double a, double b, double c, double tolerance) {
    return v >= std::min({a, b, c}) - tolerance && v <= std::max({a, b, c}) + tolerance;
}

PlaneBox BoxAbout(const Vec& a, const Vec& b, const Vec& c, double tolerance) {
    return PlaneBox::About(std::min({a.x, b.x, c.x}) - tolerance, std::min({a.y, b.y, c.y}) - tolerance,
                           std::max({a.x, b.x, c.x}) + tolerance, std::max({a.y, b.y, c.y}) + tolerance);
}

}  // namespace

// The tolerance is on the distance from each side's line, and on the box, or a sharp corner would reach far
// beyond itself. Shares below 0 count as 0, so that the value stays between those of the corners.
CornerShares SharesAt(const TrianglePlaces& corners, double x, double y) {
    const Vec p{x, y};
    const auto place = [&](std::size_t k) {
        return Vec{static_cast<double>(corners.x[k]), static_cast<double>(corners.y[k])};
    };
    const Vec corner[3] = {place(0), place(1), place(2)};
    const double area = Cross(corner[1] - corner[0], corner[2] - corner[0]);
    if (!(area != 0) || !std::isfinite(area)) return {};
    CornerShares result;
    double sum = 0;
    bool inside = true;
    for (std::size_t k = 0; k < 3; ++k) {
        const Vec from = corner[(k + 1) % 3], side = corner[(k + 2) % 3] - from;
        const double part = std::copysign(1.0, area) * Cross(side, p - from);  // distance times length
        if (part < 0) {
            inside = false;
            const double reach =
                kFieldTolerance * kFieldTolerance * LongestSquare(corner[0], corner[1], corner[2]);
            if (part * part > reach * Square(side)) return {};
        }
        result.share[k] = std::max(part, 0.0);
        sum += result.share[k];
    }
    if (!inside) {
        const double tolerance = kFieldTolerance * std::sqrt(LongestSquare(corner[0], corner[1], corner[2]));
        if (!InSpan(x, corner[0].x, corner[1].x, corner[2].x, tolerance)) return {};
        if (!InSpan(y, corner[0].y, corner[1].y, corner[2].y, tolerance)) return {};
    }
    for (double& share : result.share) share /= sum;
    result.held = std::isfinite(sum) && sum > 0;
    return result;
}

CFieldLocator::CFieldLocator(const CChang& field, const CFieldMesh& mesh)
    : m_field(field),
      m_mesh(mesh),
      m_nNodes(field.m_arrNode.GetSize()),
      m_nTriangles(field.m_arrTri.GetSize()) {
    double longest = 0;
    PooledVector<PlaneBox> boxes(static_cast<std::size_t>(m_nTriangles));
    CFieldMesh::Corners at;
    for (int i = 0; i < m_nTriangles; ++i) {
        if (!m_mesh.Find(m_field.m_arrTri[i], at)) continue;
        if (!std::all_of(at.begin(), at.end(), [&](int corner) { return m_mesh.HasPlace(corner); })) continue;
        const Vec a = Place(m_mesh.Node(at[0])), b = Place(m_mesh.Node(at[1])), c = Place(m_mesh.Node(at[2]));
        const double edge = std::sqrt(LongestSquare(a, b, c));
        longest = std::max(longest, edge);
        boxes[static_cast<std::size_t>(i)] = BoxAbout(a, b, c, kFieldTolerance * edge);
    }
    m_dReach = kFieldTolerance * longest;
    const PooledVector<int> items = m_cTriangles.Build(std::move(boxes));
    m_aTriangle.resize(items.size());
    for (std::size_t rank = 0; rank < items.size(); ++rank) {
        Triangle& triangle = m_aTriangle[rank];
        m_mesh.Find(m_field.m_arrTri[items[rank]], triangle.at);
        for (std::size_t k = 0; k < 3; ++k) {
            const CChangNode& node = m_mesh.Node(triangle.at[k]);
            triangle.places.x[k] = node.m_fX;
            triangle.places.y[k] = node.m_fY;
        }
    }
}

bool CFieldLocator::Fits(const CChang& field) const {
    return m_nNodes == field.m_arrNode.GetSize() && m_nTriangles == field.m_arrTri.GetSize();
}

void CFieldLocator::BuildNodes() {
    PooledVector<PlaneBox> boxes(static_cast<std::size_t>(m_nNodes));
    for (int i = 0; i < m_nNodes; ++i) {
        if (!m_mesh.HasPlace(i)) continue;
        const Vec p = Place(m_mesh.Node(i));
        boxes[static_cast<std::size_t>(i)] =
            PlaneBox::About(p.x - m_dReach, p.y - m_dReach, p.x + m_dReach, p.y + m_dReach);
    }
    m_cNodes.Build(std::move(boxes));
    m_bNodesBuilt = true;
}

bool CFieldLocator::ValueAt(float x, float y, float& value) {
    if (!std::isfinite(x) || !std::isfinite(y)) return false;
    const double px = static_cast<double>(x), py = static_cast<double>(y);
    // The triangles that may be asked for are on their way while their boxes are: one wait for memory, not
    // two.
    const auto fetch = [&](std::size_t rank) {
        const char* const from = reinterpret_cast<const char*>(m_aTriangle.data() + rank);
        for (std::size_t byte = 0; byte < CBoxTree::kFan * sizeof(Triangle); byte += 64)
            __builtin_prefetch(from + byte);
    };
    const int triangle = m_cTriangles.Lowest(x, y, fetch, [&](int, std::size_t rank) {
        const CFieldMesh::Corners& at = m_aTriangle[rank].at;
        const CornerShares s = SharesAt(m_aTriangle[rank].places, px, py);
        if (!s.held || !m_mesh.HasValue(at[0]) || !m_mesh.HasValue(at[1]) || !m_mesh.HasValue(at[2]))
            return false;
        double v = 0;
        for (std::size_t k = 0; k < 3; ++k) v += s.share[k] * static_cast<double>(m_mesh.Value(at[k]));
        value = static_cast<float>(v);
        return true;
    });
    if (triangle >= 0) return true;
    if (!m_bNodesBuilt) BuildNodes();
    const int node = m_cNodes.Lowest(
        x, y, [](std::size_t) {},
        [&](int i, std::size_t) {
            const Vec away = Place(m_mesh.Node(i)) - Vec{px, py};
            return m_mesh.HasValue(i) && std::hypot(away.x, away.y) <= m_dReach;
        });
    if (node >= 0) value = m_mesh.Value(node);
    return node >= 0;
}
