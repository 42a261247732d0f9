#include "host/picture.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "geometry/fcoor.h"
#include "host/file_output.h"
#include "host/glyphs/freetype_glyph_source.h"
#include "host/net_walk.h"
#include "host/picture_style.h"
#include "host/png/png_writer.h"
#include "model/goujian.h"
#include "model/profile.h"
#include "net/grid_data_base.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "platform/canvas/dc.h"

namespace {

constexpr COLORREF kPaper = RGB(255, 255, 255);
constexpr COLORREF kInk = RGB(51, 51, 51);

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

/// The box of everything that the picture shows.
Extent ModelExtent(CGridDataBase& db, const std::vector<CGouJianEx*>& others) {
    Extent extent = NetExtent(db);
    for (CGouJianEx* other : others) {
        const CFRect box = other->GetFrect();
        extent.Add(box.m_fMinX, box.m_fMinY);
        extent.Add(box.m_fMaxX, box.m_fMaxY);
    }
    return extent;
}

/// Physical components that are neither nodes nor lines, by identity.
std::vector<CGouJianEx*> OtherComponents(CGridDataBase& db) {
    CList<CGouJianEx*> all;
    db.GetGouJianListAll(all);
    std::vector<CGouJianEx*> others;
    for (POSITION at = all.GetHeadPosition(); at;) {
        CGouJianEx* component = all.GetNext(at);
        const int kind = component->QueryBasicType();
        if (kind != kBasicNode && kind != kBasicLine && component->IsPhysicalGouJian() == 1) others.push_back(component);
    }
    std::sort(others.begin(), others.end(),
              [](const auto* a, const auto* b) { return a->m_dwGouJianID < b->m_dwGouJianID; });
    return others;
}

/// A plan view that shows `extent` as large as fits between the margins, centred.
CFCoor FittedCoor(const Extent& extent, int width, int height, int margin, int footer) {
    const double freeWidth = std::max(1, width - 2 * margin), freeHeight = std::max(1, height - 2 * margin - footer);
    const double wide = std::max(extent.Width(), 1.0), high = std::max(extent.Height(), 1.0);
    const double scale = std::min(freeWidth / wide, freeHeight / high);
    const double left = (extent.minX + extent.maxX) / 2 - width / scale / 2;
    const double top = (extent.minY + extent.maxY) / 2 + (height - footer) / scale / 2;
    CFCoor coor;
    coor.Init(CFPoint(static_cast<float>(left), static_cast<float>(top), 0), static_cast<float>(scale), 1);
    coor.m_rcClient = CRect(0, 0, width, height);
    return coor;
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
    const double bar = ScaleBarLength((width - 2 * margin) / static_cast<double>(coor.GetScale()) / 2);
    if (bar > 0) {
        const int x2 = width - margin, x1 = x2 - static_cast<int>(std::lround(bar * coor.GetScale()));
        dc.MoveTo(x1, base - footer / 4);
        dc.LineTo(x1, base);
        dc.LineTo(x2, base);
        dc.LineTo(x2, base - footer / 4 - 1);
        dc.SetTextAlign(TA_CENTER | TA_BOTTOM);
        dc.TextOut((x1 + x2) / 2, base - 2, CString(LengthText(bar)));
    }
    dc.SetTextAlign(TA_LEFT | TA_BOTTOM);
    dc.TextOut(margin, base + 2, CString(caption));
    dc.SelectObject(oldPen);
    dc.SelectObject(oldFont);
}

}  // namespace

void WritePngOfModel(const std::string& path, CGridDataBase& db, int width, int height, const std::string& caption) {
    [[maybe_unused]] static const bool fonts = UseSystemFonts();  // looked for once, and only when text is drawn
    const PaperColors colors;
    const auto others = OtherComponents(db);
    Extent extent = ModelExtent(db, others);
    if (extent.IsEmpty()) extent = {0, 0, 1000, 1000};

    const auto surface = std::make_shared<CSurface>(width, height);
    surface->Fill(PixelFromColor(kPaper));
    CDC dc(surface);
    const int margin = std::min(width, height) / 25;
    const int footer = std::min(width, height) >= 200 ? std::max(20, std::min(width, height) / 32) : 0;
    CFCoor coor = FittedCoor(extent, width, height, margin, footer);

    for (CGjNetLine* line : NetLines(db)) db.DrawOne(&dc, &coor, line);
    for (CGouJianEx* other : others) db.DrawOne(&dc, &coor, other);
    CPen rim(PS_NULL, 1, kPaper);  // a node is a plain disc
    CPen* const oldPen = dc.SelectObject(&rim);
    for (CGjNetNode* node : NetNodes(db)) db.DrawOne(&dc, &coor, node);
    dc.SelectObject(oldPen);
    if (footer) DrawFooter(dc, coor, width, height, margin, footer, caption);

    ReplaceFile(path, [&](const std::string& name) {
        std::string error;  // "name: reason"
        return WritePng(*surface, name, error) ? "" : error.substr(std::min(error.size(), name.size() + 2));
    });
}
