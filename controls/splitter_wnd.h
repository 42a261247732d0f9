// Splitters: windows that share their area among others, with bars between that may be dragged.
#pragma once
#include <functional>
#include <vector>

#include "platform/window.h"

/// A row or a column of panes. Each has the size that is wanted for it, as far as there is room; the last gets the rest.
/// A pane that would have no size shows nothing, and no bar stands beside it. The panes are borrowed.
class CSplitterWndEx : public CView {
public:
    /// Bars of this thickness, in pixels. A splitter with rows has horizontal bars.
    explicit CSplitterWndEx(int bar = 4) : m_nBar(bar) {}
    ~CSplitterWndEx() override;

    /// Makes the window; panes are then created as its children and entered in order.
    BOOL CreateStatic(CWnd* parent, int rows, int columns);  // one of both is 1
    void AddPane(CWnd& pane);
    void SetPaneInfo(int index, int wanted, int least);  // pixels; `least` is as small as dragging makes it
    int GetPaneSize(int index) const;                    // as laid out
    void RecalcLayout();
    /// 0: the bars stand still.
    void SetMode(int mode) { m_nMode = mode; }
    int GetMode() const { return m_nMode; }
    /// The bar under a point: 1 for the first; 0 when there is none, or it can't be dragged. A thin bar is taken by the
    /// edge of the pane behind it, too: a pixel alone is hard to meet.
    int HitTest(CPoint p) const;
    bool Grips(const CPoint& p) const override { return HitTest(p) != 0; }
    void OnDraw(CDC* dc) override;

    /// Called while a bar is dragged, after the layout: the index of the pane in front of it and that pane's new size.
    std::function<void(int index, int size)> m_onDragged;

protected:
    virtual COLORREF BarColour() const;  // that of the surroundings
    virtual void DrawBar(CDC* dc, const CRect& bar);
    void OnSize(int width, int height) override;
    void OnMouseMove(UINT keys, CPoint p) override;
    void OnLButtonDown(UINT keys, CPoint p) override;
    void OnLButtonUp(UINT keys, CPoint p) override;
    BOOL OnSetCursor() override;

private:
    struct Pane {
        CWnd* m_window = nullptr;  // borrowed
        int m_wanted = 0, m_least = 0;
        int m_from = 0, m_size = 0;  // as laid out
    };
    int Along(const CPoint& p) const { return m_rows ? p.y : p.x; }
    CRect Strip(int from, int size) const;

    std::vector<Pane> m_panes;
    int m_nBar;          // thickness of the bars
    int m_nMode = 1;
    bool m_rows = false;  // panes one below the other, else side by side
    int m_dragged = 0;    // bar, from 1; 0: none
    int m_grip = 0;       // where on the bar the pointer took it
};
