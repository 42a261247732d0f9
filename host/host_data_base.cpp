#include "host/host_data_base.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "host/tvo_load.h"
#include "model/grid_index_service_object.h"
#include "plates/mian_goujian.h"

namespace {

constexpr float kSamePlace = 2.0f, kSameArea = 0.01f;  // as CompleteDPC takes a plate for the same

/// The one type byte of riders on both lines, 0 for no riders on either, -1 when they are not of one kind.
int KindOfRiders(const CArray<CGouJianEx*>& riders1, const CArray<CGouJianEx*>& riders2) {
    if (riders1.IsEmpty() && riders2.IsEmpty()) return 0;
    if (riders1.IsEmpty() || riders2.IsEmpty()) return -1;
    const int kind = riders1[0]->get_Gjlx();
    const auto other = [kind](const CGouJianEx* rider) { return rider->get_Gjlx() != kind; };
    const bool mixed = std::any_of(riders1.begin(), riders1.end(), other) || std::any_of(riders2.begin(), riders2.end(), other);
    return mixed ? -1 : kind;
}

}  // namespace

void CTvoHostDataBase::OnDestroyData() {
    m_mapLoad.clear();
    m_aKept.clear();
    m_aTouched.clear();
    m_bBatch = false;
    m_nPlatesFormed = 0;
    m_bGridShown = false;
    CGridDataBase::OnDestroyData();
}

void CTvoHostDataBase::OnAddGouJian(CGouJianEx* obj) {
    CGridDataBase::OnAddGouJian(obj);
    if (obj->get_Gjlx() == kTvoLoadType) {
        auto* load = static_cast<CTvoLoad*>(obj);
        m_mapLoad[load->m_dwPlateID] = load;
    } else if (obj->get_Gjlx() == GJLX_MIAN && !m_bUndoing) {
        ++m_nPlatesFormed;
    } else if (m_bBatch && obj->QueryBasicType() == kBasicNode) {
        m_aTouched.insert(obj->get_m_dwGouJianID());
    }
}

void CTvoHostDataBase::OnDelGouJian(CGouJianEx* obj) {
    CGridDataBase::OnDelGouJian(obj);
    if (obj->get_Gjlx() == kTvoLoadType) {
        const auto found = m_mapLoad.find(static_cast<CTvoLoad*>(obj)->m_dwPlateID);
        if (found != m_mapLoad.end() && found->second == obj) m_mapLoad.erase(found);
    } else if (obj->get_Gjlx() == GJLX_MIAN && m_bUndoing) {
        --m_nPlatesFormed;
    } else if (m_bBatch && obj->QueryBasicType() == kBasicLine) {
        const auto* line = static_cast<CGjNetLine*>(obj);
        m_aTouched.insert({line->m_dwStartID, line->m_dwEndID});
    }
}

// --- plates -----------------------------------------------------------------------------------------------

CMianGouJian* CTvoHostDataBase::InstanceMianGouJian(int type) {
    if (type == 1 && !m_bOuterPlates) return nullptr;
    auto* plate = new CMianGouJian;  // the caller's, until AddMianGouJian
    plate->m_pDataBase = this;
    plate->set_m_dwGouJianID(GetNextID(QueryMainGouJianType()));
    plate->set_m_dwGouJianNO(plate->get_m_dwGouJianID() & 0xFFFFFF);
    plate->set_m_byteStatus(GJ_STATUS_NORMAL);
    if (m_bCombineMode) plate->m_dwTag = m_dwCombineTag;
    return plate;
}

// Numbers of plates are never higher than the sequence numbers given out so far.
void CTvoHostDataBase::AddMianGouJian(CMianGouJian* plate) {
    if (m_bBatch) plate->set_m_dwGouJianNO(plate->get_m_dwGouJianID() & 0xFFFFFF);
    CGridDataBase::AddMianGouJian(plate);
}

CGouJianEx* CTvoHostDataBase::QueryGouJianDependentOnMianGouJian(CMianGouJian* plate) {
    return FindLoad(plate->get_m_dwGouJianID());
}

void CTvoHostDataBase::DeleteGouJianDependentOnMianGouJian(CMianGouJian* plate) {
    if (CTvoLoad* load = FindLoad(plate->get_m_dwGouJianID())) DeleteGouJian(load);
}

