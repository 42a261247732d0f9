// The primitives that cover a place: locator, point, filled polygon and disc.
#pragma once
#include "geometry/fpoint.h"
#include "geometry/frect.h"
#include "model/graph_entity.h"

/// A rectangle that counts without being drawn: it gives its component an extent and a hit test. It is hit
/// along its diagonal from (min, min), not over its area; it has no picture and no snap points.
class CGraph_Locator : public CGraphEntity {
public:
    CGraph_Locator() = default;
    explicit CGraph_Locator(const CFRect& rect) : m_rcPlace(rect) {}

    unsigned long GetGraphType() override { return kGraphLocator; }
    void Draw(CDC*, CFCoor*) override {}
    using CGraphEntity::HitTest;
    int HitTest(const CFRegion& region, int mode) override;
    CFRect GetFrect() override { return m_rcPlace; }

    CFRect m_rcPlace;
};

/// A point, painted as a small square of fixed size in pixels.
class CGraph_Point : public CGraphEntity {
public:
    CGraph_Point() = default;
    CGraph_Point(float x, float y) : m_fX(x), m_fY(y) {}

    unsigned long GetGraphType() override { return kGraphPoint; }
    void Draw(CDC* dc, CFCoor* coor) override;
    void DrawDXF(CBase_SGT* dxf, CFCoor* coor) override;
    int HitTest(const CFRegion& region, int mode) override;
    /// Exact, border included, while the region form also takes what is within its own tolerance.
    int HitTest(const CFRect& rect, int mode) override;
    CFRect GetFrect() override;
    void QueryAbsSnapPoint(unsigned int mode, CArray<CFPoint>& points, CArray<int>& kinds) override;

    float m_fX = 0, m_fY = 0;
};

/// A filled polygon with straight sides, by the non-zero winding rule; hatched when the line type isn't 0.
class CGraph_PolyRgn : public CGraphEntity {
public:
    CGraph_PolyRgn() = default;
    explicit CGraph_PolyRgn(const CArray<CFPoint, CFPoint>& points) : m_aPoint(points) {}

    unsigned long GetGraphType() override { return kGraphPolyRgn; }
    void Draw(CDC* dc, CFCoor* coor) override;
    void DrawDXF(CBase_SGT* dxf, CFCoor* coor) override;
    using CGraphEntity::HitTest;
    int HitTest(const CFRegion& region, int mode) override;
    CFRect GetFrect() override;
    /// Those of its sides, each taken as a CGraph_Line.
    void QueryAbsSnapPoint(unsigned int mode, CArray<CFPoint>& points, CArray<int>& kinds) override;

    CArray<CFPoint, CFPoint> m_aPoint;  // vertices in order; the last leads back to the first
};

/// A filled disc. It has no snap points.
class CGraph_CircleRgn : public CGraphEntity {
public:
    CGraph_CircleRgn() = default;
    CGraph_CircleRgn(float x, float y, float r) : m_fX(x), m_fY(y), m_fR(r) {}

    unsigned long GetGraphType() override { return kGraphCircleRgn; }
    void Draw(CDC* dc, CFCoor* coor) override;
    void DrawDXF(CBase_SGT* dxf, CFCoor* coor) override;
    using CGraphEntity::HitTest;
    int HitTest(const CFRegion& region, int mode) override;
    CFRect GetFrect() override;

    float m_fX = 0, m_fY = 0;  // centre
    float m_fR = 0;            // radius
};
