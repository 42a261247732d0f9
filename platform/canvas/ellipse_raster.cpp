#include "platform/canvas/ellipse_raster.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "platform/saturate.h"

namespace {
constexpr double kPi = 3.141592653589793;
}

// In half pixels from the centre, x^2 H^2 + y^2 W^2 <= W^2 H^2 with W, H the box's sides in pixels. Every
// operation below rounds monotonically, so extents shrink steadily from the middle row outwards even where
// the numbers are too large to be exact. Circles are exact up to a radius of 3e7 and never more than a pixel
// off beyond.
CEllipseRaster::Extent CEllipseRaster::RowExtent(std::int64_t y, std::int64_t grow) const {
    const std::int64_t height = m_height + grow, width = m_width + grow;
    const std::int64_t offset = std::abs(OffsetY(y));
    if (height <= 0 || width <= 0 || offset >= height) return {};
    const std::int64_t centre = 2 * m_left + m_width - 1;  // in half pixels
    const std::int64_t parity = centre & 1;
    std::int64_t reach = 0;  // largest |x| in half pixels that a pixel of this row can have
    if (offset <= 1) {
        reach = width;  // a very flat ellipse still reaches the sides of its box
    } else {
        const auto h = static_cast<double>(height);
        const double slice = static_cast<double>(height - offset) * static_cast<double>(height + offset);
        const double x =
            width == height ? std::sqrt(slice) : std::sqrt(slice) * (static_cast<double>(width) / h);
        reach = std::min(static_cast<std::int64_t>(x), width);
    }
    if ((reach & 1) != parity) --reach;
    if (grow >= 0) reach = std::max(reach, parity);  // a very slim one reaches its top
    if (reach < 0) return {};
    return {(centre - reach) >> 1, (centre + reach) >> 1};
}

void CEllipseRaster::AddInside(CSpanSet& spans) const {
    const std::int64_t first = std::max<std::int64_t>(m_top, spans.Clip().top);
    const std::int64_t end = std::min<std::int64_t>(m_top + m_height, spans.Clip().bottom);
    for (std::int64_t y = first; y < end; ++y) {
        const Extent row = RowExtent(y, 0);
        if (!row.IsEmpty()) spans.Add(y, row.left, row.right + 1);
    }
}

void CEllipseRaster::AddOutline(int penWidth, int density, CSpanSet& spans) const {
    const std::int64_t k = density, width = k * penWidth, margin = width > 1 ? width : 0;
    const std::int64_t first = std::max<std::int64_t>(m_top - margin, spans.Clip().top);
    const std::int64_t end = std::min<std::int64_t>(m_top + m_height + margin, spans.Clip().bottom);
    if (first >= end) return;
    if (width > 1) {
        for (std::int64_t y = first; y < end; ++y) {
            const Extent outer = RowExtent(y, width - k);
            if (outer.IsEmpty()) continue;
            const Extent inner = RowExtent(y, -width - k);
            if (inner.IsEmpty()) {
                spans.Add(y, outer.left, outer.right + 1);
            } else {
                spans.Add(y, outer.left, inner.left);
                spans.Add(y, inner.right + 1, outer.right + 1);
            }
        }
        return;
    }
    Extent above = RowExtent(first - 1, 0), row = RowExtent(first, 0);
    for (std::int64_t y = first; y < end; ++y) {
        const Extent below = RowExtent(y + 1, 0);
        AddRowOutline(y, above, row, below, spans);
        above = row;
        row = below;
    }
}

void CEllipseRaster::AddRowOutline(std::int64_t y, const Extent& above, const Extent& row,
                                   const Extent& below, CSpanSet& spans) {
    if (row.IsEmpty()) return;
    const std::int64_t left = std::max({row.left, above.left - 1, below.left - 1});
    const std::int64_t right = std::min({row.right, above.right + 1, below.right + 1});
    if (above.IsEmpty() || below.IsEmpty() || left + 1 >= right) {
        spans.Add(y, row.left, row.right + 1);
    } else {
        spans.Add(y, row.left, left + 1);
        spans.Add(y, right, row.right + 1);
    }
}

CSector::CSector(double startRadians, double sweepRadians, int density)
    : m_start(startRadians),
      m_slack(density),
      m_bReversed(sweepRadians < 0),
      m_bFull(std::abs(sweepRadians) >= 2 * kPi - 1e-12),
      m_bWide(std::abs(sweepRadians) > kPi) {
    const double end = startRadians + sweepRadians, middle = startRadians + sweepRadians / 2;
    const double low = m_bReversed ? end : startRadians, high = m_bReversed ? startRadians : end;
    m_ax = std::cos(low), m_ay = -std::sin(low);
    m_bx = std::cos(high), m_by = -std::sin(high);
    m_mx = std::cos(middle), m_my = -std::sin(middle);
}

bool CSector::Contains(double dx, double dy) const {
    if (m_bFull) return true;
    // With y down, a x p < 0 says that p lies anticlockwise of a.
    const double pastLow = m_ay * dx - m_ax * dy;     // distance anticlockwise of the lower limit
    const double beforeHigh = m_bx * dy - m_by * dx;  // distance clockwise of the upper limit
    if (!m_bWide) return pastLow >= -m_slack && beforeHigh >= -m_slack && m_mx * dx + m_my * dy >= -m_slack;
    return pastLow >= -m_slack || beforeHigh >= -m_slack;
}

CRect CSector::Bounds(const CEllipseRaster& ellipse, std::int64_t penWidth, const CRect& clip) const {
    // The box of both limits and of the axis ends between them, each on the ellipse; none of it matters for a
    // sector that is nearly full.
    if (m_bFull) return clip;
    const double a = static_cast<double>(ellipse.Width()) / 2, b = static_cast<double>(ellipse.Height()) / 2;
    double left = 1e300, top = 1e300, right = -1e300, bottom = -1e300;
    const auto add = [&](double dx, double dy) {
        const double reach = std::hypot(dx / a, dy / b);  // a direction, pulled onto the ellipse
        if (!(reach > 0)) return;
        left = std::min(left, dx / reach), right = std::max(right, dx / reach);
        top = std::min(top, dy / reach), bottom = std::max(bottom, dy / reach);
    };
    add(m_ax, m_ay), add(m_bx, m_by);
    // Twice the distance, as Contains takes half pixels.
    if (Contains(2 * a, 0)) add(1, 0);
    if (Contains(-2 * a, 0)) add(-1, 0);
    if (Contains(0, 2 * b)) add(0, 1);
    if (Contains(0, -2 * b)) add(0, -1);
    const double margin = static_cast<double>(penWidth) + 1 + m_slack;
    const auto cut = [](double v, int low, int high) { return SaturatedInt(std::floor(v), low, high); };
    CRect r;
    r.left = cut(ellipse.CentreX() + left - margin, clip.left, clip.right);
    r.top = cut(ellipse.CentreY() + top - margin, clip.top, clip.bottom);
    r.right = cut(ellipse.CentreX() + right + margin + 1, clip.left, clip.right);
    r.bottom = cut(ellipse.CentreY() + bottom + margin + 1, clip.top, clip.bottom);
    return r;
}
