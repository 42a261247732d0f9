#include "platform/canvas/bitmap.h"

#include "platform/canvas/dc.h"

namespace {

/// Null for a size that no surface has.
std::shared_ptr<CSurface> SurfaceOf(int width, int height, int density) {
    const int most = CSurface::kMaxSide / density;
    if (width < 1 || height < 1 || width > most || height > most) return nullptr;
    if (std::int64_t{width} * height > CSurface::kMaxPixels / (density * density)) return nullptr;
    return std::make_shared<CSurface>(width, height, density);
}

}  // namespace

BOOL CBitmap::CreateBitmap(int width, int height) { return Attach(SurfaceOf(width, height, 1)); }

BOOL CBitmap::CreateCompatibleBitmap(CDC* dc, int width, int height) {
    const int density = dc ? dc->Density() : 1;
    return Attach(SurfaceOf(width, height, density)) || (density > 1 && CreateBitmap(width, height));
}

BOOL CBitmap::Attach(std::shared_ptr<CSurface> surface) {
    if (surface == nullptr) return 0;
    m_pSurface = std::move(surface);
    m_bCreated = true;
    return 1;
}

int CBitmap::GetBitmap(BITMAP* bitmap) const {
    if (bitmap == nullptr || m_pSurface == nullptr) return 0;
    *bitmap = {m_pSurface->LogicalWidth(), m_pSurface->LogicalHeight()};
    return 1;
}

CSize CBitmap::GetBitmapDimension() const {
    return m_pSurface ? CSize(m_pSurface->LogicalWidth(), m_pSurface->LogicalHeight()) : CSize();
}
