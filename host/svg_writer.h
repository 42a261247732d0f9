// The net as an SVG drawing.
#pragma once
#include <string>

class CTvoHostDataBase;

/// SVG of the whole net: plates, hatched and with number and area where these fit, in one group, lines and arcs, exact,
/// in another above it, then nodes as dots; y upwards, the view box fitted with a margin. `caption` goes below the drawing and may be empty.
std::string SvgOfNet(CTvoHostDataBase& db, const std::string& caption);
