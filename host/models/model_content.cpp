#include "host/models/model_content.h"

#include <algorithm>
#include <utility>

#include "net/grid_data_base.h"

namespace {

using Family = std::vector<std::pair<unsigned long, CGouJianEx*>>;

Family Sorted(const CMap<unsigned long, CGouJianEx*>& map) {
    Family family;
    family.reserve(static_cast<std::size_t>(map.GetCount()));
    map.ForEach([&](unsigned long id, CGouJianEx* obj) { family.emplace_back(id, obj); });
    const auto earlier = [](const auto& a, const auto& b) { return a.first < b.first; };
    if (!std::is_sorted(family.begin(), family.end(), earlier)) std::sort(family.begin(), family.end(), earlier);
    return family;
}

}  // namespace

ModelContent ContentOf(CGridDataBase& db) {
    ModelContent content;
    for (int t = 1; t < kTypeCount; ++t) {
        const auto type = static_cast<unsigned char>(t);
        const Family family = Sorted(db.m_mapFamily[type]);
        if (family.empty()) continue;
        // All components of a type byte are of one kind; only the first is asked, since the others are far apart.
        std::vector<CGouJianEx*>* kind = nullptr;
        switch (family.front().second->QueryBasicType()) {
            case kBasicNode: kind = &content.nodes; break;
            case kBasicLine: kind = &content.lines; break;
            case kBasicPlate: kind = &content.plates; break;
            default: kind = &content.others[type]; break;
        }
        kind->reserve(kind->size() + family.size());
        for (const auto& member : family) kind->push_back(member.second);
    }
    return content;
}
