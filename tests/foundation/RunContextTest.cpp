// stData: the fatal-error record; the saturating number readers.
#include "RunContext.h"

#include <gtest/gtest.h>

#include "NumberText.h"

namespace {

TEST(stData, SetFatalErrorRecordsOnlyAtOrBelowTheLevel) {
    stData data;
    EXPECT_EQ(0, data.SetFatalError("minor", 4));
    EXPECT_FALSE(data.m_bFatalError);
    EXPECT_EQ(1, data.SetFatalError("first", 3));
    EXPECT_EQ(1, data.SetFatalError("second", 1));
    EXPECT_TRUE(data.m_bFatalError);
    EXPECT_STREQ("second", data.m_strFatalError.GetData());
}

TEST(NumberText, Atoi32AndReadHex32ReadLikeTheCLibraryAndSaturate) {
    struct Row {
        char const* text;
        int32_t value;
    } rows[] = {
        {"12abc", 12}, {"  -7", -7}, {"+3", 3}, {"abc", 0}, {"-", 0}, {"", 0},
        {"99999999999", 2147483647}, {"-99999999999", INT32_MIN}, {"2147483648", 2147483647},
    };
    for (auto const& row : rows) EXPECT_EQ(row.value, Atoi32(row.text)) << row.text;
    uint32_t value = 7;
    EXPECT_TRUE(ReadHex32("1Fu", value));
    EXPECT_EQ(0x1Fu, value);
    EXPECT_TRUE(ReadHex32("ffffffff", value));
    EXPECT_EQ(0xFFFFFFFFu, value);
    EXPECT_TRUE(ReadHex32("123456789", value));
    EXPECT_EQ(0xFFFFFFFFu, value);
    EXPECT_FALSE(ReadHex32("", value));
    EXPECT_EQ(0u, value);
}

}  // namespace
