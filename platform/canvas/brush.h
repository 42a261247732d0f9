// CBrush: how areas are filled.
#pragma once
#include "platform/canvas/gdi_object.h"

/// A brush: solid, hatched, or null, which fills nothing. At birth it is solid white.
class CBrush : public CGdiObject {
public:
    CBrush() = default;
    explicit CBrush(COLORREF color) { CreateSolidBrush(color); }
    CBrush(int hatch, COLORREF color) { CreateHatchBrush(hatch, color); }

    BOOL CreateSolidBrush(COLORREF color);

    /// Lines of one pixel on a lattice of 8 that is fixed to the surface: HS_HORIZONTAL to HS_DIAGCROSS; 0
    /// for others. Between them stands the background colour in OPAQUE mode.
    BOOL CreateHatchBrush(int hatch, COLORREF color);

    BOOL CreateBrushIndirect(const LOGBRUSH* brush);
    BOOL CreateStockObject(int index) override;
    int GetLogBrush(LOGBRUSH* brush) const;
    const LOGBRUSH& Log() const { return m_log; }

protected:
    void Reset() override { m_log = LOGBRUSH{BS_SOLID, RGB(255, 255, 255), 0}; }

private:
    LOGBRUSH m_log{BS_SOLID, RGB(255, 255, 255), 0};
};

/// True if the lattice of a hatch style passes through pixel (x, y) of a surface, neither below 0. Its lines are as
/// wide as others of one unit.
bool IsOnHatch(int hatch, int x, int y, int density = 1);
