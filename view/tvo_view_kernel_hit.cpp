// CTvoViewKernel: hit testing.
#include <unordered_map>

#include "geometry/fregion.h"
#include "model/goujian.h"
#include "model/tvo_data_base.h"
#include "view/tvo_view_kernel.h"

// A hit on what is selected already takes it out again.
template <class Hits>
int CTvoViewKernel::ToggleHits(CGouJianExList& candidates, Hits hits, CGouJianExList& selected, int bFirst,
                               CGouJianExList& added, CGouJianExList& removed) {
    std::unordered_map<CGouJianEx*, POSITION> places;  // only ever looked up
    for (POSITION p = selected.GetHeadPosition(); p;) {
        const POSITION at = p;
        places.emplace(selected.GetNext(p), at);
    }
    int changed = 0;
    for (POSITION p = candidates.GetHeadPosition(); p;) {
        CGouJianEx* const obj = candidates.GetNext(p);
        if (!obj->IsVisable() || !InFilter(obj) || !hits(*obj)) continue;
        if (const auto place = places.find(obj); place != places.end()) {
            obj->set_m_byteStatus(0);
            selected.RemoveAt(place->second);
            places.erase(place);
            removed.AddTail(obj);
        } else if (m_pDataBase->CanBeSelected(m_pFrame, CurrentCommandId(), obj)) {
            obj->set_m_byteStatus(1);
            places.emplace(obj, selected.AddTail(obj));
            added.AddTail(obj);
        } else {
            continue;
        }
        changed = 1;
        if (bFirst) break;
    }
    return changed;
}

int CTvoViewKernel::HitTest(CFRect& rect, CGouJianExList*& selected, int mode, int bFirst, CGouJianExList& added,
                            CGouJianExList& removed) {
    if (!m_pDataBase) return 0;
    CGouJianExList candidates;
    m_pDataBase->GetInterRect(rect, candidates);
    return ToggleHits(candidates, [&](CGouJianEx& obj) { return obj.HitTest(rect, mode); }, *selected, bFirst, added, removed);
}

int CTvoViewKernel::HitTest(CFRegion& region, CGouJianExList*& selected, int mode, CGouJianExList& added,
                            CGouJianExList& removed) {
    if (!m_pDataBase) return 0;
    CGouJianExList candidates;
    m_pDataBase->GetInterPoly(region, candidates);
    return ToggleHits(candidates, [&](CGouJianEx& obj) { return obj.HitTest(region, mode); }, *selected, 0, added, removed);
}
