// CDrawGraph: the display list of a component.
#pragma once
#include "geometry/frect.h"
#include "model/graph_entity.h"
#include "model/graph_lines.h"
#include "model/graph_regions.h"
#include "model/graph_text.h"

class CGouJianEx;

/// A list of primitives that a component fills once. From then on painting, hit tests, extent and snap points
/// are answered by walking it. The list owns its primitives.
class CDrawGraph {
public:
    CDrawGraph() = default;
    CDrawGraph(const CDrawGraph&) = delete;
    CDrawGraph& operator=(const CDrawGraph&) = delete;
    TVO_POOLED_STORAGE

    // --- the order of these slots is fixed ---
    virtual ~CDrawGraph();
    /// Paints the list unless the owner is hidden. Primitives of a generated list take colour and line type
    /// from the owner's GetDrawInfo at each paint; those of a fixed one keep what they were given.
    virtual void Draw(CDC* dc, CFCoor* coor, CGouJianEx* owner);
    /// Mode 1: every primitive lies in the region, so an empty list does. Any other mode: some primitive
    /// touches it.
    virtual int HitTest(const CFRegion& region, int mode);
    virtual int HitTest(const CFRect& rect, int mode);
    /// All 0 for an empty list.
    virtual CFRect GetFrect();
    /// Appends the snap points of those primitives that can snap, each with its kind.
    virtual void QueryAbsSnapPoint(unsigned int mode, CArray<CFPoint>& points, CArray<int>& kinds);

    // --- filling; each makes one primitive, appends it and returns it, still owned by the list ---
    CGraph_Point* Draw_Point(float x, float y, char part, int snap, int rop);
    CGraph_Line* Draw_Line(float x1, float y1, float x2, float y2, float width, char part, int snap, int rop);
    /// Sets the pen position, makes nothing.
    void Move_To(float x, float y);
    /// A line from the pen position, which stays where Move_To put it: several of these fan out from a point.
    CGraph_Line* Line_To(float x, float y, float width, char part, int snap, int rop);
    CGraph_Arc* Draw_Arc(float x, float y, float r, float start, float end, float width, char part, int snap,
                         int rop);  // angles in degrees
    CGraph_Circle* Draw_Circle(float x, float y, float r, float width, char part, int snap, int rop);
    CGraph_CircleRgn* Draw_CircleRgn(float x, float y, float r, char part, int snap, int rop);
    CGraph_PolyRgn* Draw_PolyLineRgn(const CArray<CFPoint, CFPoint>& points, char part, int snap, int rop);
    CGraph_Text* Draw_Text(float x, float y, float height, float angle, const char* text,
                           char part);  // angle in radians; no snap
    CGraph_Locator* Set_Locator(CFRect rect);  // part '0', no snap

    /// Gives a primitive of a generated list the colour and line type that its owner's GetDrawInfo has for it now.
    static void TakeDrawInfo(CGraphEntity& entity, CGouJianEx& owner);

    /// Appends a primitive and owns it from here on.
    void Append(CGraphEntity* entity);
    /// Deletes every primitive. The pen position and the fixed flag stay.
    void RemoveAll();

    int m_bFixed = 0;  // filled from outside: CGouJianEx::ReDraw doesn't generate it anew
    CArray<CGraphEntity*, CGraphEntity*> m_aEntity;  // in order of painting; owned
    float m_fPenX = 0, m_fPenY = 0;                  // where Move_To put the pen
};
