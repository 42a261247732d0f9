// Sizes of a table window, in pixels. Internal.
#pragma once

inline constexpr int kRowHeight = 20;
inline constexpr int kHeadHeight = 22;
inline constexpr int kBarWidth = 13;
inline constexpr int kTextGap = 4;       // between a text and the border of its cell
inline constexpr int kHeadGrip = 3;      // on either side of the border between two heads
inline constexpr int kLeastColumn = 12;
inline constexpr int kMostColumn = 4000;
inline constexpr int kWheelRows = 3;     // for one notch of the wheel
