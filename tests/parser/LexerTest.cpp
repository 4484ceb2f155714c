// Lines, comments and tokens of the header parser, read from in-memory headers.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "FrontEndHarness.h"
#include "TestSupport.h"

namespace {

struct TokenRow {
    char const* header;
    char const* expected;  // text:kind of every token, in order
    char const* reason;
};

}  // namespace

TEST(CParseS2TLexer, GetTokenSplitsAsTheSeparatorsSay) {
    std::vector<TokenRow> const rows = {
        {"a=b;", "a:4 =:4 b:4 ;:1", "separators are tokens of their own"},
        {"1<<4", "1<<4:4", "shift signs are not separators"},
        {"a - b", "a:4 -:4 b:4", "spaced minus"},
        {"a-b", "a:4 -:4 b:4", "unspaced minus"},
        {"x = 'a' | B.c;", "x:4 =:4 'a':4 |:4 B.c:4 ;:1", "quotes, bar and full stop stay inside words"},
        {"f(a[2],*p)", "f:4 (:4 a:4 [:4 2:4 ]:4 ,:4 *:4 p:4 ):4", "brackets, comma and star"},
        {"#include <a.h>", "include:4 <a.h>:4", "an include line keeps its words"},
        {"#define N 5", "define:2 N:4 5:4", "a define directive"},
        {"defineCount;", "defineC:2 ount:4 ;:1", "only the letters of define are tested"},
        {"x/*c*/y", "xy:4", "a comment inside a word joins its halves"},
        {"/*c*/ x", ":4 x:4", "the blank left by a removed comment is an empty token"},
        {"a /* c\n d */ z", "a:4 :4 z:4", "a comment across lines"},
        {"/* a\nb c\n*/ d", ":4 d:4", "a line wholly inside a comment is empty"},
        {"a // b\nc", "a:4 c:4", "a line comment"},
        {"*/ x /* y\nz", ":4 x:4 z:4", "a line that closes and opens a comment reads on as code"},
        {"a\n\n\nb", "a:4 b:4", "empty lines are skipped"},
        {"", "<no line>", "an empty file has no line"},
    };
    for (TokenRow const& row : rows) {
        FrontEndHarness h(row.header);
        EXPECT_EQ(row.expected, h.Tokens()) << row.reason;
    }
}

TEST(CParseS2TLexer, GetTokenLeavesTheDefineBodyInTheLine) {
    FrontEndHarness h("#define N 5\n");
    ASSERT_EQ(1, h.Parser().ReadLine(h.File(), 0));
    EXPECT_EQ(CString("define"), h.Parser().GetToken(h.File()));
    EXPECT_EQ(TOKEN_DEFINE, h.Parser().m_nTokenType);
    EXPECT_EQ(CString("N 5"), h.Parser().m_strLine);
}

TEST(CParseS2TLexer, GetTokenKeepsTheLineExactOnOrdinaryLines) {
    FrontEndHarness h("int a, b; char c;\n");
    h.Parser().ReadLine(h.File(), 0);
    h.Parser().GetToken(h.File());
    h.Parser().GetToken(h.File());
    EXPECT_EQ(CString(", b; char c;"), h.Parser().m_strLine);
}

TEST(CParseS2TLexer, CurrentLineIsExactOnAVeryLongLine) {
    std::string line = "first second ";
    line += std::string(10000, 'x');
    FrontEndHarness h(line + "\nnext");
    h.Parser().ReadLine(h.File(), 0);
    EXPECT_EQ(CString("first"), h.Parser().GetToken(h.File()));
    EXPECT_EQ("second " + std::string(10000, 'x'), h.Line());
    EXPECT_EQ(CString("second"), h.Parser().GetToken(h.File()));
    EXPECT_EQ(std::string(10000, 'x'), h.Line());
}

TEST(CParseS2TLexer, GetTokenStartsAfreshWhenTheLineIsReplaced) {
    std::string line = "a " + std::string(5000, 'b') + " c";
    FrontEndHarness h(line + "\n");
    h.Parser().ReadLine(h.File(), 0);
    h.Parser().GetToken(h.File());
    h.Parser().m_strLine = "z;";
    EXPECT_EQ(CString("z"), h.Parser().GetToken(h.File()));
}

TEST(CParseS2TLexer, ReadLineAtTheEndLeavesTheLineUnchanged) {
    FrontEndHarness h("only");
    ASSERT_EQ(1, h.Parser().ReadLine(h.File(), 0));
    EXPECT_EQ(0, h.Parser().ReadLine(h.File(), 0));
    EXPECT_EQ(CString("only"), h.Parser().m_strLine);
    EXPECT_EQ(1, h.Parser().m_nLineNo);
}

