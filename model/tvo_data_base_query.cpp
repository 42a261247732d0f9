// Finding and walking components.
#include <algorithm>

#include "geometry/fregion.h"
#include "model/by_identity.h"
#include "model/grid_index_service_object.h"
#include "model/tvo_data_base.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

namespace {

CArray<CGouJianEx*> WithTag(const CMap<unsigned long, CGouJianEx*>& family, unsigned long tag) {
    CArray<CGouJianEx*> members;
    for (CGouJianEx* obj : ByIdentity(family))
        if (obj->m_dwTag == (tag & 0xFFFFFFFF)) members.Add(obj);
    return members;
}

}  // namespace

CFRect CTvoDataBase::GetFrect() {
    if (m_cContain.IsEmpty() || !m_pFrame) return CFRect(0, 0, 20000, 20000);
    CTvoViewMgr* view = View();
    return m_cContain.GetMaxRect(view ? &view->m_cCoor : nullptr);
}

int CTvoDataBase::IsVisible(CGouJianEx* obj) { return obj->IsVisable() && obj->IsPhysicalGouJian() != 0; }

CGouJianEx* CTvoDataBase::FindGouJian(unsigned long id) { return m_cContain.FindGouJian(id); }

CGouJianEx* CTvoDataBase::FindGouJianByBH(unsigned char type, int no) {
    CGouJianEx* found = nullptr;  // of several, the one with the lowest identity
    m_mapFamily[type].ForEach([&](unsigned long, CGouJianEx* obj) {
        if (obj->get_m_dwGouJianNO() != static_cast<std::uint32_t>(no)) return;
        if (!found || obj->get_m_dwGouJianID() < found->get_m_dwGouJianID()) found = obj;
    });
    return found;
}

int CTvoDataBase::GouJianExists(CGouJianEx* obj) { return obj && FindGouJian(obj->get_m_dwGouJianID()) != nullptr; }

unsigned long CTvoDataBase::GetNextID(unsigned char type) { return m_cContain.GetNextID(type); }

// --- rectangles and regions -------------------------------------------------------------------------------

int CTvoDataBase::GetInterRect(CFRect& rect, CArray<CGouJianEx*, CGouJianEx*>& out) {
    WAIT_FOR_COMPLETE_INDEX();
    for (CGouJianEx* obj : ReadyIndex().Query(rect)) out.Add(obj);
    RESTORE_CURSOR();
    return out.GetSize();
}

int CTvoDataBase::GetInterRect(CFRect& rect, CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& out) {
    WAIT_FOR_COMPLETE_INDEX();
    for (CGouJianEx* obj : ReadyIndex().Query(rect)) out.SetAt(obj->get_m_dwGouJianID(), obj);
    RESTORE_CURSOR();
    return out.GetCount();
}

int CTvoDataBase::GetInterRect(CFRect& rect, CList<CGouJianEx*, CGouJianEx*>& out) {
    WAIT_FOR_COMPLETE_INDEX();
    for (CGouJianEx* obj : ReadyIndex().Query(rect)) out.AddTail(obj);
    RESTORE_CURSOR();
    return out.GetCount();
}

namespace {

// The region's extent; its shape plays no part in this first choice.
CFRect ExtentOf(const CFRegion& region) {
    CFPoint low, high;
    region.GetRect(low, high);
    return CFRect(low, high);
}

}  // namespace

int CTvoDataBase::GetInterPoly(CFRegion& region, CArray<CGouJianEx*, CGouJianEx*>& out) {
    CFRect rect = ExtentOf(region);
    return GetInterRect(rect, out);
}
int CTvoDataBase::GetInterPoly(CFRegion& region, CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& out) {
    CFRect rect = ExtentOf(region);
    return GetInterRect(rect, out);
}
int CTvoDataBase::GetInterPoly(CFRegion& region, CList<CGouJianEx*, CGouJianEx*>& out) {
    CFRect rect = ExtentOf(region);
    return GetInterRect(rect, out);
}

// --- families ---------------------------------------------------------------------------------------------

int CTvoDataBase::GetGouJianCount() {
    int count = 0;
    for (int type = 1; type < kTypeCount; ++type) count += m_mapFamily[type].GetCount();
    return count;
}

int CTvoDataBase::GetGouJianCount(unsigned char type) { return m_mapFamily[type].GetCount(); }

// With `physical` 0 nothing is entered: this is meant, callers rely on the map staying as it was.
int CTvoDataBase::GetGouJianListAll(CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& map, int physical) {
    CList<CGouJianEx*, CGouJianEx*> all;
    GetGouJianListAll(all);
    for (POSITION p = all.GetHeadPosition(); p;) {
        CGouJianEx* obj = all.GetNext(p);
        if (physical && obj->IsPhysicalGouJian()) map.SetAt(obj->get_m_dwGouJianID(), obj);
    }
    return map.GetCount();
}

int CTvoDataBase::GetGouJianListAll(CList<CGouJianEx*, CGouJianEx*>& list) {
    for (int type = 1; type < kTypeCount; ++type) GetGouJianList(static_cast<unsigned char>(type), list);
    return list.GetCount();
}

