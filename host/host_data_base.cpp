#include "host/host_data_base.h"

int CTvoHostDataBase::CanMergeNetLineTogetherWithGouJian(CGjNetLine*, CArray<CGouJianEx*>& riders1, CGjNetLine*,
                                                         CArray<CGouJianEx*>& riders2, int, CGjNetNode*) {
    return m_bMerge && riders1.IsEmpty() && riders2.IsEmpty();
}

int CTvoHostDataBase::IsIndependentNetNode(CGjNetNode* node) {
    CArray<CGouJianEx*> lines;
    return GetConnectedNetLine(node, lines) == 0;
}
