// Start-up heap tuning. Small blocks come from KSManCMD's own pool, which
// advises its range for huge pages itself; the heap still holds the larger
// blocks of a run (record arrays, name tables, line buffers), some tens of
// megabytes on a large header, and with ordinary pages the kernel would fault
// them in one 4 KB page at a time. The heap is therefore extended once by a
// large virtual reserve (nothing is resident until touched) and that range is
// advised for transparent huge pages. Where the advice is refused or unknown,
// or the reserve cannot be had, allocation goes on exactly as before.
#include "HeapReserve.h"

#include <cstdlib>  // defines __GLIBC__ where that is the C library

#if defined(__linux__) && defined(__GLIBC__)
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

void ReserveHeapOnHugePages() {
    constexpr size_t kReserve = size_t{1} << 30;  // virtual only
    constexpr uintptr_t kHugePage = uintptr_t{2} << 20;
    char* before = static_cast<char*>(sbrk(0));
    if (before == reinterpret_cast<char*>(-1)) return;
    // A first block larger than the heap's free top makes the heap grow, and
    // the top pad makes that growth take the whole reserve at once; no free
    // hands it back, so the advised range stays the heap's own. Blocks up to
    // the mapping threshold come from the heap too, and so from huge pages.
    mallopt(M_MMAP_THRESHOLD, 32 << 20);  // the largest the allocator accepts
    mallopt(M_TRIM_THRESHOLD, static_cast<int>(kReserve) + (32 << 20));
    mallopt(M_TOP_PAD, static_cast<int>(kReserve));
    void* volatile first = std::malloc(4 << 20);  // volatile: the pair must not be optimised away
    std::free(first);
    mallopt(M_TOP_PAD, 128 * 1024);
    char* after = static_cast<char*>(sbrk(0));
    if (after == reinterpret_cast<char*>(-1) || after <= before) return;
    uintptr_t start = (reinterpret_cast<uintptr_t>(before) + kHugePage - 1) & ~(kHugePage - 1);
    uintptr_t end = reinterpret_cast<uintptr_t>(after) & ~(kHugePage - 1);
    if (end > start) madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE);
}

#else

void ReserveHeapOnHugePages() {}

#endif
