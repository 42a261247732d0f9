// Text.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>
#include <vector>

#include "platform/canvas/dc_stroke.h"
#include "platform/canvas/glyph_source.h"
#include "platform/canvas/polygon_raster.h"
#include "platform/canvas/raster_op.h"
#include "platform/saturate.h"

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kMaxGlyphHeight = 2000;  // beyond this the masks would take more memory than the picture
constexpr int kDefaultHeight = 16;

int Saturated(double v) { return SaturatedInt(std::round(v)); }

std::string_view View(const char* text, int count) {
    if (text == nullptr) return {};
    return {text, count < 0 ? std::strlen(text) : static_cast<std::size_t>(count)};
}

/// Code points of a text; a byte that is no UTF-8 becomes U+FFFD.
std::vector<char32_t> Decode(std::string_view text) {
    std::vector<char32_t> codes;
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t more = lead < 0x80                   ? 0
                                 : lead >= 0xC2 && lead < 0xE0 ? 1
                                 : lead >= 0xE0 && lead < 0xF0 ? 2
                                 : lead >= 0xF0 && lead < 0xF5 ? 3
                                                               : text.size();
        char32_t code = more == 0 ? lead : lead & (0x3Fu >> more);
        bool whole = more < text.size() - i;
        for (std::size_t k = 1; whole && k <= more; ++k) {
            const auto byte = static_cast<unsigned char>(text[i + k]);
            whole = (byte & 0xC0) == 0x80;
            code = code << 6 | (byte & 0x3Fu);
        }
        codes.push_back(whole ? code : U'\xFFFD');
        i += whole ? more + 1 : 1;
    }
    return codes;
}

/// What a font means to the glyph source.
struct Face {
    explicit Face(const LOGFONT& font) {
        const CGlyphSource& source = GetGlyphSource();
        const double height = font.lfHeight;
        request.height = height == 0 ? kDefaultHeight : height > 0 ? height : -height * source.CellPerEm();
        request.bold = font.lfWeight > 550;
        request.italic = font.lfItalic != 0;
        angle = font.lfEscapement % 3600 / 1800.0 * kPi;
        request.angle = angle;
        ascent = std::round(request.height * source.AscentShare());
        cosine = std::cos(angle);
        sine = std::sin(angle);
        drawable = request.height <= kMaxGlyphHeight;
    }
    /// The step of a character. Taken upright: a step does not depend on the direction.
    double Advance(char32_t code) const {
        if (!drawable) return request.height * (code < 0x80 ? 0.5 : 1.0);
        CGlyphRequest r = request;
        r.code = code;
        r.angle = 0;
        return FindAdvance(r);
    }

    CGlyphRequest request;
    double angle;         // radians, anticlockwise
    double cosine, sine;  // of it
    double ascent;        // pixels
    bool drawable;        // small enough for masks
};

/// Where the characters of a line stand along it.
struct Line {
    Line(const Face& face, std::string_view text, const int* steps) : codes(Decode(text)) {
        for (std::size_t i = 0; i < codes.size(); ++i) {
            at.push_back(length);
            length += steps ? steps[i] : face.Advance(codes[i]);
        }
    }
    std::vector<char32_t> codes;
    std::vector<double> at;  // pen position of each
    double length = 0;       // of the whole
};

/// A band along the text, `from` and `to` pixels below the baseline.
void AddBand(const Face& face, double x, double y, double length, double from, double to,
             CPolygonRaster& raster) {
    const auto place = [&](double along, double down) {
        return std::pair(x + along * face.cosine + down * face.sine,
                         y - along * face.sine + down * face.cosine);
    };
    const std::pair<double, double> p[] = {place(0, from), place(length, from), place(length, to),
                                           place(0, to)};
    for (int i = 0; i < 4; ++i)
        raster.AddSide(p[i].first, p[i].second, p[(i + 1) % 4].first, p[(i + 1) % 4].second);
}

/// Rounding noise of a turn by a right angle must not move an edge across a pixel.
double Tidy(double v) { return std::round(v * 1048576) / 1048576; }

}  // namespace

BOOL CDC::TextOut(int x, int y, const char* text, int count) {
    return ExtTextOut(x, y, 0, nullptr, text, count, nullptr);
}

