// The net as a picture or a report needs it: its components by ascending identity, their extent and figures.
#pragma once
#include <vector>

class CGjNetLine;
class CGjNetNode;
class CGridDataBase;
class CMianGouJian;
class CTvoLoad;

/// All nodes and all lines of every storey, borrowed, by ascending identity.
std::vector<CGjNetNode*> NetNodes(CGridDataBase& db);
std::vector<CGjNetLine*> NetLines(CGridDataBase& db);

/// The plates of the main type, which follow the net, and all of any type, both by ascending identity.
std::vector<CMianGouJian*> NetPlates(CGridDataBase& db);
std::vector<CMianGouJian*> AllPlates(CGridDataBase& db);
std::vector<CTvoLoad*> AllLoads(CGridDataBase& db);

/// The thorns among the lines: those that no closed walk can use. By ascending identity.
std::vector<CGjNetLine*> DanglingLines(CGridDataBase& db);

/// Square millimetres of the plates of the main type, summed.
double PlateArea(CGridDataBase& db);

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
Extent ExtentOf(const std::vector<CGjNetNode*>& nodes, const std::vector<CGjNetLine*>& lines);
