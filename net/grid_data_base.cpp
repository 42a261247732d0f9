// Life of the net data base, nodes and lines; _star.cpp keeps the stars, _intersect.cpp asks how lines meet,
// _overlap.cpp rewrites overlaps, _break.cpp breaks, _merge.cpp deletes and merges.
#include "net/grid_data_base.h"

#include "geometry/angles.h"
#include "geometry/net_arc.h"
#include "geometry/tolerance.h"
#include "model/grid_index_service_object.h"
#include "model/profile.h"

CGridDataBase* g_pGridDataBase = nullptr;

// --- life -------------------------------------------------------------------------------------------------

CGridDataBase::CGridDataBase() {
    m_onFree = [this, base = std::move(m_onFree)](CGouJianEx* obj) {
        LetGoOfNet(obj);
        base(obj);
    };
    CGridDataBase::OnInitialize();
}

CGridDataBase::~CGridDataBase() {
    CGridDataBase::OnDestroyData();
    if (g_pGridDataBase == this) g_pGridDataBase = nullptr;
    m_onFree = nullptr;  // the maps it looks into go before the components do
}

void CGridDataBase::OnInitialize() {
    m_strDataName = "CGridDataBase";
    g_pGridDataBase = this;
    m_bAutoBreak = m_bAutoMerge = 1;
    m_fAngleTolerance = 0.0017453294f;
    m_cBackgrnd.m_strKuaX = "6*40";
    m_cBackgrnd.m_strKuaY = "6*25";
    m_cBackgrnd.m_strKuaZ = "0*0";
    std::fill(g_cGjStatus + 1, g_cGjStatus + kTypeCount, 0);
    m_bWeiBanWholeNet = 1;
    m_bCombineMode = m_bCombineFilter = 0;
    m_byteCombineType = GJLX_MIAN;
}

void CGridDataBase::OnDestroyData() {
    for (POSITION p = m_mapStar.GetStartPosition(); p;) DropStar(m_mapStar.GetNext(p)->m_pNode);
    for (POSITION p = m_mapBinaryStar.GetStartPosition(); p;) DropBinaryStar(m_mapBinaryStar.GetNext(p));
    DropPlateWays();
    m_mapBanBianInsert.RemoveAll();
    m_mapBanBianRemove.RemoveAll();
    m_aPendingBreak.clear();
    CTvoDataBase::OnDestroyData();
}

// A component is about to be freed: nothing of the net may name it any longer.
void CGridDataBase::LetGoOfNet(CGouJianEx* obj) {
    const auto drop = [&](CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& map) {
        CGouJianEx** held = map.Find(obj->get_m_dwGouJianID());
        if (held && *held == obj) map.RemoveKey(obj->get_m_dwGouJianID());
    };
    switch (obj->QueryBasicType()) {
        case kBasicLine:
            drop(m_mapBanBianInsert);
            drop(m_mapBanBianRemove);
            LetGoOfBorder(static_cast<CGjNetLine*>(obj));
            break;
        case kBasicNode: {  // a host may have deleted it with lines standing
            auto* node = static_cast<CGjNetNode*>(obj);
            DropStar(node);
            while (node->m_pFirstPair) DropBinaryStar(node->m_pFirstPair);
            break;
        }
        case kBasicPlate: LetGoOfPlate(obj); break;
        default: break;
    }
}

void CGridDataBase::OnAddGouJian(CGouJianEx* obj) {
    switch (obj->QueryBasicType()) {
        case kBasicNode: NetNodeMaintain(static_cast<CGjNetNode*>(obj), 1); break;
        case kBasicLine: NetLineMaintain(static_cast<CGjNetLine*>(obj), 1); break;
        case kBasicPlate: MaintainPlate(obj, 1); break;
        default: break;
    }
    CTvoDataBase::OnAddGouJian(obj);
}

void CGridDataBase::OnDelGouJian(CGouJianEx* obj) {
    switch (obj->QueryBasicType()) {
        case kBasicNode: NetNodeMaintain(static_cast<CGjNetNode*>(obj), 2); break;
        case kBasicLine: NetLineMaintain(static_cast<CGjNetLine*>(obj), 2); break;
        case kBasicPlate: MaintainPlate(obj, 2); break;
        default: break;
    }
    CTvoDataBase::OnDelGouJian(obj);
}

