#include "fields/backgrnd.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "fields/grid_positions.h"
#include "fields/grid_walls.h"
#include "fields/lattice_painter.h"
#include "geometry/fcoor.h"
#include "geometry/projection.h"
#include "model/profile.h"
#include "platform/canvas/dc.h"
#include "platform/helper_text.h"
#include "platform/number_text.h"

namespace {

constexpr COLORREF kGrey = 0xC0C0C0;
constexpr COLORREF kLastColor = 0xFFFFFF;  // no pixel reads as more

/// The positions that can be extreme: the first, the ends of the finite ones, and those that are no numbers.
std::vector<float> Extremes(const GridPositions& axis) {
    std::vector<float> out = axis.WildKinds();
    out.push_back(axis.origin);
    if (!axis.ascending.empty()) out.insert(out.end(), {axis.ascending.front(), axis.ascending.back()});
    return out;
}

}  // namespace

int CBackgrnd::Get_Kua_Data(const char* text, CArray<float, float>& out) const {
    char unit[kUnitBytes + 1];
    int position = 0, room = kMaxPositions - 1;
    while (read_one_unit_from_string(unit, text, &position)) {
        int count = 1;
        if (const char* star = std::strchr(unit, '*')) {
            if (star == unit || star[1] == 0) return 0;
            count = LeadingInt(star + 1);
        }
        const float spacing = static_cast<float>(LeadingReal(unit)) * 1000.0f;
        if (!std::isfinite(spacing)) continue;
        for (; count > 0 && room > 0; --count, --room) out.Add(spacing);
    }
    return 1;
}

int CBackgrnd::GetJianJu(int axis, CArray<float, float>& out) const {
    const CString text = axis == 0 ? m_strKuaX : axis == 1 ? m_strKuaY : axis == 2 ? m_strKuaZ : CString();
    Get_Kua_Data(text, out);
    return 1;
}

const GridPositions& CBackgrnd::Positions(int axis) const {
    const CString& text = axis == 0 ? m_strKuaX : axis == 1 ? m_strKuaY : m_strKuaZ;
    const float origin = axis == 0 ? m_fX0 : axis == 1 ? m_fY0 : m_fZ0;
    auto& positions = m_pPositions[axis];
    if (!positions || !positions->MadeFrom(text, origin))
        positions = std::make_shared<const GridPositions>(text, origin);
    return *positions;
}

// The projected coordinates grow or fall with each of x, y and z by itself, also as rounded floats, so that
// the extreme positions of the axes give the extent of all points.
CFRect CBackgrnd::GetFrect(const CFCoor* coor) const {
    const std::vector<float> xs = Extremes(Positions(0)), ys = Extremes(Positions(1));
    const std::vector<float> zs = m_nMode == 0 ? Extremes(Positions(2)) : std::vector<float>{m_fZ0};
    const CFPoint origin = coor->PointTouYing({m_fX0, m_fY0, m_fZ0});
    CFRect rect(origin, origin);
    for (const float x : xs)
        for (const float y : ys)
            for (const float z : zs) {
                const CFPoint p = coor->PointTouYing({x, y, z});
                rect = rect | CFRect(p, p);
            }
    return rect;
}

int CBackgrnd::Draw(CDC* dc, CFCoor* coor, int mode) const {
    const COLORREF background = g_cTvoProfile.m_crBackground;
    const COLORREF color = mode == 1 ? background : g_cTvoProfile.m_crGrid;
    const COLORREF replaced = mode == 0 ? background : kGrey;
    const GridPositions &x = Positions(0), &y = Positions(1), &z = Positions(2);
    const Projection view(*coor);
    CRect clip;
    dc->GetClipBox(clip);
    if (CSurface* const surface = dc->Surface(); surface && replaced <= kLastColor) {
        LatticePainter painter(view, *surface, clip, PixelFromColor(replaced), PixelFromColor(color));
        painter.Paint(x, y, z);
    }
    if (m_nMode != 0) return 1;
    CPen pen(PS_SOLID, 1, color);
    CPen* const old = dc->SelectObject(&pen);
    DrawGridWalls(*dc, view, clip, x, y, z);
    dc->SelectObject(old);
    return 1;
}
