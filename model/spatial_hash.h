// Where components lie: boxes in layered hash grids. Internal to the library.
#pragma once
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "platform/paged_array.h"
#include "platform/pool.h"

class CGouJianEx;

/// Answers "which boxes may touch this place" in time proportional to the answer, whatever the size of the
/// model, of its parts, or of the area between them.
///
/// A box lives in one cell only: on the layer whose cells (a power of two wide) are the smallest not smaller
/// than the box, in the cell of its lower left corner. It may then reach into the next cell up or right, so a
/// search looks one cell further down and left. A cell is a chain through the records. Sixteen neighbouring
/// cells form a block, which lie together and are found by hash; an area where nothing is has none.
class CSpatialHash {
public:
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
        Box box;
        CGouJianEx* component;     // null: the slot is free
        std::uint32_t next, prev;  // in the chain of the cell, or of the boxes that have none
    };

    /// `smallest` is the cell size of the first layer, a power of two.
    explicit CSpatialHash(double smallest) : m_smallest(smallest) {}

    /// Enters a component; its slot is the handle for Remove. A box that isn't finite is offered at every
    /// search. `cells` is only carried, for the owner of this hash.
    std::uint32_t Insert(CGouJianEx* component, const Box& box, const CellRange& cells);
    void Remove(std::uint32_t slot);
    std::size_t GetCount() const { return m_count; }
    const CellRange& CellsOf(std::uint32_t slot) const { return m_cells[slot]; }

    /// Calls f(slot, record) for every record whose box meets `place`, and for those not finite.
    template <class F>
    void ForEachIn(const Box& place, F f) const;
    /// The same for boxes within `margin` of the straight section from a to b, and a few more beside it.
    template <class F>
    void ForEachAlong(float ax, float ay, float bx, float by, float margin, F f) const;
    /// Has the processor fetch the cells about a point on the first layer, while other work goes on.
    void FetchAhead(float x, float y) const {
        const std::int64_t ix = CellOf(x, m_smallest), iy = CellOf(y, m_smallest);
        if (const Block* block = FindBlock(BlockKey(0, ix, iy))) __builtin_prefetch(block);
    }
    template <class F>
    void ForEach(F f) const {
        for (std::uint32_t i = 0; i < m_records.size(); ++i)
            if (m_records[i].component) f(i, m_records[i]);
    }

private:
    static constexpr int kLayers = 32, kWide = kLayers, kUnbounded = kLayers + 1;
    struct Block {
        std::uint32_t head[16];  // of the chains, row by row
    };
    struct Slot {
        std::uint64_t key;  // 0: free
        std::uint32_t block;
    };

    template <class T>
    using Array = std::vector<T, CPoolAllocator<T>>;

    double CellSize(int layer) const { return m_smallest * static_cast<double>(std::int64_t{1} << layer); }
    int LayerOf(const Box& box) const;
    // Sizes are powers of two, so the product is exact. Cells beyond the bounds are one: the difference of any two
    // numbers must not overflow, however far out v lies.
    static std::int64_t CellOf(double v, double size) {
        const double cell = v * (1.0 / size);
        constexpr std::int64_t kFarthest = 4'000'000'000'000'000'000;
        if (!(std::fabs(cell) < static_cast<double>(kFarthest))) return cell < 0 ? -kFarthest : kFarthest;
        const auto whole = static_cast<std::int64_t>(cell);
        return whole - (cell < static_cast<double>(whole));
    }
    // Columns and rows far out share keys with others; a search tests boxes, so that costs time and no more.
    static std::uint64_t BlockKey(int layer, std::int64_t ix, std::int64_t iy) {
        return std::uint64_t{1} << 63 | static_cast<std::uint64_t>(layer) << 56 |
               (static_cast<std::uint64_t>(ix >> 2) & 0xFFFFFFF) << 28 | (static_cast<std::uint64_t>(iy >> 2) & 0xFFFFFFF);
    }
    static std::size_t InBlock(std::int64_t ix, std::int64_t iy) { return static_cast<std::size_t>((iy & 3) * 4 + (ix & 3)); }

    const Block* FindBlock(std::uint64_t key) const;
    Block& MakeBlock(std::uint64_t key);
    void Grow();
    std::uint32_t* ChainOf(const Box& box, int layer);

    // The chains of one layer, remembering the block looked at last: neighbouring cells mostly share it.
    class Cells {
    public:
        Cells(const CSpatialHash& hash, int layer) : m_hash(hash), m_layer(layer) {}
        std::uint32_t Head(std::int64_t ix, std::int64_t iy) {
            const std::uint64_t key = BlockKey(m_layer, ix, iy);
            if (key != m_key) {
                m_key = key;
                m_block = m_hash.FindBlock(key);
            }
            return m_block ? m_block->head[InBlock(ix, iy)] : kNone;
        }

    private:
        const CSpatialHash& m_hash;
        int m_layer;
        std::uint64_t m_key = 0;
        const Block* m_block = nullptr;
    };

    // Chains found, to be walked in their order. Their first records are fetched meanwhile: in a big model each
    // is a wait for memory, and these run side by side.
    class Chains {
    public:
        explicit Chains(const CSpatialHash& hash) : m_hash(hash) {}
        template <class F>
        void Add(std::uint32_t head, const Box& place, F& f) {
            if (head == kNone) return;
            if (m_count == kRoom) Walk(place, f);
            __builtin_prefetch(&m_hash.m_records[head]);
            m_heads[m_count++] = head;
        }
        template <class F>
        void Walk(const Box& place, F& f) {
            for (std::uint32_t i = 0; i < m_count; ++i) m_hash.WalkChain(m_heads[i], place, f);
            m_count = 0;
        }

    private:
        static constexpr std::uint32_t kRoom = 32;
        const CSpatialHash& m_hash;
        std::uint32_t m_count = 0;
        std::uint32_t m_heads[kRoom];
    };

    template <class F>
    void WalkChain(std::uint32_t i, const Box& place, F& f) const {
        for (; i != kNone; i = m_records[i].next)
            if (m_records[i].box.Meets(place)) f(i, m_records[i]);
    }
    // For searches over more cells than there are boxes.
    template <class F>
    void WalkLayer(int layer, const Box& place, F& f) const {
        for (std::uint32_t i = 0; i < m_records.size(); ++i)
            if (m_records[i].component && m_records[i].box.Meets(place) && LayerOf(m_records[i].box) == layer) f(i, m_records[i]);
    }

    double m_smallest;
    CPagedArray<Record> m_records;
    CPagedArray<CellRange> m_cells;   // beside the records
    std::uint32_t m_free = kNone;     // chain of free slots through `next`
    std::size_t m_count = 0;
    Array<Slot> m_slots = Array<Slot>(64, Slot{0, kNone});
    std::size_t m_used = 0;           // slots taken
    CPagedArray<Block> m_blocks;
    std::array<std::uint32_t, kLayers + 2> m_onLayer{};  // how many boxes a layer holds
    std::uint64_t m_layers = 0;       // a bit for each layer that holds any
    std::uint32_t m_wide = kNone;       // chain of boxes wider than any cell
    std::uint32_t m_unbounded = kNone;  // chain of boxes that are not finite
};

