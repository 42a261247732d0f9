#include "host/svg_writer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <string_view>

#include "platform/acad_color.h"
#include "host/net_walk.h"
#include "host/picture_style.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "net/grid_data_base.h"
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

std::string ColorText(int index) {
    const COLORREF c = GetAcadRGBColor(index);
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", static_cast<unsigned>(GetRValue(c)),
                  static_cast<unsigned>(GetGValue(c)), static_cast<unsigned>(GetBValue(c)));
    return text;
}

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

std::string SvgOfNet(CGridDataBase& db, const std::string& caption) {
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
    svg += "<g id=\"lines\" fill=\"none\" stroke=\"" + ColorText(kPaperLineColor) + "\" stroke-width=\"" +
           Num(size / 1200) + "\" stroke-linecap=\"round\">\n";
    for (const CGjNetLine* line : NetLines(db)) AppendLine(svg, *line);
    svg += "</g>\n<g id=\"nodes\" fill=\"" + ColorText(kPaperNodeColor) + "\">\n";
    for (const CGjNetNode* node : NetNodes(db))
        if (std::isfinite(node->m_fX) && std::isfinite(node->m_fY))
            svg += "<circle cx=\"" + Num(node->m_fX) + "\" cy=\"" + Num(-node->m_fY) + "\" r=\"" + Num(dot) + "\"/>\n";
    svg += "</g>\n";
    AppendCaption(svg, box, size, caption);
    return svg + "</svg>\n";
}
