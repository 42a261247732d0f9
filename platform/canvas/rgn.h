// CRgn: an area of the surface.
#pragma once
#include <vector>

#include "platform/canvas/gdi_object.h"

/// A rectangle or a polygon. A pixel belongs to it if the point at the pixel's left upper corner does, where
/// left and upper sides count as inside, right and lower ones as outside: a polygon of four corners covers
/// the same pixels as the rectangle does, and polygons that share a side share no pixel. Kept as geometry, so
/// coordinates may be anything.
class CRgn : public CGdiObject {
public:
    CRgn() = default;

    /// Sides in any order.
    BOOL CreateRectRgn(int x1, int y1, int x2, int y2);
    BOOL CreateRectRgnIndirect(const CRect& rect) {
        return CreateRectRgn(rect.left, rect.top, rect.right, rect.bottom);
    }

    /// Closed by itself. `mode` is ALTERNATE or WINDING; 0 for fewer than 3 points, a null pointer or another
    /// mode.
    BOOL CreatePolygonRgn(const CPoint* points, int count, int mode);

    int GetRgnBox(CRect* box) const;  // kind of region
    BOOL PtInRegion(int x, int y) const;
    BOOL PtInRegion(const CPoint& p) const { return PtInRegion(p.x, p.y); }

    const std::vector<CPoint>& Points() const { return m_aPoint; }
    int FillMode() const { return m_nMode; }
    bool IsRectangle() const { return m_bRectangle; }

protected:
    void Reset() override;

private:
    std::vector<CPoint> m_aPoint;  // corners in order; the four of a rectangle
    int m_nMode = ALTERNATE;       // polygon fill mode
    bool m_bRectangle = false;     // made by CreateRectRgn
};
