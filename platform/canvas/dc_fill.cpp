// Areas, blocks and icons.
#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "platform/canvas/dc_stroke.h"
#include "platform/canvas/polygon_raster.h"
#include "platform/canvas/raster_op.h"

namespace {

__extension__ typedef __int128 Wide;
constexpr std::int64_t kMaxInt = std::numeric_limits<int>::max();

bool UsesPattern(DWORD rop) { return ((rop >> 20 ^ rop >> 16) & 0xF) != 0; }
bool UsesSource(DWORD rop) { return ((rop >> 18 ^ rop >> 16) & 0x33) != 0; }

/// The truth table of a block transfer: bit 4 P + 2 S + D of the byte holds the result.
std::uint32_t Ternary(DWORD rop, std::uint32_t p, std::uint32_t s, std::uint32_t d) {
    const auto table = static_cast<std::uint32_t>(rop >> 16);
    std::uint32_t result = 0;
    for (std::uint32_t i = 0; i < 8; ++i) {
        if ((table >> i & 1) != 0) result |= (i & 4 ? p : ~p) & (i & 2 ? s : ~s) & (i & 1 ? d : ~d);
    }
    return result & CRasterOp::kColorBits;
}

/// Clipped pixel range of a block's side that starts at `from`, and for each the source position of the
/// nearest pixel, or -1 where the source has none.
struct Mapping {
    Mapping(std::int64_t from, std::int64_t size, std::int64_t sourceFrom, std::int64_t sourceSize, int sourceEnd,
            int low, int high) {
        first = static_cast<int>(std::clamp<std::int64_t>(from, low, high));
        const auto end = static_cast<int>(std::clamp<std::int64_t>(from + size, first, high));
        source.reserve(static_cast<std::size_t>(end - first));
        for (int i = first; i < end; ++i) {
            const Wide middle = 2 * (Wide{i} - from) + 1;
            const auto at = sourceFrom + static_cast<std::int64_t>(middle * sourceSize / (2 * size));
            source.push_back(at >= 0 && at < sourceEnd ? static_cast<int>(at) : -1);
        }
    }
    int first = 0;
    std::vector<int> source;
};

int SaturatedSum(int a, int b) {
    return static_cast<int>(std::clamp<std::int64_t>(std::int64_t{a} + b, -kMaxInt - 1, kMaxInt));
}
CRect Block(int x, int y, int width, int height) {
    return {x, y, SaturatedSum(x, width), SaturatedSum(y, height)};
}

/// A side of a block in pixels.
struct Side {
    Side(int low, int high, int density)
        : from(std::int64_t{low} * density), size((std::int64_t{high} - low) * density) {}
    std::int64_t from, size;
};

/// Visits the pixels of `to` that have a source: visit(destination, source pixel). An overlapping source is
/// copied first. The rectangles are in units, each in those of its own surface.
template <typename Visit>
void ForEachSourcePixel(CSurface& surface, const CRect& clip, const CRect& to, const CSurface& source,
                        const CRect& from, Visit visit) {
    const int k = surface.Density(), sourceK = source.Density();
    const auto mapping = [&](Side side, Side sourceSide, int sourceEnd, int low, int high) {
        return Mapping(side.from, side.size, sourceSide.from, sourceSide.size, sourceEnd, low * k, high * k);
    };
    const Mapping columns = mapping({to.left, to.right, k}, {from.left, from.right, sourceK}, source.Width(),
                                    clip.left, clip.right);
    const Mapping rows = mapping({to.top, to.bottom, k}, {from.top, from.bottom, sourceK}, source.Height(),
                                 clip.top, clip.bottom);
    if (columns.source.empty() || rows.source.empty()) return;
    CSurface copy;
    const CSurface* read = &source;
    if (read == &surface) {
        copy = source;
        read = &copy;
    }
    for (std::size_t j = 0; j < rows.source.size(); ++j) {
        if (rows.source[j] < 0) continue;
        const std::uint32_t* line = read->Row(rows.source[j]);
        const int y = rows.first + static_cast<int>(j);
        std::uint32_t* pixel = surface.Row(y) + columns.first;
        int x = columns.first;
        for (const int column : columns.source) {
            if (column >= 0) visit(*pixel, line[column], x, y);
            ++pixel;
            ++x;
        }
    }
}

}  // namespace

