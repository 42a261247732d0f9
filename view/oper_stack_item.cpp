#include "view/oper_stack_item.h"

#include <algorithm>

COperStackItem& COperStackItem::operator=(const COperStackItem& other) {
    if (this == &other) return *this;
    m_pWork = other.m_pWork;
    m_nWorkState = other.m_nWorkState;
    m_nObjectHint = other.m_nObjectHint;
    m_nSelectKind = other.m_nSelectKind;
    m_nWorkMessage = other.m_nWorkMessage;
    m_nInputPoint = other.m_nInputPoint;
    std::copy_n(other.m_aInputPoint, std::clamp(other.m_nInputPoint, 0, kMostInputPoints), m_aInputPoint);
    m_byteFilter = other.m_byteFilter;
    m_aFilter.RemoveAll();
    for (const std::uint8_t type : other.m_aFilter) m_aFilter.Add(type);
    return *this;
}
