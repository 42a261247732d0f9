#include "view/grid_snap.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include "fields/backgrnd.h"
#include "geometry/projection.h"

namespace {

/// The nodes of one axis, kept from search to search: one comes with every move of the mouse.
struct Axis {
    CString text;
    float origin = 0;
    std::vector<float> positions;
    bool ascends = false;

    const std::vector<float>& Of(const CBackgrnd& grid, int axis) {
        const CString& now = axis == 0 ? grid.m_strKuaX : axis == 1 ? grid.m_strKuaY : grid.m_strKuaZ;
        const float from = axis == 0 ? grid.m_fX0 : axis == 1 ? grid.m_fY0 : grid.m_fZ0;
        if (!positions.empty() && text == now && origin == from) return positions;
        text = now;
        origin = from;
        CArray<float, float> spacings;
        grid.GetJianJu(axis, spacings);
        positions.assign(1, from);
        for (const float spacing : spacings) positions.push_back(positions.back() + spacing);
        ascends = std::is_sorted(positions.begin(), positions.end()) && std::isfinite(positions.back());
        return positions;
    }
    /// In a plan view a node is near only if each of its coordinates is.
    std::vector<float> Near(float at, double reach) const {
        auto from = positions.begin(), to = positions.end();
        if (ascends) {
            from = std::lower_bound(from, to, at - reach, [](float p, double least) { return static_cast<double>(p) < least; });
            to = std::upper_bound(from, to, at + reach, [](double most, float p) { return most < static_cast<double>(p); });
        }
        std::vector<float> near;
        std::copy_if(from, to, std::back_inserter(near),
                     [&](float p) { return std::fabs(static_cast<double>(p) - at) <= reach; });
        return near;
    }
};

// A plan, looked at from straight above, whose angles are the ones that a view has at birth: the projection leaves x and
// y as they are, up to the last bits of the cosine.
bool IsPlan(const CFCoor& coor) { return coor.m_fAlpha == 0 && coor.m_fBeta == 1.5707964f; }

}  // namespace

bool FirstGridNodeNear(const CBackgrnd& grid, const CFCoor& coor, const CFPoint& cursor, double reach, bool plane, CFPoint& found) {
    static Axis axes[3];
    const std::vector<float>&allX = axes[0].Of(grid, 0), &allY = axes[1].Of(grid, 1);
    const std::vector<float> zs = plane ? std::vector<float>{grid.m_fZ0} : axes[2].Of(grid, 2);
    std::vector<float> nearX, nearY;
    if (IsPlan(coor)) {
        // Height shifts a point by its z times the cosine of the tilt, some 4e-8.
        double slack = reach * 0.01 + 1;
        for (const float z : zs) slack = std::max(slack, std::fabs(static_cast<double>(z)) * 1e-6 + reach * 0.01 + 1);
        nearX = axes[0].Near(cursor.x, reach + slack);
        nearY = axes[1].Near(cursor.y, reach + slack);
    } else if (static_cast<double>(allX.size()) * static_cast<double>(allY.size()) * static_cast<double>(zs.size()) > kMostTurnedNodes) {
        return false;
    }
    const std::vector<float>&xs = IsPlan(coor) ? nearX : allX, &ys = IsPlan(coor) ? nearY : allY;
    const PlaneView view(coor.m_fAlpha, coor.m_fBeta);
    for (const float x : xs)
        for (const float y : ys) {
            const float aside = view.U(x, y) - cursor.x, depth = view.Depth(x, y);
            if (!(static_cast<double>(std::fabs(aside)) < reach)) continue;  // so is no node above it
            for (const float z : zs) {
                if (!(static_cast<double>(std::hypot(aside, view.V(z, depth) - cursor.y)) < reach)) continue;
                found = CFPoint(x, y, plane ? 0 : z);
                return true;
            }
        }
    return false;
}
