// CGraph_Text: a line of text in the model.
#pragma once
#include <array>
#include <memory>

#include "geometry/fpoint.h"
#include "model/graph_entity.h"
#include "platform/string.h"
#include "platform/win_types.h"

class CFont;

/// Width of a text in model units by the library's fixed metric: an ASCII character advances half the height,
/// any other the full height. The metric does not ask a font, so that extents and hit tests are the same on
/// every machine.
float ModelTextWidth(const CString& text, float height);

/// A text from its insertion point, the lower left corner of its box, in a direction. Its size is in model
/// units, so it grows with the view. It has no snap points and is hit over its box.
class CGraph_Text : public CGraphEntity {
public:
    CGraph_Text();
    CGraph_Text(float x, float y, float height, float angle, const char* text);
    CGraph_Text(const CGraph_Text&) = delete;
    CGraph_Text& operator=(const CGraph_Text&) = delete;
    ~CGraph_Text() override;

    unsigned long GetGraphType() override { return kGraphText; }
    void Draw(CDC* dc, CFCoor* coor) override;
    void DrawDXF(CBase_SGT* dxf, CFCoor* coor) override;
    int HitTest(const CFRegion& region, int mode) override;
    int HitTest(const CFRect& rect, int mode) override;
    CFRect GetFrect() override;

    /// The outline of the box: anticlockwise from the insertion point.
    CFRegion GetFRegion() const;
    /// The font for the present height, angle and scale, made when the one at hand doesn't fit. Owned here.
    CFont* CreateFontA(CFCoor* coor);

    std::unique_ptr<CFont> m_pFont;  // null until the text is first painted
    CString m_strText;
    float m_fX = 0, m_fY = 0;        // insertion point
    float m_fHeight = 100;           // model units
    float m_fAngle = 0;              // direction of reading, radians, anticlockwise from the x axis

private:
    std::array<CFPoint, 4> BoxCorners() const;     // anticlockwise from the insertion point
    CRect DeviceBox(const CFCoor& coor) const;     // of those corners

    int m_nFontHeight = 0;           // pixels for which m_pFont was made
    int m_nFontEscapement = 0;       // tenths of a degree for which m_pFont was made
};
