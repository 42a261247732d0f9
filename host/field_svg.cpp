// Fields as SVG.
#include <algorithm>
#include <cmath>

#include "fields/chang.h"
#include "fields/field_ruler.h"
#include "fields/gj_chang.h"
#include "geometry/fcoor.h"
#include "host/field_ink.h"
#include "host/field_look.h"
#include "host/png/png_writer.h"
#include "host/svg_text.h"
#include "model/draw_graph.h"
#include "model/profile.h"
#include "platform/canvas/dc.h"
#include "platform/number_text.h"

namespace {

constexpr double kCloudPixels = 1200;  // on the longer side
constexpr COLORREF kPaper = RGB(255, 255, 255);

std::string Base64(const std::string& bytes) {
    static const char* const kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        unsigned group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0u);
        for (std::size_t k = 0; k < 4; ++k)
            text += i + k < bytes.size() + 1 ? kDigits[group >> (18 - 6 * k) & 63] : '=';
    }
    return text;
}

/// The paper's colour as background while clouds are painted.
class PaperBackground {
public:
    PaperBackground() { g_cTvoProfile.m_crBackground = static_cast<std::uint32_t>(kPaper); }
    ~PaperBackground() { g_cTvoProfile.m_crBackground = m_background; }
    PaperBackground(const PaperBackground&) = delete;
    PaperBackground& operator=(const PaperBackground&) = delete;

private:
    std::uint32_t m_background = g_cTvoProfile.m_crBackground;
};

std::string Place(float x, float y) {
    return SvgNumber(static_cast<double>(x)).append(" ").append(SvgNumber(-static_cast<double>(y)));
}
/// name="value"
std::string Is(const char* name, const std::string& value) {
    return std::string(" ").append(name).append("=\"").append(value).append("\"");
}
std::string Is(const char* name, double value) { return Is(name, SvgNumber(value)); }

void AppendCloud(std::string& svg, CGjChang& field) {
    const double wide = static_cast<double>(field.m_rect.Width()),
                 high = static_cast<double>(field.m_rect.Height());
    if (!(wide > 0) || !(high > 0) || !std::isfinite(wide) || !std::isfinite(high)) return;
    CFCoor coor;
    coor.SetScale(static_cast<float>(kCloudPixels / std::max(wide, high)));
    CDC picture;
    int width = 0, height = 0;
    field.m_pChang->m_nColorScheme = field.m_nColorScheme;
    field.m_pChang->DrawBaseMap(nullptr, &picture, &coor, width, height, field.m_fCoordScale);
    svg += "<image" + Is("x", static_cast<double>(field.m_rect.m_fMinX)) +
           Is("y", -static_cast<double>(field.m_rect.m_fMaxY)) + Is("width", wide) + Is("height", high) +
           Is("preserveAspectRatio", "none") + " href=\"data:image/png;base64," +
           Base64(PngBytes(*picture.Surface(), PixelFromColor(kPaper))) + "\"/>\n";
}

/// All lines, those of one colour that come one behind the other as one path.
void AppendLines(std::string& svg, const std::vector<InkedEntity>& inked, double width) {
    const CGraph_Line* before = nullptr;
    COLORREF color = CLR_INVALID;
    svg += "<g fill=\"none\"" + Is("stroke-linejoin", "round") + Is("stroke-width", width) + ">\n";
    for (const InkedEntity& i : inked) {
        if (i.entity->GetGraphType() != kGraphLine) continue;
        const auto& line = *static_cast<const CGraph_Line*>(i.entity);
        if (before && i.color != color) {
            svg += "\"/>\n";
            before = nullptr;
        }
        if (!before)
            svg += "<path" + Is("stroke", SvgColor(i.color)) +
                   (i.lineType ? Is("stroke-dasharray", 6 * width) : "") + " d=\"";
        if (!before || before->m_fX2 != line.m_fX1 || before->m_fY2 != line.m_fY1)
            svg.append("M").append(Place(line.m_fX1, line.m_fY1));
        svg.append("L").append(Place(line.m_fX2, line.m_fY2));
        before = &line;
        color = i.color;
    }
    svg += before ? "\"/>\n</g>\n" : "</g>\n";
}

