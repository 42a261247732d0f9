// CDomainEdge: an edge of a closed outline, as the area routines take it.
#pragma once

class CFRegion;

/// One edge. It ends where the next one starts, the last at the start of the first. An arc whose two ends are
/// one point is a full circle.
struct CDomainEdge {
    int type = 0;  // 0 straight, 1 arc
    float start_x = 0;
    float start_y = 0;
    float center_x = 0;  // arcs only
    float center_y = 0;
    int direction = 1;  // 1 anticlockwise arc or straight, 0 clockwise arc
};

/// Writes one edge per vertex; `edges` has room for them.
void ChangeToEdge(const CFRegion& region, CDomainEdge* edges);
