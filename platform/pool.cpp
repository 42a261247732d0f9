#include "platform/pool.h"

#include <sys/mman.h>

#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t kGrain = 8, kLargest = 512;
constexpr std::size_t kSmallChunk = 64 * 1024, kHugePage = 2 * 1024 * 1024;
constexpr int kSmallChunks = 16;  // a small model stays small; after these, chunks are huge pages

struct FreeBlock { FreeBlock* next; };

// Plain pointers without destructors: objects with static storage may still free their blocks at exit.
FreeBlock* g_free[kLargest / kGrain + 1];
char* g_chunk = nullptr;
std::size_t g_chunkLeft = 0;
int g_chunks = 0;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kUseHeapAlone = true;
#else
constexpr bool kUseHeapAlone = false;
#endif

// A large model is read all over the place, and most of that time goes into finding pages: large blocks ask the
// system for huge ones. A system that has none gives ordinary ones.
void* AllocateHuge(std::size_t bytes) {
    const std::size_t whole = (bytes + kHugePage - 1) / kHugePage * kHugePage;
    void* block = std::aligned_alloc(kHugePage, whole);
    if (!block) throw std::bad_alloc();
    madvise(block, whole, MADV_HUGEPAGE);
    return block;
}

bool IsHuge(std::size_t bytes) { return bytes >= kHugePage; }

}  // namespace

void* PoolAllocate(std::size_t bytes) {
    if (kUseHeapAlone) return ::operator new(bytes);
    if (bytes > kLargest) return IsHuge(bytes) ? AllocateHuge(bytes) : ::operator new(bytes);
    const std::size_t grains = (bytes + kGrain - 1) / kGrain;
    if (FreeBlock* block = g_free[grains]) {
        g_free[grains] = block->next;
        return block;
    }
    const std::size_t need = grains * kGrain;
    if (g_chunkLeft < need) {  // what is left of the old chunk is less than one block: let it go
        g_chunkLeft = ++g_chunks > kSmallChunks ? kHugePage : kSmallChunk;
        g_chunk = static_cast<char*>(IsHuge(g_chunkLeft) ? AllocateHuge(g_chunkLeft) : ::operator new(g_chunkLeft));
    }
    void* block = g_chunk;
    g_chunk += need;
    g_chunkLeft -= need;
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
    const std::size_t grains = (bytes + kGrain - 1) / kGrain;
    auto* freed = static_cast<FreeBlock*>(block);
    freed->next = g_free[grains];
    g_free[grains] = freed;
}
