// CGraphEntity: one primitive of a display list.
#pragma once
#include <cstdint>

#include "platform/containers.h"
#include "platform/pool.h"

class CBase_SGT;
class CDC;
class CFCoor;
class CFPoint;
class CFRect;
class CFRegion;

/// What GetGraphType answers for the primitives of the library.
enum GraphType : unsigned long {
    kGraphLocator = 0,
    kGraphPoint = 1,
    kGraphLine = 2,
    kGraphArc = 3,
    kGraphCircle = 4,
    kGraphPolyRgn = 5,
    kGraphCircleRgn = 6,
    kGraphText = 7,
    kGraphUnknown = 255,
};

/// Kinds of snap points, and the bits of a mode that ask for them.
enum SnapKind : int {
    kSnapPoint = 1,     // a point itself
    kSnapEnd = 2,       // ends of a line
    kSnapMiddle = 4,    // middle of a line
    kSnapCentre = 8,    // centre of an arc or circle
    kSnapThird = 16,    // points at a third and two thirds
    kSnapQuadrant = 32  // points of a circle straight right, above, left and below its centre
};

/// A primitive in model coordinates: it paints itself, answers hit tests, gives its extent and its snap points.
/// A model holds hundreds of thousands of these, so they live in the pool and nothing in them is allocated
/// before it is needed. This base paints nothing, is nowhere and is never hit.
class CGraphEntity {
public:
    CGraphEntity() = default;
    TVO_POOLED_STORAGE

    // --- the order of these slots is fixed ---
    virtual ~CGraphEntity() = default;
    virtual unsigned long GetGraphType() { return m_dwGraphType; }
    /// Paints under the primitive's own raster mode and leaves the device context as it was.
    virtual void Draw(CDC*, CFCoor*) {}
    /// Mode 1: all of it lies in the region; any other mode: it touches the region.
    virtual int HitTest(const CFRegion& region, int mode);
    virtual int HitTest(const CFRect& rect, int mode);  // by the region form
    virtual CFRect GetFrect();
    /// Appends the snap points of the kinds in `mode` (bits of SnapKind), each with its kind beside it. Whether
    /// the primitive is asked at all is for the caller to decide, by CanSnap.
    virtual void QueryAbsSnapPoint(unsigned int mode, CArray<CFPoint>& points, CArray<int>& kinds);
    virtual void DrawDXF(CBase_SGT*, CFCoor*) {}

    void SetColor(unsigned long color) { m_dwColor = static_cast<std::uint32_t>(color & 0xFFFFFFFF); }
    void SetLineType(int lineType) { m_nLineType = lineType; }
    void SetPart(char part) { m_cPart = part; }
    char GetPart() const { return m_cPart; }
    int CanSnap() const { return m_bSnap; }
    void SetSnap(int snap) { m_bSnap = snap; }
    void SetRop2(int rop) { m_nRop2 = rop; }

    char m_cPart = 'A';                  // tag by which the owner tells its parts when it colours them
    std::uint32_t m_dwColor = 0xFFFFFF;  // COLORREF
    std::int32_t m_nLineType = 0;        // 0 solid, else dashed; a polygon is hatched
    std::int32_t m_bSnap = 1;            // gives snap points
    std::int32_t m_nRop2 = 13;           // raster mode, R2_COPYPEN
    std::uint32_t m_dwGraphType = kGraphUnknown;  // type of a host's primitive that overrides no GetGraphType
};
