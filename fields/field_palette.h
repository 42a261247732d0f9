// The colours of values. Internal.
#pragma once
#include "platform/win_types.h"

/// Colour number `step`, 0 the lowest to CChang::kColorSteps - 1, of a scheme as CChang::GetIndexColor names
/// them.
COLORREF FieldColor(int scheme, int step);

/// Which of the colours belongs to a value in a range. The lowest for a range below 1e-7 and a value that is
/// not finite.
int FieldColorStep(double value, double min, double max);

/// A colour by which nobody takes a pixel for background: one step of blue beside it.
COLORREF ApartFrom(COLORREF color, COLORREF background);
