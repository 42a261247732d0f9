// The three walls of lines of the background grid.
#pragma once

class CDC;
class CRect;
struct GridPositions;
struct Projection;

/// Draws with the pen and the raster mode of `dc`: from each position of an axis a line to the end of either
/// other axis. Lines that can't be seen in `clip` are not looped over.
void DrawGridWalls(CDC& dc, const Projection& view, const CRect& clip, const GridPositions& x,
                   const GridPositions& y, const GridPositions& z);
