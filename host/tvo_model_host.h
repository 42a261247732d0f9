// What tvo adds to a model file.
#pragma once
#include "host/models/model_host.h"

/// Loads, riders, texts and graphics, and what else of CTvoHostDataBase would be lost: the nodes that stay
/// without lines, that plates follow the net when none of them stands for the moment, and the background
/// grid. Nothing is written where there is nothing of the kind, and the grid is as a new model has it.
class TvoModelHost : public ModelHost {
public:
    std::unique_ptr<CGouJianEx> Make(unsigned char type) const override;
    int Write(CGouJianEx& component, std::FILE* out) const override;
    int Read(CGouJianEx& component, std::FILE* in) const override;
    std::string Describe(const CGouJianEx& component) const override;
    /// A load needs its plate, and that no other hangs there; a rider needs its line.
    bool CanStand(const CGouJianEx& component, CGridDataBase& db) const override;
    // 32-bit words: flags (1: plates follow, 2: a grid, 4: it is shown), the number of nodes, their
    // identities, ascending. Of a grid its mode, the origin as three 32-bit floats, the spacings of x, y and
    // z, each its length and UTF-8.
    void WriteData(CGridDataBase& db, std::FILE* out) const override;
    bool ReadData(CGridDataBase& db, std::FILE* in) const override;
};
