#include "model/graph_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <vector>

#include "geometry/fcoor.h"
#include "geometry/frect.h"
#include "geometry/fregion.h"
#include "model/graph_hit_test.h"
#include "platform/canvas/dc.h"
#include "platform/saturate.h"

namespace {

constexpr int kTallestText = 4096;  // pixels; a taller letter shows as nothing but parts of its strokes

bool IsAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }
bool ContinuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

/// Half advances of the character that a byte begins: 1 or 2, and 0 for a byte that continues one.
int HalfAdvances(char c) { return IsAscii(c) ? 1 : ContinuesCharacter(c) ? 0 : 2; }

/// Writes the pixels from each character to the next, so that every character stands within a pixel of its
/// place in the model, however long the text. `steps` has room for an element per byte.
void FixedSteps(std::string_view text, double pixelHeight, int* steps) {
    double reached = 0;
    for (const char c : text) {
        if (ContinuesCharacter(c)) continue;
        const double next = reached + HalfAdvances(c) * pixelHeight / 2;
        *steps++ = SaturatedInt(std::floor(next + 0.5) - std::floor(reached + 0.5));
        reached = next;
    }
}

}  // namespace

float ModelTextWidth(const CString& text, float height) {
    int halves = 0;
    for (const char c : text.View()) halves += HalfAdvances(c);
    return static_cast<float>(halves) * height * 0.5f;
}

CGraph_Text::CGraph_Text() = default;
CGraph_Text::CGraph_Text(float x, float y, float height, float angle, const char* text)
    : m_strText(text), m_fX(x), m_fY(y), m_fHeight(height), m_fAngle(angle) {}
CGraph_Text::~CGraph_Text() = default;

std::array<CFPoint, 4> CGraph_Text::BoxCorners() const {
    const float width = ModelTextWidth(m_strText, m_fHeight);
    const float c = std::cos(m_fAngle), s = std::sin(m_fAngle);
    const CFPoint along(width * c, width * s, 0), up(-m_fHeight * s, m_fHeight * c, 0), from(m_fX, m_fY, 0);
    return {from, from + along, from + along + up, from + up};
}

CFRegion CGraph_Text::GetFRegion() const { return CFRegion(BoxCorners().data(), 4); }

CFRect CGraph_Text::GetFrect() {
    CFPoint min, max;
    GetFRegion().GetRect(min, max);
    return CFRect(min, max);
}

int CGraph_Text::HitTest(const CFRegion& region, int mode) { return HitArea(GetFRegion(), region, mode); }

int CGraph_Text::HitTest(const CFRect& rect, int mode) {
    const std::array<CFPoint, 4> corners = BoxCorners();
    if (std::all_of(corners.begin(), corners.end(), [&](const CFPoint& p) { return rect.FpInFRect(p, 0) != 0; }))
        return 1;
    return mode != 1 && CFRegion(rect).Intersect(GetFRegion(), 0) != 0;
}

CFont* CGraph_Text::CreateFontA(CFCoor* coor) {
    // The direction as this view shows it: turned with the view, and turned over when device y grows upwards.
    const CFPoint shown = coor->PointTouYing(CFPoint(std::cos(m_fAngle), std::sin(m_fAngle), 0));
    const double direction = std::atan2(static_cast<double>(shown.y), static_cast<double>(shown.x));
    const double tenths = direction * (coor->IsReverseY() ? 1800.0 : -1800.0) / tolerance::kPi;
    const int escapement = SaturatedInt(std::floor(tenths + 0.5));
    const int height = coor->FPtoDP(static_cast<double>(m_fHeight));
    if (m_pFont && height == m_nFontHeight && escapement == m_nFontEscapement) return m_pFont.get();
    if (!m_pFont) m_pFont = std::make_unique<CFont>();
    LOGFONT font;
    font.lfHeight = m_nFontHeight = height;
    font.lfEscapement = font.lfOrientation = m_nFontEscapement = escapement;
    m_pFont->CreateFontIndirect(&font);
    return m_pFont.get();
}

void CGraph_Text::Draw(CDC* dc, CFCoor* coor) {
    const int height = coor->FPtoDP(static_cast<double>(m_fHeight));
    if (m_strText.IsEmpty() || height < 1 || height > kTallestText) return;
    CRect box = DeviceBox(*coor);
    box.InflateRect(height, height);  // strokes may lean out of the box
    if (!dc->RectVisible(box)) return;

    constexpr int kOnStack = 128;  // bytes of text that need no allocation
    std::array<int, kOnStack> few;
    std::vector<int> many;
    const int length = m_strText.GetLength();
    if (length > kOnStack) many.resize(static_cast<std::size_t>(length));
    int* const steps = length > kOnStack ? many.data() : few.data();
    std::fill_n(steps, length, height);  // for what a canvas may count as characters in malformed text
    FixedSteps(m_strText.View(), static_cast<double>(m_fHeight) * static_cast<double>(coor->GetScale()), steps);

    CFont* const oldFont = dc->SelectObject(CreateFontA(coor));
    const int oldRop = dc->SetROP2(m_nRop2);
    const int oldMode = dc->SetBkMode(TRANSPARENT);
    const COLORREF oldColor = dc->SetTextColor(COLORREF{m_dwColor});
    // The insertion point is the corner of the box that letters stand on; turned over, it is their upper one.
    const UINT oldAlign = dc->SetTextAlign(TA_LEFT | (coor->IsReverseY() ? UINT{TA_BOTTOM} : UINT{TA_TOP}));
    const CPoint at = coor->FPtoDP(CFPoint(m_fX, m_fY, 0));
    dc->ExtTextOut(at.x, at.y, 0, nullptr, m_strText, steps);
    dc->SetTextAlign(oldAlign);
    dc->SetTextColor(oldColor);
    dc->SetBkMode(oldMode);
    dc->SetROP2(oldRop);
    dc->SelectObject(oldFont);
}

CRect CGraph_Text::DeviceBox(const CFCoor& coor) const {
    const std::array<CFPoint, 4> corners = BoxCorners();
    const CPoint first = coor.FPtoDP(corners[0]);
    CRect box(first, first);
    for (const CFPoint& corner : corners) {
        const CPoint p = coor.FPtoDP(corner);
        box = CRect(std::min(box.left, p.x), std::min(box.top, p.y), std::max(box.right, p.x),
                    std::max(box.bottom, p.y));
    }
    return box;
}
