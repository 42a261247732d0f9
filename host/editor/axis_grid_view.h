// Pictures of an axis grid before it stands: the one in the dialog, and the one that follows the pointer.
#pragma once
#include "host/editor/axis_grid.h"
#include "platform/window.h"
#include "view/rubber_line.h"

/// The grid as large as fits, turned as it will stand, with its spacings beside it and a cross at the
/// insertion point.
class AxisGridView : public CView {
public:
    AxisGridView() = default;
    ~AxisGridView() override;
    void OnDraw(CDC* dc) override;

    AxisGrid m_grid;
    bool m_valid = false;  // nothing is drawn of a grid that is not
};

/// The grid with its insertion point at the cursor.
class AxisGridRubber : public CRubberLine {
public:
    /// The grid is the command's, borrowed. When it changes the picture must not stand on the screen.
    explicit AxisGridRubber(const AxisGrid& grid) : m_grid(grid) {}
    int DrawRange(CTvoViewKernel* view, CDC& dc, int) override;

private:
    const AxisGrid& m_grid;
};
