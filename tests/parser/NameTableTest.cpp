// The name table under the parser's indexes: names alike in their first bytes,
// holding NULs or empty, found again through growth and after Clear.
#include "NameTable.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

struct SPair {
    int32_t a;
    int32_t b;
};

TEST(CNameTable, KeepsEveryNameAndValueThroughGrowthAndClear) {
    CNameTable<SPair> table;
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
            table.Value(id) = SPair{static_cast<int32_t>(i), round};
            ids[names[i]] = id;
        }
        EXPECT_EQ(names.size(), table.Count());
        for (size_t i = 0; i < names.size(); ++i) {
            bool inserted = true;
            uint32_t id = table.Insert(names[i].data(), names[i].size(), &inserted);
            EXPECT_FALSE(inserted);
            EXPECT_EQ(ids[names[i]], id);
            EXPECT_EQ(names[i], std::string(table.Text(id), table.Length(id)));
            SPair const* found = table.Find(names[i].data(), names[i].size());
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

}  // namespace
