#include "fields/lattice_painter.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "fields/grid_positions.h"
#include "platform/canvas/surface.h"

namespace {

constexpr std::uint32_t kColorBits = 0xFFFFFF;

/// Inclusive bounds of pixels on one axis of the device.
struct Span {
    int low, high;

    void Add(int at) {
        low = std::min(low, at);
        high = std::max(high, at);
    }
    bool Clip(int first, int end) {  // false when nothing is left
        low = std::max(low, first);
        high = std::min(high, end - 1);
        return low <= high;
    }
    bool IsOne() const { return low == high; }
    std::int64_t Size() const { return std::int64_t{high} - low + 1; }
};

Span SpanOf(int a, int b) { return {std::min(a, b), std::max(a, b)}; }

/// One finite position, if there is any, then the wild ones.
std::vector<float> FirstFiniteAndWild(const GridPositions& axis) {
    std::vector<float> out = axis.WildKinds();
    if (!axis.ascending.empty()) out.insert(out.begin(), axis.ascending.front());
    return out;
}

}  // namespace

struct LatticePainter::Run {
    const float* first;
    const float* last;  // the last itself

    explicit Run(const std::vector<float>& ascending) : Run(&ascending.front(), &ascending.back()) {}
    explicit Run(const float& one) : Run(&one, &one) {}
    Run(const float* from, const float* to) : first(from), last(to) {}

    bool IsOne() const { return first == last; }
    std::int64_t Size() const { return last - first + 1; }
    /// The end at which a product with `factor` is least, and the one at which it is greatest.
    float Least(float factor) const { return factor < 0 ? *last : *first; }
    float Greatest(float factor) const { return factor < 0 ? *first : *last; }
    /// How far a product with `factor` goes; below 0 where there is nothing to halve.
    float Reach(float factor) const {
        const float length = std::min(*last - *first, std::numeric_limits<float>::max());
        return IsOne() ? -1.0f : length * std::fabs(factor);
    }
    float Middle() const { return first[(last - first) / 2]; }
    std::pair<Run, Run> Halves() const {
        const float* const middle = first + (last - first) / 2;
        return {Run(first, middle), Run(middle + 1, last)};
    }
};

// A pixel is settled once it has no longer the colour that gives way: whatever falls there changes nothing.
template <int kDensity>
struct LatticePainter::Pixels {
    LatticePainter& painter;

    void Mark(int column, int row) {
        for (int y = row * kDensity; y < (row + 1) * kDensity; ++y)
            for (int x = column * kDensity; x < (column + 1) * kDensity; ++x) {
                std::uint32_t& pixel = painter.m_surface.Row(y)[x];
                if ((pixel & kColorBits) == painter.m_replaced) pixel = painter.m_color;
            }
    }
    bool Settled(const Span& columns, const Span& rows) const {
        for (int y = rows.low * kDensity; y < (rows.high + 1) * kDensity; ++y) {
            const std::uint32_t* pixels = painter.m_surface.Row(y);
            for (int x = columns.low * kDensity; x < (columns.high + 1) * kDensity; ++x)
                if ((pixels[x] & kColorBits) == painter.m_replaced) return false;
        }
        return true;
    }
};

template <class Work>
void LatticePainter::WithPixels(Work work) {
    Pixels<1> plain{*this};
    Pixels<2> dense{*this};
    if (m_surface.Density() == 1) work(plain);
    else work(dense);
}

struct LatticePainter::Rows {
    int top;
    std::vector<char> met;  // by row from the top

    void Mark(int, int row) { met[static_cast<std::size_t>(row - top)] = 1; }
    bool Settled(const Span&, const Span& rows) const {
        const auto first = met.begin() + (rows.low - top);
        return std::all_of(first, first + (rows.high - rows.low + 1), [](char c) { return c != 0; });
    }
};

LatticePainter::LatticePainter(const Projection& view, CSurface& surface, const CRect& clip,
                               std::uint32_t replaced, std::uint32_t color)
    : m_view(view), m_surface(surface), m_clip(clip), m_replaced(replaced), m_color(color) {}

// The finite x and y go with all finite z, then with each kind of wild z.
void LatticePainter::Paint(const GridPositions& x, const GridPositions& y, const GridPositions& z) {
    if (m_clip.left >= m_clip.right || m_clip.top >= m_clip.bottom || m_color == m_replaced) return;
    m_work = kWork + std::int64_t{64} * m_clip.Width() * m_clip.Height();
    PaintWild(x, y, z);
    if (x.ascending.empty() || y.ascending.empty()) return;
    const Run allX(x.ascending), allY(y.ascending);
    if (!z.ascending.empty()) PaintFinite(allX, allY, Run(z.ascending));
    for (const float one : z.WildKinds()) PaintFinite(allX, allY, Run(one));
}

