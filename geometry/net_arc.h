// The arc of a net line from its ends and bulge, in float, step by step as the line itself works it; and the
// other way, its ends and bulge from a circle and two directions. Not installed.
#pragma once
#include "geometry/fpoint.h"

namespace net_arc {

/// Circle and directions of an arc that runs anticlockwise from start to end.
struct Arc {
    float cx, cy, r;
    float start, end;  // radians; end is not below start

    float Length() const { return (end - start) * r; }
};

/// bulgeDegrees is minus half the included angle. A positive one (clockwise) counts as 0 and one below -180
/// as -180; nothing guards against the far centres that these give.
Arc FromBulge(float x0, float y0, float x1, float y1, float bulgeDegrees);

struct Ends {
    CFPoint start, end;
    float bulge;  // degrees
};

/// Directions in degrees, anticlockwise from start to end; a turn is added to a negative one, and to an end
/// before the start.
Ends FromDirections(const CFPoint& centre, float r, float start, float end);

}  // namespace net_arc
