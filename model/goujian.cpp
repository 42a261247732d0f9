// Identity, status and comparators of components; goujian_display.cpp draws and hit-tests.
#include "model/goujian.h"

#include "model/draw_graph.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"

CTvoProile g_cTvoProfile;
int g_cGjStatus[kTypeCount] = {};

namespace {

struct SnapSwitches {
    SnapSwitches() { std::fill_n(on, kTypeCount, 1); }
    int on[kTypeCount];
};

SnapSwitches& Switches() {
    static SnapSwitches switches;
    return switches;
}

bool HasSwitch(int type) { return type >= 1 && type < kTypeCount; }

}  // namespace

void EnableSnap(int type) {
    if (HasSwitch(type)) Switches().on[type] = 1;
}
void DisableSnap(int type) {
    if (HasSwitch(type)) Switches().on[type] = 0;
}
int IsSnapEnabled(int type) { return HasSwitch(type) ? Switches().on[type] : 0; }

void CGouJianEx::TellWatcherOfStore() const {
    if (!m_pDataBase || !m_pDataBase->m_cContain.Holds(this)) return;
    if (CStoreWatcher* watcher = m_pDataBase->m_cContain.GetWatcher()) watcher->OnChanged(*this);
}

CGouJianEx::CGouJianEx() = default;
CGouJianEx::CGouJianEx(CTvoDataBase* pDataBase) : m_pDataBase(pDataBase), m_aIntParam(0) {}
CGouJianEx::~CGouJianEx() { delete m_pDrawGraph; }

int CGouJianEx::GreaterThanX(CGouJianEx* a, CGouJianEx* b) { return a->GetSortPoint().GetX() > b->GetSortPoint().GetX(); }
int CGouJianEx::GreaterThanY(CGouJianEx* a, CGouJianEx* b) {
    return a->GetSortPoint().GetY() > b->GetSortPoint().GetY() + static_cast<float>(g_cTvoProfile.m_nNetTolerance);
}
int CGouJianEx::GreaterThanBH(CGouJianEx* a, CGouJianEx* b) { return a->m_dwGouJianNO > b->m_dwGouJianNO; }
int CGouJianEx::GreaterThanFEM_ID(CGouJianEx* a, CGouJianEx* b) { return a->m_nFEM_ID > b->m_nFEM_ID; }

void CopyGouJianExArray(CArray<CGouJianEx*>& dest, CArray<CGouJianEx*>& src) { dest.Copy(src); }
void CopyGouJianExMap(CMap<unsigned long, CGouJianEx*>& dest, CMap<unsigned long, CGouJianEx*>& src) {
    if (&dest != &src) dest = src;
}
