#include "platform/canvas/dc.h"

#include <algorithm>
#include <utility>

#include "platform/canvas/raster_op.h"
#include "platform/canvas/system_metrics.h"

namespace {

template <typename Value>
Value Exchange(Value& field, Value value, bool allowed) {
    if (!allowed) return Value{};
    std::swap(field, value);
    return value;
}

CRect Common(const CRect& a, const CRect& b) {
    CRect r(std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom));
    if (r.IsRectEmpty()) r = CRect(a.left, a.top, a.left, a.top);
    return r;
}

}  // namespace

CDC::CDC() {
    SelectStockObject(BLACK_PEN);
    SelectStockObject(WHITE_BRUSH);
    SelectStockObject(SYSTEM_FONT);
}

CDC::CDC(std::shared_ptr<CSurface> surface) : CDC() { Attach(std::move(surface)); }

CDC::~CDC() = default;

BOOL CDC::CreateCompatibleDC(CDC*) {
    DeleteDC();
    m_pOwnBitmap = std::make_unique<CBitmap>();
    m_pOwnBitmap->CreateBitmap(1, 1);
    SelectObject(m_pOwnBitmap.get());
    return 1;
}

BOOL CDC::DeleteDC() {
    const BOOL had = m_pSurface ? 1 : 0;
    m_pSurface.reset();
    m_nDensity = 1;
    m_pBitmap = nullptr;
    m_pOwnBitmap.reset();
    m_aSaved.clear();
    m_state = State{};
    m_nStretchMode = COLORONCOLOR;
    m_bPrinting = 0;
    SelectStockObject(BLACK_PEN);
    SelectStockObject(WHITE_BRUSH);
    SelectStockObject(SYSTEM_FONT);
    return had;
}

void CDC::Attach(std::shared_ptr<CSurface> surface) {
    m_pSurface = std::move(surface);
    m_nDensity = m_pSurface ? m_pSurface->Density() : 1;
    m_state.clip = m_pSurface ? m_pSurface->LogicalBounds() : CRect();
}

int CDC::SaveDC() {
    m_aSaved.push_back(m_state);
    return static_cast<int>(m_aSaved.size());
}

BOOL CDC::RestoreDC(int number) {
    const int saved = static_cast<int>(m_aSaved.size());
    if (number == -1) number = saved;
    if (number < 1 || number > saved) return 0;
    m_state = m_aSaved[static_cast<std::size_t>(number - 1)];
    m_aSaved.resize(static_cast<std::size_t>(number - 1));
    // Another bitmap may have been selected in between.
    m_state.clip = Common(m_pSurface ? m_pSurface->LogicalBounds() : CRect(), m_state.clip);
    return 1;
}

int CDC::GetDeviceCaps(int index) const {
    switch (index) {
        case TECHNOLOGY:
            return m_bPrinting ? 2 : 1;
        case HORZRES:
            return m_bPrinting && m_pSurface ? m_pSurface->LogicalWidth() : GetSystemMetrics(SM_CXSCREEN);
        case VERTRES:
            return m_bPrinting && m_pSurface ? m_pSurface->LogicalHeight() : GetSystemMetrics(SM_CYSCREEN);
        case BITSPIXEL:
            return 32;
        case PLANES:
            return 1;
        case LOGPIXELSX:
        case LOGPIXELSY:
            return 96;
        default:
            return 0;
    }
}

CPen* CDC::SelectObject(CPen* pen) {
    if (pen == nullptr) return nullptr;
    m_state.logPen = pen->Log();
    return std::exchange(m_state.pen, pen);
}

CBrush* CDC::SelectObject(CBrush* brush) {
    if (brush == nullptr) return nullptr;
    m_state.logBrush = brush->Log();
    return std::exchange(m_state.brush, brush);
}

CFont* CDC::SelectObject(CFont* font) {
    if (font == nullptr) return nullptr;
    m_state.logFont = font->Log();
    return std::exchange(m_state.font, font);
}

