#include "view/list_index.h"

void CListIndex::Drop(CGouJianExList& list, const CGouJianEx* component) {
    if (list.IsEmpty()) {
        m_places.clear();
        m_changes = list.GetChanges();
        return;
    }
    if (m_changes != list.GetChanges()) {
        m_places.clear();
        for (POSITION p = list.GetHeadPosition(); p;) {
            const POSITION at = p;
            m_places.emplace(list.GetNext(p), at);
        }
    }
    const auto [first, last] = m_places.equal_range(component);
    for (auto place = first; place != last; ++place) list.RemoveAt(place->second);
    m_places.erase(first, last);
    m_changes = list.GetChanges();
}
