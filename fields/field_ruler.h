// The colour ruler of a field: what it shows and how it is painted. Internal to the library and its host.
#pragma once
#include <string>
#include <vector>

#include "platform/win_types.h"

class CChang;
class CDC;

inline constexpr int kRulerBands = 20;

struct RulerBand {
    COLORREF color;
    std::string label;  // beside the band's upper edge; empty at every second one
};

/// The bands of a field's range from the greatest value down, and last a band of no height for the label of
/// the least. A constant field has one label.
std::vector<RulerBand> RulerBands(CChang& field);

/// Where things stand in a ruler of a given size, pixels.
struct RulerLayout {
    CRect bands;     // all of them together
    int labelLeft;   // where texts begin
    int labelRight;  // where they must end
    int letterHeight;

    explicit RulerLayout(const CRect& rect);
    int BandTop(int band) const;  // of band 0 to kRulerBands
};

/// A text colour that can be read on a background.
COLORREF RulerInk(COLORREF background);
