// The containers: list order and sorted insertion, the map's hash, chain and
// iteration rules (including the kept SetAt behaviour on a chain's last node),
// and the array's growth, inclusive RemoveAt and element lifetimes.
#include "Collections.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct Item {
    int base;
    int tag;
    bool operator<(Item const& other) const { return base < other.base; }
};

TEST(MyList, GetNextOnTheLastNodeLeavesANullPositionAndAddSortIsStable) {
    CStringList list;
    list.AddTail("a");
    list.AddTail("b");
    list.AddHead("z");
    std::string order;
    for (void* pos = list.GetHeadPosition(); pos;) order += list.GetNext(pos).GetData();
    EXPECT_EQ("zab", order);
    void* last = list.GetTailPosition();
    EXPECT_STREQ("b", list.GetNext(last).GetData());
    EXPECT_EQ(nullptr, last);
    EXPECT_STREQ("z", list.RemoveHead().GetData());
    EXPECT_STREQ("b", list.RemoveTail().GetData());
    EXPECT_EQ(1, list.GetCount());
    Item items[] = {{5, 1}, {3, 2}, {5, 3}, {4, 4}};
    CListPtr<Item> sorted;
    for (Item& item : items) sorted.AddSort(&item);
    std::vector<int> tags;
    for (void* pos = sorted.GetHeadPosition(); pos;) tags.push_back(sorted.GetNext(pos)->tag);
    EXPECT_EQ((std::vector<int>{2, 4, 1, 3}), tags);  // AddSort is stable
}

TEST(MyMap, StringHashIsTimes33OfSignedBytes) {
    EXPECT_EQ(108966u, HashKey(CString("abc")));
    EXPECT_EQ(0u, HashKey(CString("")));
    // A byte of 200 counts as -56.
    EXPECT_EQ(static_cast<uint32_t>(-56), HashKey(CString("\xC8")));
}

TEST(MyMap, SetAtOnTheLastNodeOfAChainAddsASecondNode) {
    CMap<int32_t, int32_t, int32_t, int32_t> map;
    map.SetAt(1, 10);
    map.SetAt(1 + kDefaultBucketCount, 20);
    map.SetAt(1 + kDefaultBucketCount, 30);
    int32_t value = 0;
    ASSERT_TRUE(map.Lookup(1 + kDefaultBucketCount, value));
    EXPECT_EQ(20, value);
    EXPECT_EQ(3, map.GetCount());
    map.SetAt(1, 11);  // the head is compared and replaced
    ASSERT_TRUE(map.Lookup(1, value));
    EXPECT_EQ(11, value);
    EXPECT_EQ(3, map.GetCount());
    EXPECT_TRUE(map.RemoveKey(1 + kDefaultBucketCount));
    ASSERT_TRUE(map.Lookup(1 + kDefaultBucketCount, value));
    EXPECT_EQ(30, value);
}

TEST(MyMap, IteratesByBucketThenChain) {
    CMap<int32_t, int32_t, int32_t, int32_t> map;
    map.SetAt(500, 1);
    map.SetAt(7, 2);
    map.SetAt(7 + kDefaultBucketCount, 3);
    map.SetAt(13930, 4);
    std::vector<int32_t> keys;
    for (void* pos = map.GetStartPosition(); pos;) {
        int32_t key = 0, value = 0;
        map.GetNextAssoc(pos, key, value);
        keys.push_back(key);
    }
    EXPECT_EQ((std::vector<int32_t>{7, 7 + kDefaultBucketCount, 500, 13930}), keys);
}

TEST(MyMap, EnableGrowthSpreadsChainsAndKeepsTheOlderDuplicateFirst) {
    CMap<int32_t, int32_t, int32_t, int32_t> map(3);
    map.EnableGrowth();
    map.SetAt(1, 10);
    map.SetAt(4, 40);
    map.SetAt(4, 41);  // 4 sits in the last node of the chain: a second node
    for (int32_t key = 100; key < 200; ++key) map[key] = key;
    EXPECT_LT(100, map.GetBucketCount());
    EXPECT_EQ(103, map.GetCount());
    int32_t value = 0;
    ASSERT_TRUE(map.Lookup(4, value));
    EXPECT_EQ(40, value);
    EXPECT_TRUE(map.RemoveKey(4));
    ASSERT_TRUE(map.Lookup(4, value));
    EXPECT_EQ(41, value);
    ASSERT_TRUE(map.Lookup(150, value));
    EXPECT_EQ(150, value);
}

