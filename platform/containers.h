// CArray, CList and CMap: the generic containers of the library's interfaces.
#pragma once
#include <algorithm>
#include <bit>
#include <cassert>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/object.h"
#include "platform/paged_array.h"
#include "platform/pool.h"

/// A place in a CList or CMap. Null is "no place": the end of a walk, or not found.
struct __POSITION {};
using POSITION = __POSITION*;

// ---------------------------------------------------------------------------------------------------------

/// A growable array. Indices are ints; one out of range is the caller's fault (asserted).
template <class T>
class CArrayOf : public CObject {
public:
    int GetSize() const { return static_cast<int>(m_data.size()); }
    int GetCount() const { return GetSize(); }
    int GetUpperBound() const { return GetSize() - 1; }
    bool IsEmpty() const { return m_data.empty(); }

    /// New elements are value-initialised; a negative size counts as 0. The growth hint is not needed.
    void SetSize(int n, int = -1) { m_data.resize(static_cast<std::size_t>(std::max(n, 0))); }
    void Reserve(int n) { m_data.reserve(static_cast<std::size_t>(std::max(n, 0))); }
    void FreeExtra() { m_data.shrink_to_fit(); }
    void RemoveAll() { m_data.clear(); }

    const T& GetAt(int i) const { return m_data[Checked(i)]; }
    void SetAt(int i, const T& v) { m_data[Checked(i)] = v; }
    T& ElementAt(int i) { return m_data[Checked(i)]; }
    const T& ElementAt(int i) const { return m_data[Checked(i)]; }
    T& operator[](int i) { return m_data[Checked(i)]; }
    const T& operator[](int i) const { return m_data[Checked(i)]; }
    T* GetData() { return m_data.data(); }
    const T* GetData() const { return m_data.data(); }

    int Add(const T& v) {
        m_data.push_back(v);
        return GetUpperBound();
    }
    void SetAtGrow(int i, const T& v) {
        if (i >= GetSize()) SetSize(i + 1);
        SetAt(i, v);
    }
    int Append(const CArrayOf& other) {
        const int first = GetSize();
        const std::size_t n = other.m_data.size();  // taken first: other may be this array
        m_data.reserve(m_data.size() + n);
        for (std::size_t i = 0; i < n; ++i) m_data.push_back(other.m_data[i]);
        return first;
    }
    void Copy(const CArrayOf& other) { m_data = other.m_data; }
    void InsertAt(int i, const T& v, int count = 1) {
        const T value = v;
        if (i > GetSize()) SetSize(i);
        m_data.insert(m_data.begin() + i, static_cast<std::size_t>(std::max(count, 0)), value);
    }
    void InsertAt(int i, const CArrayOf* other) {
        const auto values = other->m_data;
        if (i > GetSize()) SetSize(i);
        m_data.insert(m_data.begin() + i, values.begin(), values.end());
    }
    void RemoveAt(int i, int count = 1) {
        assert(i >= 0 && count >= 0 && i + count <= GetSize());
        m_data.erase(m_data.begin() + i, m_data.begin() + i + count);
    }
    void Swap(CArrayOf& other) noexcept { m_data.swap(other.m_data); }

    auto begin() { return m_data.begin(); }
    auto end() { return m_data.end(); }
    auto begin() const { return m_data.begin(); }
    auto end() const { return m_data.end(); }

private:
    std::size_t Checked([[maybe_unused]] int i) const {
        assert(i >= 0 && i < GetSize());
        return static_cast<std::size_t>(i);
    }
    std::vector<T, CPoolAllocator<T>> m_data;
};

/// The second argument, by tradition the type in which elements are passed, is ignored: CArray<T> and
/// CArray<T, T&> are one type.
template <class T, class = T>
using CArray = CArrayOf<T>;

// ---------------------------------------------------------------------------------------------------------

