#include "platform/canvas/brush.h"

BOOL CBrush::CreateSolidBrush(COLORREF color) {
    m_log = {BS_SOLID, color & 0xFFFFFF, 0};
    m_bCreated = true;
    return 1;
}

BOOL CBrush::CreateHatchBrush(int hatch, COLORREF color) {
    if (hatch < HS_HORIZONTAL || hatch > HS_DIAGCROSS) return 0;
    m_log = {BS_HATCHED, color & 0xFFFFFF, hatch};
    m_bCreated = true;
    return 1;
}

BOOL CBrush::CreateBrushIndirect(const LOGBRUSH* brush) {
    if (brush == nullptr) return 0;
    switch (brush->lbStyle) {
        case BS_SOLID:
            return CreateSolidBrush(brush->lbColor);
        case BS_HATCHED:
            return CreateHatchBrush(brush->lbHatch, brush->lbColor);
        case BS_NULL:
            m_log = {BS_NULL, 0, 0};
            m_bCreated = true;
            return 1;
        default:
            return 0;
    }
}

BOOL CBrush::CreateStockObject(int index) {
    static constexpr int kGray[] = {255, 192, 128, 64, 0};
    if (index < WHITE_BRUSH || index > NULL_BRUSH) return 0;
    if (index != NULL_BRUSH) return CreateSolidBrush(RGB(kGray[index], kGray[index], kGray[index]));
    const LOGBRUSH none{BS_NULL, 0, 0};
    return CreateBrushIndirect(&none);
}

int CBrush::GetLogBrush(LOGBRUSH* brush) const {
    if (brush == nullptr) return 0;
    *brush = m_log;
    return 1;
}

bool IsOnHatch(int hatch, int x, int y, int density) {
    const auto k = static_cast<unsigned>(density);
    const unsigned u = static_cast<unsigned>(x), v = static_cast<unsigned>(y), last = 8 * k - 1;
    const bool horizontal = (v / k & 7) == 4, vertical = (u / k & 7) == 4;
    // A square of k pixels that slides along a diagonal of slope 1 covers 2 k - 1 of them side by side.
    const bool falling = ((u - v + k - 1) & last) < 2 * k - 1;  // like a backslash
    const bool rising = ((u + v - 7 * k) & last) < 2 * k - 1;
    switch (hatch) {
        case HS_HORIZONTAL:
            return horizontal;
        case HS_VERTICAL:
            return vertical;
        case HS_FDIAGONAL:
            return falling;
        case HS_BDIAGONAL:
            return rising;
        case HS_CROSS:
            return horizontal || vertical;
        case HS_DIAGCROSS:
            return falling || rising;
        default:
            return false;
    }
}
