#include "platform/canvas/bitmap.h"

BOOL CBitmap::CreateCompatibleBitmap(CDC*, int width, int height) { return CreateBitmap(width, height); }

BOOL CBitmap::CreateBitmap(int width, int height) {
    if (width < 1 || height < 1 || width > CSurface::kMaxSide || height > CSurface::kMaxSide) return 0;
    if (std::int64_t{width} * height > CSurface::kMaxPixels) return 0;
    return Attach(std::make_shared<CSurface>(width, height));
}

BOOL CBitmap::Attach(std::shared_ptr<CSurface> surface) {
    if (surface == nullptr) return 0;
    m_pSurface = std::move(surface);
    m_bCreated = true;
    return 1;
}

int CBitmap::GetBitmap(BITMAP* bitmap) const {
    if (bitmap == nullptr || m_pSurface == nullptr) return 0;
    *bitmap = {m_pSurface->Width(), m_pSurface->Height()};
    return 1;
}

CSize CBitmap::GetBitmapDimension() const {
    return m_pSurface ? CSize(m_pSurface->Width(), m_pSurface->Height()) : CSize();
}
