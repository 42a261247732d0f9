#include "shell/shell_icons.h"

#include <memory>
#include <vector>

#include "platform/canvas/dc.h"

namespace {

constexpr COLORREF kKey = RGB(255, 0, 255);  // where nothing is
constexpr COLORREF kEdge = RGB(150, 104, 14), kBack = RGB(232, 178, 58), kFront = RGB(255, 214, 110);
constexpr COLORREF kShine = RGB(255, 241, 190);

/// Draws in sixteenths of the side.
class IconPen {
public:
    IconPen(CDC& dc, int size) : m_dc(dc), m_unit(size / 16) {}

    void Shape(std::vector<CPoint> corners, COLORREF fill) {
        for (CPoint& p : corners) p = At(p);
        CPen pen(PS_SOLID, 1, kEdge);
        CBrush brush(fill);
        CPen* const oldPen = m_dc.SelectObject(&pen);
        CBrush* const oldBrush = m_dc.SelectObject(&brush);
        m_dc.Polygon(corners.data(), static_cast<int>(corners.size()));
        m_dc.SelectObject(oldBrush);
        m_dc.SelectObject(oldPen);
    }
    void Line(const CPoint& from, int length, COLORREF colour) {
        m_dc.FillSolidRect(from.x * m_unit, from.y * m_unit, length * m_unit, m_unit, colour);
    }

private:
    // Corners on the right and below stand on the last pixel of their sixteenth.
    CPoint At(const CPoint& p) const {
        const auto far = [&](int v) { return v * m_unit + (v > 8 ? m_unit - 1 : 0); };
        return {far(p.x), far(p.y)};
    }

    CDC& m_dc;
    int m_unit;
};

void DrawClosed(IconPen pen) {
    pen.Shape({{1, 13}, {1, 4}, {2, 3}, {6, 3}, {7, 4}, {13, 4}, {13, 13}}, kBack);
    pen.Shape({{1, 13}, {1, 6}, {14, 6}, {14, 13}}, kFront);
    pen.Line({2, 7}, 12, kShine);
}

void DrawOpen(IconPen pen) {
    pen.Shape({{1, 13}, {1, 4}, {2, 3}, {6, 3}, {7, 4}, {12, 4}, {12, 13}}, kBack);
    pen.Shape({{1, 13}, {4, 7}, {15, 7}, {12, 13}}, kFront);
    pen.Line({5, 8}, 9, kShine);
}

/// The picture at one size, and its mask.
void Draw(void (*draw)(IconPen), int size, CSurface& image, std::vector<std::uint8_t>& opaque) {
    const auto picture = std::make_shared<CSurface>(size, size);
    picture->Fill(PixelFromColor(kKey));
    CDC dc(picture);
    draw(IconPen(dc, size));
    image = *picture;
    for (const std::uint32_t pixel : picture->Pixels()) opaque.push_back(pixel != PixelFromColor(kKey));
    // White behind it, for rows that show the picture without its mask.
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
            if (picture->At(x, y) == PixelFromColor(kKey)) image.Row(y)[x] = 0xFFFFFF;
}

/// The picture of 16 by 16 with the one of 32 by 32 behind it. Neither moves.
struct Icon {
    explicit Icon(void (*draw)(IconPen)) {
        Draw(draw, 16, m_single.m_cImage, m_single.m_aOpaque);
        Draw(draw, 32, m_double.m_cImage, m_double.m_aOpaque);
        m_single.m_pDouble = &m_double;
    }
    Icon(const Icon&) = delete;
    Icon& operator=(const Icon&) = delete;
    CIconImage m_single, m_double;
};

}  // namespace

HICON LoadShellIcon(unsigned short number) {
    static const Icon open(DrawOpen), closed(DrawClosed);
    switch (number) {
        case kIconOpenFolder: return &open.m_single;
        case kIconClosedFolder: return &closed.m_single;
        default: return nullptr;
    }
}