TEST(CParseS2TLexer, ReadLineTrimsAndCountsLines) {
    FrontEndHarness h("  \ta b \t\r\nc\n");
    ASSERT_EQ(1, h.Parser().ReadLine(h.File(), 1));
    EXPECT_EQ(CString("a b"), h.Parser().m_strLine);
    ASSERT_EQ(1, h.Parser().ReadLine(h.File(), 1));
    EXPECT_EQ(2, h.Parser().m_nLineNo);
}

TEST(CParseS2TLexer, GetTokenReturnsEndOfFileInsideAnUnclosedRawComment) {
    // Raw lines (an exported typedef line) reach the tokenizer with their comments.
    FrontEndHarness h("OMRA EXPORTED STRUCT\ntypedef struct /* open\nnever closed\n");
    h.Parser().m_bExportedOnly = true;
    EXPECT_EQ("OMRA:4 EXPORTED:4 STRUCT:4 typedef:4 struct:4", h.Tokens());
}

TEST(CParseS2TLexer, GetTokenDropsTheClosingLineOfARawComment) {
    FrontEndHarness h("OMRA EXPORTED STRUCT\ntypedef struct /* c\n d */ A;\nB C");
    h.Parser().m_bExportedOnly = true;
    EXPECT_EQ("OMRA:4 EXPORTED:4 STRUCT:4 typedef:4 struct:4 B:4 C:4", h.Tokens());
}

TEST(CParseS2TLexer, GetTokenSkipsTheRawLineAfterALineComment) {
    FrontEndHarness h("OMRA EXPORTED STRUCT\ntypedef struct // c\n/* raw */ A\nB");
    h.Parser().m_bExportedOnly = true;
    EXPECT_EQ("OMRA:4 EXPORTED:4 STRUCT:4 typedef:4 struct:4 A:4 B:4", h.Tokens());
}

TEST(CParseS2TLexer, GetTokenAfterALineCommentAtTheEndGivesEndOfFile) {
    FrontEndHarness h("OMRA EXPORTED STRUCT\ntypedef struct // c");
    h.Parser().m_bExportedOnly = true;
    EXPECT_EQ("OMRA:4 EXPORTED:4 STRUCT:4 typedef:4 struct:4", h.Tokens());
    EXPECT_EQ(TOKEN_EOF, h.Parser().m_nTokenType);
}

TEST(CParseS2TLexer, ReadLineKeepsExportMarkersOnlyDirectlyAbove) {
    struct Row {
        char const* header;
        bool structFlag;
        char const* reason;
    } const rows[] = {
        {"OMRA EXPORTED STRUCT\ntypedef struct {", true, "marker directly above"},
        {"OMRA EXPORTED STRUCT\n\ntypedef struct {", false, "a blank line between clears it"},
        {"// OMRA EXPORTED STRUCT\ntypedef struct {", false, "a marker behind // does not count"},
    };
    for (Row const& row : rows) {
        FrontEndHarness h(row.header);
        h.Parser().m_bExportedOnly = true;
        while (h.Parser().ReadLine(h.File(), 0)) {
        }
        EXPECT_EQ(row.structFlag, h.Parser().m_bExportedStruct) << row.reason;
    }
    FrontEndHarness h("OMRA EXPORTED ENUM\ntypedef enum { A /* c */ }");
    h.Parser().m_bExportedOnly = true;
    h.Parser().ReadLine(h.File(), 0);
    h.Parser().ReadLine(h.File(), 0);
    EXPECT_TRUE(h.Parser().m_bExportedEnum);
    EXPECT_EQ(CString("typedef enum { A /* c */ }"), h.Parser().m_strLine);  // not cleaned
}

TEST(CParseS2TLexer, DeleteRemarkFollowsItsSteps) {
    struct Row {
        bool inCommentBefore;
        char const* line;
        char const* expected;
        bool inCommentAfter;
        char const* reason;
    } const rows[] = {
        {false, "a // b /* c", "a ", false, "line comment first"},
        {false, "a /* b */ c /* d */ e", "a  c  e", false, "two closed comments"},
        {false, "a /* b", "a ", true, "opened and left open"},
        {false, "a /*/ b", "a  b", false, "the closer may share the opener's star"},
        {true, "b */ c", " c", false, "closes an earlier comment"},
        {true, "inside", "", true, "wholly inside"},
        {true, "*/ x /* y", " x ", false, "closes, reopens, and the close wins"},
        {false, "*/ x", " x", false, "a stray closer drops the front"},
    };
    for (auto const& row : rows) {
        FrontEndHarness h("");
        h.Parser().m_bInComment = row.inCommentBefore;
        CString line(row.line);
        h.Parser().DeleteRemark(line);
        EXPECT_EQ(CString(row.expected), line) << row.reason;
        EXPECT_EQ(row.inCommentAfter, h.Parser().m_bInComment) << row.reason;
    }
}

