// The stars of a data base, as maps.
#pragma once
#include "net/star.h"

/// A chain of stars in order of making, with the look of a CMap. A star is found at its node, where it hangs
/// besides; a hash table over nodes or pairs would cost a cache miss at every step of every edit.
template <class Star>
class CStarChain {
public:
    int GetCount() const { return m_count; }
    int GetSize() const { return m_count; }
    bool IsEmpty() const { return m_count == 0; }
    POSITION GetStartPosition() const { return m_first; }
    /// The star at p; p moves on, to null behind the last. The star just handed out may be removed.
    Star* GetNext(POSITION& p) const {
        auto* star = static_cast<Star*>(p);
        p = star->m_pNext;
        return star;
    }

    void Link(Star* star) {
        star->m_pPrevious = m_last;
        star->m_pNext = nullptr;
        (m_last ? m_last->m_pNext : m_first) = star;
        m_last = star;
        ++m_count;
    }
    void Unlink(Star* star) {
        (star->m_pPrevious ? star->m_pPrevious->m_pNext : m_first) = star->m_pNext;
        (star->m_pNext ? star->m_pNext->m_pPrevious : m_last) = star->m_pPrevious;
        --m_count;
    }

private:
    Star* m_first = nullptr;
    Star* m_last = nullptr;
    int m_count = 0;
};

/// Star by node.
class CStarMap : public CStarChain<CStar> {
public:
    bool Lookup(CGjNetNode* node, CStar*& star) const;
    void GetNextAssoc(POSITION& p, CGjNetNode*& node, CStar*& star) const {
        star = GetNext(p);
        node = star->m_pNode;
    }
};

/// Star by the key of a pair. The data base finds a pair at its first node; this lookup walks the chain. Where
/// several pairs share a key it gives the first.
class CBinaryStarMap : public CStarChain<CBinaryStar> {
public:
    bool Lookup(std::int64_t key, CBinaryStar*& star) const {
        for (POSITION p = GetStartPosition(); p;) {
            CBinaryStar* next = GetNext(p);
            if (next->m_nKey != key) continue;
            star = next;
            return true;
        }
        return false;
    }
    void GetNextAssoc(POSITION& p, std::int64_t& key, CBinaryStar*& star) const {
        star = GetNext(p);
        key = star->m_nKey;
    }
};
