// The open-addressing tables under the parser's indexes, checked against the
// standard maps through growth, clearing and (for the pointer map) erasing,
// which moves entries back within a run of slots.
#include "NameTable.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

struct Value {
    int32_t a;
    int32_t b;
};

TEST(CNameTable, KeepsEveryNameAndValueThroughGrowthAndClear) {
    CNameTable<Value> table;
    EXPECT_EQ(nullptr, table.Find("x", 1));
    // Names alike in their first eight bytes, an empty one and ones holding NULs.
    std::vector<std::string> names = {"", std::string("a\0b", 3), std::string("a\0c", 3), "a"};
    for (int32_t i = 0; i < 5000; ++i) names.push_back("ENUM_NAME_" + std::to_string(i));
    names.push_back(std::string(300, 'q'));
    std::map<std::string, uint32_t> ids;
    for (int32_t round = 0; round < 2; ++round) {
        for (size_t i = 0; i < names.size(); ++i) {
            bool inserted = false;
            uint32_t id = table.Insert(names[i].data(), names[i].size(), &inserted);
            EXPECT_TRUE(inserted);
            table.Value(id) = Value{static_cast<int32_t>(i), round};
            ids[names[i]] = id;
        }
        EXPECT_EQ(names.size(), table.Count());
        for (size_t i = 0; i < names.size(); ++i) {
            bool inserted = true;
            uint32_t id = table.Insert(names[i].data(), names[i].size(), &inserted);
            EXPECT_FALSE(inserted);
            EXPECT_EQ(ids[names[i]], id);
            EXPECT_EQ(names[i], std::string(table.Text(id), table.Length(id)));
            Value const* found = table.Find(names[i].data(), names[i].size());
            ASSERT_NE(nullptr, found);
            EXPECT_EQ(static_cast<int32_t>(i), found->a);
            EXPECT_EQ(round, found->b);
        }
        EXPECT_EQ(nullptr, table.Find("ENUM_NAME_5000", 14));
        EXPECT_EQ(nullptr, table.Find("a\0d", 3));
        table.Clear();
        EXPECT_EQ(0u, table.Count());
        EXPECT_EQ(nullptr, table.Find("a", 1));
    }
}

TEST(CPointerMap, AnswersAsAStandardMapThroughInsertsAndErases) {
    // Values that own memory, moved whenever an erase closes a gap.
    using Map = CPointerMap<int32_t, std::unique_ptr<int32_t>>;
    std::vector<int32_t> objects(4000);
    Map map;
    std::map<int32_t const*, int32_t> expected;
    EXPECT_EQ(nullptr, map.Find(&objects[0]));
    EXPECT_EQ(nullptr, map.Find(nullptr));
    EXPECT_FALSE(map.Erase(nullptr));
    std::mt19937 random(7u);
    for (int32_t step = 0; step < 40000; ++step) {
        int32_t* key = &objects[random() % objects.size()];
        if (random() % 3 == 0) {
            EXPECT_EQ(expected.erase(key) != 0, map.Erase(key));
        } else {
            std::unique_ptr<int32_t>& value = map[key];
            if (!value) value = std::make_unique<int32_t>(step);
            expected.emplace(key, *value);
        }
        if (step % 4000 == 0 || step == 39999) {
            ASSERT_EQ(expected.size(), map.Count());
            for (int32_t& object : objects) {
                auto want = expected.find(&object);
                std::unique_ptr<int32_t>* found = map.Find(&object);
                ASSERT_EQ(want != expected.end(), found != nullptr);
                if (found) {
                    EXPECT_EQ(want->second, **found);
                }
            }
        }
    }
    map.Clear();
    EXPECT_EQ(0u, map.Count());
    EXPECT_FALSE(map.Contains(&objects[1]));
}

}  // namespace
