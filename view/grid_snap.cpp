#include "view/grid_snap.h"

#include <cmath>
#include <vector>

#include "fields/backgrnd.h"
#include "geometry/projection.h"

namespace {

std::vector<float> Positions(const CBackgrnd& grid, int axis, float origin, bool one) {
    CArray<float, float> spacings;
    if (!one) grid.GetJianJu(axis, spacings);
    std::vector<float> positions{origin};
    for (const float spacing : spacings) positions.push_back(positions.back() + spacing);
    return positions;
}

/// In a plan view a node is near only if each of its coordinates is.
std::vector<float> NearOnes(const std::vector<float>& all, float at, double reach) {
    std::vector<float> near;
    for (const float position : all)
        if (std::fabs(static_cast<double>(position) - at) <= reach) near.push_back(position);
    return near;
}

// A plan, looked at from straight above, whose angles are the ones that a view has at birth: the projection leaves x and
// y as they are, up to the last bits of the cosine.
bool IsPlan(const CFCoor& coor) { return coor.m_fAlpha == 0 && coor.m_fBeta == 1.5707964f; }

}  // namespace

bool FirstGridNodeNear(const CBackgrnd& grid, const CFCoor& coor, const CFPoint& cursor, double reach, bool plane, CFPoint& found) {
    std::vector<float> xs = Positions(grid, 0, grid.m_fX0, false), ys = Positions(grid, 1, grid.m_fY0, false);
    const std::vector<float> zs = Positions(grid, 2, grid.m_fZ0, plane);
    if (IsPlan(coor)) {
        // Height shifts a point by its z times the cosine of the tilt, some 4e-8.
        double slack = reach * 0.01 + 1;
        for (const float z : zs) slack = std::max(slack, std::fabs(static_cast<double>(z)) * 1e-6 + reach * 0.01 + 1);
        xs = NearOnes(xs, cursor.x, reach + slack);
        ys = NearOnes(ys, cursor.y, reach + slack);
    } else if (static_cast<double>(xs.size()) * static_cast<double>(ys.size()) * static_cast<double>(zs.size()) > kMostTurnedNodes) {
        return false;
    }
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
