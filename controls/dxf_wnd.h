// CDxfWnd: a drawing to look at.
#pragma once
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/canvas/dc.h"
#include "platform/string.h"
#include "platform/window.h"

class ACAD_ENTITY;
class DXF;

/// A layer of the drawing that is shown. Names that differ in ASCII case only are one.
struct CDxfLayerSwitch {
    CString m_strName;
    std::uint64_t m_nCount = 0;  // entities on it
    int m_nColor = 7;            // colour index 1..255
    bool m_bShown = true;
};

/// Shows a drawing in the colours of its entities and layers, at first as large as it fits, without strays. The wheel zooms at the pointer,
/// a drag with the left or middle button moves. The drawing is drawn once for each view of it: while it is dragged that
/// picture moves, and what comes into sight is drawn at the end, so that moving takes the same time for any drawing.
class CDxfWnd : public CView {
public:
    CDxfWnd();
    ~CDxfWnd() override;

    // --- the drawing
    BOOL Open(const CString& file);        // reads it; 0 when nothing could be taken, and the window is empty then
    void SetDrawing(const DXF* drawing);   // borrowed; null: none
    const DXF* GetDrawing() const { return m_drawing; }

    // --- layers, in the order in which the drawing names them; those that are off or frozen are hidden at first
    const std::vector<CDxfLayerSwitch>& GetLayers() const { return m_layers; }
    BOOL SetLayerShown(const CString& name, bool shown);  // 0: there is no such layer
    bool IsLayerShown(const CString& name) const;
    void SetHiddenDimmed(bool dimmed);  // what is on hidden layers is drawn faintly, below the rest

    // --- view
    void Fit();  // all of it but strays, few and far off
    void ZoomAt(const CPoint& p, double factor);       // what lies there stays there
    double GetScale() const { return m_scale; }        // pixels for a unit; 0 while there is nothing to see
    CPoint PixelOf(double x, double y) const;          // of a place of the drawing
    std::uint64_t GetDrawCount() const { return m_nDrawn; }  // how many times all of it was drawn

    void OnDraw(CDC* dc) override;

protected:
    virtual CRect DrawingPlace() const { return GetClientRect(); }  // the part of the client area for the drawing
    void SwitchLayer(std::size_t index, bool shown);
    void Redraw();  // what stands in the picture has changed

    void OnSize(int width, int height) override;
    void OnLButtonDown(UINT keys, CPoint p) override { BeginDrag(p); (void)keys; }
    void OnMButtonDown(UINT keys, CPoint p) override { BeginDrag(p); (void)keys; }
    void OnLButtonUp(UINT keys, CPoint p) override;
    void OnMButtonUp(UINT keys, CPoint p) override { OnLButtonUp(keys, p); }
    void OnMouseMove(UINT keys, CPoint p) override;
    BOOL OnMouseWheel(UINT keys, int delta, CPoint screen) override;

private:
    /// An entity with the box around it, so that what is out of sight or less than a pixel costs next to nothing.
    struct Item {
        const ACAD_ENTITY* entity;
        double minX, minY, maxX, maxY;
        std::size_t layer;
        COLORREF color;
    };
    void TakeOver();
    void LeaveOutStrays();
    void BeginDrag(const CPoint& p);
    void EndDrag();
    void DrawBase(const CRect& place, int density);
    void DrawItems(CDC& dc, const CRect& place, bool shown);
    std::size_t LayerOf(const CString& name) const;  // their number if there is none

    const DXF* m_drawing = nullptr;  // borrowed, or the one below
    std::unique_ptr<DXF> m_own;
    std::vector<CDxfLayerSwitch> m_layers;
    std::map<std::string, std::size_t> m_mapRow;  // of the layers, by name in small letters
    std::vector<Item> m_items;
    double m_minX = 0, m_minY = 0, m_maxX = 0, m_maxY = 0;  // of all items but strays
    double m_scale = 0, m_left = 0, m_top = 0;  // pixels a unit; the drawing's point in the corner of its place
    bool m_bFitted = true;   // nobody has moved or zoomed
    bool m_bDimmed = false;
    bool m_bDirty = true;    // the picture below is of another view
    CDC m_cBase;             // the drawing as it is seen
    bool m_bDrag = false;
    CPoint m_ptHeld;         // where the drag began
    CPoint m_ptShift;        // how far it has come
    std::uint64_t m_nDrawn = 0;
};
