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

void AppendPlate(std::string& svg, const PlateFace& face, const std::string& fill) {
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
    svg += "Z\" fill=\"" + fill + "\"/>\n";
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

/// With `ground` the colour lies below the hatch as well: between the tiles of a hatch paper may shine through.
void AppendFaces(std::string& svg, const std::vector<PlateFace>& faces, double size, bool ground) {
    if (faces.empty()) return;
    AppendHatches(svg, faces, size / 130);
    svg += "<g id=\"plates\">\n";
    for (const PlateFace& face : faces) {
        if (ground) AppendPlate(svg, face, SvgColor(PlateColorAt(face.color).fill));
        AppendPlate(svg, face, "url(#plate" + std::to_string(face.color) + ")");
    }
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
void AppendGround(std::string& svg, CTvoHostDataBase& db, const Extent& area, double size, bool paper) {
    const auto faces = PlateFaces(db);
    AppendFaces(svg, faces, size, paper);
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

/// How a drawing is laid out, in model units.
struct Layout {
    Extent view;             // all of the picture
    Extent drawing;          // where the grid is
    Extent box;              // above the caption, and as wide
    double size = 0;         // sets widths and letters
    double pixel = 0;        // the thinnest line
    double dot = 0;          // radius of a node
    double rulerX = 0, rulerY = 0, rulerHeight = 0;  // top left corner, y downwards
    std::string width, height;                       // as the picture tells them
    bool clipped = false;                            // a frame about the drawing, and nothing beyond
};

std::string RectOf(const Extent& e) {
    return "x=\"" + SvgNumber(e.minX) + "\" y=\"" + SvgNumber(-e.maxY) + "\" width=\"" + SvgNumber(e.Width()) + "\" height=\"" +
           SvgNumber(e.Height()) + "\"";
}

std::string Compose(CTvoHostDataBase& db, PictureContent& content, const Layout& layout, const std::string& caption) {
    const Extent& view = layout.view;
    std::string svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"" +
                      SvgNumber(view.minX) + " " + SvgNumber(-view.maxY) + " " + SvgNumber(view.Width()) + " " + SvgNumber(view.Height()) +
                      "\" width=\"" + layout.width + "\" height=\"" + layout.height + "\">\n";
    if (!caption.empty()) svg += "<title>" + SvgEscaped(caption) + "</title>\n";
    svg += "<rect " + RectOf(view) + " fill=\"white\"/>\n";
    if (layout.clipped)
        svg += "<clipPath id=\"frame\"><rect " + RectOf(layout.drawing) + "/></clipPath>\n<g clip-path=\"url(#frame)\">\n";
    AppendGround(svg, db, layout.drawing, layout.size, layout.clipped);
    GraphSvg graphs(svg, layout.pixel);
    AppendClouds(svg, content.fields);
    AppendComponents(svg, graphs, "below", content.below);
    svg += "<g id=\"lines\" fill=\"none\" stroke=\"" + IndexColorText(kPaperLineColor) + "\" stroke-width=\"" +
           SvgNumber(layout.size / 1200) + "\" stroke-linecap=\"round\">\n";
    for (const CGjNetLine* line : content.lines) AppendLine(svg, *line);
    svg += "</g>\n";
    AppendComponents(svg, graphs, "above", content.above);
    svg += "<g id=\"nodes\" fill=\"" + IndexColorText(kPaperNodeColor) + "\">\n";
    for (const CGjNetNode* node : content.nodes)
        if (std::isfinite(node->m_fX) && std::isfinite(node->m_fY))
            svg += "<circle cx=\"" + SvgNumber(node->m_fX) + "\" cy=\"" + SvgNumber(-node->m_fY) + "\" r=\"" + SvgNumber(layout.dot) + "\"/>\n";
    svg += "</g>\n";
    AppendFieldLists(svg, content.fields, layout.pixel);
    if (layout.clipped)
        svg += "</g>\n<rect " + RectOf(layout.drawing) + " fill=\"none\" stroke=\"#333333\" stroke-width=\"" +
               SvgNumber(layout.size / 1200) + "\"/>\n";
    AppendRuler(svg, content.fields, layout.rulerX, layout.rulerY, layout.rulerHeight);
    AppendCaption(svg, layout.box, layout.size, caption);
    return svg + "</svg>\n";
}

// ---- sheets of paper ------------------------------------------------------------------------------

constexpr double kSheetSize = 300;    // mm; what hangs on the size comes out as on a picture so large: lines of 0.25 mm
constexpr double kThinnest = 0.18;    // mm
constexpr double kSheetRuler = 100;   // mm, height of the ruler of fields
constexpr double kRulerGap = 5;       // mm

double SheetRuler(const SvgSheet& sheet) {
    return std::clamp(sheet.height - 2 * sheet.margin - SvgSheet::kFooter, 0.0, kSheetRuler);
}

double RulerStrip(const std::vector<CGjChang*>& fields, const SvgSheet& sheet) {
    const double width = RulerWidth(fields, SheetRuler(sheet));
    return width > 0 ? width + kRulerGap : 0;
}

Extent RoomOn(const SvgSheet& sheet, double strip) {
    const double m = sheet.margin;
    return {m + strip, m + SvgSheet::kFooter, std::max(sheet.width - m, m + strip + 1), std::max(sheet.height - m, m + SvgSheet::kFooter + 1)};
}

}  // namespace

std::string SvgOfNet(CTvoHostDataBase& db, const std::string& caption) {
    PictureContent content = ContentOfPicture(db);
    const Extent box = content.extent.IsEmpty() ? Extent{0, 0, 1000, 1000} : content.extent;
    // The drawing's size sets all widths. A single node still gets a visible surrounding.
    const double size = std::max({box.Width(), box.Height(), 100.0});
    Layout layout;
    layout.box = box;
    layout.size = size;
    Extent view = box;
    view.Grow(size / 25);
    layout.drawing = view;
    layout.drawing.minY = box.minY - size / 125;  // the caption is below
    view.minY -= size / 25;  // room for the caption
    layout.rulerHeight = std::min(view.Height() - size / 25, kRulerPixels / kWidthInPixels * size);
    view.minX -= RulerWidth(content.fields, layout.rulerHeight);
    layout.view = view;
    layout.rulerX = view.minX + size / 50;
    layout.rulerY = -view.maxY + size / 50;
    layout.pixel = view.Width() / kWidthInPixels;
    layout.dot = std::min(size / 350, 200.0);
    layout.width = SvgNumber(kWidthInPixels);
    layout.height = SvgNumber(std::round(kWidthInPixels * view.Height() / view.Width()));
    return Compose(db, content, layout, caption);
}

Extent DrawingOnSheet(CTvoHostDataBase& db, const SvgSheet& sheet) { return RoomOn(sheet, RulerStrip(ShownFields(db), sheet)); }

std::string SvgOfSheet(CTvoHostDataBase& db, const SvgSheet& sheet, const std::string& caption) {
    PictureContent content = ContentOfPicture(db);
    const double unit = sheet.unitsPerMillimetre;
    const Extent room = RoomOn(sheet, RulerStrip(content.fields, sheet));
    // The sheet's lower left corner in the model.
    const double left = sheet.x - (room.minX + room.maxX) / 2 * unit, bottom = sheet.y - (room.minY + room.maxY) / 2 * unit;
    Layout layout;
    layout.view = {left, bottom, left + sheet.width * unit, bottom + sheet.height * unit};
    layout.drawing = {left + room.minX * unit, bottom + room.minY * unit, left + room.maxX * unit, bottom + room.maxY * unit};
    layout.box = layout.drawing;
    layout.box.minX = left + sheet.margin * unit;
    layout.size = kSheetSize * unit;
    layout.pixel = kThinnest * unit;
    layout.dot = 0.6 * unit;
    layout.rulerX = left + sheet.margin * unit;
    layout.rulerY = -layout.drawing.maxY;
    layout.rulerHeight = SheetRuler(sheet) * unit;
    layout.width = SvgNumber(sheet.width) + "mm";
    layout.height = SvgNumber(sheet.height) + "mm";
    layout.clipped = true;
    return Compose(db, content, layout, caption);
}
