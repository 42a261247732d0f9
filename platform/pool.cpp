#include "platform/pool.h"

#include <new>

namespace {

constexpr std::size_t kGrain = 8, kLargest = 512, kChunkBytes = 64 * 1024;

struct FreeBlock { FreeBlock* next; };

// Plain pointers without destructors: objects with static storage may still free their blocks at exit.
FreeBlock* g_free[kLargest / kGrain + 1];
char* g_chunk = nullptr;
std::size_t g_chunkLeft = 0;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kUseHeapAlone = true;
#else
constexpr bool kUseHeapAlone = false;
#endif

}  // namespace

void* PoolAllocate(std::size_t bytes) {
    if (kUseHeapAlone || bytes > kLargest) return ::operator new(bytes);
    const std::size_t grains = (bytes + kGrain - 1) / kGrain;
    if (FreeBlock* block = g_free[grains]) {
        g_free[grains] = block->next;
        return block;
    }
    const std::size_t need = grains * kGrain;
    if (g_chunkLeft < need) {  // what is left of the old chunk is less than one block: let it go
        g_chunk = static_cast<char*>(::operator new(kChunkBytes));
        g_chunkLeft = kChunkBytes;
    }
    void* block = g_chunk;
    g_chunk += need;
    g_chunkLeft -= need;
    return block;
}

void PoolFree(void* block, std::size_t bytes) noexcept {
    if (!block) return;
    if (kUseHeapAlone || bytes > kLargest) {
        ::operator delete(block);
        return;
    }
    const std::size_t grains = (bytes + kGrain - 1) / kGrain;
    auto* freed = static_cast<FreeBlock*>(block);
    freed->next = g_free[grains];
    g_free[grains] = freed;
}
