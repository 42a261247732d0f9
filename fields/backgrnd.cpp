#include "fields/backgrnd.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "geometry/fcoor.h"
#include "model/profile.h"
#include "platform/canvas/dc.h"
#include "platform/helper_text.h"
#include "platform/number_text.h"

namespace {

constexpr COLORREF kGrey = 0xC0C0C0;

// The origin, then running sums.
std::vector<float> Positions(float origin, const CArray<float, float>& spacings) {
    std::vector<float> out{origin};
    for (const float spacing : spacings) out.push_back(out.back() + spacing);
    return out;
}

void DrawLine(CDC* dc, const CFCoor* coor, const CFPoint& from, const CFPoint& to) {
    dc->MoveTo(coor->FPtoDP(from));
    dc->LineTo(coor->FPtoDP(to));
}

}  // namespace

int CBackgrnd::Get_Kua_Data(const char* text, CArray<float, float>& out) const {
    char unit[kUnitBytes + 1];
    int position = 0;
    while (read_one_unit_from_string(unit, text, &position)) {
        int count = 1;
        if (const char* star = std::strchr(unit, '*')) {
            if (star == unit || star[1] == 0) return 0;
            count = LeadingInt(star + 1);
        }
        const float spacing = static_cast<float>(LeadingReal(unit)) * 1000.0f;
        if (!std::isfinite(spacing)) continue;
        for (count = std::min(count, kMaxSpacings - out.GetSize()); count > 0; --count) out.Add(spacing);
    }
    return 1;
}

int CBackgrnd::GetJianJu(int axis, CArray<float, float>& out) const {
    const CString text = axis == 0 ? m_strKuaX : axis == 1 ? m_strKuaY : axis == 2 ? m_strKuaZ : CString();
    Get_Kua_Data(text, out);
    return 1;
}

// The projected coordinates grow or fall with each of x, y and z by itself, also as rounded floats, so that
// the extreme positions of the axes give the extent of all points.
CFRect CBackgrnd::GetFrect(const CFCoor* coor) const {
    const auto extremes = [this](int axis, float origin) {
        CArray<float, float> spacings;
        GetJianJu(axis, spacings);
        const std::vector<float> all = Positions(origin, spacings);
        const auto [low, high] = std::minmax_element(all.begin(), all.end());
        return std::pair(*low, *high);
    };
    const auto [x0, x1] = extremes(0, m_fX0);
    const auto [y0, y1] = extremes(1, m_fY0);
    const auto [z0, z1] = m_nMode == 0 ? extremes(2, m_fZ0) : std::pair(m_fZ0, m_fZ0);
    const CFPoint origin = coor->PointTouYing({m_fX0, m_fY0, m_fZ0});
    CFRect rect(origin, origin);
    for (const float x : {x0, x1})
        for (const float y : {y0, y1})
            for (const float z : {z0, z1}) {
                const CFPoint p = coor->PointTouYing({x, y, z});
                rect = rect | CFRect(p, p);
            }
    return rect;
}

int CBackgrnd::Draw(CDC* dc, CFCoor* coor, int mode) const {
    const COLORREF background = g_cTvoProfile.m_crBackground;
    const COLORREF color = mode == 1 ? background : g_cTvoProfile.m_crGrid;
    CArray<float, float> spacings[3];
    for (int axis = 0; axis < 3; ++axis) GetJianJu(axis, spacings[axis]);
    const std::vector<float> xs = Positions(m_fX0, spacings[0]);
    const std::vector<float> ys = Positions(m_fY0, spacings[1]);
    const std::vector<float> zs = Positions(m_fZ0, spacings[2]);

    // Points behind something painted are left alone, and wiping touches grey pixels only.
    const COLORREF replaced = mode == 0 ? background : kGrey;
    const double points =
        static_cast<double>(xs.size()) * static_cast<double>(ys.size()) * static_cast<double>(zs.size());
    if (points <= kMaxPoints)
        for (const float x : xs)
            for (const float y : ys)
                for (const float z : zs) {
                    const CPoint p = coor->FPtoDP(CFPoint(x, y, z));
                    if (dc->GetPixel(p) == replaced) dc->SetPixel(p, color);
                }

    if (m_nMode != 0) return 1;
    CPen pen(PS_SOLID, 1, color);
    CPen* const old = dc->SelectObject(&pen);
    const float x0 = m_fX0, y0 = m_fY0, z0 = m_fZ0;
    const float xEnd = xs.back(), yEnd = ys.back(), zEnd = zs.back();
    for (const float x : xs) {
        DrawLine(dc, coor, {x, y0, z0}, {x, yEnd, z0});
        DrawLine(dc, coor, {x, y0, z0}, {x, y0, zEnd});
    }
    for (const float y : ys) {
        DrawLine(dc, coor, {x0, y, z0}, {xEnd, y, z0});
        DrawLine(dc, coor, {x0, y, z0}, {x0, y, zEnd});
    }
    for (const float z : zs) {
        DrawLine(dc, coor, {x0, y0, z}, {xEnd, y0, z});
        DrawLine(dc, coor, {x0, y0, z}, {x0, yEnd, z});
    }
    dc->SelectObject(old);
    return 1;
}
