#include "fields/cloud_raster.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "fields/field_locator.h"
#include "fields/field_palette.h"
#include "platform/saturate.h"

namespace {

/// A corner in pixels: (0.5, 0.5) is the centre of the top left one.
struct Corner {
    double u, v, value;
};

/// Columns or rows whose centres lie within a stretch.
struct Stretch {
    int first, last;
};
Stretch Centres(double low, double high, int count) {
    return {SaturatedInt(std::ceil(low - 0.5), 0, count),
            SaturatedInt(std::floor(high - 0.5), -1, count - 1)};
}

/// Paints each pixel once, however many triangles lie on top of each other: each pixel knows how far behind
/// it the next one in its row is that is still free.
class CloudPainter {
public:
    CloudPainter(CSurface& surface, const CloudColors& colors) : m_surface(surface), m_colors(colors) {
        const auto width = static_cast<std::size_t>(surface.Width());
        m_aNext.resize((width + 1) * static_cast<std::size_t>(surface.Height()));
        for (std::size_t i = 0; i < m_aNext.size(); ++i) m_aNext[i] = static_cast<int>(i % (width + 1));
        m_nFree = width * static_cast<std::size_t>(surface.Height());
    }

    bool IsFull() const { return m_nFree == 0; }

    void Paint(const std::array<Corner, 3>& c) {
        const auto [lowU, highU] = std::minmax({c[0].u, c[1].u, c[2].u});
        const auto [lowV, highV] = std::minmax({c[0].v, c[1].v, c[2].v});
        const double reach = kFieldTolerance * std::hypot(highU - lowU, highV - lowV);
        const Stretch rows = Centres(lowV - reach, highV + reach, m_surface.Height());
        const Stretch columns = Centres(lowU - reach, highU + reach, m_surface.Width());
        if (rows.first > rows.last || columns.first > columns.last) return;  // lies between the centres
        const double area = (c[1].u - c[0].u) * (c[2].v - c[0].v) - (c[2].u - c[0].u) * (c[1].v - c[0].v);
        if (!(area != 0) || !std::isfinite(area)) return;
        const double d1 = c[1].value - c[0].value, d2 = c[2].value - c[0].value;
        const double byU = (d1 * (c[2].v - c[0].v) - d2 * (c[1].v - c[0].v)) / area;
        const double byV = (d2 * (c[1].u - c[0].u) - d1 * (c[2].u - c[0].u)) / area;
        const auto [least, most] = std::minmax({c[0].value, c[1].value, c[2].value});
        for (int y = rows.first; y <= rows.last; ++y) {
            const double v = y + 0.5;
            const auto [from, to] = Section(c, std::clamp(v, lowV, highV));
            const Stretch part = Centres(from - reach, to + reach, m_surface.Width());
            const double start = c[0].value + byV * (v - c[0].v) - byU * c[0].u;
            std::uint32_t* const row = m_surface.Row(y);
            for (int x = FirstFree(y, part.first); x <= part.last; x = FirstFree(y, x + 1)) {
                const double value = std::clamp(start + byU * (x + 0.5), least, most);
                row[x] =
                    m_colors
                        .pixel[static_cast<std::size_t>(FieldColorStep(value, m_colors.min, m_colors.max))];
                Entry(y, x) = x + 1;
                --m_nFree;
            }
        }
    }

private:
    /// Where the triangle is cut by a row.
    static std::pair<double, double> Section(const std::array<Corner, 3>& c, double v) {
        double from = HUGE_VAL, to = -HUGE_VAL;
        for (std::size_t k = 0; k < 3; ++k) {
            const Corner &a = c[k], &b = c[(k + 1) % 3];
            if (v < std::min(a.v, b.v) || v > std::max(a.v, b.v)) continue;
            const double t = a.v == b.v ? 0 : (v - a.v) / (b.v - a.v);
            const double u = a.u + t * (b.u - a.u);
            from = std::min({from, u, a.v == b.v ? b.u : u});
            to = std::max({to, u, a.v == b.v ? b.u : u});
        }
        return {from, to};
    }

    int& Entry(int y, int x) {
        return m_aNext[static_cast<std::size_t>(y) * (static_cast<std::size_t>(m_surface.Width()) + 1) +
                       static_cast<std::size_t>(x)];
    }
    /// The first free column at or behind x; the width if there is none. Shortens the way for the next asker.
    int FirstFree(int y, int x) {
        int free = x;
        while (Entry(y, free) != free) free = Entry(y, free);
        while (x != free) x = std::exchange(Entry(y, x), free);
        return free;
    }

    CSurface& m_surface;
    const CloudColors& m_colors;
    std::vector<int> m_aNext;  // by row, with one entry more than columns
    std::size_t m_nFree;       // pixels not painted yet
};

}  // namespace

void PaintCloud(const CChang& field, const CFieldMesh& mesh, const CFRect& box, const CloudColors& colors,
                CSurface& surface) {
    const double minX = static_cast<double>(box.m_fMinX), maxY = static_cast<double>(box.m_fMaxY);
    const double perX = surface.Width() / (static_cast<double>(box.m_fMaxX) - minX);
    const double perY = surface.Height() / (maxY - static_cast<double>(box.m_fMinY));
    if (!std::isfinite(perX) || !std::isfinite(perY)) return;  // no area
    CloudPainter painter(surface, colors);
    CFieldMesh::Corners at;
    for (const CChangTri& tri : field.m_arrTri) {
        if (painter.IsFull()) return;
        if (!mesh.FindUsable(tri, at)) continue;
        std::array<Corner, 3> corners;
        for (std::size_t k = 0; k < 3; ++k) {
            const CChangNode& node = mesh.Node(at[k]);
            corners[k] = {(static_cast<double>(node.m_fX) - minX) * perX,
                          (maxY - static_cast<double>(node.m_fY)) * perY,
                          static_cast<double>(mesh.Value(at[k]))};
        }
        painter.Paint(corners);
    }
}