CBitmap* CDC::SelectObject(CBitmap* bitmap) {
    if (bitmap == nullptr || bitmap->Surface() == nullptr || m_pOwnBitmap == nullptr) return nullptr;
    Attach(bitmap->Surface());
    return std::exchange(m_pBitmap, bitmap);
}

CGdiObject* CDC::SelectObject(CGdiObject* object) {
    if (auto* pen = dynamic_cast<CPen*>(object)) return SelectObject(pen);
    if (auto* brush = dynamic_cast<CBrush*>(object)) return SelectObject(brush);
    if (auto* font = dynamic_cast<CFont*>(object)) return SelectObject(font);
    if (auto* bitmap = dynamic_cast<CBitmap*>(object)) return SelectObject(bitmap);
    return nullptr;
}

CGdiObject* CDC::SelectStockObject(int index) { return SelectObject(GetStockObject(index)); }

int CDC::SetROP2(int mode) { return Exchange(m_state.rop, mode, mode >= R2_BLACK && mode <= R2_WHITE); }

int CDC::SetBkMode(int mode) { return Exchange(m_state.bkMode, mode, mode == TRANSPARENT || mode == OPAQUE); }

COLORREF CDC::SetBkColor(COLORREF color) { return std::exchange(m_state.bkColor, color & 0xFFFFFF); }

COLORREF CDC::SetTextColor(COLORREF color) { return std::exchange(m_state.textColor, color & 0xFFFFFF); }

UINT CDC::SetTextAlign(UINT align) { return std::exchange(m_state.textAlign, align); }

int CDC::SetPolyFillMode(int mode) {
    return Exchange(m_state.fillMode, mode, mode == ALTERNATE || mode == WINDING);
}

int CDC::SetStretchBltMode(int mode) { return std::exchange(m_nStretchMode, mode); }

int CDC::IntersectClipRect(int left, int top, int right, int bottom) {
    m_state.clip = Common(m_state.clip, CRect(left, top, right, bottom));
    return m_state.clip.IsRectEmpty() ? NULLREGION : SIMPLEREGION;
}

int CDC::GetClipBox(CRect* box) const {
    if (box == nullptr) return ERROR;
    *box = m_state.clip;
    return m_state.clip.IsRectEmpty() ? NULLREGION : SIMPLEREGION;
}

int CDC::SelectClipRgn(CRgn* region) {
    CRect box = m_pSurface ? m_pSurface->LogicalBounds() : CRect();
    if (region != nullptr) {
        CRect wanted;
        if (!region->IsRectangle()) return ERROR;
        region->GetRgnBox(&wanted);
        box = Common(box, wanted);
    }
    m_state.clip = box;
    return box.IsRectEmpty() ? NULLREGION : SIMPLEREGION;
}

BOOL CDC::PtVisible(int x, int y) const { return m_state.clip.PtInRect({x, y}) ? 1 : 0; }

BOOL CDC::RectVisible(const CRect& rect) const { return Common(m_state.clip, rect).IsRectEmpty() ? 0 : 1; }

COLORREF CDC::GetPixel(int x, int y) const {
    if (!m_state.clip.PtInRect({x, y})) return CLR_INVALID;
    return ColorFromPixel(m_pSurface->At(x * m_nDensity, y * m_nDensity));
}

COLORREF CDC::SetPixel(int x, int y, COLORREF color) {
    if (!m_state.clip.PtInRect({x, y})) return CLR_INVALID;
    const int k = m_nDensity;
    for (int row = y * k; row < (y + 1) * k; ++row)
        std::fill_n(m_pSurface->Row(row) + x * k, k, PixelFromColor(color));
    return color & 0xFFFFFF;
}

CRasterTarget CDC::Target(COLORREF color, int rop) const {
    const CRasterOp op(rop, PixelFromColor(color));
    if (m_pSurface == nullptr) return {nullptr, 0, CRect(), op};
    return {m_pSurface->Row(0), m_pSurface->Width(), DeviceClip(), op};
}

CRect CDC::DeviceClip() const {
    const CRect& c = m_state.clip;
    return {c.left * m_nDensity, c.top * m_nDensity, c.right * m_nDensity, c.bottom * m_nDensity};
}
