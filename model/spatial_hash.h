// Where components lie: boxes in layered hash grids. Internal to the library.
#pragma once
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

class CGouJianEx;

/// Answers "which boxes may touch this place" in time proportional to the answer, whatever the size of the
/// model, of its parts, or of the area between them.
///
/// A box lives in one cell only: on the layer whose cells (256 * 4^n units wide) are the smallest not smaller
/// than the box, in the cell of its lower left corner. It may then reach into the next cell up or right, so a
/// search looks one cell further down and left. Cells are chains through the records, found by hash. Nodes
/// have layers of their own, so that the many searches for a node never see a line.
class CSpatialHash {
public:
    enum Kind : std::uint8_t { kNode = 0, kOther = 1, kKinds = 2 };
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    struct Box {
        float x0, y0, x1, y1;
        bool Meets(const Box& b) const { return x0 <= b.x1 && b.x0 <= x1 && y0 <= b.y1 && b.y0 <= y1; }
        bool IsFinite() const { return std::isfinite(x0) && std::isfinite(y0) && std::isfinite(x1) && std::isfinite(y1); }
    };
    /// Columns and rows, bounds included.
    struct CellRange {
        std::int32_t c0, r0, c1, r1;
        bool Meets(const CellRange& o) const { return c0 <= o.c1 && o.c0 <= c1 && r0 <= o.r1 && o.r0 <= r1; }
    };
    struct Record {
        CGouJianEx* component;  // null: the slot is free
        Box box;
        CellRange cells;        // of the index grid at the time of entry; carried for the owner of this hash
        std::uint32_t next, prev;  // in the chain of the cell, or of the layer of boxes too wide for any
        std::uint8_t layer;
        Kind kind;
    };

    /// Enters a component; its slot is the handle for Remove. A box that isn't finite is offered at every search.
    std::uint32_t Insert(CGouJianEx* component, const Box& box, const CellRange& cells, Kind kind);
    void Remove(std::uint32_t slot);
    void Clear();
    std::size_t GetCount() const { return m_count; }
    const Record& At(std::uint32_t slot) const { return m_records[slot]; }

    /// Calls f(record) for every record of the kind whose box meets `place`, and for those not finite.
    template <class F>
    void ForEachIn(const Box& place, Kind kind, F f) const;
    /// The same for boxes within `margin` of the straight section from a to b, and a few more beside it.
    template <class F>
    void ForEachAlong(float ax, float ay, float bx, float by, float margin, Kind kind, F f) const;
    template <class F>
    void ForEach(F f) const {
        for (const Record& r : m_records)
            if (r.component) f(r);
    }

private:
    static constexpr int kLayers = 16, kWide = kLayers, kUnbounded = kLayers + 1;
    struct Slot {
        std::uint64_t key;  // 0: free
        std::uint32_t head;
    };

    static double CellSize(int layer) { return std::ldexp(256.0, 2 * layer); }
    static std::int64_t CellOf(double v, double size) { return static_cast<std::int64_t>(std::floor(v / size)); }
    // Columns and rows far out share keys with others; a search tests boxes, so that costs time and no more.
    static std::uint64_t Key(int layer, Kind kind, std::int64_t ix, std::int64_t iy) {
        return std::uint64_t{1} << 63 | static_cast<std::uint64_t>(layer) << 57 | static_cast<std::uint64_t>(kind) << 56 |
               (static_cast<std::uint64_t>(ix) & 0xFFFFFFF) << 28 | (static_cast<std::uint64_t>(iy) & 0xFFFFFFF);
    }
    std::uint32_t Head(std::uint64_t key) const;
    std::uint32_t* MakeHead(std::uint64_t key);
    void Grow();
    std::uint32_t* ChainOf(const Record& r);

    template <class F>
    void WalkChain(std::uint32_t i, const Box& place, F& f) const {
        for (; i != kNone; i = m_records[i].next)
            if (m_records[i].box.Meets(place)) f(m_records[i]);
    }

    std::vector<Record> m_records;
    std::uint32_t m_free = kNone;  // chain of free slots through `next`
    std::size_t m_count = 0;
    std::vector<Slot> m_slots = std::vector<Slot>(64, Slot{0, kNone});
    std::size_t m_used = 0;
    std::array<std::array<std::uint32_t, kLayers + 2>, kKinds> m_onLayer{};       // how many boxes a layer holds
    std::array<std::uint32_t, kKinds> m_wide{kNone, kNone};       // boxes wider than any cell
    std::array<std::uint32_t, kKinds> m_unbounded{kNone, kNone};  // boxes that are not finite
};

