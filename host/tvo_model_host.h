// What tvo adds to a model file.
#pragma once
#include "host/models/model_host.h"

/// Loads, and what else of CTvoHostDataBase would be lost: the nodes that stay without lines, and that plates follow the
/// net when none of them stands for the moment. Nothing is written where there is nothing of the kind.
class TvoModelHost : public ModelHost {
public:
    std::unique_ptr<CGouJianEx> Make(unsigned char type) const override;
    /// A load needs its plate, and that no other hangs there.
    bool CanStand(const CGouJianEx& component, CGridDataBase& db) const override;
    // 32-bit words: flags (1: plates follow), the number of nodes, their identities, ascending.
    void WriteData(CGridDataBase& db, std::FILE* out) const override;
    bool ReadData(CGridDataBase& db, std::FILE* in) const override;
};
