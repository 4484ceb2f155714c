// Lines, comments and tokens of the header parser, read from in-memory headers,
// and structures on lines longer than the lexer keeps exact.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "DeclarationsHarness.h"
#include "FrontEndHarness.h"
#include "TestSupport.h"

TEST(CParseS2TLexer, GetTokenSplitsAsTheSeparatorsSay) {
    TextRow const rows[] = {
        {"a=b;", "a:4 =:4 b:4 ;:1", "separators are tokens of their own"},
        {"1<<4 a - b a-b", "1<<4:4 a:4 -:4 b:4 a:4 -:4 b:4", "shift signs are not separators; minus is"},
        {"x = 'a' | B.c;", "x:4 =:4 'a':4 |:4 B.c:4 ;:1", "quotes, bar and full stop stay inside words"},
        {"f(a[2],*p)", "f:4 (:4 a:4 [:4 2:4 ]:4 ,:4 *:4 p:4 ):4", "brackets, comma and star"},
        {"#include <a.h>", "include:4 <a.h>:4", "an include line keeps its words"},
        {"#define N 5", "define:2 N:4 5:4", "a define directive"},
        {"defineCount;", "defineC:2 ount:4 ;:1", "only the letters of define are tested"},
        {"x/*c*/y", "xy:4", "a comment inside a word joins its halves"},
        {"/*c*/ x", ":4 x:4", "the blank left by a removed comment is an empty token"},
        {"a /* c\n d */ z", "a:4 :4 z:4", "a comment across lines"},
        {"/* a\nb c\n*/ d", ":4 d:4", "a line wholly inside a comment is empty"},
        {"*/ x /* y\nz", ":4 x:4 z:4", "a line that closes and reopens reads on as code"},
        {"a // b\n\n\nc", "a:4 c:4", "line comment and empty lines"},
        {"", "<no line>", "an empty file has no line"},
        {"#define X 5;#\nZ", "define:2 X:4 5:4 ;:1 :4 Z:4", "a NUL left behind by removing two # is a character"},
        // An exported typedef line is returned raw, comments and all.
        {"OMRA EXPORTED STRUCT\ntypedef struct /* c\n d */ A;\nB", "OMRA:4 EXPORTED:4 STRUCT:4 typedef:4 struct:4 B:4",
         "the closing line of a raw comment goes with it"},
        {"OMRA EXPORTED STRUCT\ntypedef struct /* open\nnever closed", "OMRA:4 EXPORTED:4 STRUCT:4 typedef:4 struct:4",
         "an unclosed raw comment ends the file"},
        {"OMRA EXPORTED STRUCT\ntypedef struct // c\n/* raw */ A\nB",
         "OMRA:4 EXPORTED:4 STRUCT:4 typedef:4 struct:4 A:4 B:4",
         "a raw line comment skips one raw line"},
    };
    for (TextRow const& row : rows) {
        FrontEndHarness h(row.input);
        h.P().m_bExportedOnly = true;
        EXPECT_EQ(row.expected, h.Tokens()) << row.reason;
    }
}

TEST(CParseS2TLexer, CurrentLineIsExactlyTheRestOfTheLine) {
    FrontEndHarness h("#define N 5\nint a, b;\nfirst " + std::string(10000, 'x') + "\n");
    h.P().ReadLine(h.File(), 0);
    EXPECT_EQ(CString("define"), h.P().GetToken(h.File()));
    EXPECT_EQ(CString("N 5"), h.P().CurrentLine());
    h.P().ReadLine(h.File(), 0);
    h.P().GetToken(h.File());
    h.P().GetToken(h.File());
    EXPECT_EQ(CString(", b;"), h.P().CurrentLine());
    h.P().ReadLine(h.File(), 0);
    h.P().GetToken(h.File());
    EXPECT_EQ(CString(std::string(10000, 'x').c_str()), h.P().CurrentLine());  // a long line goes through CurrentLine
    h.P().m_strLine = "z;";  // replaced from outside: read from its start
    EXPECT_EQ(CString("z"), h.P().GetToken(h.File()));
}

