// CFRect: an axis-parallel box.
#pragma once
#include "geometry/fpoint.h"

/// A box of four floats, stored as given: a box whose minima exceed its maxima is nobody's special case.
/// There is no "empty" box; a default one is the origin, and takes part in unions as such.
class CFRect {
public:
    constexpr CFRect() = default;
    constexpr CFRect(float minX, float minY, float maxX, float maxY)
        : m_fMinX(minX), m_fMinY(minY), m_fMaxX(maxX), m_fMaxY(maxY) {}
    constexpr CFRect(const CFPoint& a, const CFPoint& b)  // any two opposite corners
        : m_fMinX(Lower(a.x, b.x)),
          m_fMinY(Lower(a.y, b.y)),
          m_fMaxX(Upper(a.x, b.x)),
          m_fMaxY(Upper(a.y, b.y)) {}

    float Width() const { return m_fMaxX - m_fMinX; }
    float Height() const { return m_fMaxY - m_fMinY; }
    CFPoint Nearest() const { return {m_fMinX, m_fMinY, 0}; }   // the corner of the minima
    CFPoint Furthest() const { return {m_fMaxX, m_fMaxY, 0}; }  // the corner of the maxima

    /// The box that encloses both.
    [[nodiscard]] CFRect UnionFRect(const CFRect& o) const {
        return {Lower(m_fMinX, o.m_fMinX), Lower(m_fMinY, o.m_fMinY), Upper(m_fMaxX, o.m_fMaxX),
                Upper(m_fMaxY, o.m_fMaxY)};
    }
    CFRect operator|(const CFRect& o) const { return UnionFRect(o); }

    /// In the box grown by tol on every side, bounds included.
    int FpInFRect(float x, float y, float tol) const {
        return x >= m_fMinX - tol && x <= m_fMaxX + tol && y >= m_fMinY - tol && y <= m_fMaxY + tol;
    }
    int FpInFRect(const CFPoint& p, float tol) const { return FpInFRect(p.x, p.y, tol); }

    float m_fMinX = 0;
    float m_fMinY = 0;
    float m_fMaxX = 0;
    float m_fMaxY = 0;

private:
    static constexpr float Lower(float a, float b) { return b < a ? b : a; }
    static constexpr float Upper(float a, float b) { return a < b ? b : a; }
};