TEST(CParseS2TLexer, RemoveCommentsKeepsItsAsymmetry) {
    struct Row {
        char const* text;
        char const* expected;
        char const* reason;
    } const rows[] = {
        {"ifdef A // note", "ifdef A ", "no trim after a line comment"},
        {"ifdef A /* n */ \t", "ifdef A", "trimmed after a block comment"},
        {"ifdef A /* n */ B", "ifdef A  B", "text after the comment kept"},
        {"ifdef A /* open", "ifdef A fdef A /* open", "no closer: all but the first character"},
        {"*/ x /* y", "*/ x", "closer at 0: nothing after the opener"},
    };
    FrontEndHarness h("");
    for (auto const& row : rows) {
        CString text(row.text);
        h.Parser().RemoveComments(text);
        EXPECT_EQ(CString(row.expected), text) << row.reason;
    }
}

TEST(CParseS2TLexer, FindCharToEOLLooksAheadAndRestores) {
    FrontEndHarness h("a b\nc * d\ne;\nafter");
    h.Parser().ReadLine(h.File(), 0);
    EXPECT_TRUE(h.Parser().FindCharToEOL(h.File(), '*'));
    EXPECT_FALSE(h.Parser().FindCharToEOL(h.File(), '#'));
    EXPECT_EQ(1, h.Parser().m_nLineNo);
    EXPECT_EQ(CString("a b"), h.Parser().m_strLine);
    EXPECT_EQ("a:4 b:4 c:4 *:4 d:4 e:4 ;:1 after:4", "a:4 b:4 " + h.Tokens().substr(0));
}

TEST(CParseS2TLexer, FindCharToEOLStopsAtTheEndOfTheFile) {
    FrontEndHarness h("a\nb");
    h.Parser().ReadLine(h.File(), 0);
    EXPECT_FALSE(h.Parser().FindCharToEOL(h.File(), '*'));
    EXPECT_EQ(CString("a"), h.Parser().m_strLine);
}

TEST(CParseS2T, SmallHelpers) {
    FrontEndHarness h("");
    CParseS2T& p = h.Parser();
    EXPECT_EQ(CString("-42"), p.PPIntToStr(-42));
    EXPECT_TRUE(p.IsQuoted("'x'"));
    EXPECT_TRUE(p.IsQuoted("'"));
    EXPECT_FALSE(p.IsQuoted(""));
    EXPECT_FALSE(p.IsQuoted("'x"));
    CString quoted("'ab'");
    p.UnQuote(quoted);
    EXPECT_EQ(CString("ab"), quoted);
    CString one("'");
    p.UnQuote(one);
    EXPECT_EQ(CString(""), one);
    std::string keywords;
    for (void* pos = p.m_ReservedKeywords.GetHeadPosition(); pos;) keywords += std::string(p.m_ReservedKeywords.GetNext(pos)) + " ";
    EXPECT_EQ("long short char int ", keywords);
    EXPECT_EQ(32, p.m_nIntBits);
    EXPECT_EQ(0, p.m_nGeneratedStructCounter);
}

TEST(CParseS2T, PrintProgressShowsPercent) {
    FrontEndHarness h("");
    testsupport::CaptureStdout capture;
    h.Parser().PrintProgress(1, 3);
    h.Parser().PrintProgress(5, 0);
    std::fflush(stdout);
    EXPECT_EQ("\r33%\r0%", capture.Stop());
}

TEST(CParseS2TLexer, ReadLineShowsProgressEvery2000Lines) {
    std::string text;
    for (int i = 0; i < 4001; ++i) text += "l\n";
    FrontEndHarness h(text);
    testsupport::CaptureStdout capture;
    while (h.Parser().ReadLine(h.File(), 0)) {
    }
    std::fflush(stdout);
    EXPECT_EQ("\r49%\r99%", capture.Stop());
}

TEST(CParseS2TLexer, HostileInputEndsQuickly) {
    std::string binary;
    for (int i = 0; i < 4096; ++i) binary += static_cast<char>((i * 37 + 11) % 256);
    std::string longLine;
    for (int i = 0; i < 350000; ++i) longLine += "a,b,";
    std::vector<std::string> const headers = {
        "/* never closed\nint a;\n",
        binary,
        std::string(100000, '('),
        longLine,
    };
    for (std::string const& header : headers) {
        FrontEndHarness h(header);
        auto start = std::chrono::steady_clock::now();
        h.Tokens(5000000);
        double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        EXPECT_LT(seconds, 2.0);
    }
    FrontEndHarness h(longLine);
    std::string tokens = h.Tokens(5000000);
    EXPECT_EQ(1400000, std::count(tokens.begin(), tokens.end(), ':'));
}
