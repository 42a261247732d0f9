// The points at which a line is cut. Internal to the library.
#pragma once
#include "geometry/fpoint.h"
#include "platform/containers.h"

/// Removes the first point nearer than `reach` (strict) to `end`. Only one: a second one as near is thinned out.
void DropFirstPointNear(CArray<CFPoint>& points, const CFPoint& end, float reach);

/// Of any two points nearer than `tolerance` (strict) the earlier goes; so the ends, which come last, stay.
void ThinOutCutPoints(CArray<CFPoint>& points, float tolerance);

/// Puts the points of a straight section in order along it, from the end with the smaller y ('Y') or x.
void SortAlongLine(CArray<CFPoint>& points, const CFPoint& start, const CFPoint& end, bool vertical);
