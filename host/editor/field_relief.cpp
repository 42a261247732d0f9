#include "host/editor/field_relief.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "fields/chang.h"
#include "fields/field_mesh.h"
#include "geometry/projection.h"
#include "platform/canvas/surface.h"
#include "platform/saturate.h"

namespace {

/// Of all values, also of nodes without a triangle, as ruler and clouds have it.
std::pair<double, double> RangeOf(const CFieldMesh& mesh, int nodes) {
    double min = std::numeric_limits<double>::infinity(), max = -min;
    for (int i = 0; i < nodes; ++i) {
        const double value = static_cast<double>(mesh.Value(i));
        if (!std::isfinite(value)) continue;
        min = std::min(min, value);
        max = std::max(max, value);
    }
    return {min, max};
}

}  // namespace

FieldRelief::FieldRelief(const CChang& field) {
    CFieldMesh mesh(field);
    mesh.Refresh();
    std::vector<int> place(static_cast<std::size_t>(field.m_arrNode.GetSize()),
                           -1);  // of a node among the points
    double minX = 0, maxX = 0, minY = 0, maxY = 0;
    for (const CChangTri& tri : field.m_arrTri) {
        CFieldMesh::Corners corners;
        if (!mesh.FindUsable(tri, corners)) continue;
        Triangle triangle{};
        for (std::size_t k = 0; k < 3; ++k) {
            int& at = place[static_cast<std::size_t>(corners[k])];
            if (at < 0) {
                at = static_cast<int>(m_aPoint.size());
                m_aPoint.push_back(
                    {mesh.Node(corners[k]).m_fX, mesh.Node(corners[k]).m_fY, mesh.Value(corners[k])});
                const auto widen = [first = at == 0](double& low, double& high, float v) {
                    low = first ? static_cast<double>(v) : std::min(low, static_cast<double>(v));
                    high = first ? static_cast<double>(v) : std::max(high, static_cast<double>(v));
                };
                widen(minX, maxX, m_aPoint.back().x);
                widen(minY, maxY, m_aPoint.back().y);
            }
            triangle[k] = at;
        }
        m_aTriangle.push_back(triangle);
    }
    const auto [min, max] = RangeOf(mesh, field.m_arrNode.GetSize());
    const double half =
        std::max(std::hypot(maxX - minX, maxY - minY) / 2, std::numeric_limits<double>::min());
    const double range = max - min;
    for (Point& p : m_aPoint) {
        p.x = static_cast<float>((static_cast<double>(p.x) - (minX + maxX) / 2) / half);
        p.y = static_cast<float>((static_cast<double>(p.y) - (minY + maxY) / 2) / half);
        // A constant field is flat, as everywhere else.
        p.t = range >= 1e-7 ? static_cast<float>((static_cast<double>(p.t) - min) / range) : 0;
    }
    m_fHalfWidth = static_cast<float>((maxX - minX) / 2 / half);
    m_fHalfHeight = static_cast<float>((maxY - minY) / 2 / half);
}

FieldRelief FieldRelief::Thinned(int triangles) const {
    if (static_cast<int>(m_aTriangle.size()) <= triangles) return *this;
    // Two triangles a cell.
    const double wide = std::max(m_fHalfWidth, 1e-3f), high = std::max(m_fHalfHeight, 1e-3f);
    const double cells = std::max(triangles / 2, 1);
    const int columns = SaturatedInt(std::sqrt(cells * wide / high), 1, 4096);
    const int rows = SaturatedInt(cells / columns, 1, 4096);
    std::vector<int> kept(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows),
                          -1);  // point of each cell
    std::vector<std::size_t> cellOf(m_aPoint.size());
    for (std::size_t i = 0; i < m_aPoint.size(); ++i) {
        const Point& p = m_aPoint[i];
        const auto part = [](double v, double half, int count) {
            return SaturatedInt((v / half + 1) / 2 * count, 0, count - 1);
        };
        const std::size_t cell =
            static_cast<std::size_t>(part(p.y, high, rows)) * static_cast<std::size_t>(columns) +
            static_cast<std::size_t>(part(p.x, wide, columns));
        cellOf[i] = cell;
        const auto outlying = [&](int at) {
            return std::fabs(m_aPoint[static_cast<std::size_t>(at)].t - 0.5f);
        };
        if (kept[cell] < 0 || outlying(static_cast<int>(i)) > outlying(kept[cell]))
            kept[cell] = static_cast<int>(i);
    }
    FieldRelief thin;
    thin.m_fHalfWidth = m_fHalfWidth;
    thin.m_fHalfHeight = m_fHalfHeight;
    for (const Triangle& whole : m_aTriangle) {
        Triangle t;
        for (std::size_t k = 0; k < 3; ++k) t[k] = kept[cellOf[static_cast<std::size_t>(whole[k])]];
        if (t[0] == t[1] || t[1] == t[2] || t[2] == t[0]) continue;
        std::rotate(t.begin(), std::min_element(t.begin(), t.end()), t.end());
        thin.m_aTriangle.push_back(t);
    }
    std::sort(thin.m_aTriangle.begin(), thin.m_aTriangle.end());
    thin.m_aTriangle.erase(std::unique(thin.m_aTriangle.begin(), thin.m_aTriangle.end()),
                           thin.m_aTriangle.end());
    std::vector<int> place(m_aPoint.size(), -1);  // among the points that are left
    for (Triangle& t : thin.m_aTriangle)
        for (int& corner : t) {
            int& at = place[static_cast<std::size_t>(corner)];
            if (at < 0) {
                at = static_cast<int>(thin.m_aPoint.size());
                thin.m_aPoint.push_back(m_aPoint[static_cast<std::size_t>(corner)]);
            }
            corner = at;
        }
    return thin;
}

