// Rubber lines: the shapes that follow the cursor while a command runs.
#pragma once

class CDC;
class CDtWorkEx;
class CTvoViewKernel;

/// Draws the shape between the view's input points and its effective cursor. The view draws it in XOR, twice for each
/// move, to take it away and to put it there: so a shape is a function of the view's points and cursor and of nothing
/// else.
class CRubberLine {
public:
    virtual ~CRubberLine() = default;
    /// 1 if anything was drawn. The last argument is not read.
    virtual int DrawRange(CTvoViewKernel* /*view*/, CDC& /*dc*/, int) { return 0; }

    CDtWorkEx* m_pWork = nullptr;  // the command that owns it; borrowed
};

/// A polyline through all points and on to the cursor.
class CLineRubberLine : public CRubberLine {
public:
    int DrawRange(CTvoViewKernel* view, CDC& dc, int) override;
};

/// The same, closed.
class CPolyRubberLine : public CRubberLine {
public:
    int DrawRange(CTvoViewKernel* view, CDC& dc, int) override;
};

/// A rectangle with the first point and the cursor as opposite corners.
class CRectRubberLine : public CRubberLine {
public:
    int DrawRange(CTvoViewKernel* view, CDC& dc, int) override;
};

/// The same with a pen of its own: dashed while the cursor is left of the first corner, which tells that a crossing
/// selection is under way.
class CRectSelectRubberLine : public CRubberLine {
public:
    int DrawRange(CTvoViewKernel* view, CDC& dc, int) override;
};

/// A circle about the first point through the cursor. Only for commands that have a point.
class CCircleRubberLine : public CRubberLine {
public:
    int DrawRange(CTvoViewKernel* view, CDC& dc, int) override;
};

/// A sector about the first point, from the second one to the cursor's direction.
class CPieRubberLine : public CRubberLine {
public:
    int DrawRange(CTvoViewKernel* view, CDC& dc, int) override;
};

/// The arc through two points and the cursor; with one point a line. Nothing while the three lie on a line.
class CArcRubberLine : public CRubberLine {
public:
    int DrawRange(CTvoViewKernel* view, CDC& dc, int) override;
};
