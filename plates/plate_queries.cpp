#include "plates/plate_queries.h"

#include <algorithm>

#include "geometry/angles.h"
#include "geometry/tolerance.h"
#include "net/gj_net_line.h"
#include "plates/mian_goujian.h"

namespace {

// The corners of a rectangle, in order. Vertices that turn by a straight angle are no corners; false when
// another one is neither, or the corners are not four.
template <class VertexAt>
bool FindCorners(int n, VertexAt vertexAt, float tolerance, CFPoint* corners) {
    const auto is = [tolerance](float angle, float wanted) {
        return angle >= wanted - tolerance && angle <= wanted + tolerance;
    };
    int count = 0;
    for (int i = 0; i < n; ++i) {
        const CFPoint before = vertexAt(i > 0 ? i - 1 : n - 1), at = vertexAt(i),
                      after = vertexAt(i + 1 < n ? i + 1 : 0);
        float first, angle, third;
        get_triangle_inter_angle(before.x, before.y, at.x, at.y, after.x, after.y, first, angle, third);
        if (is(angle, 90)) {
            if (count == 4) return false;
            corners[count++] = at;
        } else if (!is(angle, 180)) {
            return false;
        }
    }
    return count == 4;
}

template <class VertexAt>
int IsRectangle(int n, VertexAt vertexAt, float& width, float& height, float& angle, float tolerance,
                CFPoint* corners) {
    CFPoint c[4];
    if (!FindCorners(n, vertexAt, tolerance, c)) return 0;
    width = get_dist(c[0].x, c[0].y, c[1].x, c[1].y);
    height = get_dist(c[1].x, c[1].y, c[2].x, c[2].y);
    angle = get_line_angle(c[0].x, c[0].y, c[1].x, c[1].y) / tolerance::kHalfTurnF * 180.0f;
    if (corners) std::copy(c, c + 4, corners);
    return 1;
}

}  // namespace

int IsRectangleRegion(CFRegion& region, float& width, float& height, float& angle, float tolerance,
                      CFPoint* corners) {
    for (const CFShoot& vertex : region)
        if (vertex.IsArc()) return 0;
    const auto vertexAt = [&region](int i) -> CFPoint { return region[i]; };
    return IsRectangle(region.GetSize(), vertexAt, width, height, angle, tolerance, corners);
}

int IsRectanglePlate(CGridDataBase*, CMianGouJian* plate, float& width, float& height, float& angle,
                     float tolerance, CFPoint* corners) {
    if (!plate) return 0;
    for (const CGjNetLine* line : plate->m_arrXingZhuangLine)
        if (line->m_nArc) return 0;
    const auto vertexAt = [plate](int i) {
        const CGjNetLine* line = plate->m_arrXingZhuangLine[i];
        return plate->m_arrXingZhuangDir[i] ? line->GetStartPoint() : line->GetEndPoint();
    };
    return IsRectangle(plate->m_arrXingZhuangLine.GetSize(), vertexAt, width, height, angle, tolerance,
                       corners);
}
