#include "net/star.h"

#include <algorithm>

#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "net/star_map.h"

void CStar::CopyData(const CStar& other) {
    if (this == &other) return;
    m_pNode = other.m_pNode;
    m_mapLine = other.m_mapLine;
}

int CStar::AddMapElement(CGjNetNode* node, CGjNetLine* line) {
    return node == m_pNode && m_mapLine.Insert(line->get_m_dwGouJianID(), line);
}

int CStar::RemoveMapElement(CGjNetLine* line) { return m_mapLine.RemoveKey(line->get_m_dwGouJianID()); }

void CStar::RemoveAll() {
    m_pNode = nullptr;
    m_mapLine.RemoveAll();
}

void CBinaryStar::CopyData(const CBinaryStar& other) {
    m_nKey = other.m_nKey;
    m_aLine = other.m_aLine;
}

int CBinaryStar::AddMapElement(std::int64_t key, CGjNetLine* line) {
    if (key != m_nKey || std::find(m_aLine.begin(), m_aLine.end(), line) != m_aLine.end()) return 0;
    m_aLine.Add(line);
    return 1;
}

int CBinaryStar::RemoveMapElement(std::int64_t key, CGjNetLine* line) {
    const auto at = std::find(m_aLine.begin(), m_aLine.end(), line);
    if (key != m_nKey || at == m_aLine.end()) return 0;
    m_aLine.RemoveAt(static_cast<int>(at - m_aLine.begin()));
    return 1;
}

void CBinaryStar::RemoveAll() {
    m_nKey = 0;
    m_aLine.RemoveAll();
}

bool CStarMap::Lookup(CGjNetNode* node, CStar*& star) const {
    if (!node || !node->m_pStar) return false;
    star = node->m_pStar;
    return true;
}
