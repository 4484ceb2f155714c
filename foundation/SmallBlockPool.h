// The small-block allocator of KSManCMD. A whole job creates millions of
// records, list nodes and strings of a few dozen bytes and frees hardly any of
// them before it ends, so general-purpose allocation spends much of its time on
// bookkeeping that never pays off. Here blocks of up to kLargest bytes are cut
// from one reserved address range: each size class fills runs of kRunSize bytes
// in turn, a freed block goes on its class's free list for the next request of
// that class, and the class of any pointer is read from a table indexed by its
// run. Nothing is handed back to the system before the process ends.
// One pool serves one thread; the executable that uses it runs on one thread.
#pragma once

#include <cstddef>
#include <cstdint>

class CSmallBlockPool {
public:
    static constexpr size_t kLargest = 512;
    static constexpr size_t kStep = 8;        // size classes are 8, 16, 24, ... bytes
    static constexpr size_t kAlignment = 16;  // what operator new promises
    static constexpr size_t kRunSize = size_t{64} << 10;

    // Reserves address space for reserve bytes (rounded down to whole runs);
    // nothing is resident until used. A reserve the system refuses leaves a
    // pool that hands out nothing.
    explicit CSmallBlockPool(size_t reserve);
    ~CSmallBlockPool();
    CSmallBlockPool(CSmallBlockPool const&) = delete;
    CSmallBlockPool& operator=(CSmallBlockPool const&) = delete;

    // A block of at least size bytes, aligned to kAlignment when its class is a
    // multiple of it and to kStep otherwise: a request of 17 to 24 bytes cannot
    // be for an object aligned to 16, whose size would be a multiple of 16, so
    // a list node of 24 bytes takes 24 and not 32. Null for 0 bytes,
    // for more than kLargest bytes and once the reserve is used up.
    void* Allocate(size_t size);
    // True when block came from this pool.
    bool Owns(void const* block) const {
        uintptr_t at = reinterpret_cast<uintptr_t>(block);
        return at >= m_nBase && at < m_nBase + m_nUsed;
    }
    // Takes back a block of this pool (Owns(block) must hold).
    void Free(void* block);

private:
    static constexpr size_t kClasses = kLargest / kStep;
    struct FreeBlock {
        FreeBlock* next;
    };
    struct SizeClass {
        FreeBlock* free = nullptr;
        char* next = nullptr;  // the unused rest of the class's current run
        char* end = nullptr;
    };

    bool StartRun(size_t classIndex);

    uintptr_t m_nBase = 0;
    size_t m_nReserved = 0;
    size_t m_nUsed = 0;  // whole runs handed to classes so far
    uint8_t* m_pRunClass = nullptr;  // class index of each run
    SizeClass m_Classes[kClasses];
};
