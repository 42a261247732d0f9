// One record of the undo log.
#pragma once
#include <cstdint>

#include "platform/pool.h"

class CGouJianEx;

/// What a record did to the store. Undo and redo know these two and no other.
enum CZLX { CZLX_ADD = 0, CZLX_DELETE = 1 };

/// An add or a delete that the log remembers. A component that stands in the model belongs to the container;
/// one that has left it, to its record:
///
///                  done               taken back
///   CZLX_ADD       container owns     this record owns
///   CZLX_DELETE    this record owns   container owns
class CUndoObjectEx {
public:
    CUndoObjectEx(std::uint32_t nStepId, CZLX eType, CGouJianEx* pGouJian)
        : m_nStepId(nStepId), m_eType(eType), m_pGouJian(pGouJian) {}
    ~CUndoObjectEx();  // deletes the component if OwnsGouJian()
    CUndoObjectEx(const CUndoObjectEx&) = delete;
    CUndoObjectEx& operator=(const CUndoObjectEx&) = delete;
    TVO_POOLED_STORAGE

    bool OwnsGouJian() const { return (m_eType == CZLX_DELETE) == (m_bUndone == 0); }

    std::uint32_t m_nStepId;      // step that this record belongs to
    CZLX m_eType;
    CGouJianEx* m_pGouJian;       // see the table above
    std::uint32_t m_bUndone = 0;  // 1 while the record stands undone
};
