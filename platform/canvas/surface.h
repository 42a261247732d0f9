// CSurface: a picture in memory.
#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/win_types.h"

/// A rectangle of pixels 0x00RRGGBB, row by row from the top without gaps, black at birth. It owns its
/// pixels. A size below 0 counts as 0; a side is cut at kMaxSide and the rows at kMaxPixels, so that a wrong
/// size from a file or a window cannot exhaust memory.
///
/// For dense screens a picture may hold a square of `Density` by `Density` pixels for each unit that device
/// contexts draw in. All below speaks of the pixels themselves, but for the constructor and what is called
/// logical.
class CSurface {
public:
    static constexpr int kMaxSide = 32768;
    static constexpr std::int64_t kMaxPixels = std::int64_t{1} << 28;  // 1 GB

    static constexpr int kMaxDensity = 2;

    CSurface() = default;
    CSurface(int width, int height, int density = 1);  // logical; a density that does not exist counts as the nearest

    int Width() const { return m_nWidth; }
    int Height() const { return m_nHeight; }
    CRect Bounds() const { return {0, 0, m_nWidth, m_nHeight}; }
    int Density() const { return m_nDensity; }
    int LogicalWidth() const { return m_nWidth / m_nDensity; }
    int LogicalHeight() const { return m_nHeight / m_nDensity; }
    CRect LogicalBounds() const { return {0, 0, LogicalWidth(), LogicalHeight()}; }

    std::uint32_t* Row(int y) { return m_aPixel.data() + Offset(y); }
    const std::uint32_t* Row(int y) const { return m_aPixel.data() + Offset(y); }
    std::uint32_t At(int x, int y) const { return Row(y)[x]; }  // inside only
    const std::vector<std::uint32_t>& Pixels() const { return m_aPixel; }

    void Fill(std::uint32_t pixel);

    friend bool operator==(const CSurface& a, const CSurface& b) {
        return a.m_nWidth == b.m_nWidth && a.m_nHeight == b.m_nHeight && a.m_nDensity == b.m_nDensity &&
               a.m_aPixel == b.m_aPixel;
    }

private:
    std::size_t Offset(int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_nWidth);
    }

    int m_nWidth = 0;                     // pixels, a multiple of the density
    int m_nHeight = 0;                    // pixels, a multiple of the density
    int m_nDensity = 1;                   // pixels for a logical one, along each side
    std::vector<std::uint32_t> m_aPixel;  // Width() * Height() of them
};

/// A colour has red in the low byte, a pixel has blue there.
constexpr std::uint32_t PixelFromColor(COLORREF c) {
    return static_cast<std::uint32_t>((c & 0xFF) << 16 | (c & 0xFF00) | (c >> 16 & 0xFF));
}
constexpr COLORREF ColorFromPixel(std::uint32_t p) {
    return COLORREF{(p & 0xFF) << 16 | (p & 0xFF00) | (p >> 16 & 0xFF)};
}
