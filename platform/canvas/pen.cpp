#include "platform/canvas/pen.h"

#include <algorithm>

BOOL CPen::CreatePen(int style, int width, COLORREF color) {
    if ((style & PS_STYLE_MASK) > PS_INSIDEFRAME) return 0;
    m_log = {style, std::max(width, 1), color & 0xFFFFFF};
    m_bCreated = true;
    return 1;
}

BOOL CPen::ExtCreatePen(int style, int width, const LOGBRUSH* brush) {
    if (brush == nullptr) return 0;
    return CreatePen(brush->lbStyle == BS_NULL ? PS_NULL : style, width, brush->lbColor);
}

BOOL CPen::CreateStockObject(int index) {
    if (index < WHITE_PEN || index > NULL_PEN) return 0;
    return CreatePen(index == NULL_PEN ? PS_NULL : PS_SOLID, 1, index == WHITE_PEN ? RGB(255, 255, 255) : 0);
}

int CPen::GetLogPen(LOGPEN* pen) const {
    if (pen == nullptr) return 0;
    *pen = m_log;
    return 1;
}
