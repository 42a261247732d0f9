// CPagedArray: a row of plain records that grows without moving much. Internal to the library.
#pragma once
#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/pool.h"

/// Grows by doubling up to one page, and page by page from then on: little is copied, and no more than one page
/// is empty, where an array that goes on doubling would hold up to twice what it needs.
template <class T>
class CPagedArray {
    static_assert(std::is_trivially_copyable_v<T>);
    static constexpr std::size_t kShift = 12, kPage = std::size_t{1} << kShift;

public:
    CPagedArray() = default;
    CPagedArray(const CPagedArray& other) {
        for (std::size_t i = 0; i < other.m_size; ++i) push_back(other[i]);
    }
    CPagedArray(CPagedArray&& other) noexcept { Swap(other); }
    CPagedArray& operator=(CPagedArray other) noexcept {
        Swap(other);
        return *this;
    }
    ~CPagedArray() { clear(); }

    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    T& operator[](std::size_t i) { return m_pages[i >> kShift][i & (kPage - 1)]; }
    const T& operator[](std::size_t i) const { return m_pages[i >> kShift][i & (kPage - 1)]; }
    T& back() { return (*this)[m_size - 1]; }
    void push_back(const T& v) {
        const T value = v;  // v may lie in the page that moves
        if (m_size == m_capacity) Grow();
        new (&(*this)[m_size++]) T(value);
    }
    void pop_back() { --m_size; }
    void truncate(std::size_t n) { m_size = std::min(m_size, n); }
    void clear() {
        for (std::size_t p = 0; p < m_pages.size(); ++p) PoolFree(m_pages[p], (p == 0 ? m_firstPage : kPage) * sizeof(T));
        m_pages.clear();
        m_size = m_capacity = m_firstPage = 0;
    }

private:
    void Grow() {
        if (m_firstPage == kPage) {
            m_pages.push_back(static_cast<T*>(PoolAllocate(kPage * sizeof(T))));
            m_capacity += kPage;
            return;
        }
        const std::size_t wider = m_firstPage == 0 ? 16 : 2 * m_firstPage;
        T* page = static_cast<T*>(PoolAllocate(wider * sizeof(T)));
        if (m_pages.empty()) {
            m_pages.push_back(page);
        } else {
            std::copy_n(m_pages[0], m_size, page);
            PoolFree(m_pages[0], m_firstPage * sizeof(T));
            m_pages[0] = page;
        }
        m_capacity = m_firstPage = wider;
    }
    void Swap(CPagedArray& other) noexcept {
        m_pages.swap(other.m_pages);
        std::swap(m_size, other.m_size);
        std::swap(m_capacity, other.m_capacity);
        std::swap(m_firstPage, other.m_firstPage);
    }

    std::vector<T*> m_pages;
    std::size_t m_size = 0, m_capacity = 0;
    std::size_t m_firstPage = 0;  // how many elements the first page holds
};
