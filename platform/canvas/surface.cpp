#include "platform/canvas/surface.h"

#include <algorithm>

CSurface::CSurface(int width, int height, int density) : m_nDensity(std::clamp(density, 1, kMaxDensity)) {
    const int k = m_nDensity, most = kMaxSide / k;
    m_nWidth = std::clamp(width, 0, most) * k;
    m_nHeight = std::clamp(height, 0, most) * k;
    if (m_nWidth > 0) m_nHeight = static_cast<int>(std::min<std::int64_t>(m_nHeight, kMaxPixels / m_nWidth / k * k));
    m_aPixel.assign(Offset(m_nHeight), 0);
}

void CSurface::Fill(std::uint32_t pixel) { std::fill(m_aPixel.begin(), m_aPixel.end(), pixel); }