CRect CDC::Visible(const CRect& r) const {
    const CRect& clip = m_state.clip;
    const int k = m_nDensity;
    const auto at = [&](int v, int low, int high) { return std::clamp(v, low, high) * k; };
    return {at(r.left, clip.left, clip.right), at(r.top, clip.top, clip.bottom), at(r.right, clip.left, clip.right),
            at(r.bottom, clip.top, clip.bottom)};
}

void CDC::PaintSpans(const CSpanSet& spans, COLORREF color, int rop) {
    const CRasterTarget target = Target(color, rop);
    for (const CSpan& s : spans.Spans()) target.PaintRun(s.y, s.x0, s.x1);
}

void CDC::PaintBrush(const CSpanSet& spans, const LOGBRUSH& brush, int rop) {
    if (brush.lbStyle == BS_NULL) return;
    if (brush.lbStyle == BS_SOLID) {
        PaintSpans(spans, brush.lbColor, rop);
        return;
    }
    const CRasterTarget line = Target(brush.lbColor, rop), gap = Target(m_state.bkColor, rop);
    const bool opaque = m_state.bkMode == OPAQUE;
    for (const CSpan& s : spans.Spans()) {
        for (int x = s.x0; x < s.x1; ++x) {
            std::uint32_t& pixel = *line.At(x, s.y);
            if (IsOnHatch(brush.lbHatch, x, s.y, m_nDensity)) {
                pixel = line.op(pixel);
            } else if (opaque) {
                pixel = gap.op(pixel);
            }
        }
    }
}

BOOL CDC::FillRgn(CRgn* region, CBrush* brush) {
    if (m_pSurface == nullptr || region == nullptr || brush == nullptr || !region->IsCreated()) return 0;
    const CRect clip = DeviceClip();
    CSpanSet spans(clip);
    CPolygonRaster raster(clip);
    raster.AddPolygon(region->Points().data(), static_cast<int>(region->Points().size()), m_nDensity);
    raster.Finish(region->FillMode() == WINDING, spans);
    spans.Normalize();
    PaintBrush(spans, brush->Log(), m_state.rop);
    return 1;
}

int CDC::FillRect(const CRect* rect, CBrush* brush) {
    if (m_pSurface == nullptr || rect == nullptr || brush == nullptr) return 0;
    const CRect r = Visible(*rect);
    CSpanSet spans(DeviceClip());
    for (int y = r.top; y < r.bottom; ++y) spans.Add(y, r.left, r.right);
    PaintBrush(spans, brush->Log(), R2_COPYPEN);
    return 1;
}

void CDC::FillSolidRect(const CRect& rect, COLORREF color) {
    SetBkColor(color);
    CBrush brush(color);
    FillRect(&rect, &brush);
}

void CDC::FillSolidRect(int x, int y, int width, int height, COLORREF color) {
    FillSolidRect(Block(x, y, width, height), color);
}

void CDC::FrameRect(const CRect* rect, CBrush* brush) {
    if (rect == nullptr || rect->IsRectEmpty()) return;
    const CRect& r = *rect;
    FillRect(CRect(r.left, r.top, r.right, r.top + 1), brush);
    FillRect(CRect(r.left, r.bottom - 1, r.right, r.bottom), brush);
    FillRect(CRect(r.left, r.top, r.left + 1, r.bottom), brush);
    FillRect(CRect(r.right - 1, r.top, r.right, r.bottom), brush);
}

void CDC::Draw3dRect(const CRect& r, COLORREF topLeft, COLORREF bottomRight) {
    if (r.IsRectEmpty()) return;
    CBrush light(topLeft), dark(bottomRight);
    FillRect(CRect(r.left, r.top, r.right - 1, r.top + 1), &light);
    FillRect(CRect(r.left, r.top, r.left + 1, r.bottom - 1), &light);
    FillRect(CRect(r.right - 1, r.top, r.right, r.bottom), &dark);
    FillRect(CRect(r.left, r.bottom - 1, r.right, r.bottom), &dark);
}

