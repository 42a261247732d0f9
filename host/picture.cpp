#include "host/picture.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "geometry/fcoor.h"
#include "host/field_look.h"
#include "host/file_output.h"
#include "host/glyphs/freetype_glyph_source.h"
#include "host/grid_marks.h"
#include "host/host_data_base.h"
#include "host/paper_ink.h"
#include "host/picture_content.h"
#include "host/picture_style.h"
#include "host/plate_look.h"
#include "host/png/png_writer.h"
#include "model/goujian.h"
#include "model/profile.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "plates/mian_goujian.h"
#include "platform/canvas/dc.h"

namespace {

constexpr COLORREF kPaper = RGB(255, 255, 255);
constexpr COLORREF kInk = RGB(51, 51, 51);
constexpr double kSmallestLetters = 9.5;  // pixels of an em that can still be read

/// The colours of the drawing on paper while a picture is made; the profile's own come back afterwards.
class PaperColors {
public:
    PaperColors() {
        g_cTvoProfile.m_nLineColor = kPaperLineColor;
        g_cTvoProfile.m_nLineColorOther = kPaperLineColor;
        g_cTvoProfile.m_nNodeColor = kPaperNodeColor;
        g_cTvoProfile.m_crBackground = kPaper;
    }
    ~PaperColors() {
        g_cTvoProfile.m_nLineColor = m_line;
        g_cTvoProfile.m_nLineColorOther = m_lineOther;
        g_cTvoProfile.m_nNodeColor = m_node;
        g_cTvoProfile.m_crBackground = m_background;
    }
    PaperColors(const PaperColors&) = delete;
    PaperColors& operator=(const PaperColors&) = delete;

private:
    int m_line = g_cTvoProfile.m_nLineColor;
    int m_lineOther = g_cTvoProfile.m_nLineColorOther;
    int m_node = g_cTvoProfile.m_nNodeColor;
    decltype(g_cTvoProfile.m_crBackground) m_background = g_cTvoProfile.m_crBackground;
};

/// A plan view that shows `extent` as large as fits between the margins, centred. `strip` pixels at the left are no room.
CFCoor FittedCoor(const Extent& extent, int width, int height, int margin, int footer, int strip) {
    const double freeWidth = std::max(1, width - strip - 2 * margin), freeHeight = std::max(1, height - 2 * margin - footer);
    const double wide = std::max(extent.Width(), 1.0), high = std::max(extent.Height(), 1.0);
    const double scale = std::min(freeWidth / wide, freeHeight / high);
    const double left = (extent.minX + extent.maxX) / 2 - (width + strip) / scale / 2;
    const double top = (extent.minY + extent.maxY) / 2 + (height - footer) / scale / 2;
    CFCoor coor;
    coor.Init(CFPoint(static_cast<float>(left), static_cast<float>(top), 0), static_cast<float>(scale), 1);
    coor.m_rcClient = CRect(0, 0, width, height);
    return coor;
}

/// Dots large enough to be seen on paper, in the drawing's part of the picture.
void DrawGrid(CDC& dc, const CFCoor& coor, const CTvoHostDataBase& db, int width, int height) {
    const int dot = std::max(2, std::min(width, height) / 230);  // pixels
    const CFPoint low = coor.DPtoFP(CPoint(0, height)), high = coor.DPtoFP(CPoint(width, 0));
    const GridMarks marks = MarksOfGrid(db, {low.x, low.y, high.x, high.y}, 4 * dot / static_cast<double>(coor.GetScale()));
    for (const double y : marks.y)
        for (const double x : marks.x) {
            const CPoint p = coor.FPtoDP(CFPoint(static_cast<float>(x), static_cast<float>(y), 0));
            dc.FillSolidRect(p.x - dot / 2, p.y - dot / 2, dot, dot, kPaperGridColor);
        }
}

void DrawPlate(CDC& dc, const CFCoor& coor, const PlateFace& face) {
    std::vector<CPoint> points;
    for (const FlatPoint& p : FlatOutline(face.plate->m_region, 0.25 / static_cast<double>(coor.GetScale())))
        points.push_back(coor.FPtoDP(CFPoint(static_cast<float>(p.x), static_cast<float>(p.y), 0)));
    const PlateColor& color = PlateColorAt(face.color);
    CBrush fill(color.fill), hatch(color.rising ? HS_BDIAGONAL : HS_FDIAGONAL, color.hatch);
    for (CBrush* brush : {&fill, &hatch}) {
        CBrush* const oldBrush = dc.SelectObject(brush);
        dc.Polygon(points.data(), static_cast<int>(points.size()));
        dc.SelectObject(oldBrush);
    }
}

/// The lines of text, on a ground without hatch.
void DrawLabel(CDC& dc, const CFCoor& coor, const PlateLabel& label) {
    const PlateColor& color = PlateColorAt(label.color);
    dc.SetTextColor(color.text);
    CBrush ground(color.fill);
    for (const bool text : {false, true})
        for (const LabelLine& line : label.lines) {
            const int height = static_cast<int>(std::lround(line.height * static_cast<double>(coor.GetScale())));
            const int weight = &line == &label.lines[0] ? FW_BOLD : FW_NORMAL;
            CFont font;
            font.CreateFont(-height, 0, 0, 0, weight, 0, 0, 0, DEFAULT_CHARSET, 0, 0, DEFAULT_QUALITY, 0, "");
            CFont* const oldFont = dc.SelectObject(&font);
            const CPoint at = coor.FPtoDP(CFPoint(static_cast<float>(label.x), static_cast<float>(line.baseline), 0));
            const int half = dc.GetTextExtent(CString(line.text)).cx / 2 + height / 4;
            if (text)
                dc.TextOut(at.x, at.y, CString(line.text));
            else
                dc.FillRect(CRect(at.x - half, at.y - height, at.x + half, at.y + height / 4), &ground);
            dc.SelectObject(oldFont);
        }
}

/// Faces, the grid on them, and labels; a label that would be too small to read is left out.
void DrawGround(CDC& dc, const CFCoor& coor, CTvoHostDataBase& db, int width, int height, int footer) {
    const auto faces = PlateFaces(db);
    CPen none(PS_NULL, 1, kPaper);
    CPen* const oldPen = dc.SelectObject(&none);
    dc.SetBkMode(TRANSPARENT);
    for (const PlateFace& face : faces) DrawPlate(dc, coor, face);
    dc.SelectObject(oldPen);
    DrawGrid(dc, coor, db, width, height - footer);
    dc.SetTextAlign(TA_CENTER | TA_BASELINE);
    const double scale = static_cast<double>(coor.GetScale());
    const double largest = std::max(kSmallestLetters, std::min(width, height) / 58.0);
    for (const PlateLabel& label : PlateLabels(db, faces, largest / scale, kSmallestLetters / scale)) DrawLabel(dc, coor, label);
}

/// A component that is none of the net's.
void DrawComponent(CDC& dc, CFCoor& coor, CTvoHostDataBase& db, CGouJianEx& component) {
    if (component.m_bSelfDraw || component.m_bDrawBoth)
        db.DrawOne(&dc, &coor, &component);
    else
        ForEachOnPaper(component, [&](CGraphEntity& entity) { entity.Draw(&dc, &coor); });
}

/// As much of a text as fits, with an ellipsis for the rest.
std::string Shortened(const CDC& dc, std::string text, int room) {
    const auto fits = [&](const std::string& t) { return dc.GetTextExtent(CString(t)).cx <= room; };
    if (fits(text)) return text;
    while (!text.empty() && !fits(text + "…")) {
        while (text.size() > 1 && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80) text.pop_back();
        text.pop_back();  // the first byte of the last letter
    }
    return text.empty() ? text : text + "…";
}

/// Scale bar and caption in the strip at the bottom.
void DrawFooter(CDC& dc, const CFCoor& coor, int width, int height, int margin, int footer, const std::string& caption) {
    CFont font;
    font.CreateFont(footer * 3 / 5, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, DEFAULT_QUALITY, 0, "");
    CFont* const oldFont = dc.SelectObject(&font);
    CPen pen(PS_SOLID, 1, kInk);
    CPen* const oldPen = dc.SelectObject(&pen);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(kInk);
    const int base = height - margin / 2;
    int room = width - 2 * margin;  // for the caption
    const double bar = ScaleBarLength((width - 2 * margin) / static_cast<double>(coor.GetScale()) / 2);
    if (bar > 0) {
        const int x2 = width - margin, x1 = x2 - static_cast<int>(std::lround(bar * coor.GetScale()));
        dc.MoveTo(x1, base - footer / 4);
        dc.LineTo(x1, base);
        dc.LineTo(x2, base);
        dc.LineTo(x2, base - footer / 4 - 1);
        dc.SetTextAlign(TA_CENTER | TA_BOTTOM);
        const CString length(LengthText(bar));
        dc.TextOut((x1 + x2) / 2, base - 2, length);
        room = std::min(x1, (x1 + x2) / 2 - dc.GetTextExtent(length).cx / 2) - margin - footer / 2;
    }
    dc.SetTextAlign(TA_LEFT | TA_BOTTOM);
    dc.TextOut(margin, base + 2, CString(Shortened(dc, caption, room)));
    dc.SelectObject(oldPen);
    dc.SelectObject(oldFont);
}

}  // namespace

