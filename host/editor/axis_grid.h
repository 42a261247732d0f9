// A net of axes by spacings, straight or round.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "host/editor/spacing_text.h"

class CGridDataBase;
class CTvoHostDataBase;

/// A point in millimetres, in doubles: only the net rounds.
struct AxisPoint {
    double x = 0, y = 0;
};

/// A straight piece of an axis, or an arc about a centre.
struct AxisPiece {
    AxisPoint from, to;
    double sweep = 0;  // degrees, anticlockwise from `from` to `to`; 0: straight
    AxisPoint centre;  // of the arc

    /// The piece as a line of short sides, both ends exact.
    std::vector<AxisPoint> Path() const;
};

/// What an axis grid is made of. In its own coordinates the lower left corner is the origin, or the centre,
/// with the first axis along x.
struct AxisGrid {
    bool arc = false;
    Spacings across;   // the bays: mm along x, or degrees anticlockwise
    Spacings deep;     // mm along y, or outwards
    double inner = 0;  // mm, radius of the innermost arc; 0: the axes meet in the centre
    double turn = 0;   // degrees, anticlockwise about the insertion point
    int insert = 0;    // which of InsertionNames

    /// The point of its own coordinates that is put where the user points.
    AxisPoint InsertionPoint() const;
    /// The whole axes, for showing: few lines. In its own coordinates.
    std::vector<AxisPiece> Axes() const;
    /// All pieces between the crossings, each once; neighbours share their end to the bit. In its own
    /// coordinates.
    std::vector<AxisPiece> Pieces() const;
};

/// Takes own coordinates to the plan: turned, with the insertion point at a place.
class AxisPlacing {
public:
    AxisPlacing(const AxisGrid& grid, AxisPoint at);
    AxisPoint operator()(AxisPoint p) const;

private:
    AxisPoint m_pivot, m_at;
    double m_cos, m_sin;
};

/// What people type in the dialogs. `most` crossings are taken, and one spacing must be longer than the
/// tolerance of the net, which would otherwise pull neighbours together.
constexpr int kMostAxes = 500;           // spacings in a direction
constexpr int kMostCrossings = 40000;    // nodes of the net
constexpr double kLongestSpacing = 1e6;  // mm
const std::vector<std::string>& InsertionNames(bool arc);
struct AxisGridTexts {
    std::string across, deep, inner, turn, insert;  // `inner` of arcs alone; `insert` is an index
};
/// Reads them; what is wrong goes to `wrong`, empty for nothing.
AxisGrid ReadAxisGrid(bool arc, const AxisGridTexts& texts, double tolerance, std::string& wrong);

/// Puts the grid into the model as one undo step, plates following. Gives the number of pieces that are new;
/// nothing and no step for a place too far out to draw there.
std::optional<int> PlaceAxisGrid(CTvoHostDataBase& db, const AxisGrid& grid, AxisPoint at);
