// The net as an SVG drawing.
#pragma once
#include <string>

class CTvoHostDataBase;

/// SVG of everything that is visible: plates, hatched and with number and area where these fit, in one group, lines and
/// arcs, exact, in another above it, then nodes as dots; the display lists of other components below the lines and above
/// them; y upwards, the view box fitted with a margin. `caption` goes below the drawing and may be empty.
std::string SvgOfNet(CTvoHostDataBase& db, const std::string& caption);
