// CListIndex: finds a component in a list without walking it.
#pragma once
#include <unordered_map>

#include "platform/containers.h"

class CGouJianEx;

using CGouJianExList = CList<CGouJianEx*, CGouJianEx*>;

/// Where each component stands in a list that others fill and empty as they like. Made anew when the list has changed by
/// other hands, so that many components that go one after the other cost one walk together.
class CListIndex {
public:
    /// Takes the component out of the list, however often it stands there.
    void Drop(CGouJianExList& list, const CGouJianEx* component);

private:
    std::unordered_multimap<const CGouJianEx*, POSITION> m_places;
    unsigned m_changes = 0;  // the list's, when the index was right
};
