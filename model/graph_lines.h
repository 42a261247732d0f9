// The primitives that are drawn with a pen: lines, arcs and circles.
#pragma once
#include "geometry/fpoint.h"
#include "model/graph_entity.h"

// A negative width is that many pixels at any scale, a positive one is in model units. A pen is never thinner
// than one pixel.

/// A straight line.
class CGraph_Line : public CGraphEntity {
public:
    CGraph_Line() = default;
    CGraph_Line(float x1, float y1, float x2, float y2, float width)
        : m_fX1(x1), m_fY1(y1), m_fX2(x2), m_fY2(y2), m_fWidth(width) {}

    unsigned long GetGraphType() override { return kGraphLine; }
    void Draw(CDC* dc, CFCoor* coor) override;
    void DrawDXF(CBase_SGT* dxf, CFCoor* coor) override;
    using CGraphEntity::HitTest;
    int HitTest(const CFRegion& region, int mode) override;
    CFRect GetFrect() override;
    void QueryAbsSnapPoint(unsigned int mode, CArray<CFPoint>& points, CArray<int>& kinds) override;

    /// The point at parameter t: 0 is the start, 1 the end.
    CFPoint GetMidPoint(float t) const;

    float m_fX1 = 0, m_fY1 = 0;      // start
    float m_fX2 = 100, m_fY2 = 100;  // end
    float m_fWidth = 1.0f;
};

/// A circular arc, anticlockwise from m_fStart to m_fEnd. The angles are taken as they are, never normalised:
/// from 300 to 60 degrees it is hit along the 120 degrees over zero, but painted and snapped by the plain
/// difference of -240. Whoever wants the short way gives 300 and 420.
class CGraph_Arc : public CGraphEntity {
public:
    CGraph_Arc() = default;
    CGraph_Arc(float x, float y, float r, float start, float end, float width)
        : m_fX(x), m_fY(y), m_fR(r), m_fStart(start), m_fEnd(end), m_fWidth(width) {}

    unsigned long GetGraphType() override { return kGraphArc; }
    void Draw(CDC* dc, CFCoor* coor) override;
    void DrawDXF(CBase_SGT* dxf, CFCoor* coor) override;
    using CGraphEntity::HitTest;
    int HitTest(const CFRegion& region, int mode) override;
    CFRect GetFrect() override;
    void QueryAbsSnapPoint(unsigned int mode, CArray<CFPoint>& points, CArray<int>& kinds) override;

    /// The point of the full circle in a direction.
    CFPoint GetPointAt(float degrees) const;

    float m_fX = 0, m_fY = 0;          // centre
    float m_fR = 100;                  // radius
    float m_fStart = 0, m_fEnd = 90;   // directions from the centre, degrees
    float m_fWidth = 1.0f;
};

/// A full circle: the curve alone, its inside is not hit.
class CGraph_Circle : public CGraphEntity {
public:
    CGraph_Circle() = default;
    CGraph_Circle(float x, float y, float r, float width) : m_fX(x), m_fY(y), m_fR(r), m_fWidth(width) {}

    unsigned long GetGraphType() override { return kGraphCircle; }
    void Draw(CDC* dc, CFCoor* coor) override;
    void DrawDXF(CBase_SGT* dxf, CFCoor* coor) override;
    using CGraphEntity::HitTest;
    int HitTest(const CFRegion& region, int mode) override;
    CFRect GetFrect() override;
    void QueryAbsSnapPoint(unsigned int mode, CArray<CFPoint>& points, CArray<int>& kinds) override;

    float m_fX = 0, m_fY = 0;  // centre
    float m_fR = 100;          // radius
    float m_fWidth = 1.0f;
};