void CTvoHostDataBase::CreateGouJianDependentOnMianGouJian(CMianGouJian*, CGouJianEx* dependent, CMianGouJian* replacement) {
    SetLoad(replacement, static_cast<CTvoLoad*>(dependent)->m_dValue);
}

// Plates that stand together share no centroid and area, so that a load has one heir at most.
void CTvoHostDataBase::FormPlates() {
    std::vector<std::pair<CMianGouJian*, double>> hung;  // the log keeps the plates
    CArray<CGouJianEx*> loads;
    GetGouJianArray(kTvoLoadType, &loads);
    for (const CGouJianEx* obj : loads) {
        const auto* load = static_cast<const CTvoLoad*>(obj);
        CGouJianEx* plate = FindGouJian(load->m_dwPlateID);
        if (plate && plate->get_Gjlx() == QueryMainGouJianType()) hung.emplace_back(static_cast<CMianGouJian*>(plate), load->m_dValue);
    }
    DoWeiBan();
    for (const auto& [old, value] : hung)
        if (CMianGouJian* heir = FindSamePlate(old)) SetLoad(heir, value);
}

CMianGouJian* CTvoHostDataBase::FindSamePlate(CMianGouJian* plate) {
    std::vector<CGouJianEx*> near;
    const CFPoint c = plate->GetCentroid();
    Index().OthersIn(CFRect(c.x - kSamePlace, c.y - kSamePlace, c.x + kSamePlace, c.y + kSamePlace), near);
    for (CGouJianEx* obj : near) {
        if (obj->get_Gjlx() != plate->get_Gjlx()) continue;
        auto* candidate = static_cast<CMianGouJian*>(obj);
        if (IsSamePlate(candidate, plate, kSamePlace, kSameArea)) return candidate;
    }
    return nullptr;
}

// --- lines and nodes --------------------------------------------------------------------------------------

int CTvoHostDataBase::CanMergeNetLineTogetherWithGouJian(CGjNetLine*, CArray<CGouJianEx*>& riders1, CGjNetLine*,
                                                         CArray<CGouJianEx*>& riders2, int, CGjNetNode*) {
    return m_bMerge && KindOfRiders(riders1, riders2) >= 0;
}

int CTvoHostDataBase::IsIndependentNetNode(CGjNetNode* node) {
    CArray<CGouJianEx*> lines;
    return GetConnectedNetLine(node, lines) == 0;
}

// --- loads ------------------------------------------------------------------------------------------------

CTvoLoad* CTvoHostDataBase::FindLoad(std::uint32_t plateId) const {
    const auto found = m_mapLoad.find(plateId);
    return found == m_mapLoad.end() ? nullptr : found->second;
}

// The plate may be one that is about to be added, so that the load can't look it up.
void CTvoHostDataBase::SetLoad(CMianGouJian* plate, double value) {
    if (CTvoLoad* standing = FindLoad(plate->get_m_dwGouJianID())) DeleteGouJian(standing);
    auto* load = new CTvoLoad;
    load->m_pDataBase = this;
    load->set_m_dwGouJianID(GetNextID(kTvoLoadType));
    load->set_m_dwGouJianNO(load->get_m_dwGouJianID() & 0xFFFFFF);
    load->m_dwPlateID = plate->get_m_dwGouJianID();
    load->m_dValue = value;
    plate->GetMidPoint(load->m_fX, load->m_fY);
    load->m_bParamCalculated = 1;
    AddGouJian(load);  // owns it from here on
}

// --- edits ------------------------------------------------------------------------------------------------

std::vector<std::uint32_t> CTvoHostDataBase::KeptNodes() {
    std::vector<std::uint32_t> standing;
    std::copy_if(m_aKept.begin(), m_aKept.end(), std::back_inserter(standing), [&](std::uint32_t id) { return FindGouJian(id); });
    return standing;
}

void CTvoHostDataBase::BeginBatch() {
    PrepareDPC();
    m_aTouched.clear();
    m_bBatch = true;
}

// Nodes by identity: a touched one may be out of the store, and even freed, if the batch took steps back.
void CTvoHostDataBase::EndBatch() {
    CompleteDPC();
    m_bBatch = false;
    for (const std::uint32_t id : m_aTouched) {
        CGouJianEx* node = m_aKept.contains(id) ? nullptr : FindGouJian(id);
        if (node && node->QueryBasicType() == kBasicNode) DeleteNetNode(static_cast<CGjNetNode*>(node));
    }
    m_aTouched.clear();
}
