// The drawing writer.
#pragma once
#include <span>

#include "platform/dxf/dxf.h"

/// A drawing that can be drawn into: what is drawn takes the current colour and line type and stands on layer "0",
/// in the order of drawing. The entities belong to the drawing. Each operation gives the new entity, or null when
/// there is nothing to draw: a number that is not finite, a radius of 0, an arc or text without extent.
///
/// The `width` of thin figures is a plotter's pen and not in the file.
class CBase_SGT : public DXF {
public:
    CBase_SGT() = default;
    void Close() override;

    /// Enters the standard line types, "DASHDOT" among them. Before Write_Tables.
    void Add_Default_LineType();

    // --- attributes of what is drawn from here on
    void SetCurColor(int index);  // 0 by block, 256 and what is no index by layer
    /// By name, without ASCII case; "BYLAYER" is what a drawing starts with. A name that the drawing lacks leaves all
    /// as it was.
    void SetCurLType(const char* name);
    /// The current line type, to be given back to RestoreCurLType.
    int SaveCurLType() const { return m_nCurLType; }
    void RestoreCurLType(int saved) { m_nCurLType = saved; }

    // --- drawing
    ACAD_POINT* Draw_Point(float x, float y);
    ACAD_LINE* Draw_Line(float x1, float y1, float x2, float y2, float width);
    /// Anticlockwise from a1 to a2, degrees. A sweep of a full turn or more is a full turn; equal angles are nothing.
    ACAD_ARC* Draw_Arc(float cx, float cy, float r, float a1, float a2, float width);
    ACAD_CIRCLE* Draw_Circle(float cx, float cy, float r, float width);
    /// A wide line.
    ACAD_POLYLINE* Draw_Pline(float x1, float y1, float x2, float y2, float startWidth, float endWidth, float width);
    /// A wide arc, angles as those of Draw_Arc: a polyline of as many equal pieces as keep each within half a turn.
    ACAD_POLYLINE* Draw_PArc(float cx, float cy, float r, float a1, float a2, float startWidth, float endWidth);
    /// A text from its lower left corner, in the style that was added last. `angle` is in radians.
    ACAD_TEXT* Draw_Text(float x, float y, float height, float angle, const char* text);

protected:
    ACAD_LINE* AddLine(float x1, float y1, float z1, float x2, float y2, float z2);
    ACAD_TEXT* AddText(float x, float y, float z, float height, float angle, const char* text);

private:
    template <class T>
    T* Add(const T& entity, const char* kind);
    ACAD_POLYLINE* AddPolyline(std::span<const ACAD_VERTEX> vertices, float startWidth, float endWidth);

    int m_nCurColor = kAcadColorByLayer;  // colour index
    int m_nCurLType = 0;                  // as ACAD_ENTITY::m_nLType
};
