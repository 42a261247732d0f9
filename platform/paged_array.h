// CPagedArray: a row of plain records that grows without moving. Internal to the library.
#pragma once
#include <cstddef>
#include <type_traits>
#include <vector>

#include "platform/pool.h"

/// Grows page by page: nothing is copied, and no more than one page is empty, where an array that doubles would
/// hold up to twice what it needs.
template <class T>
class CPagedArray {
    static_assert(std::is_trivially_copyable_v<T>);
    static constexpr std::size_t kShift = 12, kPage = std::size_t{1} << kShift;

public:
    CPagedArray() = default;
    CPagedArray(const CPagedArray&) = delete;
    CPagedArray& operator=(const CPagedArray&) = delete;
    CPagedArray(CPagedArray&& other) noexcept { Swap(other); }
    CPagedArray& operator=(CPagedArray&& other) noexcept {
        Swap(other);
        return *this;
    }
    ~CPagedArray() {
        for (T* page : m_pages) PoolFree(page, kPage * sizeof(T));
    }

    std::size_t size() const { return m_size; }
    T& operator[](std::size_t i) { return m_pages[i >> kShift][i & (kPage - 1)]; }
    const T& operator[](std::size_t i) const { return m_pages[i >> kShift][i & (kPage - 1)]; }
    void push_back(const T& v) {
        if (m_size == m_pages.size() << kShift) m_pages.push_back(static_cast<T*>(PoolAllocate(kPage * sizeof(T))));
        new (&(*this)[m_size++]) T(v);
    }

private:
    void Swap(CPagedArray& other) noexcept {
        m_pages.swap(other.m_pages);
        std::swap(m_size, other.m_size);
    }
    std::vector<T*> m_pages;
    std::size_t m_size = 0;
};
