// CStar and CBinaryStar: the lines at a node, and the lines on a pair of nodes.
#pragma once
#include <cstdint>

#include "platform/containers.h"
#include "platform/pool.h"

class CGjNetLine;
class CGjNetNode;
class CGouJianEx;

template <class Star>
class CStarChain;

/// The star of a node: every line that starts or ends there. Borrows all of them. Derived data: never saved, and
/// changed only as lines enter and leave the store.
class CStar : public __POSITION {
public:
    CStar() = default;
    CStar(const CStar& other) { CopyData(other); }
    CStar& operator=(const CStar& other) {
        CopyData(other);
        return *this;
    }
    virtual ~CStar() = default;
    TVO_POOLED_STORAGE

    void CopyData(const CStar& other);  // node and lines, replacing what was there
    /// 0 for a node that isn't the centre, and for a line that is there already.
    int AddMapElement(CGjNetNode* node, CGjNetLine* line);
    int RemoveMapElement(CGjNetLine* line);  // 1 when it was there
    void RemoveAll();

    CGjNetNode* m_pNode = nullptr;                 // the centre
    CMap<std::uint32_t, CGouJianEx*> m_mapLine;    // by identity

private:
    template <class>
    friend class CStarChain;
    CStar* m_pPrevious = nullptr;  // in the data base's chain; a copy stands in none
    CStar* m_pNext = nullptr;
};

/// The lines that run from one node to another, in order of adding. Ordered: the pair (b, a) has a star of its
/// own, so a question about the lines between two nodes asks twice.
class CBinaryStar : public __POSITION {
public:
    CBinaryStar() = default;
    CBinaryStar(const CBinaryStar& other) { CopyData(other); }
    CBinaryStar& operator=(const CBinaryStar& other) {
        CopyData(other);
        return *this;
    }
    virtual ~CBinaryStar() = default;
    TVO_POOLED_STORAGE

    void CopyData(const CBinaryStar& other);  // key and lines; the nodes stay as they are
    // 0 for a key that isn't this one's; Add also for a line that is there, Remove for one that isn't.
    int AddMapElement(std::int64_t key, CGjNetLine* line);
    int RemoveMapElement(std::int64_t key, CGjNetLine* line);
    void RemoveAll();  // key and lines; the nodes stay as they are

    CGjNetNode* m_pNode1 = nullptr;  // borrowed
    CGjNetNode* m_pNode2 = nullptr;
    std::int64_t m_nKey = 0;         // of the pair; lives in memory only
    CArray<CGouJianEx*> m_aLine;

private:
    template <class>
    friend class CStarChain;
    friend class CGridDataBase;
    CBinaryStar* m_pPrevious = nullptr;    // in the data base's chain; a copy stands in none
    CBinaryStar* m_pNext = nullptr;
    CBinaryStar* m_pNextOfNode = nullptr;  // another pair with the same first node
};
