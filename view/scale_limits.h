// The bounds of a view's scale.
#pragma once
#include <cmath>

#include "geometry/fpoint.h"

// Of the commands that zoom step by step, pixels per model unit.
extern const float g_qeTvoScaleMin;
extern const float g_qeTvoScaleMax;

/// A view with this transform can be computed with: far beyond the bounds above, since the wheel and windows may pass
/// these, yet far from where floats give out.
inline bool IsUsableView(float scale, const CFPoint& origin) {
    return scale >= 1e-12f && scale <= 1e9f && std::isfinite(origin.x) && std::isfinite(origin.y);
}
