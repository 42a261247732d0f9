// The arithmetic of a view's transform, point by point: what CFCoor does, with the angles looked up once.
#pragma once
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "geometry/fcoor.h"
#include "platform/saturate.h"

inline constexpr int kDeviceLimit = 1 << 30;

// Rounds 2sd / 2: doubled and increased by one, cut towards zero, halved towards zero. To the nearest for
// positive values, towards zero less one half for negative ones.
inline int RoundedDevice(double doubledPlusOne) {
    const std::int64_t half = SaturatedInt64(doubledPlusOne) / 2;
    return static_cast<int>(std::clamp<std::int64_t>(half, -kDeviceLimit, kDeviceLimit));
}

/// Sine and cosine of a view's angle. A plan has the same two angles for every point; their values are those
/// that the float functions give.
struct Turn {
    explicit Turn(float angle) {
        if (angle == 0) {
            cos = 1;
            sin = angle;
        } else if (angle == 1.5707964f) {
            cos = -4.37113883e-08f;
            sin = 1;
        } else {
            cos = std::cos(angle);
            sin = std::sin(angle);
        }
    }
    float cos, sin;
};

/// The axonometric projection to a plane's u and v.
struct PlaneView {
    PlaneView(float turn, float tilt) : alpha(turn), beta(tilt) {}

    float U(float x, float y) const { return x * alpha.cos + y * alpha.sin; }
    float Depth(float x, float y) const { return y * alpha.cos - x * alpha.sin; }  // before the tilt
    float V(float z, float depth) const { return z * beta.cos + depth * beta.sin; }

    Turn alpha, beta;  // about the vertical; the tilt
};

/// From the plane to the device.
struct DeviceScale {
    explicit DeviceScale(const CFCoor& coor)
        : x(coor.m_cOrigin.x), y(coor.m_cOrigin.y), scale(coor.m_fScale), reverse(coor.m_bReverseY != 0) {}

    int Column(float u) const { return Rounded(u - x); }
    int Row(float v) const { return Rounded(reverse ? y - v : v - y); }
    int Rounded(float d) const { return RoundedDevice(2.0f * scale * d + 1.0f); }

    float x, y;    // the point of the plane at device (0, 0)
    float scale;   // device units per model unit
    bool reverse;  // device y grows downwards
};

/// Both. Each step rounds to float, and rounding keeps order: as long as no step overflows, column and row
/// grow or fall with each of x, y and z by itself.
struct Projection : PlaneView, DeviceScale {
    explicit Projection(const CFCoor& coor) : PlaneView(coor.m_fAlpha, coor.m_fBeta), DeviceScale(coor) {}

    CPoint Point(float px, float py, float pz) const {
        return {Column(U(px, py)), Row(V(pz, Depth(px, py)))};
    }
};
