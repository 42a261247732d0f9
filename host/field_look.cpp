// Fields in pictures of pixels. field_svg.cpp draws them as SVG.
#include "host/field_look.h"

#include <algorithm>
#include <cmath>

#include "fields/chang.h"
#include "fields/field_ruler.h"
#include "fields/gj_chang.h"
#include "geometry/fcoor.h"
#include "host/field_ink.h"
#include "host/host_data_base.h"
#include "model/draw_graph.h"
#include "model/profile.h"
#include "platform/canvas/dc.h"

std::vector<CGjChang*> AllFields(CTvoHostDataBase& db) {
    std::vector<CGjChang*> fields;
    db.m_mapFamily[GJLX_CHANG].ForEach([&](unsigned long, CGouJianEx* obj) {
        if (auto* field = dynamic_cast<CGjChang*>(obj); field && field->m_pChang) fields.push_back(field);
    });
    std::sort(fields.begin(), fields.end(),
              [](const auto* a, const auto* b) { return a->m_dwGouJianID < b->m_dwGouJianID; });
    return fields;
}

std::vector<CGjChang*> ShownFields(CTvoHostDataBase& db) {
    std::vector<CGjChang*> fields = AllFields(db);
    std::erase_if(fields, [&](CGjChang* field) { return !db.IsVisible(field); });
    return fields;
}

const char* FieldDisplayName(FIELD_DISPLAY display) {
    return display == FIELD_DISPLAY_CLOUD ? "cloud" : display == FIELD_DISPLAY_ISOLINE ? "isoline" : "digit";
}

void AddFields(Extent& extent, const std::vector<CGjChang*>& fields) {
    for (CGjChang* field : fields) {
        if (field->m_pChang->m_arrNode.IsEmpty()) continue;
        // Digits at the right border stand beyond it.
        const bool list = !field->GetDrawGraph()->m_aEntity.IsEmpty();
        const CFRect box = list ? field->m_rect | field->GetDrawGraph()->GetFrect() : field->m_rect;
        extent.Add(static_cast<double>(box.m_fMinX), static_cast<double>(box.m_fMinY));
        extent.Add(static_cast<double>(box.m_fMaxX), static_cast<double>(box.m_fMaxY));
    }
}

COLORREF FieldInk(COLORREF color) {
    constexpr double kLightest = 125;  // of 255: what still stands out on white
    const double light = 0.299 * GetRValue(color) + 0.587 * GetGValue(color) + 0.114 * GetBValue(color);
    if (light <= kLightest) return color;
    const auto darker = [&](int part) { return SaturatedInt(part * kLightest / light); };
    return RGB(darker(GetRValue(color)), darker(GetGValue(color)), darker(GetBValue(color)));
}

std::string FieldNumber(const std::string& text) { return text == "-0.00" ? "0.00" : text; }

namespace {

/// Model units are a thousand times the field's, which floats may not hold.
bool HasPlace(CGraphEntity& entity) {
    if (entity.GetGraphType() == kGraphLine) {
        const auto& line = static_cast<const CGraph_Line&>(entity);
        return std::isfinite(line.m_fX1) && std::isfinite(line.m_fY1) && std::isfinite(line.m_fX2) &&
               std::isfinite(line.m_fY2);
    }
    if (entity.GetGraphType() != kGraphText) return true;
    const auto& text = static_cast<const CGraph_Text&>(entity);
    return std::isfinite(text.m_fX) && std::isfinite(text.m_fY);
}

}  // namespace

std::vector<InkedEntity> InkedEntities(CGjChang& field) {
    std::vector<InkedEntity> inked;
    for (CGraphEntity* entity : field.GetDrawGraph()->m_aEntity) {
        if (!HasPlace(*entity)) continue;
        unsigned long color = entity->m_dwColor;
        int lineType = entity->m_nLineType;
        field.GetDrawInfo(field.get_m_byteStatus(), entity->GetPart(), color, lineType);
        inked.push_back({entity, FieldInk(color), lineType});
    }
    return inked;
}

// ---- the ruler --------------------------------------------------------------------------------------

