// CTvoRider: a strip along a net line, such as a wall or a beam.
#pragma once
#include <compare>
#include <cstdint>

#include "net/gj_line_goujian.h"

/// Type byte of riders: the last that hosts may use but that of loads, out of the way of the types that
/// `combine` is given.
inline constexpr unsigned char kTvoRiderType = 253;

/// A strip of some width on a net line. When the line is broken each part gets a strip of its own, when two
/// lines merge strips of one kind become one, and when the line goes the strip goes with it: CTvoHostDataBase
/// sees to that. It shows as its outline.
class CTvoRider : public CGjLineGouJian {
public:
    /// What riders have in common that may become one when their lines do. Whether they are hidden plays no
    /// part: the net must not come out otherwise by what is shown of it.
    struct Kind {
        float width;
        std::uint32_t tag;
        auto operator<=>(const Kind&) const = default;
    };

    CTvoRider() = default;

    Kind KindOf() const { return {m_fWidth, m_dwTag}; }

    /// Looks the line up by its identity, once, if that stands in m_pDataBase.
    void OnCalcParameters() override;
    int DrawGraph(CDrawGraph* g) override;
    void GetDrawInfo(unsigned char status, char part, unsigned long& colour, int& lineType) override;
    /// Number, identity and the line's identity as 32-bit words, then the width as a 32-bit float,
    /// little-endian. The reader gives 0 at the end of the file, for an identity of another type and a width
    /// that is none.
    int WriteBinary(std::FILE* file) override;
    int ReadBinary(std::FILE* file) override;

    std::uint32_t m_dwLineID = 0;  // identity of the line
    float m_fWidth = 0;            // model units
};
