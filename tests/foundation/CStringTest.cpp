// CString: clamping, failed searches, trimming sets, the length field after
// Remove and Delete, and formatting past the working buffer.
#include "CString.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Text(CString const& s) { return std::string(s.GetData(), static_cast<size_t>(s.GetLength())); }

TEST(CString, LeftRightMidClamp) {
    CString abc("abc");
    struct Row {
        CString result;
        char const* expected;
        char const* reason;
    } rows[] = {
        {abc.Left(0), "", "zero count"},
        {abc.Left(-3), "", "negative count"},
        {abc.Left(99), "abc", "past the end gives the whole string"},
        {abc.Left(2), "ab", "plain"},
        {abc.Right(99), "abc", "past the end gives the whole string"},
        {abc.Right(1), "c", "plain"},
        {abc.Mid(3), "", "start at the end"},
        {abc.Mid(1), "bc", "plain"},
        {abc.Mid(1, 5), "bc", "count cut to the rest"},
        {abc.Mid(1, 0), "", "zero count"},
        {abc.Mid(5, 2), "", "start past the end"},
    };
    for (auto const& row : rows) EXPECT_EQ(row.expected, Text(row.result)) << row.reason;
}

TEST(CString, FindMissingGivesMinusOne) {
    CString abc("abc");
    EXPECT_EQ(-1, abc.Find("x"));
    EXPECT_EQ(-1, abc.Find('c', 3));
    EXPECT_EQ(2, abc.Find('c', 1));
    EXPECT_EQ(1, abc.Find("bc"));
    EXPECT_EQ(-1, abc.Find("bcd"));
    EXPECT_EQ(-1, abc.FindOneOf("xyz"));
    EXPECT_EQ(1, abc.FindOneOf("cb"));
    EXPECT_EQ(3, CString("a,b,c").ReverseFind(',', 99));
    EXPECT_EQ(3, CString("a,b,c").ReverseFind(','));
    EXPECT_EQ(1, CString("a,b,c").ReverseFind(',', 2));
    EXPECT_EQ(-1, CString("abc").ReverseFind(','));
}

TEST(CString, CompareUsesSignedBytesThenLengths) {
    EXPECT_LT(CString("abc").CompareNoCase("ABCD"), 0);
    EXPECT_EQ(0, CString("abc").CompareNoCase("ABC"));
    EXPECT_EQ(-1, CString("abc").Compare("abcd"));
    EXPECT_EQ('a' - 'b', CString("a").Compare("b"));
    // A byte of 200 is negative as a signed byte, so it sorts before 'a'.
    EXPECT_LT(CString("\xC8").Compare("a"), 0);
    EXPECT_TRUE(CString("ab") == "ab");
    EXPECT_TRUE(CString("ab") != "abc");
}

TEST(CString, TrimRightRemovesHighBytesTrimLeftKeepsThem) {
    CString right("ab\xC8");
    right.TrimRight();
    EXPECT_EQ("ab", Text(right));
    CString left("\xC8" "ab");
    left.TrimLeft();
    EXPECT_EQ("\xC8" "ab", Text(left));
    CString both(" \t x \r\n");
    both.TrimLeft();
    both.TrimRight();
    EXPECT_EQ("x", Text(both));
    CString set("--x--");
    set.TrimLeft(CString("-"));
    set.TrimRight('-');
    EXPECT_EQ("x", Text(set));
}

TEST(CString, RemoveAndDeleteKeepTheirOddLengthFields) {
    CString s("a b c");
    EXPECT_EQ(2, s.Remove(' '));
    EXPECT_EQ(4, s.GetLength());
    EXPECT_STREQ("abc", s.GetData());
    CString untouched("abc");
    EXPECT_EQ(0, untouched.Remove('#'));
    EXPECT_EQ(3, untouched.GetLength());
    CString one("#ifdef");
    one.Remove('#');
    EXPECT_EQ("ifdef", Text(one));
    CString deleted("abcdef");
    deleted.Delete(1, 2);
    EXPECT_EQ(4, deleted.GetLength());
    EXPECT_EQ("adef", Text(deleted));
    EXPECT_STREQ("adefef", deleted.GetData());  // the old tail stays visible
    CString cut("abc");
    cut.Delete(1, 99);
    EXPECT_EQ("a", Text(cut));
}

TEST(CString, EditsInPlaceGrowReplaceInsertAndCase) {
    CString grown("ab");
    grown.SetAt(4, 'x');
    EXPECT_EQ("ab  x", Text(grown));  // SetAt grows with blanks
    grown.SetAt(1, '\0');
    EXPECT_EQ(1, grown.GetLength());
    CString doubled("aaa");
    EXPECT_EQ(3, doubled.Replace("a", "aa"));  // never matches its own insertion
    EXPECT_EQ("aaaaaa", Text(doubled));
    CString lines("x\ny\n");
    EXPECT_EQ(2, lines.Replace("\n", ""));
    EXPECT_EQ("xy", Text(lines));
    EXPECT_EQ(2, lines.Replace('x', 'z') + lines.Replace('y', 'z'));
    CString s("ad");
    s.Insert(1, "bc");
    EXPECT_EQ("abcd", Text(s));
    EXPECT_EQ("abcde", Text(s + 'e'));
    EXPECT_EQ("xabcd", Text("x" + s));
    s += s;
    EXPECT_EQ("abcdabcd", Text(s));
    CString null(static_cast<char const*>(nullptr));
    EXPECT_TRUE(null.IsEmpty());
}

TEST(CString, FormatLongerThanItsBufferIsWholeAndCaseConverts) {
    std::string longText(20000, 'q');
    CString s;
    s.Format("<%s>", longText.c_str());
    EXPECT_EQ("<" + longText + ">", Text(s));
    s.Format("%d,%s", -5, "x");
    EXPECT_EQ("-5,x", Text(s));
    CString mixed("aB1");
    mixed.MakeUpper();
    EXPECT_EQ("AB1", Text(mixed));
    mixed.MakeLower();
    EXPECT_EQ("ab1", Text(mixed));
}

}  // namespace