int CTvoDataBase::GetGouJianList(unsigned char type, CList<CGouJianEx*, CGouJianEx*>& list) {
    for (CGouJianEx* obj : ByIdentity(m_mapFamily[type])) list.AddTail(obj);
    return m_mapFamily[type].GetCount();
}

int CTvoDataBase::GetGouJianMap(unsigned char type, CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& map) {
    map.RemoveAll();
    for (CGouJianEx* obj : ByIdentity(m_mapFamily[type])) map.SetAt(obj->get_m_dwGouJianID(), obj);
    return map.GetCount();
}

int CTvoDataBase::GetGouJianArray(unsigned char type, CArray<CGouJianEx*, CGouJianEx*>* array) {
    *array = ByIdentity(m_mapFamily[type]);
    return array->GetSize();
}

int CTvoDataBase::GetGouJianArrayWithList(unsigned char type, CArray<CGouJianEx*, CGouJianEx*>& array,
                                          CList<CGouJianEx*, CGouJianEx*>* list) {
    if (list) {
        for (POSITION p = list->GetHeadPosition(); p;) {
            CGouJianEx* obj = list->GetNext(p);
            if (obj->get_Gjlx() == type) array.Add(obj);
        }
    } else {
        array.Append(ByIdentity(m_mapFamily[type]));
    }
    return array.GetSize();
}

int CTvoDataBase::GetGouJianArrayWithMap(unsigned char type, CArray<CGouJianEx*, CGouJianEx*>& array,
                                         CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>* map) {
    for (CGouJianEx* obj : ByIdentity(map ? *map : m_mapFamily[type]))
        if (obj->get_Gjlx() == type) array.Add(obj);
    return array.GetSize();
}

int CTvoDataBase::GetGouJianArrayExcept(unsigned char type, CArray<CGouJianEx*, CGouJianEx*>* array, CGouJianEx* except) {
    for (CGouJianEx* obj : ByIdentity(m_mapFamily[type]))
        if (obj != except) array->Add(obj);
    return m_mapFamily[type].GetCount();
}

int CTvoDataBase::CopyGouJianInViewPort(unsigned char type, CArray<CGouJianEx*, CGouJianEx*>& array) {
    if (CTvoViewMgr* view = Showing())
        for (CGouJianEx* obj : ByIdentity(view->m_mapViewPort))
            if (obj->get_Gjlx() == type) array.Add(obj);
    return array.GetSize();
}

// --- status of whole families -----------------------------------------------------------------------------

void CTvoDataBase::SelectGouJian(unsigned char type, unsigned char status) {
    for (CGouJianEx* obj : ByIdentity(m_mapFamily[type])) {
        obj->set_m_byteStatus(status);
        obj->ReGen(View());
    }
}

void CTvoDataBase::Clear_GouJian(unsigned char type) {
    for (CGouJianEx* obj : ByIdentity(m_mapFamily[type])) DeleteGouJian(obj);
}
void CTvoDataBase::Hide_GouJian(unsigned char type) {
    for (CGouJianEx* obj : ByIdentity(m_mapFamily[type])) obj->set_m_byteStatus(GJ_STATUS_HIDDEN);
}
void CTvoDataBase::Show_GouJian(unsigned char type) {
    for (CGouJianEx* obj : ByIdentity(m_mapFamily[type])) obj->set_m_byteStatus(GJ_STATUS_NORMAL);
}
void CTvoDataBase::Set_GouJian_Status(unsigned char type, unsigned char status) {
    for (CGouJianEx* obj : ByIdentity(m_mapFamily[type])) {
        obj->set_m_byteStatus(status);
        if (CTvoViewMgr* view = View()) obj->ReGen(view);
    }
}
void CTvoDataBase::Clear_GouJian(unsigned char type, unsigned long tag) {
    for (CGouJianEx* obj : WithTag(m_mapFamily[type], tag)) DeleteGouJian(obj);
}
void CTvoDataBase::Hide_GouJian(unsigned char type, unsigned long tag) { Set_GouJian_Status(type, GJ_STATUS_HIDDEN, tag); }
void CTvoDataBase::Show_GouJian(unsigned char type, unsigned long tag) { Set_GouJian_Status(type, GJ_STATUS_NORMAL, tag); }
void CTvoDataBase::Set_GouJian_Status(unsigned char type, unsigned char status, unsigned long tag) {
    for (CGouJianEx* obj : WithTag(m_mapFamily[type], tag)) obj->set_m_byteStatus(status);
}

unsigned long CTvoDataBase::GetNextTagID(unsigned char type) {
    if (type == 0) return 0;
    unsigned long highest = 0;
    m_mapFamily[type].ForEach([&](unsigned long, CGouJianEx* obj) { highest = std::max<unsigned long>(highest, obj->m_dwTag); });
    return highest + 1;
}

void CTvoDataBase::SwitchText(unsigned long tag) {
    for (CGouJianEx* obj : WithTag(m_mapFamily[GJLX_TEXT], tag))
        obj->set_m_byteStatus(obj->IsVisable() ? GJ_STATUS_HIDDEN : GJ_STATUS_NORMAL);
}
void CTvoDataBase::ClearTextGouJianAll() { Clear_GouJian(GJLX_TEXT); }
