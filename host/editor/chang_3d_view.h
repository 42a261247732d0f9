// Chang3DView: a field seen as a surface in space.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "fields/chang.h"
#include "host/editor/field_relief.h"
#include "platform/window.h"

class CGjChang;
class CTvoHostDataBase;

/// A window of its own that shows the mesh of a field lifted by its values, in the field's colours, with the
/// ruler. Dragging with the left button turns it, with the middle or right one moves it; the wheel zooms;
/// arrows turn, Page Up and Page Down zoom, Home or R puts everything back, Esc closes. The slider below sets
/// the height, up to the ratio beside it.
///
/// While something moves, large fields are drawn from fewer triangles; at rest from all. The window holds a
/// copy of the field, made at the start and by 刷新, so that the field may change or go meanwhile; it never
/// alters one.
class CChang3DView : public CView {
public:
    /// Shows the field of that identity, and after it has gone the current one.
    CChang3DView(CTvoHostDataBase& db, std::uint32_t field);
    ~CChang3DView() override;

    void OnDraw(CDC* dc) override;

    void Refresh();  // copies the field again
    void Reset();    // the sight, the height and the ratio as at the start
    bool HasField() const { return !m_relief.Triangles().empty(); }
    ReliefView Sight() const;  // in units of the client area

    static constexpr int kMovingTriangles = 20000;  // drawn while something moves
    static constexpr double kFirstMost = 4;         // the ratio at the slider's right end

protected:
    void OnLButtonDown(UINT keys, CPoint p) override;
    void OnLButtonUp(UINT keys, CPoint p) override;
    void OnMButtonDown(UINT keys, CPoint p) override { StartDrag(Drag::kMove, keys, p); }
    void OnMButtonUp(UINT keys, CPoint p) override;
    void OnRButtonDown(UINT keys, CPoint p) override { StartDrag(Drag::kMove, keys, p); }
    void OnRButtonUp(UINT keys, CPoint p) override;
    void OnMouseMove(UINT keys, CPoint p) override;
    BOOL OnMouseWheel(UINT keys, int delta, CPoint screen) override;
    void OnKeyDown(UINT key, LPARAM flags) override;
    void OnChar(UINT code) override;
    void OnTimer(unsigned id) override;

private:
    enum class Drag { kNone, kTurn, kMove, kSlide, kPress };
    enum Part { kNoPart = -1, kExit, kRefresh, kSlider, kMost, kSetMost };  // of the bar, from the left

    CRect Area() const;  // above the bar
    CRect Place(Part part) const;
    Part PartAt(CPoint p) const;
    void Press(Part part);
    void TakeMost();  // from its box
    void LeaveBox();  // and what was typed there
    void SlideTo(int x);
    void StartDrag(Drag drag, UINT keys, CPoint p);
    void EndDrag();
    void Turn(double alpha, double beta);
    void ZoomAt(CPoint p, double factor);
    void Moving();  // draws few triangles now, and all when nothing has moved for a while
    void DrawRuler(CDC& dc, const CRect& area);
    void DrawBar(CDC& dc);

    CTvoHostDataBase& m_db;  // borrowed
    std::uint32_t m_id;      // of the field
    FieldRelief m_relief;    // all of it
    FieldRelief m_thin;      // for moving; empty when all are few enough
    ReliefColors m_colors{};
    CChang m_ruler;           // two values with the range and the colours of the field
    double m_alpha, m_beta;   // radians
    double m_zoom, m_x, m_y;  // 1: all fits; the middle's place beside the middle of the area, units
    double m_ratio, m_most;   // height of the range over half of half a diagonal; the slider's end
    bool m_moving = false;    // few triangles
    Drag m_drag = Drag::kNone;
    Part m_pressed = kNoPart;
    CPoint m_last;          // the pointer at the last event of a drag
    std::string m_typed;    // what stands in the box of the greatest ratio
    bool m_typing = false;  // keys go there
};
