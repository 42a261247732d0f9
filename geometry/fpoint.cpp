#include "geometry/fpoint.h"

double direction_of(const CFPoint& from, const CFPoint& to) {
    return std::atan2(to.y - from.y, to.x - from.x);
}

double CFPoint::Distance(const CFPoint& p) const {
    const float dx = p.x - x, dy = p.y - y, dz = p.z - z;
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

CFPoint& CFPoint::Rotate(const CFPoint& centre, double angle) {
    const double d = Distance(centre);
    const double direction = direction_of(centre, *this) + angle;
    x = static_cast<float>(centre.x + d * std::cos(direction));
    y = static_cast<float>(centre.y + d * std::sin(direction));
    return *this;
}

CFPoint& CFPoint::Mirror(const CFPoint& p1, const CFPoint& p2) {
    return Rotate(p1, 2 * (direction_of(p1, p2) - direction_of(p1, *this)));
}

CFPoint& CFPoint::Stretch(const CFPoint& centre, double factor) {
    const auto stretched = [factor](float v, float from) {
        return static_cast<float>(from + (v - from) * factor);
    };
    x = stretched(x, centre.x);
    y = stretched(y, centre.y);
    z = stretched(z, centre.z);
    return *this;
}
