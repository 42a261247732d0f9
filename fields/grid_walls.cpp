#include "fields/grid_walls.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "fields/grid_positions.h"
#include "geometry/fpoint.h"
#include "geometry/projection.h"
#include "platform/canvas/dc.h"

namespace {

struct DeviceLine {
    CPoint from, to;

    bool operator==(const DeviceLine&) const = default;
};

/// A family of parallel lines: one for each position of an axis, between fixed values of the others.
class WallLines {
public:
    WallLines(CDC& dc, const Projection& view, const CRect& clip) : m_dc(dc), m_view(view), m_clip(clip) {}

    /// `ends(position)` gives the two model points of a line.
    template <class Ends>
    void Draw(const GridPositions& axis, Ends ends) {
        const auto line = [&](float at) {
            const auto [from, to] = ends(at);
            return DeviceLine{m_view.Point(from.x, from.y, from.z), m_view.Point(to.x, to.y, to.z)};
        };
        const float* first = axis.ascending.data();
        const float* end = first + axis.ascending.size();
        NarrowToSeen(first, end, line);
        m_drawn = false;
        for (; first != end; ++first) DrawLine(line(*first));
        for (const float at : axis.wild) DrawLine(line(at));
    }

private:
    // Both ends of the lines go in order over the device, so that those on the far side of an edge of the
    // clip are the first or the last of the axis. Where the tilt's sine is 0, rows are not in order once
    // depths overflow.
    template <class Line>
    void NarrowToSeen(const float*& first, const float*& end, Line line) const {
        const auto drop = [&](auto beyond) {
            const auto out = [&](const float& at) {
                const DeviceLine l = line(at);
                return beyond(l.from) && beyond(l.to);
            };
            if (first != end && out(*first)) first = std::partition_point(first, end, out);
            if (first != end && out(end[-1])) end = std::partition_point(first, end, std::not_fn(out));
        };
        drop([&](const CPoint& p) { return p.x < m_clip.left; });
        drop([&](const CPoint& p) { return p.x >= m_clip.right; });
        if (m_view.beta.sin == 0) return;
        drop([&](const CPoint& p) { return p.y < m_clip.top; });
        drop([&](const CPoint& p) { return p.y >= m_clip.bottom; });
    }

    // Drawn twice with a copying pen a line is drawn once.
    void DrawLine(const DeviceLine& line) {
        if (m_drawn && line == m_last && m_dc.GetROP2() == R2_COPYPEN) return;
        m_dc.MoveTo(line.from);
        m_dc.LineTo(line.to);
        m_last = line;
        m_drawn = true;
    }

    CDC& m_dc;                 // borrowed
    const Projection& m_view;  // borrowed
    const CRect& m_clip;       // borrowed; pixels outside are not seen
    DeviceLine m_last;         // drawn before this one
    bool m_drawn = false;      // is there such a line?
};

}  // namespace

void DrawGridWalls(CDC& dc, const Projection& view, const CRect& clip, const GridPositions& x,
                   const GridPositions& y, const GridPositions& z) {
    using Ends = std::pair<CFPoint, CFPoint>;
    const CFPoint o(x.origin, y.origin, z.origin), end(x.last, y.last, z.last);
    WallLines lines(dc, view, clip);
    lines.Draw(x, [&](float at) { return Ends({at, o.y, o.z}, {at, end.y, o.z}); });
    lines.Draw(x, [&](float at) { return Ends({at, o.y, o.z}, {at, o.y, end.z}); });
    lines.Draw(y, [&](float at) { return Ends({o.x, at, o.z}, {end.x, at, o.z}); });
    lines.Draw(y, [&](float at) { return Ends({o.x, at, o.z}, {o.x, at, end.z}); });
    lines.Draw(z, [&](float at) { return Ends({o.x, o.y, at}, {end.x, o.y, at}); });
    lines.Draw(z, [&](float at) { return Ends({o.x, o.y, at}, {o.x, end.y, at}); });
}
