// CSmallBlockPool: alignment and size limits, reuse of freed blocks by their
// own class only, and the end of the reserve.
#include "SmallBlockPool.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <vector>

namespace {

TEST(CSmallBlockPool, BlocksAreAlignedDistinctAndWithinTheLimits) {
    CSmallBlockPool pool(size_t{4} << 20);
    EXPECT_EQ(nullptr, pool.Allocate(0));
    EXPECT_EQ(nullptr, pool.Allocate(CSmallBlockPool::kLargest + 1));
    std::set<char*> seen;
    for (size_t size = 1; size <= CSmallBlockPool::kLargest; size += 7) {
        char* block = static_cast<char*>(pool.Allocate(size));
        ASSERT_NE(nullptr, block) << size;
        size_t rounded = (size + 7) / 8 * 8;  // an object aligned to 16 has a size that is a multiple of 16
        EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(block) % (rounded % 16 == 0 ? 16 : 8)) << size;
        EXPECT_TRUE(pool.Owns(block));
        std::memset(block, 0xA5, size);  // the whole block is usable
        EXPECT_TRUE(seen.insert(block).second) << size;
    }
    int local = 0;
    EXPECT_FALSE(pool.Owns(&local));
}

TEST(CSmallBlockPool, FreedBlockServesTheNextRequestOfItsClassOnly) {
    CSmallBlockPool pool(size_t{4} << 20);
    void* small = pool.Allocate(24);
    void* large = pool.Allocate(300);
    pool.Free(small);
    pool.Free(large);
    EXPECT_NE(small, pool.Allocate(32));  // another class
    EXPECT_EQ(small, pool.Allocate(17));  // 17 to 24 bytes share a class
    EXPECT_EQ(large, pool.Allocate(297));
    EXPECT_NE(small, pool.Allocate(24));
}

TEST(CSmallBlockPool, AFullReserveRefusesAndStillTakesBlocksBack) {
    CSmallBlockPool pool(2 * CSmallBlockPool::kRunSize);
    std::vector<void*> blocks;
    while (void* block = pool.Allocate(CSmallBlockPool::kLargest)) blocks.push_back(block);
    EXPECT_EQ(2 * CSmallBlockPool::kRunSize / CSmallBlockPool::kLargest, blocks.size());
    EXPECT_EQ(nullptr, pool.Allocate(16));  // no run left for another class
    pool.Free(blocks.back());
    EXPECT_EQ(blocks.back(), pool.Allocate(CSmallBlockPool::kLargest));
    CSmallBlockPool none(CSmallBlockPool::kRunSize - 1);  // less than one run
    EXPECT_EQ(nullptr, none.Allocate(16));
}

}  // namespace
