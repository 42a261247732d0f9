// How plates look in pictures of both kinds: their colours, their outlines, and the labels that fit.
#pragma once
#include <string>
#include <vector>

#include "geometry/fregion.h"
#include "platform/win_types.h"

class CMianGouJian;
class CTvoHostDataBase;

/// A soft colour with its hatch.
struct PlateColor {
    COLORREF fill, hatch, text;
    bool rising;  // the hatch runs from lower left to upper right, else the other way
};

inline constexpr int kPlateColorCount = 8;
const PlateColor& PlateColorAt(int index);

/// A plate and the index of its colour.
struct PlateFace {
    CMianGouJian* plate = nullptr;  // borrowed
    int color = 0;
};

/// The visible plates that follow the net and have a border, the largest first, so that one inside another is painted upon it.
/// Neighbours have different colours as far as these go; the same model always gives the same ones.
std::vector<PlateFace> PlateFaces(CTvoHostDataBase& db);

struct FlatPoint {
    double x = 0, y = 0;
};

/// The outline as a polygon whose sides lie within `sag` of it.
std::vector<FlatPoint> FlatOutline(const CFRegion& region, double sag);

struct LabelLine {
    std::string text;
    double height = 0;    // of the letters' em, model units
    double baseline = 0;  // y
};

/// What stands on a plate: its number, its area and the load on it, or the number alone.
struct PlateLabel {
    double x = 0, y = 0;  // the middle of all lines, each of which is centred there
    int color = 0;
    std::vector<LabelLine> lines;  // from top to bottom
};

/// Labels for those of the faces in which one fits without touching a line or a plate inside: at the centroid or, where
/// it doesn't fit there, in the middle of a wide stretch of the plate. Letters are `largest` high where there is room,
/// and never lower than `smallest`.
std::vector<PlateLabel> PlateLabels(CTvoHostDataBase& db, const std::vector<PlateFace>& faces, double largest, double smallest);

/// "20.3 m²": an area in square millimetres, in the unit that suits it.
std::string AreaText(double squareMillimetres);
