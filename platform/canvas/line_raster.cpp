#include "platform/canvas/line_raster.h"

#include <algorithm>

namespace {

__extension__ typedef __int128 Wide;  // products of two differences of ints

std::int64_t FloorDiv(Wide a, Wide b) {  // b > 0
    const Wide q = a / b;
    return static_cast<std::int64_t>(a % b < 0 ? q - 1 : q);
}
std::int64_t CeilDiv(Wide a, Wide b) { return -FloorDiv(-a, b); }

struct Place {
    std::int64_t x, y;
};

bool Inside(const CRect& r, const Place& p) {
    return p.x >= r.left && p.x < r.right && p.y >= r.top && p.y < r.bottom;
}

/// Steps at which a coordinate that starts at `from` and moves by `sign` a step lies in [low, high).
void KeepSteps(std::int64_t from, int sign, std::int64_t low, std::int64_t high, std::int64_t& first,
               std::int64_t& end) {
    first = std::max(first, sign > 0 ? low - from : from - (high - 1));
    end = std::min(end, sign > 0 ? high - from : from - low + 1);
}

constexpr int kFraction = 40;  // bits
// Steps are at most CSurface::kMaxSide = 2^15 and each is short by less than 2^-40, so all of them by 2^-25.
constexpr std::int64_t kFixedLimit = std::int64_t{1} << 22;

constexpr CDash kDash[] = {{18, 6}};
constexpr CDash kDot[] = {{3, 3}};
constexpr CDash kDashDot[] = {{9, 6}, {3, 6}};
constexpr CDash kDashDotDot[] = {{9, 3}, {3, 3}, {3, 3}};

/// The walk from a to b without the last `leftOut` steps.
CLineWalk Walk(const Place& a, const Place& b, int leftOut, const CRect& clip) {
    const std::int64_t dx = b.x - a.x, dy = b.y - a.y;
    const std::int64_t lengthX = dx < 0 ? -dx : dx, lengthY = dy < 0 ? -dy : dy;
    const int signX = dx < 0 ? -1 : 1, signY = dy < 0 ? -1 : 1;
    const bool steep = lengthY > lengthX;
    const std::int64_t major = steep ? lengthY : lengthX, minor = steep ? lengthX : lengthY;
    const int minorSign = steep ? signX : signY;

    CLineWalk walk;
    walk.add = 2 * minor;
    walk.whole = 2 * major;
    (steep ? walk.majorY : walk.majorX) = steep ? signY : signX;
    (steep ? walk.minorX : walk.minorY) = minorSign;
    // Across, step i lies (2 minor i + half) / (2 major) pixels off; one less than the half rounds a tie
    // down.
    const std::int64_t half = minorSign > 0 ? major - 1 : major;

    std::int64_t first = 0, end = major + 1 - leftOut;
    if (end <= 0) return walk;
    if (major == 0) {  // one pixel
        if (!Inside(clip, a)) return walk;
        walk.x = static_cast<int>(a.x);
        walk.y = static_cast<int>(a.y);
        walk.count = 1;
        walk.rest = -1;
        return walk;
    }
    std::int64_t offset = 0, rest = half;
    if (!Inside(clip, a) || !Inside(clip, b)) {
        if (clip.IsRectEmpty()) return walk;
        const std::int64_t minorFrom = steep ? a.x : a.y;
        std::int64_t low = 0, high = minor + 1;  // offsets across
        KeepSteps(steep ? a.y : a.x, steep ? signY : signX, steep ? clip.top : clip.left,
                  steep ? clip.bottom : clip.right, first, end);
        KeepSteps(minorFrom, minorSign, steep ? clip.left : clip.top, steep ? clip.right : clip.bottom, low,
                  high);
        if (low >= high) return walk;
        if (minor > 0) {
            // First step whose offset is at least `low`, and the first whose offset is `high`.
            if (low > 0) first = std::max(first, CeilDiv(Wide{low} * walk.whole - half, walk.add));
            if (high <= minor) end = std::min(end, CeilDiv(Wide{high} * walk.whole - half, walk.add));
        }
        if (first >= end) return walk;
        if (first > 0) {
            const Wide travel = Wide{walk.add} * first + half;
            offset = FloorDiv(travel, walk.whole);
            rest = static_cast<std::int64_t>(travel - Wide{offset} * walk.whole);
        }
    }
    walk.first = first;
    walk.count = end - first;
    walk.x = static_cast<int>(a.x + (steep ? offset : first) * signX);
    walk.y = static_cast<int>(a.y + (steep ? first : offset) * signY);
    walk.rest = rest - walk.whole;
    return walk;
}

}  // namespace

CLineWalk WalkLine(const CPoint& a, const CPoint& b, bool withLast, const CRect& clip) {
    return Walk({a.x, a.y}, {b.x, b.y}, withLast ? 0 : 1, clip);
}

