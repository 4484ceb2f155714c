// The global operator new and delete of KSManCMD: blocks of up to a few
// hundred bytes come from the small-block pool, larger ones and any request
// the pool cannot serve from malloc. Linked into KSManCMD alone, and left out
// of sanitizer builds, whose own allocator must see every block.
#include <cstdlib>
#include <new>

#include "SmallBlockPool.h"

namespace {

// Address space only; a full reserve sends further blocks to malloc.
constexpr size_t kPoolReserve = sizeof(void*) >= 8 ? size_t{8} << 30 : size_t{256} << 20;

// Built on the first request, whenever that comes during start-up, and never
// destroyed: blocks still in use by other objects' destructors at exit stay
// valid.
CSmallBlockPool& Pool() {
    alignas(CSmallBlockPool) static unsigned char storage[sizeof(CSmallBlockPool)];
    static CSmallBlockPool* pool = new (storage) CSmallBlockPool(kPoolReserve);
    return *pool;
}

void* Allocate(size_t size) {
    if (void* block = Pool().Allocate(size)) return block;
    return std::malloc(size ? size : 1);
}

void Release(void* block) {
    if (!block) return;
    CSmallBlockPool& pool = Pool();
    if (pool.Owns(block)) pool.Free(block);
    else std::free(block);
}

}  // namespace

void* operator new(size_t size) {
    void* block = Allocate(size);
    if (!block) throw std::bad_alloc();
    return block;
}

void* operator new[](size_t size) { return operator new(size); }

void* operator new(size_t size, std::nothrow_t const&) noexcept { return Allocate(size); }

void* operator new[](size_t size, std::nothrow_t const&) noexcept { return Allocate(size); }

void operator delete(void* block) noexcept { Release(block); }

void operator delete[](void* block) noexcept { Release(block); }

void operator delete(void* block, size_t) noexcept { Release(block); }

void operator delete[](void* block, size_t) noexcept { Release(block); }

void operator delete(void* block, std::nothrow_t const&) noexcept { Release(block); }

void operator delete[](void* block, std::nothrow_t const&) noexcept { Release(block); }
