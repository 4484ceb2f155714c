// The records: the enumeration size rule and field equality as the header
// merge uses it.
#include "Records.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

TEST(stEnum, SizeRuleGrowsAndNeverShrinks) {
    struct Row {
        std::vector<int32_t> values;
        int32_t expected;
        char const* reason;
    } rows[] = {
        {{0, 255}, 1, "fits a byte"},
        {{0, 255, 256}, 2, "past a byte"},
        {{0, 65535}, 2, "still fits a short"},
        {{0, 255, 256, 65536}, 4, "past a short"},
        {{65536, 3}, 4, "a later small value leaves it"},
        {{-1, 127}, 1, "fits a signed byte"},
        {{-1, 128}, 2, "past a signed byte upwards"},
        {{-129}, 2, "past a signed byte downwards"},
        {{-32768, 32767}, 2, "fits a signed short"},
        {{-32769}, 4, "past a signed short downwards"},
        {{200, -1}, 2, "a negative makes 200 too big for a byte"},
    };
    for (auto const& row : rows) {
        stEnum record;
        for (int32_t v : row.values) record.AddField("X", v);
        EXPECT_EQ(row.expected, record.m_nSizeof) << row.reason;
    }
    stEnum fresh;
    fresh.SetInitVal(300);
    EXPECT_EQ(2, fresh.m_nSizeof) << "the initial value counts too";
}

TEST(stStructVar, EqualityTreatsDimCountsZeroAndOneAlike) {
    struct Row {
        int32_t countA, countB, dimB;
        bool expected;
        char const* reason;
    } rows[] = {
        {0, 1, 1, true, "scalar against array of one"},
        {1, 0, 1, true, "and the other way round"},
        {1, 2, 1, false, "counts 1 and 2"},
        {1, 1, 5, false, "first dimension differs"},
        {0, 0, 5, true, "dimensions past the count do not count"},
    };
    for (auto const& row : rows) {
        stStructVar a, b;
        a.m_nDimCount = row.countA;
        b.m_nDimCount = row.countB;
        b.m_nDim[0] = row.dimB;
        b.m_strType = "T";  // neither the type name nor documentation counts
        b.m_strDescription = "doc";
        EXPECT_EQ(row.expected, a == b) << row.reason;
    }
}

}  // namespace
