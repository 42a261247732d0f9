// The dotted grid behind the model.
#pragma once
#include <memory>

#include "geometry/frect.h"
#include "platform/containers.h"
#include "platform/string.h"

class CDC;
class CFCoor;
struct GridPositions;

/// A lattice of points given by spacings along each axis, with value semantics. A list of n spacings makes
/// n + 1 positions: the origin, then running sums. Texts and origin may be assigned at any time.
class CBackgrnd {
public:
    /// An axis has at most this many positions; what its text holds beyond them is left out.
    static constexpr int kMaxPositions = 100000;

    /// Appends the spacings of a text such as "6.0*10;3": spacing in metres, "*", count. A spacing that is
    /// not finite counts as none. 0 if a unit's star is its first or last character; what was appended before
    /// it stays. Else 1.
    int Get_Kua_Data(const char* text, CArray<float, float>& out) const;
    /// The spacings of an axis (0 x, 1 y, 2 z) appended to `out`, which is not emptied. Always 1.
    int GetJianJu(int axis, CArray<float, float>& out) const;
    /// The rectangle around the projected points, z left out unless m_nMode is 0.
    CFRect GetFrect(const CFCoor* coor) const;
    /// Paints the points, and with m_nMode 0 the three walls; mode 1 wipes them. Returns 1. Points behind
    /// something painted are left alone, and wiping touches grey pixels only. However many points there are,
    /// the work goes with the pixels that are seen.
    int Draw(CDC* dc, CFCoor* coor, int mode) const;

    int m_nMode = 0;                        // 0: points and walls; 1: points in the plane
    float m_fX0 = 0, m_fY0 = 0, m_fZ0 = 0;  // origin, mm
    CString m_strKuaX = "6.0*10", m_strKuaY = "6.0*10", m_strKuaZ = "0*0";  // spacings, m

private:
    const GridPositions& Positions(int axis) const;

    // By axis, null until asked for; made anew when text or origin is another. Copies share them.
    mutable std::shared_ptr<const GridPositions> m_pPositions[3];
};
