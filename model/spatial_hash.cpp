#include "model/spatial_hash.h"

#include <algorithm>

namespace {

std::size_t Mix(std::uint64_t key) {
    key *= 0x9E3779B97F4A7C15ull;
    return key ^ (key >> 32);
}

}  // namespace

std::uint32_t CSpatialHash::Head(std::uint64_t key) const {
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t s = Mix(key) & mask; m_slots[s].key != 0; s = (s + 1) & mask)
        if (m_slots[s].key == key) return m_slots[s].head;
    return kNone;
}

std::uint32_t* CSpatialHash::MakeHead(std::uint64_t key) {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t s = Mix(key) & mask;
    for (; m_slots[s].key != 0; s = (s + 1) & mask)
        if (m_slots[s].key == key) return &m_slots[s].head;
    if (m_used * 2 >= m_slots.size()) {
        Grow();
        return MakeHead(key);
    }
    ++m_used;
    m_slots[s] = {key, kNone};
    return &m_slots[s].head;
}

// Makes room, and forgets cells that have become empty.
void CSpatialHash::Grow() {
    const auto live = static_cast<std::size_t>(
        std::count_if(m_slots.begin(), m_slots.end(), [](const Slot& s) { return s.head != kNone; }));
    std::vector<Slot> old(live * 4 > m_slots.size() ? m_slots.size() * 2 : m_slots.size(), Slot{0, kNone});
    old.swap(m_slots);
    const std::size_t mask = m_slots.size() - 1;
    m_used = live;
    for (const Slot& slot : old) {
        if (slot.head == kNone) continue;
        std::size_t s = Mix(slot.key) & mask;
        while (m_slots[s].key != 0) s = (s + 1) & mask;
        m_slots[s] = slot;
    }
}

std::uint32_t* CSpatialHash::ChainOf(const Record& r) {
    if (r.layer == kUnbounded) return &m_unbounded[r.kind];
    if (r.layer == kWide) return &m_wide[r.kind];
    const double size = CellSize(r.layer);
    return MakeHead(Key(r.layer, r.kind, CellOf(r.box.x0, size), CellOf(r.box.y0, size)));
}

std::uint32_t CSpatialHash::Insert(CGouJianEx* component, const Box& box, const CellRange& cells, Kind kind) {
    Record r{component, box, cells, kNone, kNone, 0, kind};
    if (!box.IsFinite()) {
        r.layer = kUnbounded;
    } else {
        const double extent = std::max(static_cast<double>(box.x1) - box.x0, static_cast<double>(box.y1) - box.y0);
        while (r.layer < kWide && CellSize(r.layer) < extent) ++r.layer;
    }
    std::uint32_t* head = ChainOf(r);
    std::uint32_t slot = m_free;
    if (slot != kNone) {
        m_free = m_records[slot].next;
    } else {
        slot = static_cast<std::uint32_t>(m_records.size());
        m_records.push_back(r);
    }
    r.next = *head;
    if (r.next != kNone) m_records[r.next].prev = slot;
    *head = slot;
    m_records[slot] = r;
    ++m_onLayer[kind][r.layer];
    ++m_count;
    return slot;
}

void CSpatialHash::Remove(std::uint32_t slot) {
    Record& r = m_records[slot];
    if (r.next != kNone) m_records[r.next].prev = r.prev;
    if (r.prev != kNone)
        m_records[r.prev].next = r.next;
    else
        *ChainOf(r) = r.next;
    --m_onLayer[r.kind][r.layer];
    --m_count;
    r.component = nullptr;
    r.next = m_free;
    m_free = slot;
}

void CSpatialHash::Clear() { *this = CSpatialHash(); }
