#include "model/spatial_hash.h"

#include <algorithm>

namespace {

// Four blocks above one another share a line of the cache.
std::size_t Mix(std::uint64_t key) {
    const std::uint64_t mixed = (key >> 2) * 0x9E3779B97F4A7C15ull;
    return (mixed ^ (mixed >> 32)) << 2 | (key & 3);
}

}  // namespace

int CSpatialHash::LayerOf(const Box& box) const {
    if (!box.IsFinite()) return kUnbounded;
    const double extent = std::max(static_cast<double>(box.x1) - box.x0, static_cast<double>(box.y1) - box.y0);
    int layer = 0;
    for (double size = m_smallest; layer < kWide && size < extent; size *= 2) ++layer;
    return layer;
}

const CSpatialHash::Block* CSpatialHash::FindBlock(std::uint64_t key) const {
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t s = Mix(key) & mask; m_slots[s].key != 0; s = (s + 1) & mask)
        if (m_slots[s].key == key) return &m_blocks[m_slots[s].block];
    return nullptr;
}

CSpatialHash::Block& CSpatialHash::MakeBlock(std::uint64_t key) {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t s = Mix(key) & mask;
    for (; m_slots[s].key != 0; s = (s + 1) & mask)
        if (m_slots[s].key == key) return m_blocks[m_slots[s].block];
    if (m_used * 2 >= m_slots.size()) {
        Grow();
        return MakeBlock(key);
    }
    ++m_used;
    m_slots[s] = {key, static_cast<std::uint32_t>(m_blocks.size())};
    Block empty;
    std::fill_n(empty.head, 16, kNone);
    m_blocks.push_back(empty);
    return m_blocks[m_blocks.size() - 1];
}

// Makes room, and forgets blocks that have become empty.
void CSpatialHash::Grow() {
    Array<Slot> live;
    CPagedArray<Block> blocks;
    live.reserve(m_used);
    for (const Slot& slot : m_slots) {
        if (slot.key == 0) continue;
        const Block& block = m_blocks[slot.block];
        if (std::all_of(block.head, block.head + 16, [](std::uint32_t h) { return h == kNone; })) continue;
        live.push_back({slot.key, static_cast<std::uint32_t>(blocks.size())});
        blocks.push_back(block);
    }
    m_blocks = std::move(blocks);
    m_slots.assign(live.size() * 4 > m_slots.size() ? m_slots.size() * 2 : m_slots.size(), Slot{0, kNone});
    m_used = live.size();
    const std::size_t mask = m_slots.size() - 1;
    for (const Slot& slot : live) {
        std::size_t s = Mix(slot.key) & mask;
        while (m_slots[s].key != 0) s = (s + 1) & mask;
        m_slots[s] = slot;
    }
}

std::uint32_t* CSpatialHash::ChainOf(const Box& box, int layer) {
    if (layer == kUnbounded) return &m_unbounded;
    if (layer == kWide) return &m_wide;
    const double size = CellSize(layer);
    const std::int64_t ix = CellOf(box.x0, size), iy = CellOf(box.y0, size);
    return &MakeBlock(BlockKey(layer, ix, iy)).head[InBlock(ix, iy)];
}

std::uint32_t CSpatialHash::Insert(CGouJianEx* component, const Box& box, const CellRange& cells) {
    const int layer = LayerOf(box);
    std::uint32_t* head = ChainOf(box, layer);
    std::uint32_t slot = m_free;
    if (slot != kNone) {
        m_free = m_records[slot].next;
    } else {
        slot = static_cast<std::uint32_t>(m_records.size());
        m_records.push_back({});
        m_cells.push_back({});
    }
    if (*head != kNone) m_records[*head].prev = slot;
    m_records[slot] = {box, component, *head, kNone};
    m_cells[slot] = cells;
    *head = slot;
    if (m_onLayer[static_cast<std::size_t>(layer)]++ == 0) m_layers |= std::uint64_t{1} << layer;
    ++m_count;
    return slot;
}

void CSpatialHash::Remove(std::uint32_t slot) {
    Record& r = m_records[slot];
    const int layer = LayerOf(r.box);
    if (r.next != kNone) m_records[r.next].prev = r.prev;
    if (r.prev != kNone)
        m_records[r.prev].next = r.next;
    else
        *ChainOf(r.box, layer) = r.next;
    if (--m_onLayer[static_cast<std::size_t>(layer)] == 0) m_layers &= ~(std::uint64_t{1} << layer);
    --m_count;
    r.component = nullptr;
    r.next = m_free;
    m_free = slot;
}