// --- nodes ------------------------------------------------------------------------------------------------

CGjNetNode* CGridDataBase::IsDuplicateNetNode(float x, float y) {
    const float t = static_cast<float>(g_cTvoProfile.m_nNetTolerance);
    CGjNetNode* found = nullptr;
    ReadyIndex().ForEachNodeNear(x, y, t, [&](CGouJianEx* obj) {
        if (obj->m_nCeng != m_nCurCeng || obj->QueryBasicType() != kBasicNode) return;
        auto* node = static_cast<CGjNetNode*>(obj);
        if (found && found->m_dwGouJianID < node->m_dwGouJianID) return;
        if (get_dist(x, y, node->m_fX, node->m_fY) < t) found = node;
    });
    return found;
}

CGjNetNode* CGridDataBase::IsDuplicateNetNode(CGjNetNode* node) { return IsDuplicateNetNode(node->m_fX, node->m_fY); }

CGjNetNode* CGridDataBase::AddNetNode(float x, float y) {
    if (CGjNetNode* near = IsDuplicateNetNode(x, y)) return near;
    CGjNetNode* node = CreateNetNodeObj(x, y);
    __AddNetNodeDirect(node);
    return node;
}

CGjNetNode* CGridDataBase::CreateNetNodeObj(float x, float y) {
    auto* node = new CGjNetNode;  // the caller's, until AddGouJian
    node->m_pDataBase = this;
    node->m_fX = x;
    node->m_fY = y;
    node->set_m_dwGouJianID(GetNextID(GJLX_NET_NODE));
    node->set_m_byteStatus(GJ_STATUS_NORMAL);
    node->set_m_dwGouJianNO(node->get_m_dwGouJianID() & 0xFFFFFF);
    return node;
}

void CGridDataBase::DeleteNetNode(CGjNetNode* node) {
    if (IsIndependentNetNode(node)) __DeleteNetNodeDirect(node);
}

void CGridDataBase::DeleteIndependentNetNode() {
    const CArray<unsigned char> types = m_aNetNodeTypes;
    for (const unsigned char type : types) {
        CArray<CGouJianEx*> nodes;
        GetGouJianArray(type, &nodes);
        for (CGouJianEx* obj : nodes)
            if (obj->QueryBasicType() == kBasicNode && IsIndependentNetNode(static_cast<CGjNetNode*>(obj))) DeleteGouJian(obj);
    }
}

// --- lines ------------------------------------------------------------------------------------------------

CGjNetLine* CGridDataBase::CreateNetLineObj(CGjNetNode* a, CGjNetNode* b, int arc, float bulge, int normalize) {
    auto* line = new CGjNetLine;  // the caller's, until AddGouJian
    line->m_pDataBase = this;
    // Wider than the 0.001 of NormalizeNetNodeBeforeCreation: a nearly vertical line points upwards here.
    if (!arc && std::fabs(static_cast<double>(a->m_fX - b->m_fX)) < 0.1 && normalize && a->m_fY > b->m_fY) std::swap(a, b);
    line->m_nArc = arc;
    line->m_fBulge = bulge;
    line->set_m_dwGouJianID(GetNextID(GJLX_NET_LINE));
    line->set_m_byteStatus(GJ_STATUS_NORMAL);
    line->set_m_dwGouJianNO(line->get_m_dwGouJianID() & 0xFFFFFF);
    line->m_pStartNode = a;
    line->m_dwStartNO = a->get_m_dwGouJianNO();
    line->m_dwStartID = a->get_m_dwGouJianID();
    line->m_pEndNode = b;
    line->m_dwEndNO = b->get_m_dwGouJianNO();
    line->m_dwEndID = b->get_m_dwGouJianID();
    line->OnCalcParameters();
    return line;
}

int CGridDataBase::NormalizeNetNodeBeforeCreation(CGjNetNode*& a, CGjNetNode*& b, int arc) {
    if (arc) return 0;  // reversing an arc would change its side
    const bool vertical = std::fabs(a->m_fX - b->m_fX) < 0.001f;
    if (vertical ? a->m_fY > b->m_fY : a->m_fX > b->m_fX) {
        std::swap(a, b);
        return 1;
    }
    return 0;
}

