// Draws the entities of a drawing. Internal.
#pragma once
#include <cstdint>

#include "platform/dxf/layer_summary.h"
#include "platform/win_types.h"

class ACAD_ENTITY;
class CDC;
struct ACAD_VERTEX;

/// Where a drawing lies on a surface: pixels for a unit, and the drawing's point at the left upper corner.
struct DrawingPlacement {
    double scale = 0, left = 0, top = 0;
    double X(double x) const { return (x - left) * scale; }
    double Y(double y) const { return (top - y) * scale; }
};

/// Draws with the selected pen, with straight lines for small arcs. What lies beyond all pixels is drawn in to the
/// border of what a device context takes.
class CEntityPencil {
public:
    CEntityPencil(CDC& dc, const DrawingPlacement& placement) : m_dc(dc), m_placement(placement) {}

    /// Lines, polylines, circles, arcs, points, the sides of solids and faces, and texts. Anything else draws nothing.
    void Draw(const ACAD_ENTITY& entity, COLORREF color);

private:
    void Move(double x, double y);
    void Line(double x, double y);
    void Arc(double x, double y, double r, double start, double sweep);  // radians
    void Side(const ACAD_VERTEX& p, const ACAD_VERTEX& q);
    CPoint PixelOf(double x, double y) const;

    CDC& m_dc;
    DrawingPlacement m_placement;
    CPoint m_last;  // where the next line starts
};

/// The box of what CEntityPencil draws of an entity, or one around it; empty if it draws nothing.
DxfExtent ExtentOfDrawn(const ACAD_ENTITY& entity);
