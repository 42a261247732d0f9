// The net as an SVG drawing.
#pragma once
#include <string>

#include "host/net_walk.h"

class CTvoHostDataBase;

/// SVG of everything that is visible: plates, hatched and with number and area where these fit, in one group, lines and
/// arcs, exact, in another above it, then nodes as dots; the display lists of other components below the lines and above
/// them; y upwards, the view box fitted with a margin. `caption` goes below the drawing and may be empty.
std::string SvgOfNet(CTvoHostDataBase& db, const std::string& caption);

/// A sheet of paper with a part of the model on it. Millimetres.
struct SvgSheet {
    double width = 297, height = 210;
    double margin = 10;
    double unitsPerMillimetre = 100;  // of the model
    double x = 0, y = 0;              // of the model, in the middle of the room for the drawing

    static constexpr double kFooter = 9.8;  // below the drawing, for the caption
};

/// Where on a sheet the drawing is, from the lower left corner; the ruler of the fields takes some of it away.
Extent DrawingOnSheet(CTvoHostDataBase& db, const SvgSheet& sheet);

/// The same on a sheet, with a frame about the drawing: nothing goes beyond that. Widths and letters are those of paper; no
/// line is thinner than 0.18 mm.
std::string SvgOfSheet(CTvoHostDataBase& db, const SvgSheet& sheet, const std::string& caption);
