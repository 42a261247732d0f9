// The entities of a drawing, as they stand in its file.
#pragma once
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

enum ACAD_Entity_Type {
    kAcadLine = 1,
    kAcadText = 2,
    kAcadCircle = 3,
    kAcadArc = 4,
    kAcadPolyline = 5,
    kAcadSolid = 6,
    kAcad3dFace = 7,
    kAcadInsert = 8,
    kAcadDimension = 9,
    kAcadHatch = 10,
    kAcadOther = 11,  // everything else: splines, ellipses, meshes, ...
    kAcadPoint = 12,  // drawn points; those of files that are read are among the others
};

inline constexpr int kAcadColorByLayer = 256;

/// A layer of a drawing: named in the layer table, by an entity, or both.
struct DxfLayer {
    std::string   m_strName;           // UTF-8
    bool          m_bInTable = false;  // the layer table has it
    bool          m_bOff = false;
    bool          m_bFrozen = false;
    bool          m_bLocked = false;
    int           m_nColor = 7;        // colour index 1..255
    std::uint64_t m_nDropped = 0;      // its entities that were read but not taken
};

/// A kind of entity by the name that files give it: "LINE", "SPLINE", ... Meshes are "POLYLINE (mesh)".
struct DxfKind {
    std::string m_strName;
};

/// One entity of a drawing, and the whole of those that no derived class describes. It belongs to the
/// drawing (DXF), whose Close ends it; texts and layers that it points to belong there too.
/// Coordinates are the world's: an object system turned over, extrusion (0, 0, -1), is undone in reading.
class ACAD_ENTITY {
public:
    virtual ~ACAD_ENTITY() = default;
    virtual ACAD_Entity_Type GetType() const { return kAcadOther; }

    const char* GetLayer() const { return m_pLayer->m_strName.c_str(); }  // UTF-8
    const std::string& GetKind() const { return m_pKind->m_strName; }

    const DxfLayer* m_pLayer = nullptr;     // never null in a drawing
    const DxfKind*  m_pKind = nullptr;      // never null in a drawing
    std::int16_t    m_nColor = 256;         // colour index; 0 by block, 256 by layer
    bool            m_bPaperSpace = false;  // stands on a sheet, not in the model
    std::uint8_t    m_nLType = 0;           // line type: 0 by layer, else 1 + its place among the drawing's
    bool            m_bFloats = false;      // its numbers were floats: written with as many digits as tell floats apart
};

/// A point.
class ACAD_POINT : public ACAD_ENTITY {
public:
    ACAD_Entity_Type GetType() const override { return kAcadPoint; }
    double m_x = 0, m_y = 0, m_z = 0;
};

class ACAD_LINE : public ACAD_ENTITY {
public:
    ACAD_Entity_Type GetType() const override { return kAcadLine; }
    double m_x1 = 0, m_y1 = 0, m_z1 = 0;
    double m_x2 = 0, m_y2 = 0, m_z2 = 0;
};

class ACAD_TEXT : public ACAD_ENTITY {
public:
    ACAD_Entity_Type GetType() const override { return kAcadText; }
    std::uint8_t     m_nStyle = 0;               // text style: 0 the standard one, else 1 + its place among the drawing's
    double           m_x = 0, m_y = 0, m_z = 0;  // lower left of the first character
    double           m_dHeight = 0;
    double           m_dAngle = 0;               // degrees
    std::string_view m_strText;                  // UTF-8
};

/// The radius is as the file has it: zero and negative ones occur.
class ACAD_CIRCLE : public ACAD_ENTITY {
public:
    ACAD_Entity_Type GetType() const override { return kAcadCircle; }
    double m_x = 0, m_y = 0, m_z = 0;  // centre
    double m_dRadius = 0;
};

/// Runs anticlockwise. Angles are degrees as the file has them, so the end may be below the start, and
/// either outside 0..360.
class ACAD_ARC : public ACAD_ENTITY {
public:
    ACAD_Entity_Type GetType() const override { return kAcadArc; }
    double m_x = 0, m_y = 0, m_z = 0;  // centre
    double m_dRadius = 0;
    double m_dStart = 0, m_dEnd = 0;
};

/// A corner of a polyline. Plain data without layer or type: drawings have more of these than of all else.
struct ACAD_VERTEX {
    double m_x = 0, m_y = 0;
    double m_dBulge = 0;  // tangent of a quarter of the arc to the next corner, positive anticlockwise
};

class ACAD_POLYLINE : public ACAD_ENTITY {
public:
    ACAD_Entity_Type GetType() const override { return kAcadPolyline; }
    std::span<const ACAD_VERTEX> Vertices() const { return {m_pVertices, m_nVertices}; }
    int GetVertexCount() const { return static_cast<int>(m_nVertices); }
    const ACAD_VERTEX& GetVertex(int i) const { return m_pVertices[i]; }

    const ACAD_VERTEX* m_pVertices = nullptr;  // one row, owned by the drawing
    std::uint32_t      m_nVertices = 0;
    bool               m_bClosed = false;  // a side runs from the last corner to the first, and isn't listed
    bool               m_b3D = false;
    float              m_fStartWidth = 0, m_fEndWidth = 0;  // of drawn ones; the width runs evenly from one to the other
};

/// A filled triangle or quadrangle; the third and fourth corners stand crosswise, as in files.
class ACAD_SOLID : public ACAD_ENTITY {
public:
    ACAD_Entity_Type GetType() const override { return kAcadSolid; }
    double m_x[4] = {}, m_y[4] = {}, m_z[4] = {};
};

class ACAD_3DFACE : public ACAD_ENTITY {
public:
    ACAD_Entity_Type GetType() const override { return kAcad3dFace; }
    double m_x[4] = {}, m_y[4] = {}, m_z[4] = {};
};

/// A block that is placed, not what it holds.
class ACAD_INSERT : public ACAD_ENTITY {
public:
    ACAD_Entity_Type GetType() const override { return kAcadInsert; }
    double           m_x = 0, m_y = 0, m_z = 0;
    double           m_dScaleX = 1, m_dScaleY = 1, m_dScaleZ = 1;
    double           m_dAngle = 0;  // degrees
    std::string_view m_strBlock;    // UTF-8
};

class ACAD_DIMENSION : public ACAD_ENTITY {
public:
    ACAD_Entity_Type GetType() const override { return kAcadDimension; }
    double           m_x = 0, m_y = 0;          // definition point
    double           m_xText = 0, m_yText = 0;  // middle of the text
    double           m_x1 = 0, m_y1 = 0;        // the two points that are measured
    double           m_x2 = 0, m_y2 = 0;
    std::string_view m_strText;                 // UTF-8; empty or "<>": the measure itself
};

class ACAD_HATCH : public ACAD_ENTITY {
public:
    ACAD_Entity_Type GetType() const override { return kAcadHatch; }
    std::string_view m_strPattern;  // UTF-8
    bool             m_bSolid = false;
};
