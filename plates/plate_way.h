// CPlateWay: the plates that a net line borders.
#pragma once
#include "platform/containers.h"
#include "platform/pool.h"

class CMianGouJian;

/// The plate way of a line: every plate that has the line on its border, once. Borrows all of them.
class CPlateWay {
public:
    CPlateWay() = default;
    CPlateWay(const CPlateWay&) = default;
    CPlateWay& operator=(const CPlateWay&) = default;
    virtual ~CPlateWay() = default;
    TVO_POOLED_STORAGE

    void AddElement(CMianGouJian* plate);     // unless it is there
    void RemoveElement(CMianGouJian* plate);  // nothing when it isn't

    void* m_pOwner = nullptr;  // copied, and never set here
    CArray<CMianGouJian*> m_arrPlate;
};
