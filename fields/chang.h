// CChang: a scalar field over triangles.
#pragma once
#include <memory>

#include "geometry/fpoint.h"
#include "geometry/frect.h"
#include "platform/containers.h"
#include "platform/win_types.h"

class CDC;
class CFCoor;
class CFieldLocator;
class CFieldMesh;

/// A node of a field: its number, its place in field coordinates, and a value for each of ten results.
struct CChangNode {
    int m_nNumber = 0;
    float m_fX = 0, m_fY = 0;
    float m_aValue[10] = {};
};

/// A triangle, by the numbers of its corners.
struct CChangTri {
    int m_aNode[3] = {};
};

/// Nodes, triangles between them, and what a picture of their values needs: range, interpolation, isolines,
/// colours, the cloud and the ruler. The host fills the public arrays and may change them at any time.
///
/// Corners are node numbers from 1. Where the nodes' numbers are not simply their positions, corners are
/// looked up by number. A triangle is passed over everywhere if a corner is missing, names a number that
/// several nodes bear or one that another corner names, or has a coordinate or a value that is not finite.
class CChang {
public:
    static constexpr int kValues = 10;       // of a node
    static constexpr int kColorSteps = 256;  // of a colour scheme

    CChang();
    CChang(const CChang&) = delete;
    CChang& operator=(const CChang&) = delete;
    virtual ~CChang();

    /// Paints the colour ruler into a rectangle of pixels, on that background: 20 bands, the greatest value
    /// on top, and the value times the scale beside every second one.
    virtual void DrawRuler(CDC* dc, const CRect& rect, CFCoor* coor, COLORREF background);

    /// Empties nodes, triangles and polylines; scheme, scale and the chosen value stay.
    void Clear();
    /// The box of the nodes whose coordinates are finite; zeros when there is none.
    CFRect GetFRect() const;
    /// The range of the finite values: 1, or 0 with zeros when there is none.
    int GetMinMaxZ(float& min, float& max);
    /// The value at a point: linear in the first triangle that holds it, borders included within a millionth
    /// of its longest edge. Else that of the first node that is as near, by the longest edge of all; else 0.
    float Get_Value(float x, float y);
    /// 1 where Get_Value finds one.
    int PointInChang(float x, float y);
    /// Traces the line of level z into m_arrPolyline and returns the number of polylines: open ones first,
    /// each kind in the order of the triangles that they begin in; a closed one ends with its first point. A
    /// corner counts as above when its value is z or more, so that a level at the least value has no line.
    int TraceOne(float z);
    /// Builds the index behind Get_Value. Without this call the first question builds it; it is built again
    /// when the number of nodes or triangles has changed. Whoever only moves nodes calls it.
    void CreateQuadTree();
    /// The colour of a value by the scheme: 1 blue to cyan, green, yellow and red, 2 the reverse, 3 greys, 4
    /// blue to white and red, 5 one of even lightness steps that needs no telling of red from green; any
    /// other is 1. A range below 1e-7 and a value that is not finite have the lowest colour. The range is that
    /// of the last GetMinMaxZ, found anew when the number of nodes or m_nValue has changed since.
    unsigned long GetIndexColor(float z);
    /// Paints the cloud of GetFRect, times the factor in model units, into a new bitmap of its size on the
    /// device, of at least one pixel and at most 2048 on the longer side, that is then selected in `mem`.
    /// Pixels off the field have the view's background colour, and only those.
    void DrawBaseMap(CDC* ref, CDC* mem, CFCoor* coor, int& width, int& height, float factor);

    CArray<CChangNode> m_arrNode;
    CArray<CChangTri> m_arrTri;
    CArray<CArray<CFPoint>> m_arrPolyline;  // of the last TraceOne, field coordinates
    int m_nColorScheme = 1;                 // see GetIndexColor
    float m_fValueScale = 1.0f;             // of the numbers at the ruler
    int m_nValue = 0;                       // which of the ten values is shown; any but 0 to 9 counts as 0

private:
    CFieldLocator& Locator();

    std::unique_ptr<CFieldMesh> m_pMesh;         // corners by number
    std::unique_ptr<CFieldLocator> m_pLocator;   // null until first needed
    float m_fMin = 0, m_fMax = 0;                // as GetMinMaxZ last found them
    int m_nRangeNodes = -1, m_nRangeValue = -1;  // for so many nodes, and this value
};
