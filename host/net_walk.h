// The net as a picture or a report needs it: nodes and lines by ascending identity, and their extent.
#pragma once
#include <vector>

class CGjNetLine;
class CGjNetNode;
class CGridDataBase;

/// All nodes and all lines of every storey, borrowed, by ascending identity.
std::vector<CGjNetNode*> NetNodes(CGridDataBase& db);
std::vector<CGjNetLine*> NetLines(CGridDataBase& db);

/// A box in model units that starts out empty.
struct Extent {
    double minX = 1, minY = 1, maxX = 0, maxY = 0;

    bool IsEmpty() const { return minX > maxX; }
    double Width() const { return maxX - minX; }
    double Height() const { return maxY - minY; }
    void Add(double x, double y);
    void Grow(double margin);
};

/// The box of all nodes and lines, arcs with the part of the circle that they cover. Numbers that are not finite
/// stay out.
Extent NetExtent(CGridDataBase& db);
