// The data base of tvo, the reference host.
#pragma once
#include "net/grid_data_base.h"

/// A net that merges the pieces of a line once nothing meets at the node between them any more, and takes nodes
/// without lines for superfluous.
class CTvoHostDataBase : public CGridDataBase {
public:
    /// Agrees when merging is on and nothing rides on either line: what happens to riders is for hosts that have some.
    int CanMergeNetLineTogetherWithGouJian(CGjNetLine* l1, CArray<CGouJianEx*>& riders1, CGjNetLine* l2,
                                           CArray<CGouJianEx*>& riders2, int mode, CGjNetNode* shared) override;

    /// A node is independent when its star holds no line.
    int IsIndependentNetNode(CGjNetNode* node) override;

    int m_bMerge = 1;  // 0: no line is ever merged
};