// A line that stands between the nodes and is equal: straight either way round, or an arc of the same sense
// and nearly the same bulge.
CGjNetLine* CGridDataBase::FindEqualLine(CGjNetNode* a, CGjNetNode* b, int arc, float bulge) {
    CArray<CGouJianEx*> between;
    GetNetLineOnNetNode(a, b, between);
    for (CGouJianEx* obj : between) {
        auto* line = static_cast<CGjNetLine*>(obj);
        if (!line->m_nArc && !arc) return line;
        if (line->m_nArc && arc && std::fabs(line->m_fBulge - bulge) < 0.1f && line->m_pStartNode == a && line->m_pEndNode == b)
            return line;
    }
    return nullptr;
}

CGjNetLine* CGridDataBase::AddNetLine(CFPoint p1, CFPoint p2, int arc, float bulge) {
    ReadyIndex().FetchNodesNear(p2.x, p2.y);
    // Both nodes stay, also when the line is refused.
    CGjNetNode* a = AddNetNode(p1.x, p1.y);
    CGjNetNode* b = AddNetNode(p2.x, p2.y);
    m_bLineSwapped = m_bLineDegenerate = m_bLineExisted = 0;
    // The second test measures the points as given, not the nodes, and refuses exactly the tolerance too.
    if (a == b || static_cast<float>(g_cTvoProfile.m_nNetTolerance) >= get_dist(p1.x, p1.y, p2.x, p2.y)) {
        m_bLineDegenerate = 1;
        return nullptr;
    }
    if (!arc && NormalizeNetNodeBeforeCreation(a, b, 0)) m_bLineSwapped = 1;
    if (CGjNetLine* standing = FindEqualLine(a, b, arc, bulge)) {
        m_bLineExisted = 1;
        return standing;
    }
    CGjNetLine* line = CreateNetLineObj(a, b, arc, bulge, 1);
    __AddNetLineDirect(line);
    if (m_bAutoBreak && CanBreakNetLine(line) && line->QueryBasicType() == kBasicLine) {
        BreakNetLine(line);
        return nullptr;  // also when nothing was broken: the line may be gone, and callers must not count on it
    }
    return line;
}

CGjNetLine* CGridDataBase::GetNetLine(CFPoint p1, CFPoint p2, int arc, float bulge) {
    m_bAutoBreak = 0;
    CGjNetLine* line = AddNetLine(p1, p2, arc, bulge);
    m_bAutoBreak = 1;  // not what it was before: meant
    return line;
}

CGjNetLine* CGridDataBase::AddArc(CFPoint centre, float r, float start, float end) {
    const net_arc::Ends arc = net_arc::FromDirections(centre, r, start, end);
    return AddNetLine(arc.start, arc.end, 1, arc.bulge);
}

CGjNetLine* CGridDataBase::AddArc(CFPoint a, CFPoint b, CFPoint c) {
    // The net's arcs run anticlockwise. The shape runs from its first point to its second with a sweep that is
    // positive anticlockwise; given as (b, a) it says at once which end is the start.
    const CFShape shape(b, a, c);
    const float s = shape.GetB();
    if (s == 0 || shape.IsPoint()) return nullptr;
    const double sign = s > 0 ? -1 : 1;
    const auto bulge = static_cast<float>(sign * static_cast<double>(s) / 2 * 180.0 / 3.1415927410125732);
    return s > 0 ? AddNetLine(b, a, 1, bulge) : AddNetLine(a, b, 1, bulge);
}

CGjNetLine* CGridDataBase::GetArc(CFPoint centre, float r, float start, float end) {
    m_bAutoBreak = 0;
    CGjNetLine* line = AddArc(centre, r, start, end);
    m_bAutoBreak = 1;
    return line;
}

CGjNetLine* CGridDataBase::GetArc(CFPoint a, CFPoint b, CFPoint c) {
    m_bAutoBreak = 0;
    CGjNetLine* line = AddArc(a, b, c);
    m_bAutoBreak = 1;
    return line;
}

void CGridDataBase::DeleteNetLineObj(CGjNetLine*& line) {
    DeleteNetLineObject(line);
    line = nullptr;
}
