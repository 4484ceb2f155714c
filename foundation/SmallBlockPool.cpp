// CSmallBlockPool: size classes of 8-byte steps, each filling 64 KB runs cut
// in address order from one reserved range, so the records of a run lie close
// together and the range can be backed by huge pages.
#include "SmallBlockPool.h"

#include <cstdlib>

#if defined(__unix__)
#include <sys/mman.h>
#endif

CSmallBlockPool::CSmallBlockPool(size_t reserve) {
#if defined(__unix__) && defined(MAP_NORESERVE)
    size_t runs = reserve / kRunSize;
    if (runs == 0) return;
    size_t bytes = runs * kRunSize;
    // Address space only: the system commits a page when it is first touched.
    void* range = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (range == MAP_FAILED) return;
    m_pRunClass = static_cast<uint8_t*>(std::calloc(runs, 1));
    if (!m_pRunClass) {
        munmap(range, bytes);
        return;
    }
#if defined(MADV_HUGEPAGE)
    madvise(range, bytes, MADV_HUGEPAGE);  // advice only; refused on some systems
#endif
    m_nBase = reinterpret_cast<uintptr_t>(range);
    m_nReserved = bytes;
#else
    (void)reserve;  // no reserve where address space cannot be had this way
#endif
}

CSmallBlockPool::~CSmallBlockPool() {
#if defined(__unix__) && defined(MAP_NORESERVE)
    if (m_nReserved) munmap(reinterpret_cast<void*>(m_nBase), m_nReserved);
#endif
    std::free(m_pRunClass);
}

void* CSmallBlockPool::Allocate(size_t size) {
    if (size == 0 || size > kLargest) return nullptr;
    size_t classIndex = (size - 1) / kStep;
    SizeClass& sizeClass = m_Classes[classIndex];
    if (FreeBlock* reused = sizeClass.free) {
        sizeClass.free = reused->next;
        return reused;
    }
    size_t blockSize = (classIndex + 1) * kStep;
    if (static_cast<size_t>(sizeClass.end - sizeClass.next) < blockSize && !StartRun(classIndex)) return nullptr;
    void* block = sizeClass.next;
    sizeClass.next += blockSize;
    return block;
}

void CSmallBlockPool::Free(void* block) {
    size_t run = (reinterpret_cast<uintptr_t>(block) - m_nBase) / kRunSize;
    FreeBlock* freed = static_cast<FreeBlock*>(block);
    SizeClass& sizeClass = m_Classes[m_pRunClass[run]];
    freed->next = sizeClass.free;
    sizeClass.free = freed;
}

bool CSmallBlockPool::StartRun(size_t classIndex) {
    if (m_nUsed + kRunSize > m_nReserved) return false;
    // The tail of the previous run, too short for one more block, stays unused.
    char* run = reinterpret_cast<char*>(m_nBase + m_nUsed);
    m_pRunClass[m_nUsed / kRunSize] = static_cast<uint8_t>(classIndex);
    m_nUsed += kRunSize;
    m_Classes[classIndex].next = run;
    m_Classes[classIndex].end = run + kRunSize;
    return true;
}