void CDC::InvertRect(const CRect* rect) {
    if (rect == nullptr) return;
    const CRect r = Visible(*rect);
    const CRasterTarget target = Target(0, R2_NOT);
    for (int y = r.top; y < r.bottom && r.left < r.right; ++y) target.PaintRun(y, r.left, r.right);
}

void CDC::DrawFocusRect(const CRect* rect) {
    if (rect == nullptr || rect->IsRectEmpty()) return;
    const CRasterTarget target = Target(0, R2_NOT);
    const CRect r = Visible(*rect);
    for (int py = r.top; py < r.bottom; ++py) {
        const int y = py / m_nDensity;
        const bool across = y == rect->top || y == rect->bottom - 1;
        for (int px = r.left; px < r.right; ++px) {
            const int x = px / m_nDensity;
            const bool frame = across || x == rect->left || x == rect->right - 1;
            if (frame && ((x ^ y) & 1) == 0) *target.At(px, py) = target.op(*target.At(px, py));
        }
    }
}

bool CDC::PatternAt(int x, int y, std::uint32_t& pixel) const {
    const LOGBRUSH& brush = m_state.logBrush;
    const bool line = brush.lbStyle == BS_SOLID || IsOnHatch(brush.lbHatch, x, y, m_nDensity);
    if (brush.lbStyle == BS_NULL || (!line && m_state.bkMode == TRANSPARENT)) return false;
    pixel = PixelFromColor(line ? brush.lbColor : m_state.bkColor);
    return true;
}

BOOL CDC::CopyBlock(const CRect& to, const CSurface* source, const CRect& from, DWORD rop) {
    if (m_pSurface == nullptr || to.IsRectEmpty()) return 0;
    const bool pattern = UsesPattern(rop);
    const auto combine = [&](std::uint32_t& d, std::uint32_t s, int x, int y) {
        std::uint32_t p = 0;
        if (!pattern || PatternAt(x, y, p)) d = Ternary(rop, p, s, d);
    };
    if (source == nullptr || from.IsRectEmpty()) return 0;
    if ((rop >> 16 & 0xFF) == (SRCCOPY >> 16 & 0xFF)) {
        ForEachSourcePixel(*m_pSurface, m_state.clip, to, *source, from,
                           [](std::uint32_t& d, std::uint32_t s, int, int) { d = s; });
    } else {
        ForEachSourcePixel(*m_pSurface, m_state.clip, to, *source, from, combine);
    }
    return 1;
}

BOOL CDC::BitBlt(int x, int y, int width, int height, CDC* source, int sourceX, int sourceY, DWORD rop) {
    if (width < 1 || height < 1) return 0;
    if (!UsesSource(rop)) return PatBlt(x, y, width, height, rop);
    // One size for both, so that a saturated sum stretches nothing.
    const CSurface* surface = source ? source->Surface() : nullptr;
    if (m_pSurface && surface && surface != m_pSurface.get() && surface->Density() == m_nDensity &&
        (rop >> 16 & 0xFF) == (SRCCOPY >> 16 & 0xFF)) {
        const std::int64_t k = m_nDensity, shiftX = k * (std::int64_t{sourceX} - x), shiftY = k * (std::int64_t{sourceY} - y);
        const CRect clip = DeviceClip();
        const auto left = std::max<std::int64_t>({k * x, clip.left, -shiftX});
        const auto top = std::max<std::int64_t>({k * y, clip.top, -shiftY});
        const auto right =
            std::min<std::int64_t>({k * (std::int64_t{x} + width), clip.right, surface->Width() - shiftX});
        const auto bottom =
            std::min<std::int64_t>({k * (std::int64_t{y} + height), clip.bottom, surface->Height() - shiftY});
        for (std::int64_t row = top; row < bottom && left < right; ++row) {
            const std::uint32_t* from = surface->Row(static_cast<int>(row + shiftY)) + (left + shiftX);
            std::copy(from, from + (right - left), m_pSurface->Row(static_cast<int>(row)) + left);
        }
        return 1;
    }
    const int w = static_cast<int>(std::min({std::int64_t{width}, kMaxInt - x, kMaxInt - sourceX}));
    const int h = static_cast<int>(std::min({std::int64_t{height}, kMaxInt - y, kMaxInt - sourceY}));
    return CopyBlock(Block(x, y, w, h), surface, Block(sourceX, sourceY, w, h), rop);
}

