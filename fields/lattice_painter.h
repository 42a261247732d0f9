// The points of the background grid on a surface.
#pragma once
#include <cstdint>
#include <vector>

#include "geometry/projection.h"
#include "platform/win_types.h"

class CSurface;
struct GridPositions;

/// Gives every pixel of one colour that a point of a lattice falls on another colour. The result is that of
/// projecting all x by y by z points one by one; the work goes with the pixels that are seen. In a lattice of
/// three dimensions any number of points may lie behind each other and leave the pixels between free;
/// painting ends when it has taken kWork, which no lattice of two dimensions and none of so many points comes
/// near.
class LatticePainter {
public:
    static constexpr std::int64_t kWork = 100'000'000;  // boxes of positions; and 64 for each pixel
    /// `clip` lies within the surface, in units, of which each takes a point's colour as a whole. Both colours are
    /// pixels of the surface.
    LatticePainter(const Projection& view, CSurface& surface, const CRect& clip, std::uint32_t replaced,
                   std::uint32_t color);

    void Paint(const GridPositions& x, const GridPositions& y, const GridPositions& z);

private:
    struct Run;     // neighbours on an axis
    template <int kDensity>
    struct Pixels;  // where points leave their mark: on the surface, of this density
    struct Rows;    // only which rows they meet

    void PaintWild(const GridPositions& x, const GridPositions& y, const GridPositions& z);
    void PaintFinite(const Run& x, const Run& y, const Run& z);
    void PaintUnturned(const Run& x, const Run& y, const Run& z);
    template <class Work>
    void WithPixels(Work work);  // work(Pixels of the surface's density)
    template <class Marks>
    void Visit(const Run& x, const Run& y, const Run& z, Marks& marks);

    Projection m_view;         // of the view painted
    CSurface& m_surface;       // borrowed
    CRect m_clip;              // the pixels that may change
    std::uint32_t m_replaced;  // the colour that gives way
    std::uint32_t m_color;     // to this one
    std::int64_t m_work = 0;   // boxes that may still be looked at
};
