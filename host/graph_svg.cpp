#include "host/graph_svg.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/paper_ink.h"
#include "host/svg_text.h"

namespace {

constexpr double kThinnest = 1.0;  // pixels of a line
constexpr double kSmallPointScale =
    0.05;                         // pixels a model unit, below which points are smaller; as on the screen
constexpr double kDescent = 0.2;  // share of a text's height below the line on which letters stand

double Radians(double degrees) { return degrees * std::numbers::pi / 180; }

template <class... Numbers>
bool AllFinite(Numbers... numbers) {
    return (std::isfinite(numbers) && ...);
}

/// name="value"
std::string Is(const char* name, const std::string& value) {
    return std::string(" ").append(name).append("=\"").append(value).append("\"");
}
std::string Is(const char* name, double value) { return Is(name, SvgNumber(value)); }

std::string Place(double x, double y) { return SvgNumber(x).append(" ").append(SvgNumber(-y)); }

std::string Fill(unsigned long color) { return Is("fill", SvgColor(COLORREF(color))); }

}  // namespace

void GraphSvg::Append(CGouJianEx& component) {
    ForEachOnPaper(component, [&](CGraphEntity& entity) {
        switch (entity.GetGraphType()) {
            case kGraphLine:
                return Line(static_cast<CGraph_Line&>(entity));
            case kGraphArc:
                return Arc(static_cast<CGraph_Arc&>(entity));
            case kGraphCircle:
                return Circle(static_cast<CGraph_Circle&>(entity));
            case kGraphPoint:
                return Point(static_cast<CGraph_Point&>(entity));
            case kGraphPolyRgn:
                return Polygon(static_cast<CGraph_PolyRgn&>(entity));
            case kGraphCircleRgn:
                return Disc(static_cast<CGraph_CircleRgn&>(entity));
            case kGraphText:
                return Text(static_cast<CGraph_Text&>(entity));
            default:
                return;
        }
    });
}

/// A width in model units, or in pixels when it is negative.
std::string GraphSvg::Stroke(unsigned long color, float width, int lineType) const {
    const double units = width < 0 ? -static_cast<double>(width) * m_pixel : static_cast<double>(width);
    const double stroke = std::isfinite(units) ? std::max(units, kThinnest * m_pixel) : kThinnest * m_pixel;
    std::string text =
        Is("fill", "none") + Is("stroke", SvgColor(COLORREF(color))) + Is("stroke-width", stroke);
    if (lineType != 0) text += Is("stroke-dasharray", Place(6 * m_pixel + stroke, -(4 * m_pixel + stroke)));
    return text;
}

void GraphSvg::Line(const CGraph_Line& line) {
    if (!AllFinite(line.m_fX1, line.m_fY1, line.m_fX2, line.m_fY2)) return;
    m_svg += "<line" + Is("x1", line.m_fX1) + Is("y1", -line.m_fY1) + Is("x2", line.m_fX2) +
             Is("y2", -line.m_fY2) + Stroke(line.m_dwColor, line.m_fWidth, line.m_nLineType) +
             " stroke-linecap=\"square\"/>\n";
}

// In SVG, with y downwards, an anticlockwise arc of the model has the sweep flag 0. One beyond a half turn is
// written in two, since its ends may nearly coincide.
void GraphSvg::Arc(const CGraph_Arc& arc) {
    if (!AllFinite(arc.m_fX, arc.m_fY, arc.m_fR, arc.m_fStart, arc.m_fEnd)) return;
    const double start = arc.m_fStart;
    const double sweep = std::clamp(static_cast<double>(arc.m_fEnd) - start, -360.0, 360.0);
    const double r = arc.m_fR;
    const auto at = [&](double degrees) {
        return Place(arc.m_fX + r * std::cos(Radians(degrees)), arc.m_fY + r * std::sin(Radians(degrees)));
    };
    const std::string turn =
        std::string("A").append(Place(std::fabs(r), -std::fabs(r))).append(sweep < 0 ? " 0 0 1 " : " 0 0 0 ");
    m_svg += "<path d=\"M" + at(start);
    if (std::fabs(sweep) > 180) m_svg += turn + at(start + sweep / 2);
    m_svg += turn + at(start + sweep) + "\"" + Stroke(arc.m_dwColor, arc.m_fWidth, arc.m_nLineType) +
             " stroke-linecap=\"round\"/>\n";
}

