// The background grid as a picture on paper shows it.
#pragma once
#include <vector>

#include "host/net_walk.h"
#include "platform/win_types.h"

class CTvoHostDataBase;

/// Grey that shows on white and on the faces of plates, which the dots lie on: these leave no paper free.
inline constexpr COLORREF kPaperGridColor = RGB(0x90, 0x90, 0x90);

/// The rows and columns of dots, ascending. Where positions stand closer than the eye can tell apart some are passed
/// over, so that a picture of a grid as dense as you like stays small and its lines can be seen.
struct GridMarks {
    std::vector<double> x, y;  // model units
};

/// Those in `area`, at least `gap` apart. None when the grid is not shown.
GridMarks MarksOfGrid(const CTvoHostDataBase& db, const Extent& area, double gap);

/// The box of the shown grid; empty when it is not.
Extent GridExtent(const CTvoHostDataBase& db);
