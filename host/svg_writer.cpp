#include "host/svg_writer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <string_view>

#include "host/host_data_base.h"
#include "host/net_walk.h"
#include "host/picture_style.h"
#include "host/plate_look.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "plates/mian_goujian.h"
#include "platform/acad_color.h"
#include "platform/win_types.h"

namespace {

/// Text for XML content and attributes. Control characters, which XML 1.0 can't hold at all, become spaces.
std::string Escaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"': out += "&quot;"; break;
            default: out += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? ' ' : c;
        }
    }
    return out;
}

std::string Num(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", value == 0 ? 0.0 : value);
    return text;
}

std::string ColorText(COLORREF c) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", static_cast<unsigned>(GetRValue(c)),
                  static_cast<unsigned>(GetGValue(c)), static_cast<unsigned>(GetBValue(c)));
    return text;
}

std::string IndexColorText(int index) { return ColorText(GetAcadRGBColor(index)); }

bool IsFinite(const CGjNetLine& line) {
    return std::isfinite(line.m_fStartX) && std::isfinite(line.m_fStartY) && std::isfinite(line.m_fEndX) &&
           std::isfinite(line.m_fEndY) && (line.m_nArc != 1 || (std::isfinite(line.m_fR) && line.m_fR > 0));
}

// y runs downwards in SVG, so that every y is written negated. An anticlockwise arc of the net is then sweep flag 0,
// the sense of decreasing angle in SVG's frame.
void AppendLine(std::string& svg, const CGjNetLine& line) {
    if (!IsFinite(line)) return;
    if (line.m_nArc != 1) {
        svg += "<line x1=\"" + Num(line.m_fStartX) + "\" y1=\"" + Num(-line.m_fStartY) + "\" x2=\"" + Num(line.m_fEndX) +
               "\" y2=\"" + Num(-line.m_fEndY) + "\"/>\n";
        return;
    }
    const bool large = line.m_fEndDir - line.m_fStartDir > static_cast<float>(std::numbers::pi);
    svg += "<path d=\"M" + Num(line.m_fStartX) + " " + Num(-line.m_fStartY) + "A" + Num(line.m_fR) + " " +
           Num(line.m_fR) + " 0 " + (large ? "1" : "0") + " 0 " + Num(line.m_fEndX) + " " + Num(-line.m_fEndY) + "\"/>\n";
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
        svg += "<pattern id=\"plate" + std::to_string(i) + "\" patternUnits=\"userSpaceOnUse\" width=\"" + Num(step) +
               "\" height=\"" + Num(step) + "\" patternTransform=\"rotate(" + (color.rising ? "45" : "-45") +
               ")\"><rect width=\"" + Num(step) + "\" height=\"" + Num(step) + "\" fill=\"" + ColorText(color.fill) +
               "\"/><path d=\"M0 0V" + Num(step) + "\" stroke=\"" + ColorText(color.hatch) + "\" stroke-width=\"" +
               Num(step / 6) + "\"/></pattern>\n";
    }
    svg += "</defs>\n";
}

void AppendPlate(std::string& svg, const PlateFace& face) {
    const CFRegion& region = face.plate->m_region;
    const int n = region.GetSize();
    svg += "<path d=\"M" + Num(region[0].x) + " " + Num(-region[0].y);
    for (int i = 0; i < n; ++i) {
        const CFShoot &a = region[i], &b = region[(i + 1) % n];
        const double half = std::fabs(a.c), chord = std::hypot(b.x - a.x, b.y - a.y);
        if (half > 1e-6 && half < std::numbers::pi && chord > 0) {
            const std::string r = Num(chord / 2 / std::sin(half));
            svg += "A" + r + " " + r + " 0 " + (half > std::numbers::pi / 2 ? "1 " : "0 ") + (a.c < 0 ? "0 " : "1 ");
        } else {
            svg += "L";
        }
        svg += Num(b.x) + " " + Num(-b.y);
    }
    svg += "Z\" fill=\"url(#plate" + std::to_string(face.color) + ")\"/>\n";
}

void AppendLabel(std::string& svg, const PlateLabel& label) {
    const PlateColor& color = PlateColorAt(label.color);
    svg += "<g fill=\"" + ColorText(color.text) + "\" stroke=\"" + ColorText(color.fill) + "\">\n";
    for (const LabelLine& line : label.lines)
        svg += "<text x=\"" + Num(label.x) + "\" y=\"" + Num(-line.baseline) + "\" font-size=\"" + Num(line.height) +
               "\" stroke-width=\"" + Num(line.height / 3) + (&line == &label.lines[0] ? "\" font-weight=\"bold" : "") +
               "\">" + Escaped(line.text) + "</text>\n";
    svg += "</g>\n";
}