TEST(CParseS2TLexer, ReadLineTrimsCountsAndKeepsTheLastLineAtTheEnd) {
    FrontEndHarness h("  \ta b \t\r\nlast");
    ASSERT_EQ(1, h.P().ReadLine(h.File(), 1));
    EXPECT_EQ(CString("a b"), h.P().m_strLine);
    ASSERT_EQ(1, h.P().ReadLine(h.File(), 1));
    EXPECT_EQ(0, h.P().ReadLine(h.File(), 0));
    EXPECT_EQ(CString("last"), h.P().m_strLine);
    EXPECT_EQ(2, h.P().m_nLineNo);
}

TEST(CParseS2TLexer, ReadLineKeepsExportMarkersOnlyDirectlyAbove) {
    std::tuple<char const*, bool, char const*> const rows[] = {  // header, m_bExportedStruct after it, why
        {"OMRA EXPORTED STRUCT\ntypedef struct {", true, "marker directly above"},
        {"OMRA EXPORTED STRUCT\n\ntypedef struct {", false, "a blank line between clears it"},
        {"// OMRA EXPORTED STRUCT\ntypedef struct {", false, "a marker behind // does not count"},
    };
    for (auto const& [header, structFlag, reason] : rows) {
        FrontEndHarness h(header);
        h.P().m_bExportedOnly = true;
        while (h.P().ReadLine(h.File(), 0)) {
        }
        EXPECT_EQ(structFlag, h.P().m_bExportedStruct) << reason;
    }
}

TEST(CParseS2TLexer, DeleteRemarkFollowsItsSteps) {
    std::tuple<bool, char const*, char const*, bool> const rows[] = {  // in a comment before, line, after, in one after
        {false, "a // b /* c", "a ", false},       {false, "a /* b */ c /* d */ e", "a  c  e", false},
        {false, "a /* b", "a ", true},             {false, "a /*/ b", "a  b", false},
        {true, "b */ c", " c", false},             {true, "inside", "", true},
        {true, "*/ x /* y", " x ", false},         {false, "*/ x", " x", false},
    };
    for (auto const& [inBefore, text, expected, inAfter] : rows) {
        FrontEndHarness h("");
        h.P().m_bInComment = inBefore;
        CString line(text);
        h.P().DeleteRemark(line);
        EXPECT_EQ(CString(expected), line) << text;
        EXPECT_EQ(inAfter, h.P().m_bInComment) << text;
    }
}

TEST(CParseS2TLexer, RemoveCommentsKeepsItsAsymmetry) {
    TextRow const rows[] = {
        {"ifdef A // note", "ifdef A ", "no trim after a line comment"},
        {"ifdef A /* n */ \t", "ifdef A", "trimmed after a block comment"},
        {"ifdef A /* n */ B", "ifdef A  B", "text after the comment kept"},
        {"ifdef A /* open", "ifdef A fdef A /* open", "no closer: all but the first character"},
        {"*/ x /* y", "*/ x", "closer at 0: nothing after the opener"},
    };
    FrontEndHarness h("");
    for (TextRow const& row : rows) {
        CString text(row.input);
        h.P().RemoveComments(text);
        EXPECT_EQ(CString(row.expected), text) << row.reason;
    }
}

TEST(CParseS2TLexer, FindCharToEOLLooksAheadAndRestores) {
    FrontEndHarness h("a b\nc * d\ne;\nafter");
    h.P().ReadLine(h.File(), 0);
    EXPECT_TRUE(h.P().FindCharToEOL(h.File(), '*'));
    EXPECT_FALSE(h.P().FindCharToEOL(h.File(), '#'));
    EXPECT_EQ(1, h.P().m_nLineNo);
    EXPECT_EQ("a:4 b:4 c:4 *:4 d:4 e:4 ;:1 after:4", "a:4 b:4 " + h.Tokens());
    FrontEndHarness end("a\nb");
    end.P().ReadLine(end.File(), 0);
    EXPECT_FALSE(end.P().FindCharToEOL(end.File(), '*'));  // stops at the end of the file
    EXPECT_EQ(CString("a"), end.P().m_strLine);
}

