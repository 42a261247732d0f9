// CFCoor: the transform between the model and a view's device.
#pragma once
#include "geometry/fpoint.h"
#include "geometry/frect.h"
#include "platform/win_types.h"

/// Scale, origin, flip of y and an axonometric projection by two angles. Device results stay within +-2^30; a
/// NaN gives 0.
///
/// The two constructors differ on purpose: the default one is a plan; the other sets both angles to 0, an
/// elevation, in which the model's z is the vertical. A plan made with it needs its tilt set to 1.5707964f.
class CFCoor {
public:
    CFCoor() = default;
    CFCoor(const CFPoint& origin, float scale, int reverse)
        : m_cOrigin(origin.x, origin.y, 0), m_fScale(scale), m_bReverseY(reverse != 0), m_fBeta(0) {}

    void Init(const CFPoint& origin, float scale, int reverse) {  // angles and z of the origin stay
        SetOrigin(origin);
        SetScale(scale);
        SetReverse(reverse);
    }
    CFPoint GetOrigin() const { return m_cOrigin; }
    void SetOrigin(const CFPoint& p) {
        m_cOrigin.x = p.x;
        m_cOrigin.y = p.y;
    }
    float GetScale() const { return m_fScale; }
    void SetScale(float scale) { m_fScale = scale; }
    int IsReverseY() const { return m_bReverseY; }
    void SetReverse(int reverse) { m_bReverseY = reverse != 0; }

    // Model to device.
    int FPtoDP(double length) const;
    CPoint FPtoDP(const CFPoint& p) const;   // projected
    CPoint FP2toDP(const CFPoint& p) const;  // x and y as they stand
    CRect FPtoDP(const CFRect& rect) const;  // box of the four projected corners

    // Device to model.
    double DPtoFP(int length) const;
    CFPoint DPtoFP(const CPoint& p) const;   // undoes FP2toDP
    CFPoint DPtoFP3(const CPoint& p) const;  // undoes FPtoDP, on the plane z = 0 or on the vertical
    CFRect DPtoFP(const CRect& rect) const;  // minima and maxima of the two corners

    // The projection and its inverse.
    void TouYing3Dto2D(float x, float y, float z, float alpha, float beta, float& u, float& v) const;
    void FanTouYing2Dto3D(float u, float v, float alpha, float beta, float& x, float& y, float& z) const;
    CFPoint PointTouYing(CFPoint p) const;  // (u, v, 0) with this view's angles

    CFPoint m_cOrigin;              // the model point at device (0, 0)
    float m_fScale = 1.0f;          // device units per model unit
    unsigned char m_bReverseY = 1;  // not 0: device y grows downwards
    CRect m_rcClient;               // the view's device rectangle, kept for the view
    float m_fAlpha = 0;             // rotation about the vertical, radians
    float m_fBeta = 1.5707964f;     // tilt, radians; pi/2 is the plan
};
