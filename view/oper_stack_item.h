// COperStackItem: the frozen state of a suspended command.
#pragma once
#include <cstdint>

#include "geometry/fpoint.h"
#include "platform/containers.h"

class CDtWorkEx;

/// How many points a command can be given.
inline constexpr int kMostInputPoints = 300;

/// Copied whole at every stack operation, of the points only the valid ones. Owns nothing but its byte array: the
/// command is the view's.
class COperStackItem {
public:
    COperStackItem() = default;
    COperStackItem(const COperStackItem& other) { *this = other; }
    COperStackItem& operator=(const COperStackItem& other);

    CDtWorkEx* m_pWork = nullptr;
    std::int32_t m_nWorkState = 0;
    std::uint32_t m_nObjectHint = 0;
    std::int32_t m_nSelectKind = 0;
    std::uint32_t m_nWorkMessage = 0;
    std::int32_t m_nInputPoint = 0;
    CFPoint m_aInputPoint[kMostInputPoints];
    std::uint8_t m_byteFilter = 0;
    CByteArray m_aFilter;
};
