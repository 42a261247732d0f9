// CBitmap: a picture that a memory device context draws on.
#pragma once
#include <memory>

#include "platform/canvas/gdi_object.h"
#include "platform/canvas/surface.h"

/// A size in the units of drawing, whatever the picture's density.
struct BITMAP {
    int bmWidth = 0;
    int bmHeight = 0;
};

/// A bitmap of 32 bits a pixel. It shares its surface with the device contexts that it is selected into:
/// whoever goes last frees it.
class CBitmap : public CGdiObject {
public:
    CBitmap() = default;

    /// A black bitmap; 0 for a side below 1 or above CSurface::kMaxSide, or more than CSurface::kMaxPixels.
    BOOL CreateBitmap(int width, int height);
    /// As dense as the context's surface, or with one pixel a unit if it would be too large that way.
    BOOL CreateCompatibleBitmap(CDC* dc, int width, int height);
    BOOL Attach(std::shared_ptr<CSurface> surface);

    int GetBitmap(BITMAP* bitmap) const;
    CSize GetBitmapDimension() const;  // as in BITMAP
    const std::shared_ptr<CSurface>& Surface() const { return m_pSurface; }  // null before creation

protected:
    void Reset() override { m_pSurface.reset(); }

private:
    std::shared_ptr<CSurface> m_pSurface;  // shared with device contexts
};
