#include "platform/intersection.h"

#include <cmath>
#include <limits>
#include <utility>

#include "platform/section_intersection.h"

namespace {

// The points that a procedure has accepted, ready to be handed out.
struct Found {
    int count = 0;
    double x[2] = {0, 0};
    double y[2] = {0, 0};

    void Add(double px, double py) {
        x[count] = px;
        y[count] = py;
        ++count;
    }
    void MergeInto(double px, double py) {
        x[0] = px;
        y[0] = py;
        count = 1;
    }
};

double Allowed(float tol) { return tol > 0 ? static_cast<double>(tol) : 0.0; }

int HandOut(double px, double py, float* x, float* y) {
    const float fx = static_cast<float>(px), fy = static_cast<float>(py);
    if (!std::isfinite(fx) || !std::isfinite(fy)) return 0;
    *x = fx;
    *y = fy;
    return 1;
}

int HandOut(const Found& found, float* x0, float* y0, float* x1, float* y1) {
    if (found.count == 0 || HandOut(found.x[0], found.y[0], x0, y0) == 0) return 0;
    return found.count == 2 ? 1 + HandOut(found.x[1], found.y[1], x1, y1) : 1;
}

}  // namespace

float JH_GetAngle(float ax, float ay, float bx, float by) {
    const float direction = std::atan2(by - ay, bx - ax);
    return direction == direction ? -direction : 0.0f;
}

float JH_GetMinDist_PointToLineSection(float px, float py, float ax, float ay, float bx, float by) {
    const double squared = section::PointSectionDistanceSquared(px, py, ax, ay, bx, by);
    if (squared != squared) return std::numeric_limits<float>::infinity();
    return static_cast<float>(std::sqrt(squared));
}

int JH_GetInterPoint_Line(float ax, float ay, float bx, float by, float cx, float cy, float dx, float dy,
                          float* x, float* y, float /*tol*/) {
    const section::LinePair pair(ax, ay, bx, by, cx, cy, dx, dy);
    if (!pair.Cross()) return 0;
    const double t = pair.t / pair.cross;
    return HandOut(ax + pair.ux * t, ay + pair.uy * t, x, y);
}

int JH_GetInterPoint_LineSection_LineSection(float ax, float ay, float bx, float by, float cx, float cy,
                                             float dx, float dy, float* x, float* y, float tol) {
    const section::LinePair pair(ax, ay, bx, by, cx, cy, dx, dy);
    if (!pair.Cross() || !pair.WithinSections(Allowed(tol))) return 0;
    const double t = pair.t / pair.cross;  // as in JH_GetInterPoint_Line, to the last bit
    return HandOut(ax + pair.ux * t, ay + pair.uy * t, x, y);
}

int JH_GetInterPoint_LineSection_Arc(float ax, float ay, float bx, float by, float cx, float cy, float r,
                                     float start, float end, float* x0, float* y0, float* x1, float* y1,
                                     float tol) {
    if (!(r >= 0)) return 0;
    const double room = Allowed(tol);
    const double ux = static_cast<double>(bx) - ax, uy = static_cast<double>(by) - ay;
    const double wx = static_cast<double>(cx) - ax, wy = static_cast<double>(cy) - ay;
    const section::LineRoots roots = section::LineCircle(ux, uy, wx, wy, r, room);
    if (roots.count == 0) return 0;

    const double uu = ux * ux + uy * uy;
    const section::ArcSpan arc(r, start, end);
    Found found;
    for (int i = 0; i < roots.count; ++i) {
        const double t = roots.t[i];
        const double excess = t < 0 ? -t : std::fmax(t - 1, 0.0);
        if (!(excess * excess * uu <= room * room * section::kSlack)) continue;
        if (arc.Offers(ux * t - wx, uy * t - wy, room)) found.Add(ax + ux * t, ay + uy * t);
    }
    if (found.count == 2 && section::Square(roots.t[1] - roots.t[0]) * uu < room * room) {
        const double middle = (roots.t[0] + roots.t[1]) / 2;
        found.MergeInto(ax + ux * middle, ay + uy * middle);
    }
    return HandOut(found, x0, y0, x1, y1);
}

int JH_GetInterPoint_Arc_Arc(float cx, float cy, float r, float start, float end, float cx2, float cy2,
                             float r2, float start2, float end2, float* x0, float* y0, float* x1, float* y1,
                             float tol) {
    if (!(r >= 0) || !(r2 >= 0)) return 0;
    const double room = Allowed(tol);
    const double dx = static_cast<double>(cx2) - cx, dy = static_cast<double>(cy2) - cy;
    const section::CircleRoots roots = section::CircleCircle(dx, dy, r, r2, room);
    if (roots.count == 0) return 0;

    const section::ArcSpan first(r, start, end), second(r2, start2, end2);
    Found found;
    for (int i = 0; i < roots.count; ++i)
        if (first.Offers(roots.x[i], roots.y[i], room) &&
            second.Offers(roots.x[i] - dx, roots.y[i] - dy, room))
            found.Add(roots.x[i], roots.y[i]);
    if (found.count == 2) {
        if (roots.apart < room) found.MergeInto((found.x[0] + found.x[1]) / 2, (found.y[0] + found.y[1]) / 2);
        else if (first.OffsetOf(found.x[1], found.y[1]) < first.OffsetOf(found.x[0], found.y[0])) {
            std::swap(found.x[0], found.x[1]);
            std::swap(found.y[0], found.y[1]);
        }
    }
    for (int i = 0; i < found.count; ++i) {
        found.x[i] += cx;
        found.y[i] += cy;
    }
    return HandOut(found, x0, y0, x1, y1);
}
