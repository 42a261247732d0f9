// The nodes of the background grid as places to snap to.
#pragma once
#include "geometry/fpoint.h"

class CBackgrnd;
class CFCoor;

/// The first node of the grid, x outermost, then y, then z, whose projection lies nearer to `cursor` than `reach`; of the
/// plane z = 0 alone with `plane`. In a plan view only nodes about the cursor are looked at; in a turned one all of them,
/// unless they are more than kMostTurnedNodes, of which none is found.
bool FirstGridNodeNear(const CBackgrnd& grid, const CFCoor& coor, const CFPoint& cursor, double reach, bool plane, CFPoint& found);
inline constexpr double kMostTurnedNodes = 4e6;
