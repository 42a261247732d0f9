#include "model/goujian_grid.h"

#include "geometry/fcoor.h"
#include "model/goujian.h"
#include "platform/canvas/dc.h"
#include "view/tvo_view_mgr.h"

void CGouJianGrid::CopyData(const CGouJianGrid& other) {
    if (this == &other) return;
    m_nSeq = other.m_nSeq;
    m_rcCell = other.m_rcCell;
    m_mapGouJian = other.m_mapGouJian;
}

CFPoint CGouJianGrid::GetCenter() const {
    const CFPoint low = m_rcCell.Nearest(), high = m_rcCell.Furthest();
    return CFPoint((low.GetX() + high.GetX()) / 2, (low.GetY() + high.GetY()) / 2, 0);
}

void CGouJianGrid::DrawGrid(CDC* dc, CTvoViewMgr* mgr) {
    if (!dc || !mgr) return;
    const CRect r = mgr->m_cCoor.FPtoDP(m_rcCell);
    dc->MoveTo(r.left, r.top);
    dc->LineTo(r.right, r.top);
    dc->LineTo(r.right, r.bottom);
    dc->LineTo(r.left, r.bottom);
    dc->LineTo(r.left, r.top);
}

void CGouJianGrid::RetrieveAll(CList<CGouJianEx*, CGouJianEx*>* out) {
    m_mapGouJian.ForEach([&](unsigned long, CGouJianEx* g) { out->AddTail(g); });
}
void CGouJianGrid::RetrieveAll(CArray<CGouJianEx*, CGouJianEx*>* out) {
    m_mapGouJian.ForEach([&](unsigned long, CGouJianEx* g) { out->Add(g); });
}
