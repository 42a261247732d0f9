// CDC: a device context, which draws on a surface in memory.
#pragma once
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/canvas/bitmap.h"
#include "platform/canvas/brush.h"
#include "platform/canvas/font.h"
#include "platform/canvas/gdi_types.h"
#include "platform/canvas/icon.h"
#include "platform/canvas/pen.h"
#include "platform/canvas/rgn.h"
#include "platform/canvas/surface.h"

class CEllipseRaster;
class CSector;
class CSpanSet;
struct CRasterTarget;

/// Draws with the selected pen, brush and font on a surface that it shares with its owner (a bitmap, a
/// window). Promises:
///  - device coordinates, y down, any int; what lies outside of the clip costs nothing and changes no pixel
///  of what
///    is seen;
///  - each call touches each pixel at most once, pen and brush together, so that drawing anything twice under
///    R2_XORPEN or R2_NOT gives back every pixel; all figures and text go through the raster mode;
///  - pens wider than 1 are centred on the figure, with square caps and bevelled joins;
///  - without a surface every operation is harmless and answers 0;
///  - on a dense surface the same calls give the same picture, finer: coordinates, extents, pens, dashes, hatches
///  and fonts keep their units, of which each has a square of Density by Density pixels. What is called a pixel
///  here is such a square. A line one unit wide is what a square of that size covers on its way.
class CDC {
public:
    CDC();
    explicit CDC(std::shared_ptr<CSurface> surface);
    virtual ~CDC();
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;

    // Life
    BOOL CreateCompatibleDC(CDC* dc);  // a memory context with a bitmap of one pixel; `dc` may be null
    BOOL DeleteDC();                   // back to the state at birth
    void Attach(
        std::shared_ptr<CSurface> surface);  // draws there from now on; the clip becomes the whole of it
    HDC GetSafeHdc() { return m_pSurface ? this : nullptr; }
    CSurface* Surface() const { return m_pSurface.get(); }  // null if there is none
    const std::shared_ptr<CSurface>& SharedSurface() const { return m_pSurface; }
    int Density() const { return m_nDensity; }  // of the surface; 1 without one

    // State
    int SaveDC();                // number of the saved state, from 1
    BOOL RestoreDC(int number);  // a number of SaveDC, or -1 for the last
    int GetDeviceCaps(int index) const;
    BOOL IsPrinting() const { return m_bPrinting; }
    void SetPrinting(BOOL printing) { m_bPrinting = printing; }

    // Objects; the one selected before comes back, at first a stock object of the context's own
    CPen* SelectObject(CPen* pen);
    CBrush* SelectObject(CBrush* brush);
    CFont* SelectObject(CFont* font);
    CBitmap* SelectObject(CBitmap* bitmap);        // memory contexts only; null on others
    CGdiObject* SelectObject(CGdiObject* object);  // null for a region, which cannot be selected
    CGdiObject* SelectStockObject(int index);      // null for unknown numbers
    CPen* GetCurrentPen() const { return m_state.pen; }
    CBrush* GetCurrentBrush() const { return m_state.brush; }
    CFont* GetCurrentFont() const { return m_state.font; }

    // Attributes; the value before comes back. A value that is none of the constants changes nothing and
    // gives 0.
    int SetROP2(int mode);
    int GetROP2() const { return m_state.rop; }
    int SetBkMode(int mode);
    int GetBkMode() const { return m_state.bkMode; }
    COLORREF SetBkColor(COLORREF color);
    COLORREF GetBkColor() const { return m_state.bkColor; }
    COLORREF SetTextColor(COLORREF color);
    COLORREF GetTextColor() const { return m_state.textColor; }
    UINT SetTextAlign(UINT align);
    UINT GetTextAlign() const { return m_state.textAlign; }
    int SetPolyFillMode(int mode);
    int GetPolyFillMode() const { return m_state.fillMode; }
    int SetStretchBltMode(int mode);

    // Clip, a rectangle. The result is NULLREGION or SIMPLEREGION.
    int IntersectClipRect(int left, int top, int right, int bottom);
    int IntersectClipRect(const CRect& r) { return IntersectClipRect(r.left, r.top, r.right, r.bottom); }
    int GetClipBox(CRect* box) const;
    int GetClipBox(CRect& box) const { return GetClipBox(&box); }
    int SelectClipRgn(CRgn* region);  // null: the whole surface; ERROR for a polygon, which is no clip here
    BOOL PtVisible(int x, int y) const;
    BOOL RectVisible(const CRect& rect) const;