void GraphSvg::Circle(const CGraph_Circle& circle) {
    if (!AllFinite(circle.m_fX, circle.m_fY, circle.m_fR)) return;
    m_svg += "<circle" + Is("cx", circle.m_fX) + Is("cy", -circle.m_fY) + Is("r", std::fabs(circle.m_fR)) +
             Stroke(circle.m_dwColor, circle.m_fWidth, circle.m_nLineType) + "/>\n";
}

void GraphSvg::Point(const CGraph_Point& point) {
    if (!AllFinite(point.m_fX, point.m_fY)) return;
    const double side = (1 / m_pixel < kSmallPointScale ? 3 : 5) * m_pixel;
    m_svg += "<rect" + Is("x", point.m_fX - side / 2) + Is("y", -point.m_fY - side / 2) + Is("width", side) +
             Is("height", side) + Fill(point.m_dwColor) + "/>\n";
}

std::string GraphSvg::Hatch(unsigned long color) {
    const std::string name = std::string("hatch-").append(SvgColor(COLORREF(color)), 1);
    if (m_hatches.insert(color).second)
        m_svg += "<defs><pattern id=\"" + name + "\" patternUnits=\"userSpaceOnUse\"" +
                 Is("width", 8 * m_pixel) + Is("height", 8 * m_pixel) +
                 " patternTransform=\"rotate(45)\"><path d=\"M0 0V" + SvgNumber(8 * m_pixel) + "M0 0H" +
                 SvgNumber(8 * m_pixel) + "\" stroke=\"" + SvgColor(COLORREF(color)) + "\"" +
                 Is("stroke-width", m_pixel) + "/></pattern></defs>\n";
    return Is("fill", std::string("url(#").append(name).append(")"));
}

void GraphSvg::Polygon(const CGraph_PolyRgn& polygon) {
    std::string points;
    for (const CFPoint& p : polygon.m_aPoint) {
        if (!AllFinite(p.x, p.y)) return;
        if (!points.empty()) points += ' ';
        points.append(SvgNumber(p.x)).append(",").append(SvgNumber(-p.y));
    }
    if (polygon.m_aPoint.GetSize() < 3) return;
    const std::string fill = polygon.m_nLineType != 0 ? Hatch(polygon.m_dwColor) : Fill(polygon.m_dwColor);
    m_svg += "<polygon points=\"" + points + "\"" + fill + "/>\n";
}

void GraphSvg::Disc(const CGraph_CircleRgn& disc) {
    if (!AllFinite(disc.m_fX, disc.m_fY, disc.m_fR)) return;
    m_svg += "<circle" + Is("cx", disc.m_fX) + Is("cy", -disc.m_fY) + Is("r", std::fabs(disc.m_fR)) +
             Fill(disc.m_dwColor) + "/>\n";
}

// The letters stand a little above the insertion point, which is the corner of their box. The box has the
// width that the model gives it, whatever font draws them.
void GraphSvg::Text(const CGraph_Text& text) {
    const double height = text.m_fHeight;
    if (!AllFinite(text.m_fX, text.m_fY, text.m_fAngle) || !(height > 0 && std::isfinite(height)) ||
        text.m_strText.IsEmpty())
        return;
    const float degrees = static_cast<float>(static_cast<double>(text.m_fAngle) * 180 / std::numbers::pi);
    m_svg += "<text" + Is("x", text.m_fX) + Is("y", -text.m_fY) + Is("dy", -kDescent * height) +
             Is("font-size", height) + Is("textLength", ModelTextWidth(text.m_strText, text.m_fHeight)) +
             " lengthAdjust=\"spacingAndGlyphs\"" + " font-family=\"sans-serif\" xml:space=\"preserve\"" +
             Fill(text.m_dwColor);
    if (degrees != 0)
        m_svg += Is("transform", std::string("rotate(")
                                     .append(SvgNumber(-degrees))
                                     .append(" ")
                                     .append(Place(text.m_fX, text.m_fY))
                                     .append(")"));
    m_svg.append(">").append(SvgEscaped(text.m_strText.View())).append("</text>\n");
}