// With an x or y that is infinite or no number, both device coordinates are the same for all finite positions
// of the other axes: an infinity swallows what is added to it. One of them stands for all.
void LatticePainter::PaintWild(const GridPositions& x, const GridPositions& y, const GridPositions& z) {
    if (x.wild.empty() && y.wild.empty()) return;
    WithPixels([&](auto& pixels) {
        for (const float px : FirstFiniteAndWild(x))
            for (const float py : FirstFiniteAndWild(y))
                for (const float pz : FirstFiniteAndWild(z)) {
                    if (std::isfinite(px) && std::isfinite(py)) continue;
                    const CPoint p = m_view.Point(px, py, pz);
                    if (m_clip.PtInRect(p)) pixels.Mark(p.x, p.y);
                }
    });
}

void LatticePainter::PaintFinite(const Run& x, const Run& y, const Run& z) {
    if (m_view.alpha.sin == 0) return PaintUnturned(x, y, z);
    WithPixels([&](auto& pixels) { Visit(x, y, z, pixels); });
}

// Unturned about the vertical, columns come from x alone and rows from y and z: every row that is met is met
// in the same columns.
void LatticePainter::PaintUnturned(const Run& x, const Run& y, const Run& z) {
    const auto column = [&](const float* at) { return m_view.Column(m_view.U(*at, *y.first)); };
    const bool rising = column(x.first) <= column(x.last);
    const auto before = [&](const float& at) {
        const int c = column(&at);
        return rising ? c < m_clip.left : c >= m_clip.right;
    };
    const auto inside = [&](const float& at) {
        const int c = column(&at);
        return rising ? c < m_clip.right : c >= m_clip.left;
    };
    const float* const first = std::partition_point(x.first, x.last + 1, before);
    const float* const end = std::partition_point(first, x.last + 1, inside);
    if (first == end) return;
    std::vector<int> columns;
    for (const float* at = first; at != end; ++at)
        if (const int c = column(at); columns.empty() || columns.back() != c) columns.push_back(c);

    Rows rows{m_clip.top, std::vector<char>(static_cast<std::size_t>(m_clip.Height()))};
    Visit(Run(*first), y, z, rows);
    WithPixels([&](auto& pixels) {
        for (int row = m_clip.top; row < m_clip.bottom; ++row)
            if (rows.met[static_cast<std::size_t>(row - m_clip.top)])
                for (const int c : columns) pixels.Mark(c, row);
    });
}

// Column and row are in order along each axis, so that the corners of a box of positions bound all of its
// points. A box out of sight or over settled pixels is left, one within a pixel marks it, and any other is
// halved where that divides the picture most.
//
// Order breaks in one case: where the tilt's sine is 0 a depth that overflows makes no number, while the
// depths between leave z alone. Such rows are added to the bounds.
template <class Marks>
void LatticePainter::Visit(const Run& x, const Run& y, const Run& z, Marks& marks) {
    if (--m_work < 0) return;
    const Turn &a = m_view.alpha, &b = m_view.beta;
    Span columns = SpanOf(m_view.Column(m_view.U(x.Least(a.cos), y.Least(a.sin))),
                          m_view.Column(m_view.U(x.Greatest(a.cos), y.Greatest(a.sin))));
    const bool oneColumn = columns.IsOne();
    if (!columns.Clip(m_clip.left, m_clip.right)) return;

    float near = m_view.Depth(x.Least(-a.sin), y.Least(a.cos));
    float far = m_view.Depth(x.Greatest(-a.sin), y.Greatest(a.cos));
    if (b.sin < 0) std::swap(near, far);
    const float low = z.Least(b.cos), high = z.Greatest(b.cos);
    Span rows = SpanOf(m_view.Row(m_view.V(low, near)), m_view.Row(m_view.V(high, far)));
    if (b.sin == 0 && near != far && (std::isinf(near) || std::isinf(far)))
        for (const float pz : {low, high}) rows.Add(m_view.Row(m_view.V(pz, 0)));
    const bool oneRow = rows.IsOne();
    if (!rows.Clip(m_clip.top, m_clip.bottom)) return;

    if (oneColumn && oneRow) return marks.Mark(columns.low, rows.low);
    const std::int64_t pixels = columns.Size() * rows.Size();
    if (pixels <= x.Size() * y.Size() * z.Size()) {
        m_work -= pixels / 64;  // a look at a pixel is quick
        if (marks.Settled(columns, rows)) return;
        // A point from the middle settles its pixel before the halves are tried, which often leaves them nothing.
        const CPoint middle = m_view.Point(x.Middle(), y.Middle(), z.Middle());
        if (m_clip.PtInRect(middle)) marks.Mark(middle.x, middle.y);
    }

    const float acrossX = std::max(x.Reach(a.cos), x.Reach(a.sin * b.sin));
    const float acrossY = std::max(y.Reach(a.sin), y.Reach(a.cos * b.sin));
    const float acrossZ = z.Reach(b.cos);
    if (acrossX >= acrossY && acrossX >= acrossZ) {
        const auto [less, more] = x.Halves();
        Visit(less, y, z, marks);
        Visit(more, y, z, marks);
    } else if (acrossY >= acrossZ) {
        const auto [less, more] = y.Halves();
        Visit(x, less, z, marks);
        Visit(x, more, z, marks);
    } else {
        const auto [less, more] = z.Halves();
        Visit(x, y, less, marks);
        Visit(x, y, more, marks);
    }
}
