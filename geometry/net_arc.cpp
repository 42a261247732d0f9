#include "geometry/net_arc.h"

#include <algorithm>
#include <cmath>

#include "geometry/angles.h"
#include "geometry/tolerance.h"

namespace net_arc {

Arc FromBulge(float x0, float y0, float x1, float y1, float bulgeDegrees) {
    // The angle at the chord's end, between the chord and the line to the centre.
    const float v = 90.0f - std::clamp(-bulgeDegrees, 0.0f, 180.0f);
    const float t = v * tolerance::kHalfTurnF / 180.0f;
    const float half = get_dist(x0, y0, x1, y1) / 2.0f;
    const float height =
        v > -45.0f && v < 45.0f ? half * std::tan(t) : half / std::cos(t) * std::sin(t);  // centre over chord

    Arc arc{half, height, 0, 0, 0};
    frame_to_model(get_line_angle(x0, y0, x1, y1), x0, y0, &arc.cx, &arc.cy);
    arc.r = get_dist(arc.cx, arc.cy, x0, y0);
    arc.start = get_line_angle(arc.cx, arc.cy, x0, y0);
    arc.end = get_line_angle(arc.cx, arc.cy, x1, y1);
    if (arc.start > arc.end) arc.end += tolerance::kFullTurnF;
    return arc;
}

Ends FromDirections(const CFPoint& centre, float r, float start, float end) {
    if (start < 0) start += 360;
    if (end < 0) end += 360;
    if (start > end) end += 360;
    const auto pointAt = [&](float degrees) {
        const float t = degrees * tolerance::kHalfTurnF / 180.0f;
        return CFPoint(centre.x + r * std::cos(t), centre.y + r * std::sin(t), 0);
    };
    return {pointAt(start), pointAt(end), static_cast<float>(-(static_cast<double>(end - start)) / 2)};
}

}  // namespace net_arc
