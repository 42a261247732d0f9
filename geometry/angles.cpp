#include "geometry/angles.h"

#include <cmath>
#include <utility>

#include "geometry/tolerance.h"

using tolerance::kFullTurnF;
using tolerance::kZeroAngle;

float Get2PIAngle(float a) {
    if (!std::isfinite(a)) return 0;
    a -= kFullTurnF * std::trunc(a / kFullTurnF);
    if (std::fabs(static_cast<double>(a)) < kZeroAngle) return 0;
    // From about 1e8 the product is rounded to more than a turn, and single turns would get lost in it.
    if (std::fabs(a) > 8 * kFullTurnF) a = std::fmod(a, kFullTurnF);
    while (a < 0) a += kFullTurnF;
    while (a >= kFullTurnF) a -= kFullTurnF;
    return a;
}

float get_dist(float x1, float y1, float x2, float y2) {
    const float dx = x2 - x1, dy = y2 - y1;
    return std::sqrt(dx * dx + dy * dy);
}

float get_line_angle(float x1, float y1, float x2, float y2) {
    // A difference of -0 would turn coincident points to the left.
    float a = std::atan2(y2 - y1 + 0.0f, x2 - x1 + 0.0f);
    // Without this fold an angle that rounding takes just below 0 would come out just below a full turn.
    if (!(std::fabs(static_cast<double>(a)) >= kZeroAngle)) return 0;
    if (a < 0) a += kFullTurnF;
    return a >= kFullTurnF ? 0 : a;
}

namespace {

// The angle at a point between the directions to two others, in degrees.
float AngleAt(float x, float y, float ax, float ay, float bx, float by) {
    const double ux = static_cast<double>(ax) - x, uy = static_cast<double>(ay) - y;
    const double vx = static_cast<double>(bx) - x, vy = static_cast<double>(by) - y;
    if ((ux == 0 && uy == 0) || (vx == 0 && vy == 0)) return 0;
    return static_cast<float>(std::atan2(std::fabs(ux * vy - uy * vx), ux * vx + uy * vy) * 180 / tolerance::kPi);
}

}  // namespace

void get_triangle_inter_angle(float x1, float y1, float x2, float y2, float x3, float y3, float& angle1, float& angle2,
                              float& angle3) {
    angle1 = AngleAt(x1, y1, x2, y2, x3, y3);
    angle2 = AngleAt(x2, y2, x3, y3, x1, y1);
    angle3 = AngleAt(x3, y3, x1, y1, x2, y2);
}

void swap_float(float* a, float* b) { std::swap(*a, *b); }

void shift_coordinate(float dx, float dy, float* x, float* y) {
    *x += dx;
    *y += dy;
}

void rotate_coordinate(float angle, float* x, float* y) {
    const float c = std::cos(angle), s = std::sin(angle);
    const float px = *x, py = *y;
    *x = px * c - py * s;
    *y = px * s + py * c;
}

void frame_to_model(float angle, float x0, float y0, float* x, float* y) {
    rotate_coordinate(angle, x, y);
    shift_coordinate(x0, y0, x, y);
}
