#include "platform/pool.h"

#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t kGrain = 8, kLargest = 512;
constexpr std::size_t kSlab = 64 * 1024, kHugePage = 2 * 1024 * 1024;
constexpr int kSingleSlabs = 32;  // a small model stays small; after these, slabs are cut from huge pages

struct FreeBlock { FreeBlock* next; };

/// A piece of memory, aligned to its size, for blocks of one size. Blocks come from its own list of free ones,
/// or from the part never used; one that is empty again starts over as new, so that a model built after another
/// lies in memory in the order in which it is built.
struct Slab {
    Slab *prev, *next;         // in the list of its size class, or of the empty slabs
    FreeBlock* free;
    std::uint32_t used;        // bytes handed out from the front, this header included
    std::uint32_t live;        // blocks in use
    std::uint32_t blockBytes;
    bool listed;               // stands in the list of its size class: has room
};

// Plain data without constructors or destructors: objects with static storage may still free at exit.
struct SizeClass {
    Slab* room;  // slabs with room, the one in use first
};
SizeClass g_class[kLargest / kGrain + 1];
Slab* g_empty = nullptr;
char* g_huge = nullptr;  // rest of the huge page that slabs are cut from
std::size_t g_hugeLeft = 0;
int g_slabs = 0;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kUseHeapAlone = true;
#else
constexpr bool kUseHeapAlone = false;
#endif

void* AllocateAligned(std::size_t alignment, std::size_t bytes) {
    void* block = std::aligned_alloc(alignment, (bytes + alignment - 1) / alignment * alignment);
    if (!block) throw std::bad_alloc();
    return block;
}

// A large model is read all over the place, and most of that time goes into finding pages: large blocks ask the
// system for huge ones. A system that has none gives ordinary ones.
void* AllocateHuge(std::size_t bytes) {
    void* block = AllocateAligned(kHugePage, bytes);
    madvise(block, bytes, MADV_HUGEPAGE);
    return block;
}

bool IsHuge(std::size_t bytes) { return bytes >= 2 * kHugePage; }

Slab* NewSlab() {
    if (Slab* slab = g_empty) {
        g_empty = slab->next;
        return slab;
    }
    if (++g_slabs <= kSingleSlabs) return static_cast<Slab*>(AllocateAligned(kSlab, kSlab));
    if (g_hugeLeft == 0) {
        g_huge = static_cast<char*>(AllocateHuge(kHugePage));
        g_hugeLeft = kHugePage;
    }
    void* slab = g_huge;
    g_huge += kSlab;
    g_hugeLeft -= kSlab;
    return static_cast<Slab*>(slab);
}

void List(SizeClass& c, Slab* slab) {
    slab->prev = nullptr;
    slab->next = c.room;
    if (c.room) c.room->prev = slab;
    c.room = slab;
    slab->listed = true;
}

void Unlist(SizeClass& c, Slab* slab) {
    (slab->prev ? slab->prev->next : c.room) = slab->next;
    if (slab->next) slab->next->prev = slab->prev;
    slab->listed = false;
}

bool HasRoom(const Slab* slab) { return slab->free || slab->used + slab->blockBytes <= kSlab; }

}  // namespace

void* PoolAllocate(std::size_t bytes) {
    if (kUseHeapAlone) return ::operator new(bytes);
    if (bytes > kLargest) return IsHuge(bytes) ? AllocateHuge(bytes) : ::operator new(bytes);
    const std::size_t grains = bytes == 0 ? 1 : (bytes + kGrain - 1) / kGrain;
    SizeClass& c = g_class[grains];
    Slab* slab = c.room;
    if (!slab) {
        slab = NewSlab();
        *slab = Slab{nullptr, nullptr, nullptr, sizeof(Slab), 0, static_cast<std::uint32_t>(grains * kGrain), false};
        List(c, slab);
    }
    void* block;
    if (slab->free) {
        block = slab->free;
        slab->free = slab->free->next;
    } else {
        block = reinterpret_cast<char*>(slab) + slab->used;
        slab->used += slab->blockBytes;
    }
    ++slab->live;
    if (!HasRoom(slab)) Unlist(c, slab);
    return block;
}

void PoolFree(void* block, std::size_t bytes) noexcept {
    if (!block) return;
    if (kUseHeapAlone || (bytes > kLargest && !IsHuge(bytes))) {
        ::operator delete(block);
        return;
    }
    if (bytes > kLargest) {
        std::free(block);
        return;
    }
    auto* slab = reinterpret_cast<Slab*>(reinterpret_cast<std::uintptr_t>(block) & ~(std::uintptr_t{kSlab} - 1));
    SizeClass& c = g_class[slab->blockBytes / kGrain];
    if (--slab->live == 0) {
        if (slab->listed) Unlist(c, slab);
        slab->next = g_empty;
        g_empty = slab;
        return;
    }
    auto* freed = static_cast<FreeBlock*>(block);
    freed->next = slab->free;
    slab->free = freed;
    if (!slab->listed) List(c, slab);
}