namespace {

/// A point as it is seen: pixel, nearness, value and light.
struct Seen {
    double x = 0, y = 0;
    float near = 0;
    float t = 0;
    float light = 0;  // 0 to kShades - 1
};

constexpr int kShades = 32;

class Painter {
public:
    Painter(const ReliefView& view, const CRect& clip, CSurface& surface)
        : m_view(view), m_plane(view.alpha, view.beta), m_clip(Within(clip, surface)), m_surface(surface) {
        const auto pixels = static_cast<std::size_t>(std::max(m_clip.Width(), 0)) *
                            static_cast<std::size_t>(std::max(m_clip.Height(), 0));
        m_near.assign(pixels, std::numeric_limits<float>::lowest());
    }

    Seen See(float x, float y, float t, float light = 0) const {
        const float z = (t - 0.5f) * m_view.lift, depth = m_plane.Depth(x, y);
        return {m_view.x + static_cast<double>(m_plane.U(x, y)) * m_view.scale,
                m_view.y - static_cast<double>(m_plane.V(z, depth)) * m_view.scale,
                z * m_plane.beta.sin - depth * m_plane.beta.cos, t, light};
    }

    /// Every pixel whose centre the triangle holds, both borders included, so that neighbours leave no gap.
    void Fill(const Seen& a, const Seen& b, const Seen& c, const std::vector<std::uint32_t>& colors) {
        const double area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
        if (!(std::fabs(area) > 1e-9)) return;
        const int left = First({a.x, b.x, c.x}, m_clip.left), right = Last({a.x, b.x, c.x}, m_clip.right);
        const int top = First({a.y, b.y, c.y}, m_clip.top), bottom = Last({a.y, b.y, c.y}, m_clip.bottom);
        // Everything is linear over the triangle: shares of its corners, nearness, value and light.
        const double vx = (c.y - a.y) / area, vy = (a.x - c.x) / area, wx = (a.y - b.y) / area,
                     wy = (b.x - a.x) / area;
        const auto along = [](float p, float q, float r) {
            return std::array{static_cast<double>(q - p), static_cast<double>(r - p)};
        };
        const auto n = along(a.near, b.near, c.near), t = along(a.t, b.t, c.t),
                   l = along(a.light, b.light, c.light);
        for (int y = top; y < bottom; ++y) {
            std::uint32_t* const row = m_surface.Row(y);
            float* const nearRow = &m_near[Row(y)];
            const double dx = left + 0.5 - a.x, dy = y + 0.5 - a.y;
            const double v0 = dx * vx + dy * vy, w0 = dx * wx + dy * wy;
            for (int x = left; x < right; ++x) {
                const double v = v0 + (x - left) * vx, w = w0 + (x - left) * wx;
                if (v < -kRounding || w < -kRounding || v + w > 1 + kRounding) continue;
                float& near = nearRow[x - m_clip.left];
                const float here = static_cast<float>(static_cast<double>(a.near) + v * n[0] + w * n[1]);
                if (here <= near) continue;
                near = here;
                const int shade =
                    SaturatedInt(static_cast<double>(a.light) + v * l[0] + w * l[1] + 0.5, 0, kShades - 1);
                const int color =
                    SaturatedInt((static_cast<double>(a.t) + v * t[0] + w * t[1]) * 256, 0, 255);
                row[x] = colors[static_cast<std::size_t>(shade * 256 + color)];
            }
        }
    }

    /// A line that the surface hides where it lies before it.
    void Line(const Seen& a, const Seen& b, std::uint32_t color) {
        const double length = std::max(std::fabs(b.x - a.x), std::fabs(b.y - a.y));
        // Of a line that reaches far out only the part is walked that the clip may show.
        double from = 0, to = 1;
        const auto cut = [&](double p, double d, double low, double high) {
            if (d == 0) return;
            const double s = (low - p) / d, e = (high - p) / d;
            from = std::max(from, std::min(s, e));
            to = std::min(to, std::max(s, e));
        };
        cut(a.x, b.x - a.x, m_clip.left, m_clip.right);
        cut(a.y, b.y - a.y, m_clip.top, m_clip.bottom);
        if (!(from <= to)) return;
        const int steps = SaturatedInt(std::ceil(length * (to - from)), 1, 100000);
        for (int i = 0; i <= steps; ++i) {
            const double s = from + (to - from) * i / steps;
            const int x = SaturatedInt(std::floor(a.x + (b.x - a.x) * s)),
                      y = SaturatedInt(std::floor(a.y + (b.y - a.y) * s));
            if (!m_clip.PtInRect({x, y})) continue;
            const float here =
                static_cast<float>(static_cast<double>(a.near) + static_cast<double>(b.near - a.near) * s);
            if (here > m_near[Row(y) + static_cast<std::size_t>(x - m_clip.left)])
                m_surface.Row(y)[x] = color;
        }
    }

private:
    static constexpr double kRounding = 1e-9;

