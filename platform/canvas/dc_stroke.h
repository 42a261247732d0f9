// What a figure covers, inside the device context.
#pragma once
#include "platform/canvas/dc.h"
#include "platform/canvas/span_set.h"

struct CDC::Stroke {
    explicit Stroke(const CRect& clip) : on(clip), gaps(clip) {}
    CSpanSet on;    // under the pen
    CSpanSet gaps;  // between its dashes, if they take the background colour
};
