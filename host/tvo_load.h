// CTvoLoad: a load on a plate.
#pragma once
#include <cstdint>

#include "model/goujian.h"

/// Type byte of loads: the last that hosts may use, out of the way of the types that `combine` is given.
inline constexpr unsigned char kTvoLoadType = 254;

/// A load of so much for each unit of area on a plate. It hangs on the plate by identity alone: plates are replaced
/// whenever the net about them changes, and the data base then makes a load anew for the plate that comes in the
/// place of the old one. It shows as a small mark at the plate's centroid.
class CTvoLoad : public CGouJianEx {
public:
    CTvoLoad() = default;

    int IsPhysicalGouJian() override { return 1; }
    /// Takes its place from the plate, if that stands in m_pDataBase.
    void OnCalcParameters() override;
    CFPoint GetCentroid() override { return {m_fX, m_fY, 0}; }
    CFPoint GetSortPoint() override { return GetCentroid(); }
    /// An arrow downwards to the place and the value beside it.
    int DrawGraph(CDrawGraph* g) override;
    void GetDrawInfo(unsigned char status, char part, unsigned long& colour, int& lineType) override;
    /// Number, identity and the plate's identity as 32-bit words, then the value as a 64-bit float, little-endian.
    /// The reader gives 0 at the end of the file, for an identity of another type and a value that is not finite; the
    /// place follows from the plate, which has to be there by then.
    int WriteBinary(std::FILE* file) override;
    int ReadBinary(std::FILE* file) override;

    std::uint32_t m_dwPlateID = 0;  // identity of the plate
    double m_dValue = 0;            // in the user's unit of load
    float m_fX = 0, m_fY = 0;       // where the mark stands
};