    static CRect Within(const CRect& clip, const CSurface& surface) {
        CRect r(std::max(clip.left, 0), std::max(clip.top, 0), std::min(clip.right, surface.Width()),
                std::min(clip.bottom, surface.Height()));
        if (r.IsRectEmpty()) r = {};
        return r;
    }
    std::size_t Row(int y) const {
        return static_cast<std::size_t>(y - m_clip.top) * static_cast<std::size_t>(m_clip.Width());
    }
    static int First(std::initializer_list<double> v, int border) {
        return std::max(border, SaturatedInt(std::floor(std::min(v)), -1, 1 << 20));
    }
    static int Last(std::initializer_list<double> v, int border) {
        return std::min(border, SaturatedInt(std::floor(std::max(v)), -2, 1 << 20) + 1);
    }

    ReliefView m_view;
    PlaneView m_plane;
    CRect m_clip;
    CSurface& m_surface;
    std::vector<float> m_near;  // of what stands at each pixel of the clip
};

/// The colours in each shade, the darkest first.
std::vector<std::uint32_t> Shaded(const ReliefColors& colors) {
    std::vector<std::uint32_t> shaded;
    for (int shade = 0; shade < kShades; ++shade) {
        const double light = 0.6 + 0.4 * shade / (kShades - 1);
        const auto part = [&](int v) { return SaturatedInt(v * light + 0.5, 0, 255); };
        for (const COLORREF c : colors)
            shaded.push_back(PixelFromColor(RGB(part(GetRValue(c)), part(GetGValue(c)), part(GetBValue(c)))));
    }
    return shaded;
}

/// How much light each point gets by the mean of its triangles: all of it where they lie flat or lean to the
/// light.
std::vector<float> Lights(const FieldRelief& relief, float lift) {
    struct Normal {
        float x = 0, y = 0, z = 0;
    };
    const auto& points = relief.Points();
    std::vector<Normal> normals(points.size());
    for (const FieldRelief::Triangle& triangle : relief.Triangles()) {
        const auto at = [&](std::size_t k) { return static_cast<std::size_t>(triangle[k]); };
        const FieldRelief::Point &a = points[at(0)], &b = points[at(1)], &c = points[at(2)];
        const float ux = b.x - a.x, uy = b.y - a.y, uz = (b.t - a.t) * lift;
        const float vx = c.x - a.x, vy = c.y - a.y, vz = (c.t - a.t) * lift;
        Normal n{uy * vz - uz * vy, uz * vx - ux * vz, ux * vy - uy * vx};
        if (n.z < 0) n = {-n.x, -n.y, -n.z};  // however the file lists its corners
        for (std::size_t k = 0; k < 3; ++k) {
            normals[at(k)].x += n.x;
            normals[at(k)].y += n.y;
            normals[at(k)].z += n.z;
        }
    }
    std::vector<float> lights;
    lights.reserve(points.size());
    for (const Normal& n : normals) {
        const float length = std::sqrt(n.x * n.x + n.y * n.y + n.z * n.z);
        const float light = length > 0 ? (-0.36f * n.x + 0.36f * n.y + 0.86f * n.z) / length / 0.86f : 1;
        lights.push_back(std::clamp(light, 0.0f, 1.0f) * (kShades - 1));
    }
    return lights;
}

}  // namespace

void PaintRelief(const FieldRelief& relief, const ReliefView& view, const ReliefColors& colors,
                 COLORREF frame, const CRect& clip, CSurface& surface) {
    Painter painter(view, clip, surface);
    const std::vector<FieldRelief::Point>& points = relief.Points();
    const std::vector<float> lights = Lights(relief, view.lift);
    std::vector<Seen> seen;
    seen.reserve(points.size());
    for (std::size_t i = 0; i < points.size(); ++i)
        seen.push_back(painter.See(points[i].x, points[i].y, points[i].t, lights[i]));
    const std::vector<std::uint32_t> shaded = Shaded(colors);
    for (const FieldRelief::Triangle& t : relief.Triangles())
        painter.Fill(seen[static_cast<std::size_t>(t[0])], seen[static_cast<std::size_t>(t[1])],
                     seen[static_cast<std::size_t>(t[2])], shaded);
    if (points.empty()) return;
    const float w = relief.HalfWidth(), h = relief.HalfHeight();
    const Seen corners[] = {painter.See(-w, -h, 0), painter.See(w, -h, 0), painter.See(w, h, 0),
                            painter.See(-w, h, 0)};
    for (std::size_t i = 0; i < 4; ++i) painter.Line(corners[i], corners[(i + 1) % 4], PixelFromColor(frame));
}
