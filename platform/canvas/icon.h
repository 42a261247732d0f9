// Icons: small pictures with transparent parts.
#pragma once
#include <cstdint>
#include <vector>

#include "platform/canvas/gdi_types.h"
#include "platform/canvas/surface.h"

/// The picture of an icon and the mask of its opaque pixels. A picture for dense surfaces is an icon too, twice as wide
/// and high; without one this is enlarged.
struct CIconImage {
    CSurface m_cImage;  // the picture
    std::vector<std::uint8_t>
        m_aOpaque = {};  // one byte a pixel, row by row; non-zero is painted; empty: all opaque
    const CIconImage* m_pDouble = nullptr;  // the picture for screens of twice the density; borrowed, may be null
};
using HICON = const CIconImage*;

/// Paints the icon at (x, y), stretched to width by height pixels; 0 for either takes the icon's own size.
/// DI_IMAGE paints the picture, DI_MASK blackens what the mask covers, DI_NORMAL the masked picture. The step
/// and the flicker-free brush of the toolkit's call have no meaning here. 0 for a null context or icon.
BOOL DrawIconEx(HDC dc, int x, int y, HICON icon, int width, int height, UINT step, const void* brush,
                UINT flags);