/// A doubly linked list whose positions are stable handles: a position stays good, whatever else is added or
/// removed, until its own element goes.
template <class T>
class CListOf {
    struct Node : __POSITION {
        explicit Node(const T& v) : value(v) {}
        TVO_POOLED_STORAGE
        Node* prev = nullptr;
        Node* next = nullptr;
        T value;
    };

public:
    CListOf() = default;
    explicit CListOf(int /*block size*/) {}
    CListOf(const CListOf& other) { AddTail(other); }
    CListOf& operator=(const CListOf& other) {
        if (this != &other) {
            RemoveAll();
            AddTail(other);
        }
        return *this;
    }
    ~CListOf() { RemoveAll(); }

    int GetCount() const { return m_count; }
    int GetSize() const { return m_count; }
    bool IsEmpty() const { return m_count == 0; }

    POSITION AddTail(const T& v) { return Link(new Node(v), m_tail, nullptr); }
    POSITION AddHead(const T& v) { return Link(new Node(v), nullptr, m_head); }
    void AddTail(const CListOf& other) {
        int left = other.m_count;  // other may be this list
        for (const Node* n = other.m_head; left > 0; n = n->next, --left) AddTail(n->value);
    }
    POSITION InsertBefore(POSITION p, const T& v) { return p ? Link(new Node(v), At(p)->prev, At(p)) : AddHead(v); }
    POSITION InsertAfter(POSITION p, const T& v) { return p ? Link(new Node(v), At(p), At(p)->next) : AddTail(v); }

    T& GetHead() { return m_head->value; }
    const T& GetHead() const { return m_head->value; }
    T& GetTail() { return m_tail->value; }
    const T& GetTail() const { return m_tail->value; }
    T RemoveHead() { return Take(m_head); }
    T RemoveTail() { return Take(m_tail); }
    void RemoveAt(POSITION p) { Take(At(p)); }
    void RemoveAll() {
        for (Node* n = m_head; n;) {
            Node* next = n->next;
            delete n;
            n = next;
        }
        m_head = m_tail = nullptr;
        m_count = 0;
        ++m_changes;
    }
    /// Grows with each element that comes, goes or is set; an index over the list is good while it stands still.
    unsigned GetChanges() const { return m_changes; }

    POSITION GetHeadPosition() const { return m_head; }
    POSITION GetTailPosition() const { return m_tail; }
    /// The element at p; p moves on, to null behind the last.
    T& GetNext(POSITION& p) const {
        Node* n = At(p);
        p = n->next;
        return n->value;
    }
    T& GetPrev(POSITION& p) const {
        Node* n = At(p);
        p = n->prev;
        return n->value;
    }
    T& GetAt(POSITION p) const { return At(p)->value; }
    void SetAt(POSITION p, const T& v) {
        At(p)->value = v;
        ++m_changes;
    }

    /// Linear; the search begins behind `after`, or at the head.
    POSITION Find(const T& v, POSITION after = nullptr) const {
        for (Node* n = after ? At(after)->next : m_head; n; n = n->next)
            if (n->value == v) return n;
        return nullptr;
    }
    POSITION FindIndex(int i) const {
        if (i < 0 || i >= m_count) return nullptr;
        Node* n = m_head;
        while (i-- > 0) n = n->next;
        return n;
    }

private:
    static Node* At(POSITION p) { return static_cast<Node*>(p); }
    POSITION Link(Node* n, Node* prev, Node* next) {
        n->prev = prev;
        n->next = next;
        (prev ? prev->next : m_head) = n;
        (next ? next->prev : m_tail) = n;
        ++m_count;
        ++m_changes;
        return n;
    }
    T Take(Node* n) {
        (n->prev ? n->prev->next : m_head) = n->next;
        (n->next ? n->next->prev : m_tail) = n->prev;
        --m_count;
        ++m_changes;
        T value = std::move(n->value);
        delete n;
        return value;
    }

    Node* m_head = nullptr;
    Node* m_tail = nullptr;
    int m_count = 0;
    unsigned m_changes = 0;
};