TEST(MyMap, IndexOperatorAppendsAnEmptyValueAndLookupIsCaseSensitive) {
    CMapStringToString map;
    map["k"] += "v";
    CString value;
    EXPECT_FALSE(map.Lookup("K", value));
    ASSERT_TRUE(map.Lookup("k", value));
    EXPECT_STREQ("v", value.GetData());
    map.RemoveAll();
    EXPECT_EQ(nullptr, map.GetStartPosition());
}

TEST(MyArray, GrowsSmallThenByTheStepOrThroughTheIndex) {
    CArray<int> array;
    array.Add(0);
    EXPECT_EQ(4u, array.GetCapacity());
    for (int i = 1; i < 50; ++i) array.Add(i);
    EXPECT_EQ(50u, array.GetCapacity());
    array.Add(50);
    EXPECT_EQ(100u, array.GetCapacity());
    EXPECT_EQ(50, array.GetTail());
    CUIntArray indexed;
    indexed[120] = 7;  // an index past the size grows the array
    EXPECT_EQ(121u, indexed.GetSize());
    EXPECT_EQ(0u, indexed[5]);
    CStringArray lines;
    lines.Add("a");
    lines.Add("c");
    lines.InsertAt(1, "b");
    EXPECT_STREQ("b", lines[1].GetData());
    EXPECT_EQ(3u, lines.GetSize());
}

TEST(MyArray, FreeExtraKeepsTheElementsAndDropsTheSpareSlots) {
    CArray<CString> array;
    for (char const* text : {"a", "bb", "a text longer than the inline buffer"}) array.Add(CString(text));
    EXPECT_EQ(4u, array.GetCapacity());
    array.FreeExtra();
    EXPECT_EQ(3u, array.GetCapacity());
    EXPECT_STREQ("a text longer than the inline buffer", array.GetAt(2).GetData());
    array.Add(CString("d"));  // grows again from the exact size
    EXPECT_EQ(4u, array.GetSize());
    array.RemoveAll();
    array.FreeExtra();
    EXPECT_EQ(0u, array.GetCapacity());
    EXPECT_EQ(nullptr, array.GetHeadPosition());
}

TEST(MyArray, RemoveAtTakesAnInclusiveLastIndex) {
    struct Row {
        uint32_t first, last;
        char const* expected;
        bool removed;
        char const* reason;
    } rows[] = {
        {2, 0, "0134", true, "last 0 means first alone"},
        {4, 2, "01", true, "swapped when last is below first"},
        {1, 9, "01234", false, "last past the size removes nothing"},
        {1, 3, "04", true, "inclusive range"},
    };
    for (auto const& row : rows) {
        CArray<int> array;
        for (int i = 0; i < 5; ++i) array.Add(i);
        EXPECT_EQ(row.removed, array.RemoveAt(row.first, row.last)) << row.reason;
        std::string content;
        for (uint32_t i = 0; i < array.GetSize(); ++i) content += static_cast<char>('0' + array[i]);
        EXPECT_EQ(row.expected, content) << row.reason;
    }
}

// Counts the elements alive, to tell built slots from raw room.
struct Counted {
    explicit Counted(int v = 0) : value(v) { ++live; }
    Counted(Counted const& other) : value(other.value) { ++live; }
    Counted(Counted&& other) noexcept : value(other.value) { ++live; }
    Counted& operator=(Counted const&) = default;
    Counted& operator=(Counted&&) = default;
    ~Counted() { --live; }
    int value;
    static inline int live = 0;
};

// Elements live only below the size: every one built is destroyed once, and
// an element added from the array itself survives the move to a larger block.
TEST(MyArray, BuildsAndDestroysEachElementOnce) {
    {
        MyArray<Counted> array(4);
        for (int i = 0; i < 4; ++i) array.Emplace(i);
        array.Add(array[0]);  // the fifth element moves the array to a new block
        EXPECT_EQ(5u, array.GetSize());
        EXPECT_EQ(0, array.GetTail().value);
        EXPECT_EQ(5, Counted::live);
        array.InsertAt(1, Counted(9));
        EXPECT_EQ(9, array[1].value);
        EXPECT_EQ(1, array[2].value);
        array.RemoveAt(0, 2);
        array.RemoveTail();
        EXPECT_EQ(2u, array.GetSize());
        EXPECT_EQ(2, Counted::live);
        array.SetSize(6);
        EXPECT_EQ(6, Counted::live);
        array.Reserve(40);
        EXPECT_EQ(40u, array.GetCapacity());
        EXPECT_EQ(6, Counted::live);  // room is not elements
        array.SetSize(1);
        array.FreeExtra();
        EXPECT_EQ(1u, array.GetCapacity());
        EXPECT_EQ(2, array[0].value);
        MyArray<Counted> copy(array);
        EXPECT_EQ(2, Counted::live);
    }
    EXPECT_EQ(0, Counted::live);
}

}  // namespace