    // Lines
    CPoint MoveTo(int x, int y);  // the position before
    CPoint MoveTo(const CPoint& p) { return MoveTo(p.x, p.y); }
    CPoint GetCurrentPosition() const { return m_state.position; }
    BOOL LineTo(int x, int y);  // without the last pixel
    BOOL LineTo(const CPoint& p) { return LineTo(p.x, p.y); }
    BOOL Polyline(const CPoint* points, int count);  // one figure, without the last pixel; the position stays

    /// A line from the position to the start of the arc, then the arc of a circle; the position becomes the
    /// arc's end. Degrees; the point at angle t is (x + r cos t, y - r sin t), so a positive sweep runs
    /// anticlockwise on the screen. Both end pixels are lit. Sweeps of a full turn or more give the circle.
    /// Double, since a float of degrees is good for 2e-5 of the radius only. 0 for r < 0 or angles that are
    /// not finite.
    BOOL AngleArc(int x, int y, int r, double start, double sweep);

    /// Part of the ellipse in the rectangle, anticlockwise on the screen from the direction of `start`, seen
    /// from the centre, to that of `end`; equal directions give the whole. Neither uses nor moves the
    /// position.
    BOOL Arc(const CRect& rect, const CPoint& start, const CPoint& end);
    BOOL Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
        return Arc(CRect(x1, y1, x2, y2), CPoint(x3, y3), CPoint(x4, y4));
    }

    // Figures: outline by the pen, inside by the brush. Right and bottom are not part of them. With a null
    // pen the brush fills all of the figure.
    BOOL Rectangle(int left, int top, int right, int bottom);
    BOOL Rectangle(const CRect& r) { return Rectangle(r.left, r.top, r.right, r.bottom); }
    BOOL Ellipse(int left, int top, int right, int bottom);
    BOOL Ellipse(const CRect& r) { return Ellipse(r.left, r.top, r.right, r.bottom); }
    BOOL RoundRect(int left, int top, int right, int bottom, int cornerWidth, int cornerHeight);
    BOOL RoundRect(const CRect& r, const CPoint& corner) {
        return RoundRect(r.left, r.top, r.right, r.bottom, corner.x, corner.y);
    }
    BOOL Polygon(const CPoint* points, int count);  // closed by itself; inside by the polygon fill mode

    // Fills
    BOOL FillRgn(CRgn* region, CBrush* brush);  // under the raster mode
    BOOL PaintRgn(CRgn* region) { return FillRgn(region, m_state.brush); }
    int FillRect(const CRect* rect, CBrush* brush);  // these four replace, whatever the raster mode
    int FillRect(const CRect& rect, CBrush* brush) { return FillRect(&rect, brush); }
    void FillSolidRect(int x, int y, int width, int height,
                       COLORREF color);  // sets the background colour too
    void FillSolidRect(const CRect& rect, COLORREF color);
    void FrameRect(const CRect* rect, CBrush* brush);  // a frame of one pixel
    void Draw3dRect(const CRect& rect, COLORREF topLeft, COLORREF bottomRight);
    void InvertRect(const CRect* rect);
    void DrawFocusRect(const CRect* rect);  // every second pixel of the frame inverted

    // Pixels; CLR_INVALID outside of the clip
    COLORREF GetPixel(int x, int y) const;
    COLORREF GetPixel(const CPoint& p) const { return GetPixel(p.x, p.y); }
    COLORREF SetPixel(int x, int y,
                      COLORREF color);  // replaces, whatever the raster mode; the colour comes back
    COLORREF SetPixel(const CPoint& p, COLORREF color) { return SetPixel(p.x, p.y, color); }
    BOOL SetPixelV(int x, int y, COLORREF color) { return SetPixel(x, y, color) != CLR_INVALID; }

    // Blocks. Source pixels that do not exist leave theirs untouched. Source and destination may overlap.
    BOOL BitBlt(int x, int y, int width, int height, CDC* source, int sourceX, int sourceY, DWORD rop);
    BOOL StretchBlt(int x, int y, int width, int height, CDC* source, int sourceX, int sourceY,
                    int sourceWidth, int sourceHeight, DWORD rop);  // nearest pixel
    BOOL PatBlt(int x, int y, int width, int height, DWORD rop);    // with the selected brush
    BOOL DrawIcon(int x, int y, HICON icon) {
        return ::DrawIconEx(this, x, y, icon, 0, 0, 0, nullptr, DI_NORMAL);
    }

    // Text in UTF-8; a count below 0 reads to the zero
    BOOL TextOut(int x, int y, const char* text, int count);
    BOOL TextOut(int x, int y, const CString& text) {
        return TextOut(x, y, text.GetString(), text.GetLength());
    }
    /// With `steps`, the distance along the line from each character (not byte) to the next comes from there.
    BOOL ExtTextOut(int x, int y, UINT options, const CRect* rect, const char* text, int count,
                    const int* steps);
    BOOL ExtTextOut(int x, int y, UINT options, const CRect* rect, const CString& text, const int* steps) {
        return ExtTextOut(x, y, options, rect, text.GetString(), text.GetLength(), steps);
    }
    int DrawText(const char* text, int count, CRect* rect, UINT format);  // height of the text
    int DrawText(const CString& text, CRect* rect, UINT format) {
        return DrawText(text.GetString(), text.GetLength(), rect, format);
    }
    CSize GetTextExtent(const char* text, int count) const;  // of the unturned text
    CSize GetTextExtent(const CString& text) const {
        return GetTextExtent(text.GetString(), text.GetLength());
    }
    BOOL GetTextMetrics(TEXTMETRIC* metrics) const;

