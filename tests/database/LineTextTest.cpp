// The writer's line formatter: every directive of the database line formats
// gives the bytes printf gives, texts stop at their first NUL, and line feeds
// are taken out only when asked; a format read at compile time gives the same
// bytes as one read as the line is built.
#include "LineText.h"

#include <gtest/gtest.h>

#include <string>

#include "DatabaseTexts.h"

namespace {

constexpr CLineFormat kMixed("<%ld|%d%%%q%s>%");
constexpr CLineFormat kStructField(dbtexts::kStructField);
constexpr CLineFormat kBracketed("[%s]");

std::string Text(CLineText const& line) { return std::string(line.GetData(), static_cast<size_t>(line.GetLength())); }

TEST(CLineText, FormatGivesThePrintfBytesAndEndLineEndsTheLine) {
    CLineText line;
    line.Format("%d,%d,%d,%d,%s,%s,%s,", 0, -1, INT32_MIN, INT32_MAX, "A", "", CString("C"));
    EXPECT_EQ("0,-1,-2147483648,2147483647,A,,C,", Text(line));
    line.Format("%ld,%d", 7L, 3);
    EXPECT_EQ("7,3", Text(line));  // the buffer is replaced, not appended to
    line.Format("100%% %q%");
    EXPECT_EQ("100% %q%", Text(line));
    line.Format("%s|%s", CString("ab\0cd", 5), static_cast<char const*>(nullptr));
    EXPECT_EQ("ab|", Text(line));  // texts stop at their first NUL
    line.Format("%s,%d,", "x");
    EXPECT_EQ("x,,", Text(line));  // missing arguments give nothing
    line.Format(dbtexts::kStructHeader, "S\n", 1, "in\nfo", "d");
    line.RemoveLineFeeds();
    line.Append("!");
    line.EndLine();
    EXPECT_EQ("S,,,,,0,1,info,d!\n", Text(line));
}

TEST(CLineText, FormatsReadAtCompileTimeGiveTheSameBytes) {
    CLineText line;
    line.Format<kMixed>(-12L, 0, CString("ab\0cd", 5));
    EXPECT_EQ("<-12|0%%qab>%", Text(line));
    line.Format<kStructField>("S", "f", "primitive", "int", 3, 1, "", "");
    EXPECT_EQ("S,,f,primitive,int,3,1,,", Text(line));
    line.EndLine();
    line.Format(dbtexts::kStructField, "S", "f", "primitive", "int", 3, 1, "", "");
    EXPECT_EQ("S,,f,primitive,int,3,1,,", Text(line));  // a new line behind the ended one
    EXPECT_EQ("S,,f,primitive,int,3,1,,\nS,,f,primitive,int,3,1,,",
              std::string(line.GetBlock(), line.GetBlockLength()));
}

// Every "%d," is two pieces, so the format below is read in three parts; the
// arguments run out inside the second.
TEST(CLineText, LongFormatsAreReadInParts) {
    std::string format;
    for (int32_t i = 0; i < 3 * CLineFormat::kMaxPieces / 2; ++i) format += "%d,";
    CLineText line;
    line.Format(format.c_str(), 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20);
    EXPECT_EQ("1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20," + std::string(16, ','), Text(line));
}

// A string is copied by its length field only when that is where its text
// ends; each row is printed through a compile-time format and through Append.
// The rows point at their strings, since a copy would end at the length field.
TEST(CLineText, StringsPrintToTheirFirstNulWhateverTheirLengthField) {
    CString deleted("abcdefghijkl");
    deleted.Delete(1, 2);  // "adefghijkl" then the old "kl": no NUL at the length
    CString removed("a b c");
    removed.Remove(' ');  // length 4 over "abc", NUL, "c"
    CString texts[] = {CString(""), CString("abc"), CString("ab\0", 3), CString("abcdef"), CString("abcd\0f", 6),
                       CString("abcdefgh"), CString("abcdefghijklmnopq"), CString("abcdefghijklmnop\0", 17),
                       CString("abcdefgh\0jklmnopq", 17), CString(std::string(3000, 'x').c_str())};
    struct Row {
        CString const* text;
        std::string expected;
        char const* reason;
    } rows[] = {
        {&texts[0], "", "empty"},
        {&texts[1], "abc", "bytes one by one"},
        {&texts[2], "ab", "NUL last of a short text"},
        {&texts[3], "abcdef", "two overlapping halves"},
        {&texts[4], "abcd", "NUL in the second half"},
        {&texts[5], "abcdefgh", "one word"},
        {&texts[6], "abcdefghijklmnopq", "words and an overlapping last one"},
        {&texts[7], "abcdefghijklmnop", "NUL in the last word"},
        {&texts[8], "abcdefgh", "NUL in a middle word"},
        {&texts[9], std::string(3000, 'x'), "longer than the buffer"},
        {&deleted, "adefghijklkl", "length field cut short by Delete"},
        {&removed, "abc", "length field past the NUL after Remove"},
    };
    for (auto const& row : rows) {
        CLineText line;
        line.Format<kBracketed>(*row.text);
        EXPECT_EQ("[" + row.expected + "]", Text(line)) << row.reason;
        line.Format("%s", "<");
        line.Append(*row.text);
        EXPECT_EQ("<" + row.expected, Text(line)) << row.reason;
    }
}

}  // namespace
