// Components of a map by ascending identity. Internal to the library.
#pragma once
#include <algorithm>
#include <vector>

#include "model/goujian.h"

/// A map of components remembers the order of entry, which undo and redo change; no walk may show what was
/// undone before. Also a copy: what is done to the components may change the map.
/// Those alone that `wanted` says yes to: they are asked in the order of the set, before the others would be sorted.
template <class Wanted>
CArray<CGouJianEx*> ByIdentity(const CMap<unsigned long, CGouJianEx*>& map, Wanted wanted) {
    std::vector<CGouJianEx*> all;
    all.reserve(static_cast<std::size_t>(map.GetCount()));
    map.ForEach([&](unsigned long, CGouJianEx* obj) { all.push_back(obj); });
    CArray<CGouJianEx*> members;
    for (std::size_t i = 0; i < all.size(); ++i) {
        constexpr std::size_t kAhead = 16;  // they lie far apart in memory, which is asked for in good time
        if (i + kAhead < all.size()) __builtin_prefetch(all[i + kAhead]);
        if (wanted(all[i])) members.Add(all[i]);
    }
    const auto earlier = [](const CGouJianEx* a, const CGouJianEx* b) {
        return a->get_m_dwGouJianID() < b->get_m_dwGouJianID();
    };
    if (!std::is_sorted(members.begin(), members.end(), earlier)) std::sort(members.begin(), members.end(), earlier);
    return members;
}

inline CArray<CGouJianEx*> ByIdentity(const CMap<unsigned long, CGouJianEx*>& map) {
    return ByIdentity(map, [](const CGouJianEx*) { return true; });
}
