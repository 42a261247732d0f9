#include "view/tvo_view_mgr.h"

#include "model/goujian.h"

CTvoViewMgr* g_pCurrentView = nullptr;

CTvoViewMgr::CTvoViewMgr() { g_pCurrentView = this; }

CTvoViewKernel::CTvoViewKernel() : m_pSelectedList(new CList<CGouJianEx*>) {}
CTvoViewKernel::~CTvoViewKernel() {
    if (g_pCurrentView == this) g_pCurrentView = nullptr;
    delete m_pSelectedList;
}

void CTvoViewKernel::ReGenObject(CGouJianEx* pGouJian) {
    const CRect place = m_cCoor.FPtoDP(pGouJian->GetFrect());
    InvalidateRect(&place, TRUE);
}
