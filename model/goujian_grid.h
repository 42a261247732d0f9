// CGouJianGrid: one cell of the spatial index.
#pragma once
#include "geometry/frect.h"
#include "platform/containers.h"

class CDC;
class CGouJianEx;
class CTvoViewMgr;

/// A square cell and the components that touch it, borrowed.
class CGouJianGrid {
public:
    CGouJianGrid() = default;
    CGouJianGrid(const CGouJianGrid& other) { CopyData(other); }
    CGouJianGrid& operator=(const CGouJianGrid& other) {
        CopyData(other);
        return *this;
    }
    virtual ~CGouJianGrid() = default;
    void CopyData(const CGouJianGrid& other);

    CFPoint GetCenter() const;
    /// Outlines the cell, for looking at the index.
    void DrawGrid(CDC* dc, CTvoViewMgr* mgr);
    void RetrieveAll(CList<CGouJianEx*, CGouJianEx*>* out);   // appends
    void RetrieveAll(CArray<CGouJianEx*, CGouJianEx*>* out);  // appends
    // A cell is never stored: both do nothing.
    void ReadFile(const char*) {}
    void WriteFile(const char*) {}

    int m_nSeq = -1;     // row * columns + column, from the lower left corner of the grid
    CFRect m_rcCell;     // model units
    CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*> m_mapGouJian;  // by identity
};
