// The net as an SVG drawing.
#pragma once
#include <string>

class CGridDataBase;

/// SVG of the whole net: lines and arcs, exact, in one group, nodes as dots in another above it, y upwards, the
/// view box fitted with a margin. `caption` goes below the drawing and may be empty.
std::string SvgOfNet(CGridDataBase& db, const std::string& caption);