BOOL CDC::ExtTextOut(int x, int y, UINT options, const CRect* rect, const char* text, int count,
                     const int* steps) {
    if (m_pSurface == nullptr) return 0;
    const CRect clip = m_state.clip;
    if (rect != nullptr && (options & ETO_OPAQUE) != 0) {
        CBrush brush(m_state.bkColor);
        FillRect(rect, &brush);
    }
    if (rect != nullptr && (options & ETO_CLIPPED) != 0) IntersectClipRect(*rect);
    const BOOL drawn = DrawGlyphs(x, y, text, count, steps);
    m_state.clip = clip;
    return drawn;
}

BOOL CDC::DrawGlyphs(int x, int y, const char* text, int count, const int* steps) {
    if (text == nullptr) return 0;
    Face face(m_state.logFont);
    face.cosine = Tidy(face.cosine);
    face.sine = Tidy(face.sine);
    const Line line(face, View(text, count), steps);
    const bool moves = (m_state.textAlign & TA_UPDATECP) != 0;
    const CPoint from = moves ? m_state.position : CPoint(x, y);

    // The reference point, shifted to the left end of the baseline.
    const double height = face.request.height;
    const UINT across = m_state.textAlign & TA_CENTER, upright = m_state.textAlign & TA_BASELINE;
    const double back = across == TA_CENTER ? line.length / 2 : across == TA_RIGHT ? line.length : 0;
    const double down = upright == TA_BASELINE ? 0
                        : upright == TA_BOTTOM ? face.ascent - height
                                               : face.ascent;
    double startX = from.x - back * face.cosine + down * face.sine;
    double startY = from.y + back * face.sine + down * face.cosine;
    if (moves) {
        m_state.position = {Saturated(from.x + line.length * face.cosine),
                            Saturated(from.y - line.length * face.sine)};
    }

    // From here on in pixels.
    const int k = m_nDensity;
    startX *= k;
    startY *= k;
    const double ascent = face.ascent * k, length = line.length * k;
    face.request.height *= k;
    const CRect clip = DeviceClip();
    const bool smooth = m_state.rop == R2_COPYPEN && m_state.logFont.lfQuality != NONANTIALIASED_QUALITY;
    CSpanSet ink(clip), ground(clip);
    CPolygonRaster raster(clip);
    if (m_state.bkMode == OPAQUE) {
        AddBand(face, startX, startY, length, -ascent, height * k - ascent, raster);
        raster.Finish(true, ground);
        ground.Normalize();
    }
    const double thick = std::max(1.0, std::round(height / 20));
    const auto rule = [&](double at) {
        AddBand(face, startX, startY, length, std::round(at) * k, (std::round(at) + thick) * k, raster);
        raster.Finish(true, ink);
    };
    if (m_state.logFont.lfUnderline != 0) rule(height * 0.08);
    if (m_state.logFont.lfStrikeOut != 0) rule(-height * 0.25);

    // Glyphs that can be seen; `paint` gets a clipped piece of a mask's row.
    const auto forEachGlyph = [&](auto paint) {
        for (std::size_t i = 0; i < line.codes.size(); ++i) {
            const double at = line.at[i] * k, penX = startX + at * face.cosine, penY = startY - at * face.sine;
            const double margin = 2 * height * k + 2;
            if (penX < clip.left - margin || penX > clip.right + margin || penY < clip.top - margin ||
                penY > clip.bottom + margin) {
                continue;
            }
            if (!face.drawable) continue;
            CGlyphRequest request = face.request;
            request.code = line.codes[i];
            const CGlyphMask& mask = FindGlyph(request);
            const int left = Saturated(penX) + mask.left, top = Saturated(penY) + mask.top;
            const int x0 = std::max(left, clip.left), x1 = std::min(left + mask.width, clip.right);
            for (int row = std::max(top, clip.top); row < std::min(top + mask.height, clip.bottom) && x0 < x1;
                 ++row) {
                const auto offset =
                    static_cast<std::size_t>(row - top) * static_cast<std::size_t>(mask.width);
                paint(row, x0, x1, mask.coverage.data() + offset + (x0 - left));
            }
        }
    };
    if (smooth) {
        PaintSpans(ground, m_state.bkColor, R2_COPYPEN);
        ink.Normalize();
        PaintSpans(ink, m_state.textColor, R2_COPYPEN);
        const std::uint32_t color = PixelFromColor(m_state.textColor);
        forEachGlyph([&](int row, int x0, int x1, const std::uint8_t* coverage) {
            std::uint32_t* pixel = m_pSurface->Row(row) + x0;
            for (int i = 0; i < x1 - x0; ++i) {
                const std::uint32_t c = coverage[i], d = pixel[i];
                if (c == 0) continue;
                std::uint32_t mixed = 0;
                for (unsigned shift = 0; shift < 24; shift += 8) {
                    const std::uint32_t over = color >> shift & 0xFF, under = d >> shift & 0xFF;
                    mixed |= (over * c + under * (255 - c) + 127) / 255 << shift;
                }
                pixel[i] = mixed;
            }
        });
        return 1;
    }
    forEachGlyph([&](int row, int x0, int x1, const std::uint8_t* coverage) {
        for (int i = 0; i < x1 - x0; ++i) {
            if (coverage[i] >= 128) ink.AddPixel(x0 + i, row);
        }
    });
    ink.Normalize();
    ground.Subtract(ink);
    PaintSpans(ground, m_state.bkColor, m_state.rop);
    PaintSpans(ink, m_state.textColor, m_state.rop);
    return 1;
}

