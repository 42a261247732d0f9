#include "model/graph_paint.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "geometry/fcoor.h"
#include "platform/saturate.h"

int PenPixels(float width, const CFCoor& coor) {
    const int pixels = width < 0 ? SaturatedInt(-static_cast<double>(width)) : coor.FPtoDP(static_cast<double>(width));
    return std::max(pixels, 1);
}

CRect PixelBox(const CPoint& centre, int r) {
    // The limits keep width and height within an int, too.
    const auto limited = [](std::int64_t v) {
        constexpr std::int64_t kLimit = std::int64_t{1} << 30;
        return static_cast<int>(std::clamp(v, -kLimit, kLimit - 1));
    };
    const std::int64_t x = centre.x, y = centre.y, reach = std::abs(static_cast<std::int64_t>(r));
    return {limited(x - reach), limited(y - reach), limited(x + reach + 1), limited(y + reach + 1)};
}

CPaintScope::CPaintScope(CDC* dc, int rop, CPen* pen, CBrush* brush)
    : m_pDC(dc),
      m_pOldPen(pen ? dc->SelectObject(pen) : nullptr),
      m_pOldBrush(brush ? dc->SelectObject(brush) : nullptr),
      m_nOldRop(dc->GetROP2()) {
    dc->SetROP2(rop);
}

CPaintScope::~CPaintScope() {
    m_pDC->SetROP2(m_nOldRop);
    if (m_pOldBrush) m_pDC->SelectObject(m_pOldBrush);
    if (m_pOldPen) m_pDC->SelectObject(m_pOldPen);
}
