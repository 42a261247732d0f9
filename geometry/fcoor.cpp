#include "geometry/fcoor.h"

#include <algorithm>
#include <cmath>

#include "geometry/projection.h"

int CFCoor::FPtoDP(double length) const { return RoundedDevice(2.0 * m_fScale * length + 1.0); }

CPoint CFCoor::FP2toDP(const CFPoint& p) const {
    const DeviceScale device(*this);
    return {device.Column(p.x), device.Row(p.y)};
}

CPoint CFCoor::FPtoDP(const CFPoint& p) const { return Projection(*this).Point(p.x, p.y, p.z); }

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
    const PlaneView view(alpha, beta);
    u = view.U(x, y);
    v = view.V(z, view.Depth(x, y));
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
