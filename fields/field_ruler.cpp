#include "fields/field_ruler.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "fields/chang.h"
#include "fields/field_palette.h"
#include "platform/canvas/dc.h"
#include "platform/number_text.h"

namespace {

constexpr int kLeastDecimals = 2, kMostDecimals = 6;
constexpr double kLongest = 1e9;  // of values that are written out

/// Decimals that tell a tenth of the distance between two labels; more than the most for powers of ten.
int DecimalsFor(double distance, double largest) {
    if (largest >= kLongest) return kMostDecimals + 1;
    if (!(distance > 0)) return kLeastDecimals;
    const double decimals = 1 - std::floor(std::log10(distance) + 1e-6);  // ranges are of floats
    return static_cast<int>(std::clamp(decimals, 1.0 * kLeastDecimals, kMostDecimals + 1.0));
}

std::string LabelText(double value, int decimals) {
    if (decimals > kMostDecimals) {
        char text[32];
        return {text, std::to_chars(text, text + sizeof text, value == 0 ? 0.0 : value,
                                    std::chars_format::scientific, 3)
                          .ptr};
    }
    const std::string text = FixedReal(value, decimals);
    return text.find_first_not_of("-0.") == text.npos ? FixedReal(0, decimals) : text;  // no "-0.00"
}

}  // namespace

std::vector<RulerBand> RulerBands(CChang& field) {
    float minimum, maximum;
    const bool any = field.GetMinMaxZ(minimum, maximum) != 0;
    const double min = static_cast<double>(minimum), max = static_cast<double>(maximum);
    const double step = (max - min) / kRulerBands, scale = static_cast<double>(field.m_fValueScale);
    const int decimals =
        DecimalsFor(std::fabs(2 * step * scale), std::max(std::fabs(min), std::fabs(max)) * std::fabs(scale));
    std::vector<RulerBand> bands;
    for (int i = 0; i <= kRulerBands; ++i) {
        const double middle = max - step * std::min(i + 0.5, static_cast<double>(kRulerBands));
        const double edge = i == kRulerBands ? min : max - step * i;
        const bool labelled = any && i % 2 == 0 && (max > min || i == 0);
        bands.push_back({COLORREF{field.GetIndexColor(static_cast<float>(middle))},
                         labelled ? LabelText(edge * scale, decimals) : ""});
    }
    return bands;
}

RulerLayout::RulerLayout(const CRect& rect) {
    letterHeight = std::clamp(rect.Height() / 28, 10, 18);
    const int margin = letterHeight * 3 / 4;
    const int wide = std::min(letterHeight * 5 / 3, std::max(rect.Width() / 3, 1));
    bands = CRect(rect.left + margin, rect.top + margin, rect.left + margin + wide,
                  std::max(rect.top + margin, rect.bottom - margin));
    labelLeft = bands.right + letterHeight;
    labelRight = rect.right;
}

int RulerLayout::BandTop(int band) const {
    return bands.top + static_cast<int>(std::int64_t{bands.Height()} * band / kRulerBands);
}

COLORREF RulerInk(COLORREF background) {
    const int light = 299 * GetRValue(background) + 587 * GetGValue(background) + 114 * GetBValue(background);
    return light > 127 * 1000 ? RGB(51, 51, 51) : RGB(230, 230, 230);
}

namespace {

/// The height of letters at which the longest of the labels fits.
int FittingHeight(CDC* dc, const std::vector<RulerBand>& bands, const RulerLayout& layout) {
    for (int height = layout.letterHeight; height > 6; --height) {
        CFont font;
        font.CreateFont(height, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, DEFAULT_QUALITY, 0, "");
        CFont* const old = dc->SelectObject(&font);
        const bool fits = std::all_of(bands.begin(), bands.end(), [&](const RulerBand& band) {
            return layout.labelLeft + dc->GetTextExtent(CString(band.label)).cx <= layout.labelRight;
        });
        dc->SelectObject(old);
        if (fits) return height;
    }
    return 6;
}

}  // namespace

void CChang::DrawRuler(CDC* dc, const CRect& rect, CFCoor*, COLORREF background) {
    const auto bands = RulerBands(*this);
    const RulerLayout layout(rect);
    dc->FillSolidRect(rect, background);
    const COLORREF ink = RulerInk(background);
    for (int i = 0; i < kRulerBands; ++i)
        dc->FillSolidRect(
            CRect(layout.bands.left, layout.BandTop(i), layout.bands.right, layout.BandTop(i + 1)),
            ApartFrom(bands[static_cast<std::size_t>(i)].color, background));
    CPen pen(PS_SOLID, 1, ink);
    CPen* const oldPen = dc->SelectObject(&pen);
    CFont font;
    font.CreateFont(FittingHeight(dc, bands, layout), 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0,
                    DEFAULT_QUALITY, 0, "");
    CFont* const oldFont = dc->SelectObject(&font);
    const int oldMode = dc->SetBkMode(TRANSPARENT);
    const COLORREF oldColor = dc->SetTextColor(ink);
    const UINT oldAlign = dc->SetTextAlign(TA_LEFT | TA_TOP);
    for (int i = 0; i <= kRulerBands; ++i) {
        const CString label(bands[static_cast<std::size_t>(i)].label);
        if (label.IsEmpty()) continue;
        const int y = std::min(layout.BandTop(i), layout.bands.bottom - 1);
        dc->MoveTo(layout.bands.right, y);
        dc->LineTo(layout.bands.right + layout.letterHeight / 2, y);
        dc->TextOut(layout.labelLeft, y - dc->GetTextExtent(label).cy / 2, label);
    }
    dc->SetTextAlign(oldAlign);
    dc->SetTextColor(oldColor);
    dc->SetBkMode(oldMode);
    dc->SelectObject(oldFont);
    dc->SelectObject(oldPen);
}
