// DrawingPreview: a drawing to look at, layer by layer.
#pragma once
#include <vector>

#include "platform/dxf/layer_summary.h"
#include "platform/window.h"

class DXF;
struct DxfLayer;

/// Shows the lines, polylines, arcs and circles of a drawing as large as they fit: those of chosen layers in their colours,
/// the others dimmed. The wheel zooms at the pointer, a drag moves.
class DrawingPreview : public CView {
public:
    explicit DrawingPreview(const DXF& drawing);  // borrowed
    ~DrawingPreview() override { DestroyWindow(); }

    /// What lies on these layers is bright from now on.
    void Choose(std::vector<const DxfLayer*> layers);
    void OnDraw(CDC* dc) override;

protected:
    void OnSize(int width, int height) override;
    void OnLButtonDown(UINT keys, CPoint p) override;
    void OnMouseMove(UINT keys, CPoint p) override;
    BOOL OnMouseWheel(UINT keys, int delta, CPoint screen) override;

private:
    void Fit();
    void DrawEntities(CDC& dc, bool chosen);

    const DXF& m_drawing;
    std::vector<const DxfLayer*> m_chosen;  // sorted by address, only looked up
    DxfExtent m_extent;
    double m_scale = 0, m_left = 0, m_top = 0;  // pixels a unit; the drawing's place of the upper left corner
    CPoint m_held;                              // where a drag was last
};
