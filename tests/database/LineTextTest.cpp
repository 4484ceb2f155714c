// The writer's line formatter: every directive of the database line formats
// gives the bytes printf gives, texts stop at their first NUL, and line feeds
// are taken out only when asked.
#include "LineText.h"

#include <gtest/gtest.h>

#include <string>

#include "DatabaseTexts.h"

namespace {

std::string Text(CLineText const& line) { return std::string(line.GetData(), static_cast<size_t>(line.GetLength())); }

TEST(CLineText, FormatGivesThePrintfBytesOfEachDirective) {
    CLineText line;
    line.Format("%d,%d,%d,%d,%s,%s,%s,", 0, -1, INT32_MIN, INT32_MAX, "A", "", CString("C"));
    EXPECT_EQ("0,-1,-2147483648,2147483647,A,,C,", Text(line));
    line.Format("%ld,%d", 7L, 3);
    EXPECT_EQ("7,3", Text(line));  // the buffer is replaced, not appended to
    line.Format("100%% %q%");
    EXPECT_EQ("100% %q%", Text(line));
}

TEST(CLineText, TextsStopAtTheirFirstNul) {
    CLineText line;
    line.Format("%s|%s", CString("ab\0cd", 5), static_cast<char const*>(nullptr));
    EXPECT_EQ("ab|", Text(line));
}

TEST(CLineText, MissingArgumentsGiveNothing) {
    CLineText line;
    line.Format("%s,%d,", "x");
    EXPECT_EQ("x,,", Text(line));
}

TEST(CLineText, RemoveLineFeedsThenEndLine) {
    CLineText line;
    line.Format(dbtexts::kStructHeader, "S\n", 1, "in\nfo", "d");
    line.RemoveLineFeeds();
    line.Append("!");
    line.EndLine();
    EXPECT_EQ("S,,,,,0,1,info,d!\n", Text(line));
}

}  // namespace
