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
#include "net/gj_net_line.h"
#include "plates/mian_goujian.h"
#include "platform/canvas/dc.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

namespace {

constexpr int kLetters = 14;               // pixels of a number's em
constexpr int kRoom = 3 * kLetters;        // the least side of a plate with a number
constexpr int kSmall = 8;                  // pixels
constexpr std::size_t kMostDodging = 400;  // whose numbers keep clear of lines: it costs a look into the index
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

/// How near a line of the net comes to a place; an arc as near as its whole circle.
double DistanceOf(const CGjNetLine& line, const CFPoint& p) {
    const CFPoint a = line.GetStartPoint(), b = line.GetEndPoint();
    if (line.m_nArc) {
        CFPoint centre;
        line.GetCenterPoint(centre.x, centre.y);
        const auto from = [&](const CFPoint& q) {
            return std::hypot(static_cast<double>(q.x) - centre.x, static_cast<double>(q.y) - centre.y);
        };
        return std::fabs(from(p) - from(a));
    }
    const double ux = static_cast<double>(b.x) - a.x, uy = static_cast<double>(b.y) - a.y;
    const double px = static_cast<double>(p.x) - a.x, py = static_cast<double>(p.y) - a.y;
    const double length = ux * ux + uy * uy;
    const double t = length > 0 ? std::clamp((px * ux + py * uy) / length, 0.0, 1.0) : 0.0;
    return std::hypot(px - t * ux, py - t * uy);
}

bool IsCrossed(CTvoHostDataBase& db, const CFPoint& p, float room) {
    CFRect box(p.x - room, p.y - room, p.x + room, p.y + room);
    CArray<CGouJianEx*, CGouJianEx*> near;
    db.GetInterRect(box, near);
    for (CGouJianEx* const obj : near)
        if (obj->get_Gjlx() == GJLX_NET_LINE && db.IsVisible(obj) &&
            DistanceOf(*static_cast<CGjNetLine*>(obj), p) < static_cast<double>(room))
            return true;
    return false;
}

/// The middle of a plate, or a place beside it that no line of the net runs through, as one that dangles may.
CFPoint PlaceOfNumber(CTvoHostDataBase& db, const CFCoor& coor, const CMianGouJian& plate) {
    static constexpr float kSteps[][2] = {{0, 0},  {0, 1},  {0, -1}, {1, 0}, {-1, 0},
                                          {0, 2},  {0, -2}, {2, 0},  {-2, 0}};
    const CFPoint centre(plate.m_fCenterX, plate.m_fCenterY, 0);
    const float step = 1.5f * kLetters / coor.GetScale();
    for (const auto& [x, y] : kSteps) {
        const CFPoint p(centre.x + x * step, centre.y + y * step, 0);
        if (plate.m_region.InRegion(p) && !IsCrossed(db, p, step / 2)) return p;
    }
    return centre;
}

void PaintNumber(CTvoHostDataBase& db, CDC& dc, const CFCoor& coor, const CMianGouJian& plate, const PlateColor& color,
                 bool dodge) {
    const CRect box = PixelBox(coor, plate);
    const CFPoint centre(plate.m_fCenterX, plate.m_fCenterY, 0);
    if (box.Width() < kRoom || box.Height() < kRoom || !plate.m_region.InRegion(centre)) return;
    const CPoint at = coor.FPtoDP(dodge ? PlaceOfNumber(db, coor, plate) : centre);
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
        const bool dodge = plates.size() <= kMostDodging;
        for (const CMianGouJian* plate : plates) PaintNumber(db, dc, coor, *plate, ColorOf(*plate), dodge);
        dc.SelectObject(old);
    }
    dc.RestoreDC(saved);
}