CSize RulerSize(CDC& dc, const std::vector<CGjChang*>& fields, int width, int height) {
    constexpr int kLeastWidth = 240, kLeastHeight = 120;  // of a picture that has room for a ruler
    if (fields.empty() || width < kLeastWidth || height < kLeastHeight) return {};
    CGjChang& field = *fields.back();
    field.m_pChang->m_fValueScale = field.m_fValueScale;
    const CRect most(0, 0, std::min(field.m_nRulerWidth, width / 3), std::min(field.m_nRulerHeight, height));
    const RulerLayout layout(most);
    CFont font;
    font.CreateFont(layout.letterHeight, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, DEFAULT_QUALITY,
                    0, "");
    CFont* const old = dc.SelectObject(&font);
    int widest = 0;
    for (const RulerBand& band : RulerBands(*field.m_pChang))
        widest = std::max(widest, dc.GetTextExtent(CString(band.label)).cx);
    dc.SelectObject(old);
    return {std::min(most.right, layout.labelLeft + widest + layout.letterHeight / 2), most.bottom};
}

namespace {

void DrawRuler(CDC& dc, CFCoor& coor, CGjChang& field, const CSize& size) {
    const COLORREF background = COLORREF{g_cTvoProfile.m_crBackground};
    CBitmap bitmap;
    if (!bitmap.CreateCompatibleBitmap(&dc, size.cx, size.cy)) return;
    CDC ruler;
    ruler.CreateCompatibleDC(&dc);
    ruler.Attach(bitmap.Surface());
    field.m_pChang->m_nColorScheme = field.m_nColorScheme;
    field.m_pChang->m_fValueScale = field.m_fValueScale;
    field.m_pChang->DrawRuler(&ruler, CRect(0, 0, size.cx, size.cy), &coor, background);
    TransparentBlt2(&dc, 0, 0, size.cx, size.cy, &ruler, 0, 0, size.cx, size.cy, background);
}

/// A number on a rim of paper, so that what it lies on does not run into its digits; in the letters' own
/// spacing.
void DrawNumber(CDC& dc, const CFCoor& coor, const CGraph_Text& text, COLORREF ink) {
    const int height = coor.FPtoDP(static_cast<double>(text.m_fHeight));
    if (height < 1 || height > dc.Surface()->LogicalHeight()) return;
    CFont font;
    font.CreateFont(height, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, DEFAULT_QUALITY, 0, "");
    CFont* const oldFont = dc.SelectObject(&font);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextAlign(TA_LEFT | TA_BOTTOM);
    const CPoint at = coor.FPtoDP(CFPoint(text.m_fX, text.m_fY, 0));
    const CString shown(FieldNumber(text.m_strText.Std()));
    constexpr int kReadable = 5;  // pixels; below, a rim would only wipe out lines
    dc.SetTextColor(COLORREF{g_cTvoProfile.m_crBackground});
    for (int dx = -1; dx <= 1 && height >= kReadable; ++dx)
        for (int dy = -1; dy <= 1; ++dy) dc.TextOut(at.x + dx, at.y + dy, shown);
    dc.SetTextColor(ink);
    dc.TextOut(at.x, at.y, shown);
    dc.SelectObject(oldFont);
}

}  // namespace

void DrawClouds(CDC& dc, CFCoor& coor, const std::vector<CGjChang*>& fields) {
    for (CGjChang* field : fields) {
        if (field->m_nDisplay != FIELD_DISPLAY_CLOUD) continue;
        field->CreateCloudBitmap(&dc, &coor);  // sharp at this picture's scale
        field->m_bBitmapMade = 1;
        field->GenerateCloudGraph(&dc, &coor);
    }
}

void DrawFieldLists(CDC& dc, CFCoor& coor, const std::vector<CGjChang*>& fields, const CSize& ruler) {
    for (CGjChang* field : fields) {
        const auto inked = InkedEntities(*field);
        for (const bool texts : {false, true})  // on top of all lines
            for (const InkedEntity& i : inked) {
                if ((i.entity->GetGraphType() == kGraphText) != texts) continue;
                i.entity->SetColor(i.color);
                i.entity->SetLineType(i.lineType);
                if (texts) DrawNumber(dc, coor, static_cast<const CGraph_Text&>(*i.entity), i.color);
                else i.entity->Draw(&dc, &coor);
            }
    }
    if (ruler.cx > 0) DrawRuler(dc, coor, *fields.back(), ruler);
}
