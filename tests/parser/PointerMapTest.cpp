// The pointer map under the parser's indexes, checked against a standard map
// through growth and erasing, which moves entries back within a run of slots.
#include "PointerMap.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <vector>

namespace {

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
