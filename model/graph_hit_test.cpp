#include "model/graph_hit_test.h"

#include "geometry/fregion.h"
#include "geometry/fshape.h"

namespace {

bool MarksInside(const CFShape& shape, const CFRegion& region) {
    if (shape.IsCircle()) {
        CFPoint min, max;
        shape.GetRect(min, max);
        return region.InRegion(min) && region.InRegion(max) && region.InRegion(CFPoint(max.x, min.y, 0)) &&
               region.InRegion(CFPoint(min.x, max.y, 0));
    }
    return region.InRegion(shape.GetStartPoint()) && region.InRegion(shape.GetEndPoint()) &&
           (!shape.IsArc() || region.InRegion(shape.GetMiddlePoint()));
}

}  // namespace

int HitShape(const CFShape& shape, const CFRegion& region, int mode) {
    if (shape.IsPoint()) return region.InRegion(shape.GetStartPoint()) != 0;
    if (MarksInside(shape, region)) return 1;
    return mode != 1 && region.Intersect(shape, nullptr) > 0;  // -1 when there is no common point
}

int HitArea(const CFRegion& area, const CFRegion& region, int mode) {
    bool inside = true;
    for (int i = 0; i < area.GetSize() && inside; ++i) inside = region.InRegion(area[i]) != 0;
    if (inside) return 1;
    return mode != 1 && region.Intersect(area, 0) != 0;
}
