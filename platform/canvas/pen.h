// CPen: how lines are drawn.
#pragma once
#include "platform/canvas/gdi_object.h"

/// A pen. At birth it is solid, black and one pixel wide. Widths below 1 count as 1.
class CPen : public CGdiObject {
public:
    CPen() = default;
    CPen(int style, int width, COLORREF color) { CreatePen(style, width, color); }
    CPen(int style, int width, const LOGBRUSH* brush) { ExtCreatePen(style, width, brush); }

    /// PS_SOLID to PS_INSIDEFRAME. The gaps of a dashed pen one pixel wide take the background
    /// colour in OPAQUE mode; those of wider ones are never painted.
    BOOL CreatePen(int style, int width, COLORREF color);

    /// With PS_GEOMETRIC and cap and join bits. The gaps of a geometric pen are never painted. A null brush
    /// pointer gives 0.
    BOOL ExtCreatePen(int style, int width, const LOGBRUSH* brush);
    BOOL CreatePen(int style, int width, const LOGBRUSH* brush) { return ExtCreatePen(style, width, brush); }

    BOOL CreateStockObject(int index) override;
    int GetLogPen(LOGPEN* pen) const;
    const LOGPEN& Log() const { return m_log; }

protected:
    void Reset() override { m_log = LOGPEN{}; }

private:
    LOGPEN m_log;  // style with all its bits
};
