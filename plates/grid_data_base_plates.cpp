// CGridDataBase: plates as they stand. Which lines count, what class a plate is, which plates a line borders.
#include <algorithm>
#include <cmath>

#include "geometry/angles.h"
#include "model/by_identity.h"
#include "net/grid_data_base.h"
#include "plates/mian_goujian.h"
#include "plates/plate_way.h"

// --- hooks ------------------------------------------------------------------------------------------------

int CGridDataBase::CanJionWeiBan(CGjNetLine* line) {
    if (!m_bCombineFilter) return 1;
    CGjNetLine** counted = m_mapCombineLine.Find(line->get_m_dwGouJianID());
    return counted && *counted == line;
}

unsigned char CGridDataBase::QueryMainGouJianType() {
    return m_bCombineMode && m_bCombineFilter ? m_byteCombineType : static_cast<unsigned char>(GJLX_MIAN);
}

CMianGouJian* CGridDataBase::InstanceMianGouJian(int) {
    auto* plate = new CMianGouJian;  // the caller's, until AddMianGouJian
    plate->m_pDataBase = this;
    plate->set_m_dwGouJianID(GetNextID(GJLX_MIAN));
    plate->set_m_byteStatus(GJ_STATUS_NORMAL);
    plate->set_m_dwGouJianNO(plate->get_m_dwGouJianID() & 0xFFFFFF);
    return plate;
}

void CGridDataBase::AddMianGouJian(CMianGouJian* plate) { AddGouJian(plate); }

int CGridDataBase::IsSamePlate(CMianGouJian* a, CMianGouJian* b, float fDist, float fArea) {
    const CFPoint ca = a->GetCentroid(), cb = b->GetCentroid();
    const float smaller = std::min(a->GetArea(), b->GetArea());
    return get_dist(ca.x, ca.y, cb.x, cb.y) < fDist &&
           std::fabs(a->GetArea() - b->GetArea()) / smaller < fArea;
}

int CGridDataBase::IsSamePlateByBorder(CMianGouJian* a, CMianGouJian* b) {
    constexpr float kDistance = 0.1f, kAngle = 0.017453292f;
    const CFRegion &ra = a->m_region, &rb = b->m_region;
    const int n = ra.GetSize();
    if (n != rb.GetSize()) return 0;
    const auto apart = [](const CFShoot& p, const CFShoot& q) { return get_dist(p.x, p.y, q.x, q.y); };
    // The first pair that coincides is the only one tried, also when another would fit.
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            if (!(apart(ra[i], rb[j]) < kDistance)) continue;
            for (int k = 0; k < n; ++k) {
                const CFShoot &p = ra[(i + k) % n], &q = rb[(j + k) % n];
                if (apart(p, q) > kDistance || std::fabs(p.c - q.c) > kAngle) return 0;
            }
            return 1;
        }
    return 0;
}

// --- plate ways -------------------------------------------------------------------------------------------

namespace {

template <class F>
void ForEachBorderLine(const CMianGouJian& plate, F f) {
    for (const CGjXingZhuangBian& shape : plate.m_arrXingZhuangBian)
        for (const CJainTuBanBian& side : shape.m_arrBian)
            if (side.m_pNetLine) f(side.m_pNetLine);
}

// Lines are keys here: they may be gone.
void RemoveFromWay(CMap<CGjNetLine*, CPlateWay*>& ways, CGjNetLine* line, CMianGouJian* plate) {
    CPlateWay** way = ways.Find(line);
    if (!way) return;
    (*way)->RemoveElement(plate);
    if (!(*way)->m_arrPlate.IsEmpty()) return;
    delete *way;
    ways.RemoveKey(line);
}

void AddToWay(CMap<CGjNetLine*, CPlateWay*>& ways, CGjNetLine* line, CMianGouJian* plate) {
    CPlateWay*& way = ways[line];
    if (!way) way = new CPlateWay;
    way->AddElement(plate);
}

void DropWays(CMap<CGjNetLine*, CPlateWay*>& ways) {
    ways.ForEach([](CGjNetLine*, CPlateWay* way) { delete way; });
    ways.RemoveAll();
}

}  // namespace

// A plate is taken out where it was entered, whatever its border has become since.
void CGridDataBase::MainGouJianMaintain(CMianGouJian* plate, int op) {
    Withdraw(*plate);
    if (op != 1) return;
    ForEachBorderLine(*plate, [&](CGjNetLine* line) {
        AddToWay(m_mapPlateWay, line, plate);
        plate->m_arrEntered.Add(line);
    });
}

void CGridDataBase::Withdraw(CMianGouJian& plate) {
    for (CGjNetLine* line : plate.m_arrEntered) {
        RemoveFromWay(m_mapPlateWay, line, &plate);
        if (!m_mapGoneWay.IsEmpty()) RemoveFromWay(m_mapGoneWay, line, &plate);
    }
    plate.m_arrEntered.RemoveAll();
}

// A plate that leaves after one of its lines stays in the log longer than the line does: the line is freed
// first, and the plate has to hear of it. One that leaves before its lines is freed before them.
void CGridDataBase::MaintainPlate(CGouJianEx* obj, int op) {
    auto* plate = static_cast<CMianGouJian*>(obj);
    MainGouJianMaintain(plate, op);
    if (op == 1) {  // one that has lost a line in the log comes back to be replaced
        if (plate->HasLostLines()) m_mapStalePlate.SetAt(plate->get_m_dwGouJianID(), plate);
        return;
    }
    ForEachBorderLine(*plate, [&](CGjNetLine* line) {
        if (CObjectUndoContainEx::IsHeld(line)) return;
        AddToWay(m_mapGoneWay, line, plate);
        plate->m_arrEntered.Add(line);
    });
}

void CGridDataBase::LetGoOfBorder(CGjNetLine* line) {
    for (auto* ways : {&m_mapPlateWay, &m_mapGoneWay}) {
        CPlateWay** found = ways->Find(line);
        if (!found) continue;
        CPlateWay* way = *found;
        ways->RemoveKey(line);
        for (CMianGouJian* plate : way->m_arrPlate) {
            Withdraw(*plate);
            plate->LetGoOfLines();
            if (ways == &m_mapPlateWay) m_mapStalePlate.SetAt(plate->get_m_dwGouJianID(), plate);
        }
        delete way;
    }
}

void CGridDataBase::LetGoOfPlate(CGouJianEx* obj) {
    auto* plate = static_cast<CMianGouJian*>(obj);
    Withdraw(*plate);
    CGouJianEx** stale = m_mapStalePlate.Find(plate->get_m_dwGouJianID());
    if (stale && *stale == plate) m_mapStalePlate.RemoveKey(plate->get_m_dwGouJianID());
}

void CGridDataBase::DropPlateWays() {
    DropWays(m_mapPlateWay);
    DropWays(m_mapGoneWay);
    m_mapStalePlate.RemoveAll();
}

int CGridDataBase::GetBounderyPlate(CGjNetLine* line, CArray<CMianGouJian*>& out) {
    if (CPlateWay** way = m_mapPlateWay.Find(line))
        for (CMianGouJian* plate : (*way)->m_arrPlate) out.Add(plate);
    return out.GetSize();
}
