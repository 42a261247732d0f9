#include "host/editor/plate_paint.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "geometry/fcoor.h"
#include "host/host_data_base.h"
#include "host/plate_look.h"
#include "model/profile.h"
#include "plates/mian_goujian.h"
#include "platform/canvas/dc.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

namespace {

constexpr int kLetters = 14;               // pixels of a number's em
constexpr int kRoom = 3 * kLetters;        // the least side of a plate with a number
constexpr int kSmall = 8;                  // pixels
constexpr std::size_t kMostPlates = 4000;  // beyond, they are too small to tell anything

const PlateColor& ColorOf(const CMianGouJian& plate) {
    return PlateColorAt(static_cast<int>(plate.get_m_dwGouJianNO() * 3 % kPlateColorCount));
}

COLORREF Mixed(COLORREF ground, COLORREF color, double share) {
    const auto channel = [&](int shift) {
        const int a = static_cast<int>(ground >> shift & 0xFF), b = static_cast<int>(color >> shift & 0xFF);
        return static_cast<COLORREF>(std::lround(a + (b - a) * share)) << shift;
    };
    return channel(0) | channel(8) | channel(16);
}

/// Those in the view port, the largest first: one inside another is painted upon it.
std::vector<CMianGouJian*> ShownPlates(CTvoHostDataBase& db, CTvoViewMgr& view) {
    struct Keyed {  // what they are sorted by, beside them: plates lie far apart in memory
        float area;
        std::uint32_t id;
        CMianGouJian* plate;
    };
    std::vector<Keyed> keyed;
    view.m_mapViewPort.ForEach([&](unsigned long, CGouJianEx* obj) {
        if (obj->get_Gjlx() != GJLX_MIAN || obj->QueryBasicType() != kBasicPlate || !db.IsVisible(obj)) return;
        auto* const plate = static_cast<CMianGouJian*>(obj);
        keyed.push_back({plate->m_fArea, plate->get_m_dwGouJianID(), plate});
    });
    std::sort(keyed.begin(), keyed.end(), [](const Keyed& a, const Keyed& b) {
        return a.area != b.area ? a.area > b.area : a.id < b.id;
    });
    std::vector<CMianGouJian*> plates;
    plates.reserve(keyed.size());
    for (const Keyed& k : keyed) plates.push_back(k.plate);
    return plates;
}

CRect PixelBox(const CFCoor& coor, const CMianGouJian& plate) {
    CRect box = coor.FPtoDP(plate.m_rect);
    box.NormalizeRect();
    return box;
}

// One of a few pixels is its box: a storey has thousands of them when all of it shows.
void PaintFace(CDC& dc, const CFCoor& coor, const CMianGouJian& plate, const PlateColor& color) {
    const bool selected = plate.get_m_byteStatus() == GJ_STATUS_SELECTED;
    const COLORREF shade = Mixed(g_cTvoProfile.m_crBackground, color.text, selected ? 0.9 : 0.4);
    if (const CRect box = PixelBox(coor, plate); box.Width() <= kSmall && box.Height() <= kSmall)
        return dc.FillSolidRect(box, shade);
    std::vector<CPoint> points;
    for (const FlatPoint& p : FlatOutline(plate.m_region, 0.5 / static_cast<double>(coor.GetScale())))
        points.push_back(coor.FPtoDP(CFPoint(static_cast<float>(p.x), static_cast<float>(p.y), 0)));
    CBrush fill(shade);
    CBrush* const old = dc.SelectObject(&fill);
    dc.Polygon(points.data(), static_cast<int>(points.size()));
    dc.SelectObject(old);
}

void PaintNumber(CDC& dc, const CFCoor& coor, const CMianGouJian& plate, const PlateColor& color) {
    const CRect box = PixelBox(coor, plate);
    const CFPoint centre(plate.m_fCenterX, plate.m_fCenterY, 0);
    if (box.Width() < kRoom || box.Height() < kRoom || !plate.m_region.InRegion(centre)) return;
    const CPoint at = coor.FPtoDP(centre);
    const CString number(std::to_string(plate.get_m_dwGouJianNO()));
    dc.SetTextColor(Mixed(color.text, color.hatch, 0.6));
    dc.TextOut(at.x, at.y + kLetters / 3, number);
}

}  // namespace

void PaintPlates(CTvoHostDataBase& db, CDC& dc, const CFCoor& coor) {
    CTvoViewMgr* const view = db.m_pFrame ? db.m_pFrame->GetDtView() : nullptr;
    if (!view) return;
    const std::vector<CMianGouJian*> plates = ShownPlates(db, *view);
    const int saved = dc.SaveDC();
    dc.SelectStockObject(NULL_PEN);
    for (const CMianGouJian* plate : plates) PaintFace(dc, coor, *plate, ColorOf(*plate));
    if (plates.size() <= kMostPlates) {
        CFont font;
        font.CreateFont(-kLetters, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, DEFAULT_QUALITY, 0,
                        "");
        CFont* const old = dc.SelectObject(&font);
        dc.SetBkMode(TRANSPARENT);
        dc.SetTextAlign(TA_CENTER | TA_BASELINE);
        for (const CMianGouJian* plate : plates) PaintNumber(dc, coor, *plate, ColorOf(*plate));
        dc.SelectObject(old);
    }
    dc.RestoreDC(saved);
}