void WritePngOfModel(const std::string& path, CTvoHostDataBase& db, int width, int height, const std::string& caption) {
    [[maybe_unused]] static const bool fonts = UseSystemFonts();  // looked for once, and only when text is drawn
    const PaperColors colors;
    PictureContent content = ContentOfPicture(db);
    if (content.extent.IsEmpty()) content.extent = {0, 0, 1000, 1000};

    const auto surface = std::make_shared<CSurface>(width, height);
    surface->Fill(PixelFromColor(kPaper));
    CDC dc(surface);
    const int margin = std::min(width, height) / 25;
    const int footer = std::min(width, height) >= 200 ? std::max(20, std::min(width, height) / 32) : 0;
    const CSize ruler = RulerSize(dc, content.fields, width, height - footer);
    CFCoor coor = FittedCoor(content.extent, width, height, margin, footer, 0);
    if (coor.FPtoDP(CFPoint(static_cast<float>(content.extent.minX), 0, 0)).x < ruler.cx)  // it would hide the plan
        coor = FittedCoor(content.extent, width, height, margin, footer, ruler.cx);

    DrawGround(dc, coor, db, width, height, footer + margin / 2);
    DrawClouds(dc, coor, content.fields);
    for (CGouJianEx* other : content.below) DrawComponent(dc, coor, db, *other);
    for (CGjNetLine* line : content.lines) db.DrawOne(&dc, &coor, line);
    for (CGouJianEx* other : content.above) DrawComponent(dc, coor, db, *other);
    CPen rim(PS_NULL, 1, kPaper);  // a node is a plain disc
    CPen* const oldPen = dc.SelectObject(&rim);
    for (CGjNetNode* node : content.nodes) db.DrawOne(&dc, &coor, node);
    dc.SelectObject(oldPen);
    DrawFieldLists(dc, coor, content.fields, ruler);
    if (footer) DrawFooter(dc, coor, width, height, margin, footer, caption);

    ReplaceFile(path, [&](const std::string& name) {
        std::string error;  // "name: reason"
        return WritePng(*surface, name, error) ? "" : error.substr(std::min(error.size(), name.size() + 2));
    });
}
