#include "host/host_data_base.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

#include "host/tvo_load.h"
#include "host/tvo_rider.h"
#include "model/gj_text.h"
#include "model/grid_index_service_object.h"
#include "plates/mian_goujian.h"

namespace {

constexpr unsigned char kMutedStatus = 3;
constexpr float kSamePlace = 2.0f, kSameArea = 0.01f;  // as CompleteDPC takes a plate for the same

/// What kinds of riders there are, each once.
std::vector<CTvoRider::Kind> KindsOf(const CArray<CGouJianEx*>& riders) {
    std::vector<CTvoRider::Kind> kinds;
    for (const CGouJianEx* rider : riders) kinds.push_back(static_cast<const CTvoRider*>(rider)->KindOf());
    std::sort(kinds.begin(), kinds.end(), [](const auto& a, const auto& b) { return a < b; });
    kinds.erase(std::unique(kinds.begin(), kinds.end()), kinds.end());
    return kinds;
}

// Plates made by an older combine may have the same type byte.
bool IsRider(CGouJianEx* obj) { return obj->get_Gjlx() == kTvoRiderType && obj->QueryBasicType() != kBasicPlate; }

}  // namespace

void CTvoHostDataBase::OnDestroyData() {
    m_mapLoad.clear();
    m_mapRiders.clear();
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
    } else if (IsRider(obj)) {
        auto* rider = static_cast<CTvoRider*>(obj);
        m_mapRiders[rider->m_dwLineID].push_back(rider);
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
    } else if (IsRider(obj)) {
        const auto found = m_mapRiders.find(static_cast<CTvoRider*>(obj)->m_dwLineID);
        if (found == m_mapRiders.end()) return;
        std::erase(found->second, obj);
        if (found->second.empty()) m_mapRiders.erase(found);
    } else if (obj->get_Gjlx() == GJLX_MIAN && m_bUndoing) {
        --m_nPlatesFormed;
    } else if (m_bBatch && obj->QueryBasicType() == kBasicLine) {
        const auto* line = static_cast<CGjNetLine*>(obj);
        m_aTouched.insert({line->m_dwStartID, line->m_dwEndID});
    }
}

int CTvoHostDataBase::DeleteGouJian(CGouJianEx* obj) {
    if (!m_mapRiders.empty() && obj->QueryBasicType() == kBasicLine) {
        CArray<CGouJianEx*> riders;
        QueryGouJianOnNetLine(static_cast<CGjNetLine*>(obj), riders);
        for (CGouJianEx* rider : riders) CGridDataBase::DeleteGouJian(rider);
    }
    return CGridDataBase::DeleteGouJian(obj);
}

// --- showing ----------------------------------------------------------------------------------------------

int CTvoHostDataBase::IsVisible(CGouJianEx* obj) {
    return (!m_bOneStorey || obj->m_nCeng == GetCurCeng()) && CGridDataBase::IsVisible(obj);
}

int CTvoHostDataBase::CanBeSelected(CTvoFrameBase* frame, int command, CGouJianEx* obj) {
    return IsVisible(obj) && CGridDataBase::CanBeSelected(frame, command, obj);
}

// The view draws muted components first.
void CTvoHostDataBase::Draw(CDC* dc, CFCoor* coor, unsigned char excludeType, unsigned char status) {
    if (status == kMutedStatus && m_onDrawBelow) m_onDrawBelow(*dc, *coor);
    CGridDataBase::Draw(dc, coor, excludeType, status);
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
    return m_bMerge && KindsOf(riders1) == KindsOf(riders2);
}

int CTvoHostDataBase::IsIndependentNetNode(CGjNetNode* node) {
    CArray<CGouJianEx*> lines;
    return GetConnectedNetLine(node, lines) == 0;
}

// --- riders -----------------------------------------------------------------------------------------------

int CTvoHostDataBase::QueryGouJianOnNetLine(CGjNetLine* line, CArray<CGouJianEx*>& riders) {
    if (const auto found = m_mapRiders.find(line->get_m_dwGouJianID()); found != m_mapRiders.end()) {
        std::vector<CTvoRider*> here = found->second;  // undo may have changed their order
        std::sort(here.begin(), here.end(), [](const auto* a, const auto* b) { return a->m_dwGouJianID < b->m_dwGouJianID; });
        for (CTvoRider* rider : here) riders.Add(rider);
    }
    return !riders.IsEmpty();
}

void CTvoHostDataBase::CreateGouJianAfterBreak(CGjNetLine*, CGjNetLine* part, CArray<CGouJianEx*>& riders) {
    for (const CGouJianEx* rider : riders)
        AddRider(part, static_cast<const CTvoRider*>(rider)->m_fWidth, rider->m_dwTag, rider->get_m_byteStatus());
}

void CTvoHostDataBase::CreateGouJianAfterMerge(CGjNetLine* merged, CGjNetLine*, CGjNetLine*, CArray<CGouJianEx*>& riders1,
                                               CArray<CGouJianEx*>& riders2, int) {
    CreateGouJianAfterBreak(nullptr, merged, riders1);
    CreateGouJianAfterBreak(nullptr, merged, riders2);
}

CTvoRider* CTvoHostDataBase::AddRider(CGjNetLine* line, float width, std::uint32_t tag, unsigned char status) {
    if (POSITION first = m_mapFamily[kTvoRiderType].GetStartPosition()) {
        unsigned long id = 0;
        CGouJianEx* member = nullptr;
        m_mapFamily[kTvoRiderType].GetNextAssoc(first, id, member);
        if (!IsRider(member)) return nullptr;
    }
    CArray<CGouJianEx*> standing;
    QueryGouJianOnNetLine(line, standing);
    for (CGouJianEx* obj : standing) {
        auto* const rider = static_cast<CTvoRider*>(obj);
        if (rider->KindOf() != CTvoRider::Kind{width, tag}) continue;
        if (!rider->IsVisable()) rider->set_m_byteStatus(status);
        return rider;
    }
    auto* rider = new CTvoRider;
    rider->m_pDataBase = this;
    rider->set_m_dwGouJianID(GetNextID(kTvoRiderType));
    rider->set_m_dwGouJianNO(rider->get_m_dwGouJianID() & 0xFFFFFF);
    rider->m_dwTag = tag;
    rider->set_m_byteStatus(status);
    rider->m_pNetLine = line;
    rider->m_dwLineID = line->get_m_dwGouJianID();
    rider->m_fWidth = width;
    AddGouJian(rider);  // owns it from here on
    rider->m_nCeng = line->m_nCeng;
    return rider;
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

// --- texts ------------------------------------------------------------------------------------------------

int CTvoHostDataBase::SetTextHeights(float height) {
    CArray<CGouJianEx*> texts;
    GetGouJianArray(GJLX_TEXT, &texts);
    int changed = 0;
    for (CGouJianEx* obj : texts) {
        const auto& old = static_cast<CGjText&>(*obj);
        if (old.m_fHeight == height) continue;
        auto text = std::make_unique<CGjText>(old);
        text->m_pDrawGraph = nullptr;  // the old one's
        text->m_bGraphBuilt = 0;
        text->m_fHeight = height;
        const int storey = old.m_nCeng;
        DeleteGouJian(obj);
        CGjText* const added = text.release();  // the container owns it from here on
        AddGouJian(added);
        added->m_nCeng = storey;
        ++changed;
    }
    return changed;
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