template <class T, class = T>
using CList = CListOf<T>;
using CPtrList = CList<void*>;
/// A typed list over an untyped base; here simply the typed list.
template <class, class T>
using CTypedPtrList = CList<T>;

// ---------------------------------------------------------------------------------------------------------

/// The hash of a CMap key.
template <class K>
struct CMapHash {
    static std::uint64_t Mix(std::uint64_t v) {
        v *= 0x9E3779B97F4A7C15ull;
        return v ^ (v >> 32);
    }
    std::size_t operator()(const K& key) const {
        if constexpr (std::is_pointer_v<K>) {
            return Mix(reinterpret_cast<std::uintptr_t>(key) >> 3);  // decides places in memory, never an order
        } else if constexpr (std::is_integral_v<K> || std::is_enum_v<K>) {
            return Mix(static_cast<std::uint64_t>(key));
        } else {
            return HashKey(key);  // found by argument-dependent lookup
        }
    }
};

/// How a map finds the entry of a key, once it has more than a few: open addressing over entry numbers.
template <class K>
class CHashIndex {
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    template <class Entries>
    std::uint32_t Find(const K& key, const Entries& entries) const {
        const std::size_t mask = m_slots.size() - 1;
        for (std::size_t s = CMapHash<K>()(key) & mask;; s = (s + 1) & mask) {
            const std::uint32_t i = m_slots[s];
            if (i == kNone || entries[i].key == key) return i;
        }
    }
    bool HasRoomFor(std::size_t entries) const { return entries * 2 <= m_slots.size(); }
    void Enter(const K& key, std::uint32_t i) {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t s = CMapHash<K>()(key) & mask;
        while (m_slots[s] != kNone) s = (s + 1) & mask;
        m_slots[s] = i;
    }
    template <class Entries>
    void Remove(const K& key, std::uint32_t i, const Entries& entries) {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t s = CMapHash<K>()(key) & mask;
        while (m_slots[s] != i) s = (s + 1) & mask;
        // Close the gap in the run behind, so that no slot is ever left marked.
        for (std::size_t next = (s + 1) & mask; m_slots[next] != kNone; next = (next + 1) & mask) {
            const std::size_t home = CMapHash<K>()(entries[m_slots[next]].key) & mask;
            if (((next - home) & mask) >= ((next - s) & mask)) {
                m_slots[s] = m_slots[next];
                s = next;
            }
        }
        m_slots[s] = kNone;
    }
    template <class Entries>
    void Rebuild(const Entries& entries) {
        m_slots.assign(std::bit_ceil(2 * (entries.size() + 1) + 16), kNone);
        for (std::size_t i = 0; i < entries.size(); ++i) Enter(entries[i].key, static_cast<std::uint32_t>(i));
    }

private:
    std::vector<std::uint32_t, CPoolAllocator<std::uint32_t>> m_slots;  // a power of two
};

