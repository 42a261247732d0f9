// CGjLineGouJian: the base of components that ride on a net line.
#pragma once
#include <cstdint>

#include "model/goujian.h"

class CFRegion;
class CGjNetLine;

/// A component that rides on one net line, as a beam or a wall does on an axis: a base for hosts, without a
/// type byte of its own. It borrows the line. Whoever breaks, merges or deletes lines asks the data base for
/// their riders first and takes these out of the store; the log keeps line and rider alive together.
///
/// A rider without a line lies at the origin and covers nothing.
class CGjLineGouJian : public CGouJianEx {
public:
    CGjLineGouJian() = default;
    CGjLineGouJian(const CGjLineGouJian&) = default;  // the copy rides on the same line
    CGjLineGouJian& operator=(const CGjLineGouJian&) = default;

    int IsPhysicalGouJian() override { return 1; }
    void OnCalcParameters() override {}
    CFPoint GetCentroid() override;  // the line's
    int QueryBasicType() override { return kBasicOther; }
    CFPoint GetSortPoint() override;  // the line's

    virtual CGjNetLine* GetNetLine() { return m_pNetLine; }

    /// The outline of the strip that the component covers on the plan ("DiTu"), half of the width on either
    /// side of the line: a rectangle along a straight line, two arcs about the line's centre and two radial
    /// edges along an arc.
    void GetDiTuRegion(float width, CFRegion& out);

    CGjNetLine* m_pNetLine = nullptr;  // borrowed
    std::int64_t m_nHostField = 0;     // for hosts; not used by the library
};
