// The pixel function of all raster modes, and the place it works on.
#pragma once
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/canvas/gdi_types.h"
#include "platform/canvas/surface.h"

/// With the pen's colour fixed, each bit of a pixel is cleared, set, kept or turned; so one AND and one XOR
/// do any of the sixteen modes. Mode - 1 is the truth table, bit 2 P + D.
struct CRasterOp {
    std::uint32_t keep = 0;  // bits whose result depends on the surface
    std::uint32_t flip = 0;  // result where the surface's bit is 0

    CRasterOp(int rop, std::uint32_t pen) {
        const auto table = static_cast<std::uint32_t>(rop - 1);
        const auto column = [&](std::uint32_t d) {  // result for surface bits all d, one pen bit a bit
            return ((table >> (2 + d) & 1) ? pen : 0u) | ((table >> d & 1) ? ~pen : 0u);
        };
        flip = column(0) & kColorBits;
        keep = (column(1) ^ column(0)) & kColorBits;
    }
    std::uint32_t operator()(std::uint32_t surface) const { return (surface & keep) ^ flip; }
    bool Replaces() const { return keep == 0; }

    static constexpr std::uint32_t kColorBits = 0xFFFFFF;
};

/// Pixels to paint on, bounded by a clip that lies within them.
struct CRasterTarget {
    std::uint32_t* pixels;  // row 0, column 0
    std::ptrdiff_t stride;  // pixels a row
    CRect clip;             // nothing outside is touched
    CRasterOp op;

    std::uint32_t* At(int x, int y) const { return pixels + y * stride + x; }

    /// Pixels x0 <= x < x1 of a row within the clip.
    void PaintRun(int y, int x0, int x1) const {
        std::uint32_t* p = At(x0, y);
        std::uint32_t* const end = p + (x1 - x0);
        if (op.Replaces()) {
            std::fill(p, end, op.flip);
        } else {
            for (; p != end; ++p) *p = op(*p);
        }
    }
};
