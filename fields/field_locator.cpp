#include "fields/field_locator.h"

#include <algorithm>
#include <cmath>

namespace {

struct Vec {
    double x, y;
};

Vec Place(const CChangNode& n) { return {static_cast<double>(n.m_fX), static_cast<double>(n.m_fY)}; }
Vec CornerOf(const FieldTriangle& t, int k) { return {static_cast<double>(t.x[k]), static_cast<double>(t.y[k])}; }
Vec operator-(const Vec& a, const Vec& b) { return {a.x - b.x, a.y - b.y}; }
double Cross(const Vec& a, const Vec& b) { return a.x * b.y - a.y * b.x; }

double Square(const Vec& v) { return v.x * v.x + v.y * v.y; }

double LongestEdge(const Vec& a, const Vec& b, const Vec& c) {
    return std::sqrt(std::max({Square(b - a), Square(c - b), Square(a - c)}));
}

bool InSpan(double v, double a, double b, double c, double tolerance) {
    return v >= std::min({a, b, c}) - tolerance && v <= std::max({a, b, c}) + tolerance;
}

/// Most triangles that are asked lie clearly elsewhere. Their box, widened by its two sides' sum where the tolerance goes
/// by the longest edge, which is no longer, tells without a root.
bool IsClearlyOutside(const float (&u)[3], const float (&v)[3], double x, double y) {
    const auto [lowU, highU] = std::minmax({u[0], u[1], u[2]});
    const auto [lowV, highV] = std::minmax({v[0], v[1], v[2]});
    const double left = static_cast<double>(lowU), right = static_cast<double>(highU);
    const double bottom = static_cast<double>(lowV), top = static_cast<double>(highV);
    const double tolerance = 1.0001 * kFieldTolerance * (right - left + (top - bottom));
    return x < left - tolerance || x > right + tolerance || y < bottom - tolerance || y > top + tolerance;
}

PlaneBox BoxAbout(const Vec& a, const Vec& b, const Vec& c, double tolerance) {
    return PlaneBox::About(std::min({a.x, b.x, c.x}) - tolerance, std::min({a.y, b.y, c.y}) - tolerance,
                           std::max({a.x, b.x, c.x}) + tolerance, std::max({a.y, b.y, c.y}) + tolerance);
}

}  // namespace

// The tolerance is on the distance from each side's line, and on the box, or a sharp corner would reach far beyond
// itself. Shares below 0 count as 0, so that the value stays between those of the corners.
CornerShares SharesAt(const FieldTriangle& t, double x, double y) {
    if (IsClearlyOutside(t.x, t.y, x, y)) return {};
    const Vec p{x, y};
    const Vec corner[3] = {CornerOf(t, 0), CornerOf(t, 1), CornerOf(t, 2)};
    const double area = Cross(corner[1] - corner[0], corner[2] - corner[0]);
    if (!(area != 0) || !std::isfinite(area)) return {};
    const double tolerance = kFieldTolerance * LongestEdge(corner[0], corner[1], corner[2]);
    if (!InSpan(x, corner[0].x, corner[1].x, corner[2].x, tolerance)) return {};
    if (!InSpan(y, corner[0].y, corner[1].y, corner[2].y, tolerance)) return {};
    CornerShares result;
    double sum = 0;
    for (std::size_t k = 0; k < 3; ++k) {
        const Vec from = corner[(k + 1) % 3], side = corner[(k + 2) % 3] - from;
        const double part = std::copysign(1.0, area) * Cross(side, p - from);  // distance times length
        if (part < 0 && part * part > tolerance * tolerance * Square(side)) return {};
        result.share[k] = std::max(part, 0.0);
        sum += result.share[k];
    }
    for (double& share : result.share) share /= sum;
    result.held = std::isfinite(sum) && sum > 0;
    return result;
}

CFieldLocator::CFieldLocator(const CChang& field, const CFieldMesh& mesh)
    : m_field(field), m_mesh(mesh), m_nNodes(field.m_arrNode.GetSize()), m_nTriangles(field.m_arrTri.GetSize()) {
    double longest = 0;
    std::vector<PlaneBox> boxes(static_cast<std::size_t>(m_nTriangles));
    CFieldMesh::Corners at;
    for (int i = 0; i < m_nTriangles; ++i) {
        if (!m_mesh.Find(m_field.m_arrTri[i], at)) continue;
        if (!std::all_of(at.begin(), at.end(), [&](int corner) { return m_mesh.HasPlace(corner); })) continue;
        const Vec a = Place(m_mesh.Node(at[0])), b = Place(m_mesh.Node(at[1])), c = Place(m_mesh.Node(at[2]));
        const double edge = LongestEdge(a, b, c);
        longest = std::max(longest, edge);
        boxes[static_cast<std::size_t>(i)] = BoxAbout(a, b, c, kFieldTolerance * edge);
    }
    m_dReach = kFieldTolerance * longest;
    m_cTriangles.Build(std::move(boxes));
    m_aTriangle.reserve(m_cTriangles.Items().size());
    for (const int i : m_cTriangles.Items()) {
        m_mesh.Find(m_field.m_arrTri[i], at);
        FieldTriangle& t = m_aTriangle.emplace_back();
        for (std::size_t k = 0; k < 3; ++k) {
            t.x[k] = m_mesh.Node(at[k]).m_fX;
            t.y[k] = m_mesh.Node(at[k]).m_fY;
        }
    }
}

bool CFieldLocator::Fits(const CChang& field) const {
    return m_nNodes == field.m_arrNode.GetSize() && m_nTriangles == field.m_arrTri.GetSize();
}

void CFieldLocator::BuildNodes() {
    std::vector<PlaneBox> boxes(static_cast<std::size_t>(m_nNodes));
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
    const int triangle = m_cTriangles.Lowest(x, y, [&](int i, std::size_t rank) {
        const CornerShares s = SharesAt(m_aTriangle[rank], px, py);
        CFieldMesh::Corners at;
        if (!s.held || !m_mesh.FindUsable(m_field.m_arrTri[i], at)) return false;
        double v = 0;
        for (std::size_t k = 0; k < 3; ++k) v += s.share[k] * static_cast<double>(m_mesh.Value(at[k]));
        value = static_cast<float>(v);
        return true;
    });
    if (triangle >= 0) return true;
    if (!m_bNodesBuilt) BuildNodes();
    const int node = m_cNodes.Lowest(x, y, [&](int i, std::size_t) {
        const Vec away = Place(m_mesh.Node(i)) - Vec{px, py};
        return m_mesh.HasValue(i) && std::hypot(away.x, away.y) <= m_dReach;
    });
    if (node >= 0) value = m_mesh.Value(node);
    return node >= 0;
}
