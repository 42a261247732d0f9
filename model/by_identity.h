// Components of a map by ascending identity. Internal to the library.
#pragma once
#include <algorithm>

#include "model/goujian.h"

/// A map of components remembers the order of entry, which undo and redo change; no walk may show what was
/// undone before. Also a copy: what is done to the components may change the map.
inline CArray<CGouJianEx*> ByIdentity(const CMap<unsigned long, CGouJianEx*>& map) {
    CArray<CGouJianEx*> members;
    members.Reserve(map.GetCount());
    map.ForEach([&](unsigned long, CGouJianEx* obj) { members.Add(obj); });
    const auto earlier = [](const CGouJianEx* a, const CGouJianEx* b) {
        return a->get_m_dwGouJianID() < b->get_m_dwGouJianID();
    };
    if (!std::is_sorted(members.begin(), members.end(), earlier)) std::sort(members.begin(), members.end(), earlier);
    return members;
}
