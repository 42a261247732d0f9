// Display lists as SVG.
#pragma once
#include <set>
#include <string>

class CGouJianEx;
class CGraph_Arc;
class CGraph_Circle;
class CGraph_CircleRgn;
class CGraph_Line;
class CGraph_Point;
class CGraph_PolyRgn;
class CGraph_Text;

/// Appends the primitives of display lists to an SVG text, each as a shape of its own kind, in model units
/// with y written negated. White ink comes out dark. Primitives that are not finite, those of a host's own
/// kind and locators are left out.
class GraphSvg {
public:
    /// `pixel` is the size of a pixel of the view in model units: widths in pixels and the thinnest line go
    /// by it.
    GraphSvg(std::string& svg, double pixel) : m_svg(svg), m_pixel(pixel) {}

    /// The whole display list of a component, hidden or not.
    void Append(CGouJianEx& component);

private:
    void Line(const CGraph_Line& line);
    void Arc(const CGraph_Arc& arc);
    void Circle(const CGraph_Circle& circle);
    void Point(const CGraph_Point& point);
    void Polygon(const CGraph_PolyRgn& polygon);
    void Disc(const CGraph_CircleRgn& disc);
    void Text(const CGraph_Text& text);
    std::string Stroke(unsigned long color, float width, int lineType) const;
    std::string Hatch(unsigned long color);

    std::string& m_svg;  // borrowed
    double m_pixel;
    std::set<unsigned long> m_hatches;  // colours whose pattern stands in the text
};