void AppendPlates(std::string& svg, CTvoHostDataBase& db, double size) {
    const auto faces = PlateFaces(db);
    if (faces.empty()) return;
    AppendHatches(svg, faces, size / 130);
    svg += "<g id=\"plates\">\n";
    for (const PlateFace& face : faces) AppendPlate(svg, face);
    svg += "</g>\n<g id=\"labels\" font-family=\"sans-serif\" text-anchor=\"middle\" paint-order=\"stroke\" "
           "stroke-linejoin=\"round\">\n";
    for (const PlateLabel& label : PlateLabels(db, faces, size / 80, size / 140)) AppendLabel(svg, label);
    svg += "</g>\n";
}

void AppendCaption(std::string& svg, const Extent& box, double size, const std::string& caption) {
    const double text = size / 75;
    const double y = -box.minY + 2.2 * text;  // SVG's y of the base line
    const double bar = ScaleBarLength(box.Width() / 2);
    svg += "<g class=\"caption\" fill=\"#333333\" font-family=\"sans-serif\" font-size=\"" + Num(text) + "\">\n";
    if (bar > 0) {
        const double x2 = box.maxX, x1 = x2 - bar;
        svg += "<path d=\"M" + Num(x1) + " " + Num(y - text / 3) + "V" + Num(y) + "H" + Num(x2) + "V" + Num(y - text / 3) +
               "\" fill=\"none\" stroke=\"#333333\" stroke-width=\"" + Num(text / 12) + "\"/>\n";
        svg += "<text x=\"" + Num((x1 + x2) / 2) + "\" y=\"" + Num(y - text / 3) + "\" text-anchor=\"middle\">" +
               LengthText(bar) + "</text>\n";
    }
    if (!caption.empty())
        svg += "<text x=\"" + Num(box.minX) + "\" y=\"" + Num(y) + "\">" + Escaped(caption) + "</text>\n";
    svg += "</g>\n";
}

}  // namespace

std::string SvgOfNet(CTvoHostDataBase& db, const std::string& caption) {
    const Extent box = [&] {
        Extent net = NetExtent(db);
        if (net.IsEmpty()) net = {0, 0, 1000, 1000};
        return net;
    }();
    // The drawing's size sets all widths. A single node still gets a visible surrounding.
    const double size = std::max({box.Width(), box.Height(), 100.0});
    Extent view = box;
    view.Grow(size / 25);
    view.minY -= size / 25;  // room for the caption
    const double dot = std::min(size / 350, 200.0);

    std::string svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"" +
                      Num(view.minX) + " " + Num(-view.maxY) + " " + Num(view.Width()) + " " + Num(view.Height()) +
                      "\" width=\"1200\" height=\"" + Num(std::round(1200 * view.Height() / view.Width())) + "\">\n";
    if (!caption.empty()) svg += "<title>" + Escaped(caption) + "</title>\n";
    svg += "<rect x=\"" + Num(view.minX) + "\" y=\"" + Num(-view.maxY) + "\" width=\"" + Num(view.Width()) +
           "\" height=\"" + Num(view.Height()) + "\" fill=\"white\"/>\n";
    AppendPlates(svg, db, size);
    svg += "<g id=\"lines\" fill=\"none\" stroke=\"" + IndexColorText(kPaperLineColor) + "\" stroke-width=\"" +
           Num(size / 1200) + "\" stroke-linecap=\"round\">\n";
    for (const CGjNetLine* line : NetLines(db)) AppendLine(svg, *line);
    svg += "</g>\n<g id=\"nodes\" fill=\"" + IndexColorText(kPaperNodeColor) + "\">\n";
    for (const CGjNetNode* node : NetNodes(db))
        if (std::isfinite(node->m_fX) && std::isfinite(node->m_fY))
            svg += "<circle cx=\"" + Num(node->m_fX) + "\" cy=\"" + Num(-node->m_fY) + "\" r=\"" + Num(dot) + "\"/>\n";
    svg += "</g>\n";
    AppendCaption(svg, box, size, caption);
    return svg + "</svg>\n";
}