int CDC::DrawText(const char* text, int count, CRect* rect, UINT format) {
    if (rect == nullptr || text == nullptr) return 0;
    std::vector<std::string_view> lines;
    std::string_view rest = View(text, count);
    while (true) {
        const std::size_t end = (format & DT_SINGLELINE) != 0 ? std::string_view::npos : rest.find('\n');
        std::string_view one = rest.substr(0, end);
        if (!one.empty() && one.back() == '\r' && end != std::string_view::npos) one.remove_suffix(1);
        lines.push_back(one);
        if (end == std::string_view::npos) break;
        rest.remove_prefix(end + 1);
    }
    TEXTMETRIC metrics;
    GetTextMetrics(&metrics);
    const auto total = static_cast<double>(metrics.tmHeight) * static_cast<double>(lines.size());
    const int height = Saturated(total);
    int widest = 0;
    for (const auto& one : lines)
        widest = std::max(widest, GetTextExtent(one.data(), static_cast<int>(one.size())).cx);
    if ((format & DT_CALCRECT) != 0) {
        rect->right = Saturated(static_cast<double>(rect->left) + widest);
        rect->bottom = Saturated(rect->top + total);
        return height;
    }
    const CRect clip = m_state.clip;
    const UINT align = SetTextAlign(TA_LEFT | TA_TOP);
    if ((format & DT_NOCLIP) == 0) IntersectClipRect(*rect);
    const bool single = (format & DT_SINGLELINE) != 0;
    const double space = static_cast<double>(rect->bottom) - rect->top - total;
    double y = rect->top;
    if (single && (format & DT_VCENTER) != 0) y += std::floor(space / 2);
    if (single && (format & DT_BOTTOM) != 0) y += space;
    for (const auto& one : lines) {
        const int bytes = static_cast<int>(one.size());
        const double free =
            static_cast<double>(rect->right) - rect->left - GetTextExtent(one.data(), bytes).cx;
        const double x = rect->left + ((format & DT_CENTER) != 0  ? std::floor(free / 2)
                                       : (format & DT_RIGHT) != 0 ? free
                                                                  : 0);
        TextOut(Saturated(x), Saturated(y), one.data(), bytes);
        y += metrics.tmHeight;
    }
    SetTextAlign(align);
    m_state.clip = clip;
    return height;
}

CSize CDC::GetTextExtent(const char* text, int count) const {
    const Face face(m_state.logFont);
    const Line line(face, View(text, count), nullptr);
    return {Saturated(std::ceil(line.length - 1e-6)), Saturated(face.request.height)};
}

BOOL CDC::GetTextMetrics(TEXTMETRIC* metrics) const {
    if (metrics == nullptr) return 0;
    const Face face(m_state.logFont);
    metrics->tmHeight = Saturated(face.request.height);
    metrics->tmAscent = Saturated(face.ascent);
    metrics->tmDescent = metrics->tmHeight - metrics->tmAscent;
    metrics->tmInternalLeading = Saturated(face.request.height * (1 - 1 / GetGlyphSource().CellPerEm()));
    metrics->tmExternalLeading = 0;
    metrics->tmAveCharWidth = Saturated(face.Advance(U'x'));
    metrics->tmMaxCharWidth = Saturated(face.request.height);
    metrics->tmWeight = m_state.logFont.lfWeight;
    return 1;
}
