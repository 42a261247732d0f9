// Storage for many small things that end together.
#pragma once
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// Hands out memory from large chunks, and frees it all at once. Destructors of what lives there are not
/// run: it must own nothing.
class CArena {
public:
    template <class T, class... Args>
    T* New(Args&&... args) {
        return ::new (Allocate(sizeof(T))) T(std::forward<Args>(args)...);
    }
    template <class T>
    T* Copy(std::span<const T> items) {
        static_assert(std::is_trivially_copyable_v<T>);
        if (items.empty()) return nullptr;
        void* place = Allocate(items.size_bytes());
        std::memcpy(place, items.data(), items.size_bytes());
        return static_cast<T*>(place);
    }
    std::string_view Copy(std::string_view text) {
        return {Copy(std::span<const char>(text.data(), text.size())), text.size()};
    }
    /// Aligned to 8; never null.
    void* Allocate(std::size_t bytes) {
        bytes = (bytes + 7) & ~std::size_t{7};
        if (bytes > m_left) return AllocateSlow(bytes);
        void* place = m_free;
        m_free += bytes;
        m_left -= bytes;
        return place;
    }
    void Clear() {
        std::vector<std::unique_ptr<char[]>>().swap(m_chunks);
        m_free = nullptr;
        m_left = 0;
    }

private:
    static constexpr std::size_t kChunk = 256 * 1024;
    void* AllocateSlow(std::size_t bytes) {
        const bool large = bytes > kChunk / 4;  // gets a chunk of its own, and the open one stays open
        m_chunks.push_back(std::make_unique_for_overwrite<char[]>(large ? bytes : kChunk));
        char* chunk = m_chunks.back().get();
        if (large) return chunk;
        m_free = chunk + bytes;
        m_left = kChunk - bytes;
        return chunk;
    }
    std::vector<std::unique_ptr<char[]>> m_chunks;
    char* m_free = nullptr;   // next free byte of the open chunk
    std::size_t m_left = 0;   // and how many follow
};
