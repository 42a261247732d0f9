// What painting the primitives has in common. Internal.
#pragma once
#include "platform/canvas/dc.h"

class CFCoor;

/// Pixels of a pen: a negative width is in pixels, a positive one in model units; at least 1.
int PenPixels(float width, const CFCoor& coor);

/// The rectangle of the pixels at most r from `centre`, safe for any centre and radius.
CRect PixelBox(const CPoint& centre, int r);

/// Selects what a primitive paints with and gives the device context its former state back. Objects are borrowed
/// and must outlive the scope; null leaves what is selected.
class CPaintScope {
public:
    CPaintScope(CDC* dc, int rop, CPen* pen, CBrush* brush);
    CPaintScope(const CPaintScope&) = delete;
    CPaintScope& operator=(const CPaintScope&) = delete;
    ~CPaintScope();

private:
    CDC* m_pDC;
    CPen* m_pOldPen;
    CBrush* m_pOldBrush;
    int m_nOldRop;
};
