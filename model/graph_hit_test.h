// The hit tests that the primitives share. Internal.
#pragma once

class CFRegion;
class CFShape;

/// A curve against a region. A point is hit where it lies in the region. Any other curve is hit in both modes
/// when its marks are inside: both ends of a line; ends and middle of an arc; the corners of a circle's box.
/// Otherwise in mode 0 when it meets the outline. The marks alone decide "all inside", also for regions
/// with dents: that is what selecting has always meant here.
int HitShape(const CFShape& shape, const CFRegion& region, int mode);

/// An area against a region: by its vertices, and in mode 0 otherwise by whether the areas share a point.
int HitArea(const CFRegion& area, const CFRegion& region, int mode);
