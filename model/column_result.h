// The result diagram of a column.
#pragma once
#include "platform/containers.h"

class CDXF_3D;

/// Draws a diagram along a column of that height with its foot at (x, y, 0), in the plane of `axis`: 'Y' or 'y' the y
/// direction, anything else x. `position` runs from 0 at the top to 1 at the foot; at the first of them stands
/// valueB[0], at each other valueA there. The greatest value is an eighth of the height long. A value that is missing
/// counts as 0.
void DrawColumnResult(CDXF_3D* dxf, float x, float y, float height, char axis, const CArray<float, float>& position,
                      const CArray<float, float>& valueA, const CArray<float, float>& valueB);
