// CBreakNode: a point at which another line is crossed.
#pragma once
#include "geometry/fpoint.h"

class CGjNetLine;

/// Sorting puts the crossings with one line side by side; by identity, so that the order is the same every time.
class CBreakNode {
public:
    CBreakNode() = default;
    CBreakNode(CGjNetLine* line, const CFPoint& point) : m_pLine(line), m_cPoint(point) {}
    CBreakNode(const CBreakNode&) = default;
    CBreakNode& operator=(const CBreakNode&) = default;
    virtual ~CBreakNode() = default;
    int operator<(const CBreakNode& other) const;

    CGjNetLine* m_pLine = nullptr;  // the other line; borrowed
    CFPoint m_cPoint;               // z 0
};
