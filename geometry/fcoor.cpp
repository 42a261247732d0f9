#include "geometry/fcoor.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "platform/saturate.h"

namespace {

constexpr int kDeviceLimit = 1 << 30;

// Rounds 2sd / 2: doubled and increased by one, cut towards zero, halved towards zero. To the nearest for
// positive values, towards zero less one half for negative ones.
int Rounded(double doubledPlusOne) {
    const std::int64_t half = SaturatedInt64(doubledPlusOne) / 2;
    return static_cast<int>(std::clamp<std::int64_t>(half, -kDeviceLimit, kDeviceLimit));
}

int DeviceValue(float scale, float d) { return Rounded(2.0f * scale * d + 1.0f); }

// Sine and cosine of a view's angle. A plan has the same two angles for every point; their values are those
// that the float functions give.
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

void Project(float x, float y, float z, const Turn& a, const Turn& b, float& u, float& v) {
    u = x * a.cos + y * a.sin;
    v = z * b.cos + (y * a.cos - x * a.sin) * b.sin;
}

CPoint DevicePoint(const CFCoor& c, float x, float y) {
    return {DeviceValue(c.m_fScale, x - c.m_cOrigin.x),
            DeviceValue(c.m_fScale, c.m_bReverseY ? c.m_cOrigin.y - y : y - c.m_cOrigin.y)};
}

}  // namespace

int CFCoor::FPtoDP(double length) const { return Rounded(2.0 * m_fScale * length + 1.0); }

CPoint CFCoor::FP2toDP(const CFPoint& p) const { return DevicePoint(*this, p.x, p.y); }

CPoint CFCoor::FPtoDP(const CFPoint& p) const {
    float u, v;
    Project(p.x, p.y, p.z, Turn(m_fAlpha), Turn(m_fBeta), u, v);
    return DevicePoint(*this, u, v);
}

CRect CFCoor::FPtoDP(const CFRect& rect) const {
    const CPoint corners[] = {
        FPtoDP(CFPoint(rect.m_fMinX, rect.m_fMinY, 0)), FPtoDP(CFPoint(rect.m_fMaxX, rect.m_fMinY, 0)),
        FPtoDP(CFPoint(rect.m_fMaxX, rect.m_fMaxY, 0)), FPtoDP(CFPoint(rect.m_fMinX, rect.m_fMaxY, 0))};
    CRect box(corners[0], corners[0]);
    for (const CPoint& p : corners) {
        box.left = std::min(box.left, p.x);
        box.top = std::min(box.top, p.y);
        box.right = std::max(box.right, p.x);
        box.bottom = std::max(box.bottom, p.y);
    }
    return box;
}

double CFCoor::DPtoFP(int length) const { return static_cast<float>(length) / m_fScale; }

CFPoint CFCoor::DPtoFP(const CPoint& p) const {
    const float px = static_cast<float>(p.x) / m_fScale, py = static_cast<float>(p.y) / m_fScale;
    return CFPoint(px, m_bReverseY ? -py : py, 0) + m_cOrigin;
}

CFPoint CFCoor::DPtoFP3(const CPoint& p) const {
    const CFPoint plane = DPtoFP(p);
    CFPoint model;
    FanTouYing2Dto3D(plane.x, plane.y, m_fAlpha, m_fBeta, model.x, model.y, model.z);
    return model;
}

CFRect CFCoor::DPtoFP(const CRect& rect) const {
    return {DPtoFP(rect.TopLeft()), DPtoFP(rect.BottomRight())};
}

void CFCoor::TouYing3Dto2D(float x, float y, float z, float alpha, float beta, float& u, float& v) const {
    Project(x, y, z, Turn(alpha), Turn(beta), u, v);
}

void CFCoor::FanTouYing2Dto3D(float u, float v, float alpha, float beta, float& x, float& y, float& z) const {
    const Turn a(alpha), b(beta);
    if (std::fabs(b.sin) > tolerance::kLevelSine) {
        x = u * a.cos - v * a.sin / b.sin;
        y = std::fabs(a.sin) > tolerance::kLevelSine ? (u - x * a.cos) / a.sin : v / (a.cos * b.sin);
        z = 0;
    } else {  // the view looks along the plane
        z = v;
        x = u * a.cos;
        y = u * a.sin;
    }
}

CFPoint CFCoor::PointTouYing(CFPoint p) const {
    CFPoint plane;
    TouYing3Dto2D(p.x, p.y, p.z, m_fAlpha, m_fBeta, plane.x, plane.y);
    return plane;
}
