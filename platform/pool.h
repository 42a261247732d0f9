// Freelist storage for the small objects of which a model has hundreds of thousands.
#pragma once
#include <cstddef>

/// Hands out blocks of up to 512 bytes from size classes 8 bytes apart, aligned to 8. Larger requests go to the
/// general heap, those of several MB on huge pages where the system has them.
/// Blocks are reused, and stay with the process until it ends. One thread only, like the whole library.
/// Under the address sanitizer every block comes from the general heap, so that misuse is seen.
void* PoolAllocate(std::size_t bytes);
void PoolFree(void* block, std::size_t bytes) noexcept;

/// Gives a class and everything derived from it pooled storage. The class needs a virtual destructor if it
/// is deleted through a base pointer: the size given back is then that of the most derived object.
#define TVO_POOLED_STORAGE                                                                      \
    static void* operator new(std::size_t bytes) { return PoolAllocate(bytes); }                \
    static void* operator new(std::size_t, void* place) noexcept { return place; }              \
    static void operator delete(void* block, std::size_t bytes) noexcept { PoolFree(block, bytes); } \
    static void operator delete(void*, void*) noexcept {}

/// The same store as a standard allocator. For element types that need no more than the heap's alignment.
template <class T>
struct CPoolAllocator {
    using value_type = T;
    CPoolAllocator() = default;
    template <class U>
    CPoolAllocator(const CPoolAllocator<U>&) noexcept {}
    T* allocate(std::size_t n) { return static_cast<T*>(PoolAllocate(n * sizeof(T))); }
    void deallocate(T* p, std::size_t n) noexcept { PoolFree(p, n * sizeof(T)); }
    friend bool operator==(CPoolAllocator, CPoolAllocator) { return true; }
};