/// The same for whole numbers that mostly come in runs, as identities do: sixty-four neighbouring numbers share a
/// row, and rows are found by hash. A run is entered almost without cache misses, growing moves rows' places
/// alone, and whether a number is there is known without a look at its entry.
template <class K>
class CRunIndex {
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    template <class Entries>
    std::uint32_t Find(const K& key, const Entries&) const {
        const std::uint32_t row = FindRow(RowOf(key));
        return row == kNone ? kNone : m_rows[row].at[key & (kRow - 1)];
    }
    void FetchAhead(const K& key) const {
        const std::uint32_t row = FindRow(RowOf(key));
        if (row != kNone) __builtin_prefetch(&m_rows[row].at[key & (kRow - 1)]);
    }
    bool HasRoomFor(std::size_t) const { return (m_rows.size() + 1) * 2 <= m_slots.size(); }
    void Enter(const K& key, std::uint32_t i) {
        const std::size_t mask = m_slots.size() - 1;
        const std::uint64_t number = RowOf(key);
        std::size_t s = Place(number);
        while (m_slots[s].row != kNone && m_slots[s].number != number) s = (s + 1) & mask;
        if (m_slots[s].row == kNone) {
            m_slots[s] = {number, static_cast<std::uint32_t>(m_rows.size())};
            Row fresh;
            std::fill_n(fresh.at, kRow, kNone);
            m_rows.push_back(fresh);
        }
        m_rows[m_slots[s].row].at[key & (kRow - 1)] = i;
    }
    template <class Entries>
    void Remove(const K& key, std::uint32_t, const Entries&) {
        m_rows[FindRow(RowOf(key))].at[key & (kRow - 1)] = kNone;
    }
    template <class Entries>
    void Rebuild(const Entries& entries) {
        const std::size_t rows = m_rows.size();
        m_rows = {};
        m_slots.assign(std::bit_ceil(4 * (std::max(rows, entries.size() / kRow) + 1)), Slot{0, kNone});
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (!HasRoomFor(0)) GrowSlots();
            Enter(entries[i].key, static_cast<std::uint32_t>(i));
        }
    }
    void GrowSlots() {
        std::vector<Slot, CPoolAllocator<Slot>> old(m_slots.size() * 2, Slot{0, kNone});
        old.swap(m_slots);
        const std::size_t mask = m_slots.size() - 1;
        for (const Slot& slot : old) {
            if (slot.row == kNone) continue;
            std::size_t s = Place(slot.number);
            while (m_slots[s].row != kNone) s = (s + 1) & mask;
            m_slots[s] = slot;
        }
    }

private:
    static constexpr std::size_t kRow = 64;  // the table of rows of a big model still stays in the cache
    struct Row { std::uint32_t at[kRow]; };
    struct Slot {
        std::uint64_t number;
        std::uint32_t row;  // kNone: free
    };
    static std::uint64_t RowOf(const K& key) { return static_cast<std::uint64_t>(key) / kRow; }
    std::size_t Place(std::uint64_t number) const {
        return ((number * 0x9E3779B97F4A7C15ull) >> 32) & (m_slots.size() - 1);
    }
    std::uint32_t FindRow(std::uint64_t number) const {
        const std::size_t mask = m_slots.size() - 1;
        for (std::size_t s = Place(number); m_slots[s].row != kNone; s = (s + 1) & mask)
            if (m_slots[s].number == number) return m_slots[s].row;
        return kNone;
    }

    std::vector<Slot, CPoolAllocator<Slot>> m_slots;  // a power of two
    CPagedArray<Row> m_rows;
};

/// A hash map that is walked in the order in which keys were first entered, so that no result depends on
/// hash values or addresses. Up to eight entries it is a plain array. While walking, the entry just handed
/// out may be removed; adding during a walk ends it.
template <class K, class V>
class CMapOf {
    struct Entry {
        K key;
        V value;
    };

public:
    CMapOf() = default;
    explicit CMapOf(int /*block size*/) {}
    CMapOf(const CMapOf& other) {
        other.ForEach([this](const K& key, const V& value) { SetAt(key, value); });
    }
    CMapOf& operator=(const CMapOf& other) {
        if (this != &other) *this = CMapOf(other);
        return *this;
    }
    CMapOf(CMapOf&&) noexcept = default;
    CMapOf& operator=(CMapOf&&) noexcept = default;

    int GetCount() const {
        std::size_t live = Size() - (m_index ? m_index->dead : 0);
        for (unsigned gone = m_gone; gone; gone &= gone - 1) --live;
        return static_cast<int>(live);
    }
    int GetSize() const { return GetCount(); }
    bool IsEmpty() const { return GetCount() == 0; }

