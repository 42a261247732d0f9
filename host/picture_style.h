// What the pictures of both kinds have in common.
#pragma once
#include <string>

/// Colour indices of the drawing on white paper: blue lines, orange nodes.
inline constexpr int kPaperLineColor = 164;
inline constexpr int kPaperNodeColor = 24;

/// A length in model units that makes a handy scale bar in a drawing `width` units wide: 1, 2 or 5 times a power of
/// ten, between an eighth and a third of the width. 0 when the width is not positive.
double ScaleBarLength(double width);

/// "500 mm", "10 m", "2 km": a length in millimetres.
std::string LengthText(double millimetres);