BOOL CDC::StretchBlt(int x, int y, int width, int height, CDC* source, int sourceX, int sourceY,
                     int sourceWidth, int sourceHeight, DWORD rop) {
    if (width < 1 || height < 1) return 0;
    if (!UsesSource(rop)) return PatBlt(x, y, width, height, rop);
    return CopyBlock(Block(x, y, width, height), source ? source->Surface() : nullptr,
                     Block(sourceX, sourceY, sourceWidth, sourceHeight), rop);
}

// Without a source, pattern and surface remain: the same truth table as a raster mode's.
BOOL CDC::PatBlt(int x, int y, int width, int height, DWORD rop) {
    if (m_pSurface == nullptr || UsesSource(rop)) return 0;
    CRect block = Block(x, y, width, height);
    block.NormalizeRect();
    const auto table = static_cast<int>(rop >> 16 & 0xFF);
    const int mode = ((table >> 4 & 3) << 2 | (table & 3)) + 1;
    block = Visible(block);
    CSpanSet spans(DeviceClip());
    for (int row = block.top; row < block.bottom; ++row) spans.Add(row, block.left, block.right);
    if (UsesPattern(rop)) {
        PaintBrush(spans, m_state.logBrush, mode);
    } else {
        PaintSpans(spans, 0, mode);
    }
    return 1;
}

BOOL TransparentBlt2(HDC dst, int x, int y, int width, int height, HDC src, int sourceX, int sourceY,
                     int sourceWidth, int sourceHeight, COLORREF transparent) {
    if (dst == nullptr || src == nullptr || dst->Surface() == nullptr || src->Surface() == nullptr) return 0;
    const CRect to = Block(x, y, width, height), from = Block(sourceX, sourceY, sourceWidth, sourceHeight);
    if (to.IsRectEmpty() || from.IsRectEmpty()) return 0;
    CRect clip;
    dst->GetClipBox(&clip);
    ForEachSourcePixel(*dst->Surface(), clip, to, *src->Surface(), from,
                       [skip = PixelFromColor(transparent)](std::uint32_t& d, std::uint32_t s, int, int) {
                           if (s != skip) d = s;
                       });
    return 1;
}

BOOL DrawIconEx(HDC dc, int x, int y, HICON icon, int width, int height, UINT, const void*, UINT flags) {
    if (dc == nullptr || dc->Surface() == nullptr || icon == nullptr) return 0;
    const CSurface& plain = icon->m_cImage;
    const CIconImage& shown = dc->Density() > 1 && icon->m_pDouble ? *icon->m_pDouble : *icon;
    const CSurface& image = shown.m_cImage;
    const CRect from = image.Bounds();
    const CRect to = Block(x, y, width ? width : plain.Width(), height ? height : plain.Height());
    if (from.IsRectEmpty() || to.IsRectEmpty()) return 0;
    CRect clip;
    dc->GetClipBox(&clip);
    // The mask as a picture of the same size: 1 where the icon paints. Image alone paints everywhere.
    CSurface opaque(image.Width(), image.Height());
    const auto& mask = shown.m_aOpaque;
    const bool everywhere = mask.size() != image.Pixels().size() || (flags & DI_MASK) == 0;
    for (std::size_t i = 0; i < image.Pixels().size(); ++i) {
        const bool paints = everywhere || mask[i] != 0;
        // Bit 24 and up are free in a pixel.
        opaque.Row(0)[i] = ((flags & DI_IMAGE) != 0 ? image.Pixels()[i] & CRasterOp::kColorBits : 0u) |
                           (paints ? 1u << 24 : 0u);
    }
    ForEachSourcePixel(*dc->Surface(), clip, to, opaque, from,
                       [](std::uint32_t& d, std::uint32_t s, int, int) {
                           if (s >> 24 != 0) d = s & CRasterOp::kColorBits;
                       });
    return 1;
}
