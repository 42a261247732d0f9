#include "host/svg_writer.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/graph_svg.h"
#include "host/field_look.h"
#include "host/grid_marks.h"
#include "host/host_data_base.h"
#include "host/picture_content.h"
#include "host/picture_style.h"
#include "host/plate_look.h"
#include "host/svg_text.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "plates/mian_goujian.h"
#include "platform/acad_color.h"
#include "platform/win_types.h"

namespace {

constexpr double kWidthInPixels = 1200;
constexpr double kRulerPixels = 500;  // height of the ruler of fields, where the picture is high enough

std::string IndexColorText(int index) { return SvgColor(GetAcadRGBColor(index)); }

bool IsFinite(const CGjNetLine& line) {
    return std::isfinite(line.m_fStartX) && std::isfinite(line.m_fStartY) && std::isfinite(line.m_fEndX) &&
           std::isfinite(line.m_fEndY) && (line.m_nArc != 1 || (std::isfinite(line.m_fR) && line.m_fR > 0));
}

// y runs downwards in SVG, so that every y is written negated. An anticlockwise arc of the net is then sweep flag 0,
// the sense of decreasing angle in SVG's frame.
void AppendLine(std::string& svg, const CGjNetLine& line) {
    if (!IsFinite(line)) return;
    if (line.m_nArc != 1) {
        svg += "<line x1=\"" + SvgNumber(line.m_fStartX) + "\" y1=\"" + SvgNumber(-line.m_fStartY) + "\" x2=\"" + SvgNumber(line.m_fEndX) +
               "\" y2=\"" + SvgNumber(-line.m_fEndY) + "\"/>\n";
        return;
    }
    const bool large = line.m_fEndDir - line.m_fStartDir > static_cast<float>(std::numbers::pi);
    svg += "<path d=\"M" + SvgNumber(line.m_fStartX) + " " + SvgNumber(-line.m_fStartY) + "A" + SvgNumber(line.m_fR) + " " +
           SvgNumber(line.m_fR) + " 0 " + (large ? "1" : "0") + " 0 " + SvgNumber(line.m_fEndX) + " " + SvgNumber(-line.m_fEndY) + "\"/>\n";
}

// ---- grid ------------------------------------------------------------------------------------------

/// One row of dots, and the row again at each y.
void AppendGrid(std::string& svg, const CTvoHostDataBase& db, const Extent& area, double size) {
    const double radius = size / 800;
    const GridMarks marks = MarksOfGrid(db, area, 6 * radius);
    if (marks.x.empty() || marks.y.empty()) return;
    svg += "<defs>\n<g id=\"gridrow\">";
    for (const double x : marks.x) svg += "<circle cx=\"" + SvgNumber(x) + "\" r=\"" + SvgNumber(radius) + "\"/>";
    svg += "</g>\n</defs>\n<g id=\"grid\" fill=\"" + SvgColor(kPaperGridColor) + "\">\n";
    for (const double y : marks.y) svg += "<use href=\"#gridrow\" y=\"" + SvgNumber(-y) + "\"/>\n";
    svg += "</g>\n";
}

// ---- plates ---------------------------------------------------------------------------------------

/// The hatches of the colours that are used, `step` between two of their lines.
void AppendHatches(std::string& svg, const std::vector<PlateFace>& faces, double step) {
    bool used[kPlateColorCount] = {};
    for (const PlateFace& face : faces) used[face.color] = true;
    svg += "<defs>\n";
    for (int i = 0; i < kPlateColorCount; ++i) {
        if (!used[i]) continue;
        const PlateColor& color = PlateColorAt(i);
        svg += "<pattern id=\"plate" + std::to_string(i) + "\" patternUnits=\"userSpaceOnUse\" width=\"" + SvgNumber(step) +
               "\" height=\"" + SvgNumber(step) + "\" patternTransform=\"rotate(" + (color.rising ? "45" : "-45") +
               ")\"><rect width=\"" + SvgNumber(step) + "\" height=\"" + SvgNumber(step) + "\" fill=\"" + SvgColor(color.fill) +
               "\"/><path d=\"M0 0V" + SvgNumber(step) + "\" stroke=\"" + SvgColor(color.hatch) + "\" stroke-width=\"" +
               SvgNumber(step / 6) + "\"/></pattern>\n";
    }
    svg += "</defs>\n";
}

void AppendPlate(std::string& svg, const PlateFace& face) {
    const CFRegion& region = face.plate->m_region;
    const int n = region.GetSize();
    svg += "<path d=\"M" + SvgNumber(region[0].x) + " " + SvgNumber(-region[0].y);
    for (int i = 0; i < n; ++i) {
        const CFShoot &a = region[i], &b = region[(i + 1) % n];
        const double half = std::fabs(a.c), chord = std::hypot(b.x - a.x, b.y - a.y);
        if (half > 1e-6 && half < std::numbers::pi && chord > 0) {
            const std::string r = SvgNumber(chord / 2 / std::sin(half));
            svg += "A" + r + " " + r + " 0 " + (half > std::numbers::pi / 2 ? "1 " : "0 ") + (a.c < 0 ? "0 " : "1 ");
        } else {
            svg += "L";
        }
        svg += SvgNumber(b.x) + " " + SvgNumber(-b.y);
    }
    svg += "Z\" fill=\"url(#plate" + std::to_string(face.color) + ")\"/>\n";
}

void AppendLabel(std::string& svg, const PlateLabel& label) {
    const PlateColor& color = PlateColorAt(label.color);
    svg += "<g fill=\"" + SvgColor(color.text) + "\" stroke=\"" + SvgColor(color.fill) + "\">\n";
    for (const LabelLine& line : label.lines)
        svg += "<text x=\"" + SvgNumber(label.x) + "\" y=\"" + SvgNumber(-line.baseline) + "\" font-size=\"" + SvgNumber(line.height) +
               "\" stroke-width=\"" + SvgNumber(line.height / 3) + (&line == &label.lines[0] ? "\" font-weight=\"bold" : "") +
               "\">" + SvgEscaped(line.text) + "</text>\n";
    svg += "</g>\n";
}

void AppendFaces(std::string& svg, const std::vector<PlateFace>& faces, double size) {
    if (faces.empty()) return;
    AppendHatches(svg, faces, size / 130);
    svg += "<g id=\"plates\">\n";
    for (const PlateFace& face : faces) AppendPlate(svg, face);
    svg += "</g>\n";
}

void AppendLabels(std::string& svg, CTvoHostDataBase& db, const std::vector<PlateFace>& faces, double size) {
    if (faces.empty()) return;
    svg += "<g id=\"labels\" font-family=\"sans-serif\" text-anchor=\"middle\" paint-order=\"stroke\" "
           "stroke-linejoin=\"round\">\n";
    for (const PlateLabel& label : PlateLabels(db, faces, size / 80, size / 140)) AppendLabel(svg, label);
    svg += "</g>\n";
}

/// Components that are none of the net's, as a group; nothing when there are none.
void AppendComponents(std::string& svg, GraphSvg& graphs, const char* name, const std::vector<CGouJianEx*>& components) {
    if (components.empty()) return;
    svg += std::string("<g id=\"") + name + "\">\n";
    for (CGouJianEx* component : components) graphs.Append(*component);
    svg += "</g>\n";
}

/// Plates, the grid on their faces, and their labels.
void AppendGround(std::string& svg, CTvoHostDataBase& db, const Extent& area, double size) {
    const auto faces = PlateFaces(db);
    AppendFaces(svg, faces, size);
    AppendGrid(svg, db, area, size);
    AppendLabels(svg, db, faces, size);
}

void AppendCaption(std::string& svg, const Extent& box, double size, const std::string& caption) {
    const double text = size / 75;
    const double y = -box.minY + 2.2 * text;  // SVG's y of the base line
    const double bar = ScaleBarLength(box.Width() / 2);
    svg += "<g class=\"caption\" fill=\"#333333\" font-family=\"sans-serif\" font-size=\"" + SvgNumber(text) + "\">\n";
    if (bar > 0) {
        const double x2 = box.maxX, x1 = x2 - bar;
        svg += "<path d=\"M" + SvgNumber(x1) + " " + SvgNumber(y - text / 3) + "V" + SvgNumber(y) + "H" + SvgNumber(x2) + "V" + SvgNumber(y - text / 3) +
               "\" fill=\"none\" stroke=\"#333333\" stroke-width=\"" + SvgNumber(text / 12) + "\"/>\n";
        svg += "<text x=\"" + SvgNumber((x1 + x2) / 2) + "\" y=\"" + SvgNumber(y - text / 3) + "\" text-anchor=\"middle\">" +
               LengthText(bar) + "</text>\n";
    }
    if (!caption.empty())
        svg += "<text x=\"" + SvgNumber(box.minX) + "\" y=\"" + SvgNumber(y) + "\">" + SvgEscaped(caption) + "</text>\n";
    svg += "</g>\n";
}

}  // namespace