    bool Lookup(const K& key, V& value) const {
        const std::uint32_t i = Locate(key);
        if (i == kNone) return false;
        value = At(i).value;
        return true;
    }
    /// The value of a key, or null. Good until the map changes.
    V* Find(const K& key) {
        const std::uint32_t i = Locate(key);
        return i == kNone ? nullptr : &At(i).value;
    }
    const V* Find(const K& key) const { return const_cast<CMapOf*>(this)->Find(key); }
    bool Contains(const K& key) const { return Locate(key) != kNone; }
    /// Has the processor fetch what a search for a key of an identity map will need, while other work goes on.
    void FetchAhead(const K& key) const {
        if constexpr (std::is_unsigned_v<K>)
            if (m_index) m_index->find.FetchAhead(key);
    }
    /// The same for the entry that the search ends at; a while after FetchAhead, or it has to wait itself.
    void FetchEntryAhead(const K& key) const {
        if constexpr (std::is_unsigned_v<K>) {
            const std::uint32_t i = m_index ? Locate(key) : kNone;
            if (i != kNone) __builtin_prefetch(&m_index->entries[i]);
        }
    }
    V& operator[](const K& key) { return At(Enter(key).first).value; }
    void SetAt(const K& key, const V& value) { (*this)[key] = value; }
    /// Enters the pair unless the key is there; true when it was entered.
    bool Insert(const K& key, const V& value) {
        const auto [i, fresh] = Enter(key);
        if (fresh) At(i).value = value;
        return fresh;
    }
    bool RemoveKey(const K& key);
    void RemoveAll() { *this = CMapOf(); }
    void InitHashTable(unsigned, bool = true) {}

    POSITION GetStartPosition() const { return PositionFrom(0); }
    void GetNextAssoc(POSITION& p, K& key, V& value) const {
        const std::size_t i = IndexOf(p);
        key = At(i).key;
        value = At(i).value;
        p = PositionFrom(i + 1);
    }

    /// Calls f(key, value) for each entry, in the order of the walk. f must not change the map.
    template <class F>
    void ForEach(F f) const {
        for (std::size_t i = 0; i < Size(); ++i)
            if (!Gone(i)) f(At(i).key, At(i).value);
    }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    static constexpr std::size_t kSmall = 8;  // as many as m_gone has bits

    static constexpr bool kRuns = std::is_same_v<K, unsigned long> || std::is_same_v<K, unsigned int>;

    /// What a map of more than a few entries has besides them.
    struct Index {
        // In order of entering, removed ones among them; plain pairs need not move as they grow.
        std::conditional_t<std::is_trivially_copyable_v<Entry>, CPagedArray<Entry>, std::vector<Entry>> entries;
        std::conditional_t<kRuns, CRunIndex<K>, CHashIndex<K>> find;
        std::vector<bool> gone;  // marks removed entries; empty while there are none
        std::size_t dead = 0;    // how many are marked
    };

    std::size_t Size() const { return m_index ? m_index->entries.size() : m_few.size(); }  // removed ones included
    Entry& At(std::size_t i) { return m_index ? m_index->entries[i] : m_few[i]; }
    const Entry& At(std::size_t i) const { return m_index ? m_index->entries[i] : m_few[i]; }
    bool Gone(std::size_t i) const { return m_index ? m_index->dead != 0 && m_index->gone[i] : (m_gone >> i & 1) != 0; }
    POSITION PositionFrom(std::size_t i) const {
        while (i < Size() && Gone(i)) ++i;
        return i < Size() ? reinterpret_cast<POSITION>(i + 1) : nullptr;
    }
    static std::size_t IndexOf(POSITION p) { return reinterpret_cast<std::size_t>(p) - 1; }
    std::uint32_t Locate(const K& key) const;
    std::pair<std::uint32_t, bool> Enter(const K& key);
    void CloseGaps();
    void MakeRoom();

    std::vector<Entry, CPoolAllocator<Entry>> m_few;  // the entries of a small map, in order of entering
    std::unique_ptr<Index> m_index;                   // null while the map is small
    std::uint8_t m_gone = 0;                          // marks removed entries of a small map
};

