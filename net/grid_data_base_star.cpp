// The stars: which lines meet at a node, which run between two.
#include <algorithm>

#include "net/grid_data_base.h"

// --- ownership: stars are made and deleted by these four alone ----------------------------------------------

CStar* CGridDataBase::StarOf(CGjNetNode* node) {
    if (!node->m_pStar) {
        node->m_pStar = new CStar;  // owned by m_mapStar
        node->m_pStar->m_pNode = node;
        m_mapStar.Link(node->m_pStar);
    }
    return node->m_pStar;
}

void CGridDataBase::DropStar(CGjNetNode* node) {
    if (!node->m_pStar) return;
    m_mapStar.Unlink(node->m_pStar);
    delete node->m_pStar;
    node->m_pStar = nullptr;
}

// A node begins few pairs, so they hang at it in a chain. The key only names a pair: two pairs may share one.
CBinaryStar* CGridDataBase::FindBinaryStar(CGjNetNode* a, CGjNetNode* b) {
    CBinaryStar* star = a->m_pFirstPair;
    while (star && star->m_pNode2 != b) star = star->m_pNextOfNode;
    return star;
}

void CGridDataBase::DropBinaryStar(CBinaryStar* star) {
    CBinaryStar** link = &star->m_pNode1->m_pFirstPair;
    while (*link != star) link = &(*link)->m_pNextOfNode;
    *link = star->m_pNextOfNode;
    m_mapBinaryStar.Unlink(star);
    delete star;
}

// A deletion destroys the whole star of the pair: of two lines on one ordered pair the other is forgotten too.
// It stays in the store and in both nodes' stars, but is no longer seen by GetNetLineOnNetNode. Meant.
void CGridDataBase::__BinaryStarMaintain(CGjNetNode* a, CGjNetNode* b, CGjNetLine* line, int mode) {
    CBinaryStar* star = FindBinaryStar(a, b);
    if (mode == 1) {
        if (!star) {
            star = new CBinaryStar;  // owned by m_mapBinaryStar
            star->m_pNode1 = a;
            star->m_pNode2 = b;
            star->m_nKey = MakeBinaryStar(a, b);
            star->m_pNextOfNode = std::exchange(a->m_pFirstPair, star);
            m_mapBinaryStar.Link(star);
        }
        star->AddMapElement(star->m_nKey, line);
        return;
    }
    if (star) DropBinaryStar(star);
}

// --- maintenance --------------------------------------------------------------------------------------------

std::int64_t CGridDataBase::MakeBinaryStar(CGjNetNode* a, CGjNetNode* b) {
    const auto low32 = [](CGjNetNode* n) { return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(n) & 0xFFFFFFFF); };
    return static_cast<std::int64_t>(low32(a) << 32 | low32(b));
}

void CGridDataBase::NetNodeMaintain(CGjNetNode* node, int mode) {
    ++m_nNodeEdits;
    if (mode != 1) {
        DropStar(node);
        return;
    }
    StarOf(node);
    if (node->QueryBasicType() == kBasicNode) MaintainNetNodeTypes(node);
}

void CGridDataBase::NetLineMaintain(CGjNetLine* line, int mode) {
    __StarMaintain(line->m_pStartNode, line, mode);
    __StarMaintain(line->m_pEndNode, line, mode);
    __BinaryStarMaintain(line->m_pStartNode, line->m_pEndNode, line, mode);
    if (mode != 1) {
        RemoveFromBanBian(line);
        return;
    }
    InsertIntoBanBian(line);
    if (line->QueryBasicType() == kBasicLine) MaintainNetLineTypes(line);
}

// A star that becomes empty stays until its node goes.
void CGridDataBase::__StarMaintain(CGjNetNode* node, CGjNetLine* line, int mode) {
    if (mode == 1)
        StarOf(node)->AddMapElement(node, line);
    else if (node->m_pStar)
        node->m_pStar->RemoveMapElement(line);
}

void CGridDataBase::InsertIntoBanBian(CGjNetLine* line) { m_mapBanBianInsert.Insert(line->get_m_dwGouJianID(), line); }
void CGridDataBase::RemoveFromBanBian(CGjNetLine* line) { m_mapBanBianRemove.Insert(line->get_m_dwGouJianID(), line); }

namespace {

void AddIfAbsent(CArray<unsigned char>& types, unsigned char type) {
    if (std::find(types.begin(), types.end(), type) == types.end()) types.Add(type);
}

}  // namespace

void CGridDataBase::MaintainNetNodeTypes(CGjNetNode* node) { AddIfAbsent(m_aNetNodeTypes, node->get_Gjlx()); }
void CGridDataBase::MaintainNetLineTypes(CGjNetLine* line) { AddIfAbsent(m_aNetLineTypes, line->get_Gjlx()); }

// --- questions ----------------------------------------------------------------------------------------------

int CGridDataBase::GetNetLineOnNetNode(CGjNetNode* a, CGjNetNode* b, CArray<CGouJianEx*>& lines) {
    lines.RemoveAll();
    if (const CBinaryStar* star = FindBinaryStar(a, b)) lines.Append(star->m_aLine);
    if (const CBinaryStar* star = FindBinaryStar(b, a)) lines.Append(star->m_aLine);
    return lines.GetSize();
}

int CGridDataBase::GetConnectedNetLine(CGjNetNode* node, CArray<CGouJianEx*>& lines) {
    if (!node->m_pStar) return 0;
    const int first = lines.GetSize();
    node->m_pStar->m_mapLine.ForEach([&](std::uint32_t, CGouJianEx* line) { lines.Add(line); });
    std::sort(lines.begin() + first, lines.end(),
              [](const CGouJianEx* a, const CGouJianEx* b) { return a->get_m_dwGouJianID() < b->get_m_dwGouJianID(); });
    return lines.GetSize() - first;
}

bool CGridDataBase::HasStraightLine(CGjNetNode* a, CGjNetNode* b) {
    for (const CBinaryStar* star : {FindBinaryStar(a, b), FindBinaryStar(b, a)})
        if (star)
            for (CGouJianEx* line : star->m_aLine)
                if (!static_cast<CGjNetLine*>(line)->m_nArc) return true;
    return false;
}
