#include "controls/mem_dc.h"

#include <algorithm>

namespace {

CRect ClipOf(CDC* dc) {
    CRect clip;
    if (dc) dc->GetClipBox(clip);
    return clip;
}

}  // namespace

CMemDC::CMemDC(CDC* screen) : CMemDC(screen, ClipOf(screen)) {}

CMemDC::CMemDC(CDC* screen, const CRect& shown) : m_pScreen(screen) {
    const CRect clip = ClipOf(screen);
    m_rcShown = CRect(std::max(shown.left, clip.left), std::max(shown.top, clip.top),
                      std::min(shown.right, clip.right), std::min(shown.bottom, clip.bottom));
    // As large as the rectangle's far corner, so that no coordinate has to be shifted.
    CBitmap bitmap;
    if (m_rcShown.IsRectEmpty() || !bitmap.CreateCompatibleBitmap(screen, m_rcShown.right, m_rcShown.bottom)) {
        m_pScreen = nullptr;
        return;
    }
    Attach(bitmap.Surface());
    IntersectClipRect(m_rcShown);
    BitBlt(m_rcShown.left, m_rcShown.top, m_rcShown.Width(), m_rcShown.Height(), screen, m_rcShown.left, m_rcShown.top,
           SRCCOPY);
}

CMemDC::~CMemDC() {
    if (m_pScreen)
        m_pScreen->BitBlt(m_rcShown.left, m_rcShown.top, m_rcShown.Width(), m_rcShown.Height(), this, m_rcShown.left,
                          m_rcShown.top, SRCCOPY);
}