void AppendTexts(std::string& svg, const std::vector<InkedEntity>& inked) {
    svg +=
        "<g font-family=\"sans-serif\" stroke=\"white\" paint-order=\"stroke\" stroke-linejoin=\"round\">\n";
    for (const InkedEntity& i : inked) {
        if (i.entity->GetGraphType() != kGraphText) continue;
        const auto& text = *static_cast<const CGraph_Text*>(i.entity);
        const double height = static_cast<double>(text.m_fHeight);
        svg += "<text" + Is("x", static_cast<double>(text.m_fX)) + Is("y", -static_cast<double>(text.m_fY)) +
               Is("font-size", height) + Is("stroke-width", height / 6) + Is("fill", SvgColor(i.color)) +
               ">" + SvgEscaped(FieldNumber(text.m_strText.Std())) + "</text>\n";
    }
    svg += "</g>\n";
}

/// Letters of a ruler of that height, and the width of its longest label at some 0.6 of an em for each
/// character.
double LetterHeight(double height) { return height / 28; }
double LabelWidth(CGjChang& field, double letters) {
    std::size_t longest = 0;
    for (const RulerBand& band : RulerBands(*field.m_pChang)) longest = std::max(longest, band.label.size());
    return 0.6 * letters * static_cast<double>(longest);
}
double BandWidth(double height) { return 0.05 * height; }

}  // namespace

void AppendClouds(std::string& svg, const std::vector<CGjChang*>& fields) {
    if (fields.empty()) return;
    const PaperBackground paper;
    svg += "<g id=\"clouds\">\n";
    for (CGjChang* field : fields)
        if (field->m_nDisplay == FIELD_DISPLAY_CLOUD) AppendCloud(svg, *field);
    svg += "</g>\n";
}

void AppendFieldLists(std::string& svg, const std::vector<CGjChang*>& fields, double lineWidth) {
    for (CGjChang* field : fields) {
        const auto inked = InkedEntities(*field);
        svg += "<g class=\"field\">\n";
        AppendLines(svg, inked, lineWidth);
        AppendTexts(svg, inked);
        svg += "</g>\n";
    }
}

double RulerWidth(const std::vector<CGjChang*>& fields, double height) {
    if (fields.empty()) return 0;
    CGjChang& field = *fields.back();
    field.m_pChang->m_fValueScale = field.m_fValueScale;
    return BandWidth(height) + LabelWidth(field, LetterHeight(height)) + 2 * LetterHeight(height);
}

void AppendRuler(std::string& svg, const std::vector<CGjChang*>& fields, double x, double y, double height) {
    if (fields.empty()) return;
    CChang& chang = *fields.back()->m_pChang;
    chang.m_fValueScale = fields.back()->m_fValueScale;
    chang.m_nColorScheme = fields.back()->m_nColorScheme;
    const auto bands = RulerBands(chang);
    const double letters = LetterHeight(height), wide = BandWidth(height),
                 band = (height - letters) / kRulerBands;
    svg += "<g id=\"ruler\"" + Is("font-family", "sans-serif") + Is("font-size", letters) +
           " fill=\"#333333\">\n";
    for (int i = 0; i <= kRulerBands; ++i) {
        const RulerBand& b = bands[static_cast<std::size_t>(i)];
        const double top = y + letters / 2 + band * i;
        if (i < kRulerBands)  // a little more than its height, or the paper shines through between two
            svg += "<rect" + Is("x", x) + Is("y", top) + Is("width", wide) +
                   Is("height", i + 1 < kRulerBands ? band * 1.05 : band) + Is("fill", SvgColor(b.color)) +
                   "/>\n";
        if (b.label.empty()) continue;
        svg += "<path" +
               Is("d", "M" + SvgNumber(x + wide)
                                 .append(" ")
                                 .append(SvgNumber(top))
                                 .append("h")
                                 .append(SvgNumber(letters / 2))) +
               Is("stroke", "#333333") + Is("stroke-width", letters / 14) + "/><text" +
               Is("x", x + wide + letters) + Is("y", top + 0.36 * letters) + ">" + b.label + "</text>\n";
    }
    svg += "</g>\n";
}