template <class F>
void CSpatialHash::ForEachIn(const Box& place, Kind kind, F f) const {
    for (std::uint32_t i = m_unbounded[kind]; i != kNone; i = m_records[i].next) f(m_records[i]);
    if (!place.IsFinite()) return;
    WalkChain(m_wide[kind], place, f);
    for (int layer = 0; layer < kLayers; ++layer) {
        const std::uint32_t held = m_onLayer[kind][static_cast<std::size_t>(layer)];
        if (held == 0) continue;
        const double size = CellSize(layer);
        const std::int64_t ix0 = CellOf(place.x0 - size, size), ix1 = CellOf(place.x1, size);
        const std::int64_t iy0 = CellOf(place.y0 - size, size), iy1 = CellOf(place.y1, size);
        if (static_cast<double>(ix1 - ix0 + 1) * static_cast<double>(iy1 - iy0 + 1) > static_cast<double>(m_records.size())) {
            for (const Record& r : m_records)  // fewer boxes than cells
                if (r.component && r.kind == kind && r.layer == layer && r.box.Meets(place)) f(r);
            continue;
        }
        for (std::int64_t iy = iy0; iy <= iy1; ++iy)
            for (std::int64_t ix = ix0; ix <= ix1; ++ix) WalkChain(Head(Key(layer, kind, ix, iy)), place, f);
    }
}

template <class F>
void CSpatialHash::ForEachAlong(float ax, float ay, float bx, float by, float margin, Kind kind, F f) const {
    const Box place{std::fmin(ax, bx) - margin, std::fmin(ay, by) - margin, std::fmax(ax, bx) + margin,
                    std::fmax(ay, by) + margin};
    for (std::uint32_t i = m_unbounded[kind]; i != kNone; i = m_records[i].next) f(m_records[i]);
    if (!place.IsFinite()) return;
    // A box farther than the margin from the line lies wholly on one side of it.
    const double dx = static_cast<double>(bx) - ax, dy = static_cast<double>(by) - ay;
    const double reach = margin * std::hypot(dx, dy) * 1.0001, adx = std::fabs(dx), ady = std::fabs(dy);
    auto near = [&](const Record& r) {
        const double mx = 0.5 * (static_cast<double>(r.box.x0) + r.box.x1), my = 0.5 * (static_cast<double>(r.box.y0) + r.box.y1);
        const double hx = 0.5 * (static_cast<double>(r.box.x1) - r.box.x0), hy = 0.5 * (static_cast<double>(r.box.y1) - r.box.y0);
        if (std::fabs(dx * (my - ay) - dy * (mx - ax)) <= adx * hy + ady * hx + reach) f(r);
    };
    WalkChain(m_wide[kind], place, near);
    for (int layer = 0; layer < kLayers; ++layer) {
        if (m_onLayer[kind][static_cast<std::size_t>(layer)] == 0) continue;
        const double size = CellSize(layer);
        const std::int64_t iy0 = CellOf(place.y0 - size, size), iy1 = CellOf(place.y1, size);
        const double cells = static_cast<double>(iy1 - iy0 + 1) + (static_cast<double>(place.x1) - place.x0) / size;
        if (cells > static_cast<double>(m_records.size())) {
            for (const Record& r : m_records)
                if (r.component && r.kind == kind && r.layer == layer && r.box.Meets(place)) near(r);
            continue;
        }
        for (std::int64_t iy = iy0; iy <= iy1; ++iy) {
            // Boxes of this row lie between these heights; the section runs there between xa and xb.
            const double low = static_cast<double>(iy) * size - margin, high = static_cast<double>(iy + 2) * size + margin;
            double xa = place.x0, xb = place.x1;
            if (ady > 0) {
                const double t0 = (low - ay) / dy, t1 = (high - ay) / dy;
                const double ta = std::fmax(0.0, std::fmin(t0, t1)), tb = std::fmin(1.0, std::fmax(t0, t1));
                if (ta > tb) continue;
                const double x0 = ax + ta * dx, x1 = ax + tb * dx;
                // One unit of slack for coordinates in the millions, whose products are rounded.
                xa = std::fmin(x0, x1) - margin - 1.0;
                xb = std::fmax(x0, x1) + margin + 1.0;
            }
            const std::int64_t ix1 = CellOf(xb, size);
            for (std::int64_t ix = CellOf(xa - size, size); ix <= ix1; ++ix)
                WalkChain(Head(Key(layer, kind, ix, iy)), place, near);
        }
    }
}
