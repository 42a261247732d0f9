// Lines wider than a pixel.
#pragma once
#include "platform/canvas/gdi_types.h"
#include "platform/canvas/span_set.h"

/// Adds the area that a pen of width 2 or more covers along a path: a band about each side, bevelled joins,
/// square caps (or flat ones with PS_ENDCAP_FLAT), cut into dashes by the pen's style with the pattern
/// stretched by the width. A path of one place gives a square. The dashes are laid only where they can be
/// seen. Points and width are in units.
void AddWideStroke(const CPoint* points, int count, bool closed, int penStyle, int penWidth, int density,
                   CSpanSet& spans);