TEST(CParseS2TLexer, RestSearchesAnswerAsTheWholeRestWould) {
    std::string pad;
    for (int i = 0; i < 700; ++i) pad += " f" + std::to_string(i) + " [2];";  // past the exact-line limit
    for (std::string base : {"long a[2], *p; char b[3]; x = y / *z; { w }", "*s; t[4 * 2] u; v[1] /* c */ ] q {"}) {
        for (std::string const& line : {base, base + pad}) {
            FrontEndHarness h(line + "\nnext");
            CParseS2T& p = h.P();
            p.ReadLine(h.File(), 1);  // raw: "/*" stays in the line
            int32_t steps = 0;
            for (; p.m_nLineNo == 1; ++steps) {
                CString rest = p.m_strLine.Mid(p.m_nLinePos);
                int32_t star = rest.Find('*');
                bool pointer = star >= 0 && !(rest.Left(star).Find('[') >= 0 && rest.ReverseFind(']') > star) &&
                               !(star > 0 && rest.GetAt(star - 1) == '/');
                auto at = [&](int32_t found) { return found < 0 ? -1 : found + p.m_nLinePos; };
                std::string where = rest.Left(20).GetData();
                EXPECT_EQ(pointer, p.RestMakesPointer()) << where;
                EXPECT_EQ(at(rest.Find(';')), p.RestFind(';')) << where;
                EXPECT_EQ(at(rest.Find('{')), p.RestFind('{')) << where;
                EXPECT_EQ(at(rest.ReverseFind(']')), p.RestLastOf(']')) << where;
                p.GetToken(h.File());
            }
            EXPECT_LT(line.size() / 8, static_cast<size_t>(steps));
        }
    }
}

// The look-aheads of the structure reader judge the whole rest of a long line,
// as they do on an ordinary line.
TEST(CParseS2TLexer, LongLinesAreJudgedLikeShortOnes) {
    std::string pad;
    for (int i = 0; i < 2100; ++i) pad += " ;";  // empty statements, past the exact-line limit
    char const* const bodies[] = {
        "long a[2], *p; char b[3];",         // the line's last "]" lies after the first "*"
        "long (f)(void); long *q;",          // a "*" further on makes f a function pointer
        "struct X x; struct { int i; } y;",  // a body later on the line
        "union U u; char *c; union V *v;",
    };
    for (char const* body : bodies) {
        declarations::Harness shortLine;
        declarations::Harness longLine;
        std::string const head = std::string("typedef struct { ") + body;
        EXPECT_EQ(shortLine.Parse(head + " } S;\n"), longLine.Parse(head + pad + " } S;\n")) << body;
    }
}

TEST(CParseS2T, SmallHelpersAndProgress) {
    FrontEndHarness h(std::string(4001 * 2, '\n').replace(0, 1, "l"));
    CParseS2T& p = h.P();
    EXPECT_EQ(CString("-42"), p.PPIntToStr(-42));
    EXPECT_TRUE(p.IsQuoted("'x'") && p.IsQuoted("'") && !p.IsQuoted("") && !p.IsQuoted("'x"));
    CString quoted("'ab'");
    p.UnQuote(quoted);
    EXPECT_EQ(CString("ab"), quoted);
    std::string keywords;
    for (void* pos = p.m_ReservedKeywords.GetHeadPosition(); pos;) keywords += p.m_ReservedKeywords.GetNext(pos) + " ";
    EXPECT_EQ("long short char int ", keywords);
    testsupport::CaptureStdout capture;
    p.PrintProgress(1, 3);
    p.PrintProgress(5, 0);
    while (p.ReadLine(h.File(), 0)) {
    }
    std::fflush(stdout);
    EXPECT_EQ("\r33%\r0%\r25%\r50%\r74%\r99%", capture.Stop());  // every 2000th line shows the file position
}
