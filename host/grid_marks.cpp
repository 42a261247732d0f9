#include "host/grid_marks.h"

#include <algorithm>
#include <cmath>

#include "host/host_data_base.h"

namespace {

std::vector<double> Positions(const CBackgrnd& grid, int axis) {
    CArray<float, float> spacings;
    grid.GetJianJu(axis, spacings);
    float at = axis == 0 ? grid.m_fX0 : grid.m_fY0;
    std::vector<double> all;
    const auto keepFinite = [&] {
        if (std::isfinite(at)) all.push_back(at);
    };
    keepFinite();
    for (const float spacing : spacings) {
        at += spacing;
        keepFinite();
    }
    std::sort(all.begin(), all.end());
    return all;
}

// From the first position of the axis and not of the area: a picture of a part shows the same lines.
std::vector<double> Thinned(const std::vector<double>& all, double least, double most, double gap) {
    std::vector<double> kept;
    double last = -HUGE_VAL;
    for (const double at : all) {
        if (at - last < gap) continue;
        last = at;
        if (at >= least && at <= most) kept.push_back(at);
    }
    return kept;
}

}  // namespace

GridMarks MarksOfGrid(const CTvoHostDataBase& db, const Extent& area, double gap) {
    if (!db.m_bGridShown) return {};
    const CBackgrnd& grid = db.m_cBackgrnd;
    return {Thinned(Positions(grid, 0), area.minX, area.maxX, gap), Thinned(Positions(grid, 1), area.minY, area.maxY, gap)};
}

Extent GridExtent(const CTvoHostDataBase& db) {
    Extent extent;
    if (!db.m_bGridShown) return extent;
    const auto x = Positions(db.m_cBackgrnd, 0), y = Positions(db.m_cBackgrnd, 1);
    if (x.empty() || y.empty()) return extent;
    extent.Add(x.front(), y.front());
    extent.Add(x.back(), y.back());
    return extent;
}