CLineWalk WalkSquare(const CPoint& a, const CPoint& b, bool withLast, int density, const CRect& clip) {
    const auto place = [&](const CPoint& p) { return Place{std::int64_t{p.x} * density, std::int64_t{p.y} * density}; };
    const int reach = density - 1;
    return Walk(place(a), place(b), withLast ? 0 : density,
                CRect(clip.left - reach, clip.top - reach, clip.right, clip.bottom));
}

void PaintLine(const CRasterTarget& target, const CPoint& a, const CPoint& b, bool withLast) {
    const CLineWalk walk = WalkLine(a, b, withLast, target.clip);
    if (walk.count == 0) return;
    if (walk.add == 0 && walk.majorX != 0) {
        const int other = walk.x + walk.majorX * static_cast<int>(walk.count - 1);
        target.PaintRun(walk.y, std::min(walk.x, other), std::max(walk.x, other) + 1);
        return;
    }
    std::uint32_t* const start = target.At(walk.x, walk.y);
    const std::ptrdiff_t major = walk.majorX + walk.majorY * target.stride;
    const std::ptrdiff_t minor = walk.minorX + walk.minorY * target.stride;
    const auto step = [&](auto paint) {
        if (walk.whole < kFixedLimit) {
            // The rest as a binary fraction of `whole`, so that a step is one addition and the crossings are
            // its whole part. Half a unit more keeps exact halves off the border; the margin of 1 / (2 whole)
            // is larger than what the rounding of the slope can gather over the steps of the widest surface.
            const std::int64_t slope = (walk.add << kFraction) / walk.whole;
            const std::int64_t rest = 2 * (walk.rest + walk.whole) + 1;
            std::int64_t at = (rest << (kFraction - 1)) / walk.whole;
            std::uint32_t* along = start;
            for (std::int64_t n = walk.count; n > 0; --n) {
                paint(along[(at >> kFraction) * minor]);
                at += slope;
                along += major;
            }
            return;
        }
        std::int64_t rest = walk.rest;
        std::uint32_t* p = start;
        for (std::int64_t n = walk.count; n > 0; --n) {
            paint(*p);
            rest += walk.add;
            const std::int64_t over = ~(rest >> 63);  // all ones when the rest reached 0
            p += major + (minor & over);
            rest -= walk.whole & over;
        }
    };
    const CRasterOp op = target.op;
    if (op.Replaces()) {
        step([value = op.flip](std::uint32_t& pixel) { pixel = value; });
    } else {
        step([op](std::uint32_t& pixel) { pixel = op(pixel); });
    }
}

void PaintSquare(const CRasterTarget& target, const CPoint& a, const CPoint& b, int density) {
    const CRect& clip = target.clip;
    const int k = density;
    const CLineWalk walk = WalkSquare(a, b, false, k, clip);
    if (walk.count == 0) return;
    const auto paint = [&](int left, int top, int right, int bottom) {
        for (int y = top; y < bottom; ++y) target.PaintRun(y, left, right);
    };
    const auto paintClipped = [&](const CRect& r) {
        const int left = std::max(r.left, clip.left), right = std::min(r.right, clip.right);
        if (left < right) paint(left, std::max(r.top, clip.top), right, std::min(r.bottom, clip.bottom));
    };
    const int along = static_cast<int>(walk.count - 1);
    if (walk.add == 0) {  // along an axis
        const int lastX = walk.x + walk.majorX * along, lastY = walk.y + walk.majorY * along;
        paintClipped({std::min(walk.x, lastX), std::min(walk.y, lastY), std::max(walk.x, lastX) + k,
                      std::max(walk.y, lastY) + k});
        return;
    }
    ForEachCovered(walk, k, [&](const CRect& r, std::int64_t) { paintClipped(r); });
}

const CDash* DashPattern(int penStyle, int& count, int& period) {
    const CDash* pattern = nullptr;
    count = 0;
    switch (penStyle & PS_STYLE_MASK) {
        case PS_DASH:
            pattern = kDash, count = 1;
            break;
        case PS_DOT:
            pattern = kDot, count = 1;
            break;
        case PS_DASHDOT:
            pattern = kDashDot, count = 2;
            break;
        case PS_DASHDOTDOT:
            pattern = kDashDotDot, count = 3;
            break;
        default:
            break;
    }
    period = 0;
    for (int i = 0; i < count; ++i) period += pattern[i].on + pattern[i].off;
    return pattern;
}

bool IsDashOn(int penStyle, std::int64_t distance) {
    int count = 0, period = 0;
    const CDash* pattern = DashPattern(penStyle, count, period);
    if (count == 0) return true;
    std::int64_t left = distance % period;
    for (int i = 0; i < count; ++i) {
        if (left < pattern[i].on) return true;
        left -= pattern[i].on;
        if (left < pattern[i].off) return false;
        left -= pattern[i].off;
    }
    return false;
}