std::string SvgOfNet(CTvoHostDataBase& db, const std::string& caption) {
    PictureContent content = ContentOfPicture(db);
    const Extent box = content.extent.IsEmpty() ? Extent{0, 0, 1000, 1000} : content.extent;
    // The drawing's size sets all widths. A single node still gets a visible surrounding.
    const double size = std::max({box.Width(), box.Height(), 100.0});
    Extent view = box;
    view.Grow(size / 25);
    Extent drawing = view;
    drawing.minY = box.minY - size / 125;  // the caption is below
    view.minY -= size / 25;  // room for the caption
    const double rulerHeight = std::min(view.Height() - size / 25, kRulerPixels / kWidthInPixels * size);
    const double rulerWidth = RulerWidth(content.fields, rulerHeight);
    view.minX -= rulerWidth;
    const double dot = std::min(size / 350, 200.0);

    std::string svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"" +
                      SvgNumber(view.minX) + " " + SvgNumber(-view.maxY) + " " + SvgNumber(view.Width()) + " " + SvgNumber(view.Height()) +
                      "\" width=\"" + SvgNumber(kWidthInPixels) + "\" height=\"" + SvgNumber(std::round(kWidthInPixels * view.Height() / view.Width())) + "\">\n";
    if (!caption.empty()) svg += "<title>" + SvgEscaped(caption) + "</title>\n";
    svg += "<rect x=\"" + SvgNumber(view.minX) + "\" y=\"" + SvgNumber(-view.maxY) + "\" width=\"" + SvgNumber(view.Width()) +
           "\" height=\"" + SvgNumber(view.Height()) + "\" fill=\"white\"/>\n";
    AppendGround(svg, db, drawing, size);
    GraphSvg graphs(svg, view.Width() / kWidthInPixels);
    AppendClouds(svg, content.fields);
    AppendComponents(svg, graphs, "below", content.below);
    svg += "<g id=\"lines\" fill=\"none\" stroke=\"" + IndexColorText(kPaperLineColor) + "\" stroke-width=\"" +
           SvgNumber(size / 1200) + "\" stroke-linecap=\"round\">\n";
    for (const CGjNetLine* line : content.lines) AppendLine(svg, *line);
    svg += "</g>\n";
    AppendComponents(svg, graphs, "above", content.above);
    svg += "<g id=\"nodes\" fill=\"" + IndexColorText(kPaperNodeColor) + "\">\n";
    for (const CGjNetNode* node : content.nodes)
        if (std::isfinite(node->m_fX) && std::isfinite(node->m_fY))
            svg += "<circle cx=\"" + SvgNumber(node->m_fX) + "\" cy=\"" + SvgNumber(-node->m_fY) + "\" r=\"" + SvgNumber(dot) + "\"/>\n";
    svg += "</g>\n";
    AppendFieldLists(svg, content.fields, view.Width() / kWidthInPixels);
    AppendRuler(svg, content.fields, view.minX + size / 50, -view.maxY + size / 50, rulerHeight);
    AppendCaption(svg, box, size, caption);
    return svg + "</svg>\n";
}