private:
    struct State {
        CPen* pen = nullptr;      // borrowed, only handed back
        CBrush* brush = nullptr;  // borrowed, only handed back
        CFont* font = nullptr;    // borrowed, only handed back
        LOGPEN logPen;            // what the pen was when selected
        LOGBRUSH logBrush;        // what the brush was when selected
        LOGFONT logFont;          // what the font was when selected
        int rop = R2_COPYPEN;
        int bkMode = OPAQUE;
        COLORREF bkColor = RGB(255, 255, 255);
        COLORREF textColor = 0;
        UINT textAlign = TA_LEFT | TA_TOP;
        int fillMode = ALTERNATE;
        CPoint position;  // where LineTo starts
        CRect clip;       // in units, always within the surface
    };

    /// What the pen covers of a figure, and the gaps of its dashes if they are painted too.
    struct Stroke;

    CRasterTarget Target(COLORREF color, int rop) const;
    void PaintSpans(const CSpanSet& spans, COLORREF color, int rop);
    void PaintBrush(const CSpanSet& spans, const LOGBRUSH& brush, int rop);
    void PaintFigure(Stroke& stroke, CSpanSet* inside);
    void AddPath(const CPoint* points, int count, bool closed, Stroke& stroke) const;
    void AddEllipse(const CEllipseRaster& ellipse, const CSector* sector, Stroke& stroke) const;
    bool HasPen() const { return (m_state.logPen.lopnStyle & PS_STYLE_MASK) != PS_NULL; }
    bool IsPenDashed() const;
    CRect DeviceClip() const;              // pixels
    CRect Visible(const CRect& r) const;  // what the clip leaves of it, in pixels
    BOOL CopyBlock(const CRect& to, const CSurface* source, const CRect& from, DWORD rop);
    bool PatternAt(int x, int y, std::uint32_t& pixel) const;
    BOOL DrawGlyphs(int x, int y, const char* text, int count, const int* steps);

    std::shared_ptr<CSurface> m_pSurface;   // shared with a bitmap or a window
    int m_nDensity = 1;                     // the surface's
    State m_state;                          // as selected
    std::vector<State> m_aSaved;            // SaveDC's
    CBitmap* m_pBitmap = nullptr;           // borrowed, only handed back
    std::unique_ptr<CBitmap> m_pOwnBitmap;  // the one pixel of a new memory context
    int m_nStretchMode = COLORONCOLOR;      // kept, not read
    BOOL m_bPrinting = 0;                   // the context stands for a printer
};

/// Copies with one colour of the source left out, stretched to the destination's size by the nearest pixel. 0
/// for a null context or a size below 1.
BOOL TransparentBlt2(HDC dst, int x, int y, int width, int height, HDC src, int sourceX, int sourceY,
                     int sourceWidth, int sourceHeight, COLORREF transparent);
