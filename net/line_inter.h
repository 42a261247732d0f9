// How two net lines meet.
#pragma once

/// A bit set: an overlap stands alone and comes with a count of -1 and no points; the point values can be
/// joined. In mixed pairs (straight and arc) the bits speak of the straight line, whichever argument it was.
enum LINE_INTER_ENUM {
    INTER_NONE = 0,
    INTER_OVERLAP_TAIL = 1,     // the second runs on past the end of the first
    INTER_OVERLAP_HEAD = 2,     // the second comes in from before the start of the first
    INTER_SECOND_IN_FIRST = 4,  // the second lies wholly on the first
    INTER_FIRST_IN_SECOND = 8,  // the first lies wholly on the second
    INTER_AT_START = 0x10,      // a point at the start of the reference line
    INTER_AT_END = 0x20,        // a point at its end
    INTER_INTERIOR = 0x40,      // a point that isn't at its end
    INTER_ON_BOTH = 0x80,       // two arcs: a point confirmed on an arc
};
