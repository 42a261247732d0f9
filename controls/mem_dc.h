// CMemDC: an off-screen context.
#pragma once
#include "platform/canvas/dc.h"

/// Draws off the screen, in the coordinates of another context and with its density, and shows a rectangle of what was
/// drawn there when it goes. It begins with what the other one shows. The other one must outlive it.
class CMemDC : public CDC {
public:
    explicit CMemDC(CDC* screen);               // all that the clip of the other leaves
    CMemDC(CDC* screen, const CRect& shown);
    ~CMemDC() override;

private:
    CDC* m_pScreen;  // borrowed; null shows nothing
    CRect m_rcShown;
};