template <class F>
void CSpatialHash::ForEachIn(const Box& place, F f) const {
    for (std::uint32_t i = m_unbounded; i != kNone; i = m_records[i].next) f(i, m_records[i]);
    if (!place.IsFinite() || place.x0 > place.x1 || place.y0 > place.y1) return;  // no place at all
    WalkChain(m_wide, place, f);
    const std::uint64_t layers = m_layers;
    Chains chains(*this);
    for (int layer = 0; layer < kLayers; ++layer) {
        if (!(layers >> layer)) break;
        if (!(layers >> layer & 1)) continue;
        const double size = CellSize(layer);
        const std::int64_t ix0 = CellOf(place.x0 - size, size), ix1 = CellOf(place.x1, size);
        const std::int64_t iy0 = CellOf(place.y0 - size, size), iy1 = CellOf(place.y1, size);
        if (static_cast<double>(ix1 - ix0 + 1) * static_cast<double>(iy1 - iy0 + 1) > static_cast<double>(m_records.size() + 16)) {
            WalkLayer(layer, place, f);
            continue;
        }
        Cells cells(*this, layer);
        for (std::int64_t iy = iy0; iy <= iy1; ++iy)
            for (std::int64_t ix = ix0; ix <= ix1; ++ix) chains.Add(cells.Head(ix, iy), place, f);
        chains.Walk(place, f);
    }
}

template <class F>
void CSpatialHash::ForEachAlong(float ax, float ay, float bx, float by, float margin, F f) const {
    const Box place{std::fmin(ax, bx) - margin, std::fmin(ay, by) - margin, std::fmax(ax, bx) + margin,
                    std::fmax(ay, by) + margin};
    for (std::uint32_t i = m_unbounded; i != kNone; i = m_records[i].next) f(i, m_records[i]);
    if (!place.IsFinite()) return;
    // A box farther than the margin from the line lies wholly on one side of it.
    const double dx = static_cast<double>(bx) - ax, dy = static_cast<double>(by) - ay;
    const double reach = margin * std::hypot(dx, dy) * 1.0001, adx = std::fabs(dx), ady = std::fabs(dy);
    auto near = [&](std::uint32_t i, const Record& r) {
        const double mx = 0.5 * (static_cast<double>(r.box.x0) + r.box.x1), my = 0.5 * (static_cast<double>(r.box.y0) + r.box.y1);
        const double hx = 0.5 * (static_cast<double>(r.box.x1) - r.box.x0), hy = 0.5 * (static_cast<double>(r.box.y1) - r.box.y0);
        if (std::fabs(dx * (my - ay) - dy * (mx - ax)) <= adx * hy + ady * hx + reach) f(i, r);
    };
    WalkChain(m_wide, place, near);
    const std::uint64_t layers = m_layers;
    Chains chains(*this);
    for (int layer = 0; layer < kLayers; ++layer) {
        if (!(layers >> layer)) break;
        if (!(layers >> layer & 1)) continue;
        const double size = CellSize(layer);
        const std::int64_t iy0 = CellOf(place.y0 - size, size), iy1 = CellOf(place.y1, size);
        if (static_cast<double>(iy1 - iy0 + 1) + (static_cast<double>(place.x1) - place.x0) / size >
            static_cast<double>(m_records.size() + 16)) {
            WalkLayer(layer, place, near);
            continue;
        }
        Cells cells(*this, layer);
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
            for (std::int64_t ix = CellOf(xa - size, size); ix <= ix1; ++ix) chains.Add(cells.Head(ix, iy), place, near);
        }
        chains.Walk(place, near);
    }
}