/// As with CArray, the types by which keys and values are passed may be named and are ignored.
template <class...>
struct CMapArguments;
template <class K, class V>
struct CMapArguments<K, V> {
    using type = CMapOf<K, V>;
};
template <class K, class AK, class V, class AV>
struct CMapArguments<K, AK, V, AV> {
    using type = CMapOf<K, V>;
};
template <class... A>
using CMap = typename CMapArguments<A...>::type;

using CByteArray = CArray<unsigned char>;
using CDWordArray = CArray<std::uint32_t>;

// --- implementation of CMap -------------------------------------------------------------------------------

template <class K, class V>
std::uint32_t CMapOf<K, V>::Locate(const K& key) const {
    if (m_index) return m_index->find.Find(key, m_index->entries);
    for (std::size_t i = 0; i < m_few.size(); ++i)
        if (m_few[i].key == key && !Gone(i)) return static_cast<std::uint32_t>(i);
    return kNone;
}

// Before an entry is added: closes the gaps when they are many, and has the index grow.
template <class K, class V>
void CMapOf<K, V>::MakeRoom() {
    if (!m_index) {
        if (m_few.size() < kSmall) return;
        CloseGaps();
        if (m_few.size() <= kSmall / 2) return;
        auto index = std::make_unique<Index>();
        for (Entry& e : m_few) index->entries.push_back(e);
        m_few = {};
        m_index = std::move(index);
        m_index->find.Rebuild(m_index->entries);
    } else if (m_index->dead != 0 && m_index->dead * 3 >= Size()) {
        CloseGaps();
        m_index->find.Rebuild(m_index->entries);
    } else if (!m_index->find.HasRoomFor(Size() + 1)) {
        if constexpr (kRuns) {
            m_index->find.GrowSlots();
        } else {
            CloseGaps();
            m_index->find.Rebuild(m_index->entries);
        }
    }
}

template <class K, class V>
std::pair<std::uint32_t, bool> CMapOf<K, V>::Enter(const K& wanted) {
    const std::uint32_t found = Locate(wanted);
    if (found != kNone) return {found, false};
    const K key = wanted;  // which may lie in an entry that moves
    MakeRoom();
    const auto i = static_cast<std::uint32_t>(Size());
    if (m_index) {
        m_index->entries.push_back({key, V()});
        if (m_index->dead != 0) m_index->gone.push_back(false);
        m_index->find.Enter(key, i);
    } else {
        m_few.push_back({key, V()});
    }
    return {i, true};
}

template <class K, class V>
bool CMapOf<K, V>::RemoveKey(const K& key) {
    const std::uint32_t i = Locate(key);
    if (i == kNone) return false;
    if (!m_index) {
        m_gone = static_cast<std::uint8_t>(m_gone | 1u << i);
        m_few[i].value = V();
        // Gaps at the end need no mark.
        while (!m_few.empty() && Gone(m_few.size() - 1)) {
            m_gone = static_cast<std::uint8_t>(m_gone & ~(1u << (m_few.size() - 1)));
            m_few.pop_back();
        }
        return true;
    }
    auto& entries = m_index->entries;
    m_index->find.Remove(key, i, entries);
    if (i + 1 == entries.size()) {  // the last one leaves no gap
        entries.pop_back();
        if (m_index->dead != 0) m_index->gone.pop_back();
    } else {
        if (m_index->dead == 0) m_index->gone.assign(entries.size(), false);
        m_index->gone[i] = true;
        entries[i].value = V();
        ++m_index->dead;
    }
    if (m_index->dead == entries.size()) m_index.reset();  // all gaps: start over
    return true;
}

template <class K, class V>
void CMapOf<K, V>::CloseGaps() {
    std::size_t to = 0;
    for (std::size_t i = 0; i < Size(); ++i)
        if (!Gone(i)) {
            if (to != i) At(to) = std::move(At(i));
            ++to;
        }
    m_gone = 0;
    if (!m_index) {
        m_few.resize(to, Entry{});
        return;
    }
    while (m_index->entries.size() > to) m_index->entries.pop_back();
    m_index->gone.clear();
    m_index->dead = 0;
}
