// Directives and the define table of the header parser: conditional
// compilation, #undef, #define values and the limits of the table.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FrontEndHarness.h"
#include "TestSupport.h"

namespace {

struct ConditionRow {
    char const* header;
    char const* expected;  // the tokens that are read
    char const* reason;
};

}  // namespace

TEST(CParseS2TPreproc, ConditionalCompilationRules) {
    std::vector<ConditionRow> const rows = {
        {"#define A 1\n#ifdef A\nyes\n#endif\nafter", "yes after", "defined: read"},
        {"#ifdef A\nno\n#endif\nafter", "after", "undefined: skipped"},
        {"#ifndef A\nyes\n#endif\nz", "yes z", "ifndef of an undefined name"},
        {"#define A 1\n#ifndef A\nno\n#endif\nz", "z", "ifndef of a defined name"},
        {"#if !defined A\nyes\n#endif\nz", "yes z", "!defined is ifndef"},
        {"#  ifdef X\nno\n#endif\nz", "z", "blanks after the hash"},
        {"#if 0\nyes\n#endif\nz", "if 0 yes z", "a plain #if is true and its words stay"},
        {"#ifdef A\nno\n#else\nyes\n#endif\nz", "yes z", "else flips"},
        {"#ifdef A\nno\n#else // c\nstill\n#endif\nz", "z", "else with a comment is not else"},
        {"#ifdef A\nno\n#elif 1\nstill\n#endif\nz", "z", "elif neither tests nor flips"},
        {"#ifdef U\n#ifndef V\ninner\n#endif\nouter\n#endif\nz", "inner z", "only the innermost condition decides"},
        {"#define A 1\n#if defined(A)\nno\n#endif\nz", "z", "defined(A) looks up definedA"},
        {"#define A 1\n#if defined (A)\nyes\n#endif\nz", "yes z", "defined (A) looks up A"},
        {"#define A 1\n#ifdef A // note\nno\n#endif\nz", "z", "the blank before a comment leaves an empty name"},
        {"#define A 1\n#ifdef B && A\nyes\n#endif\nz", "yes z", "only the last name counts"},
        {"#define A 1\n#undef A\n#ifdef A\nno\n#endif\nz", "z", "undef removes the name"},
        {"#ifdef A\nno\n#endif", "endif", "the last directive stays in the line at the end of the file"},
        {"#pragma once\n#error x\nx", "x", "other directives are skipped"},
        {"int a; #ifdef A\nb\n#endif\nc", "int a ; c", "a directive after a word on the line"},
    };
    for (ConditionRow const& row : rows) {
        FrontEndHarness h(row.header);
        EXPECT_EQ(row.expected, h.Parse()) << row.reason;
    }
}

TEST(CParseS2TPreproc, UndefKeepsTheValueInTheTable) {
    FrontEndHarness h("#define A 7\n#undef A\n#ifdef A\nno\n#endif\nz");
    EXPECT_EQ("z", h.Parse());
    EXPECT_EQ(7, h.Parser().FindDefVal("A"));
}

TEST(CParseS2TPreproc, UnmatchedElseAndEndifAreReportedOnStandardError) {
    FrontEndHarness h("x\n#else\ny\n#endif\nz");
    testsupport::CaptureStderr capture;
    std::string tokens = h.Parse();
    EXPECT_EQ("#else without matching if found on line 2\n#endif without matching if found on line 4 on file hdr.h\n",
              capture.Stop());
    EXPECT_EQ("x else y endif z", tokens);
}

TEST(CParseS2TPreproc, DeepNestingAndLongDirectiveRunsEnd) {
    std::string nested;
    for (int i = 0; i < 10000; ++i) nested += "#ifdef Z\n";
    nested += "x\n";
    for (int i = 0; i < 10000; ++i) nested += "#endif\n";
    FrontEndHarness h(nested + "y");
    EXPECT_EQ("y", h.Parse());
    EXPECT_TRUE(h.Parser().m_IfStack.IsEmpty());

    std::string pragmas;
    for (int i = 0; i < 200000; ++i) pragmas += "#pragma pack\n";
    FrontEndHarness run(pragmas + "last");
    EXPECT_EQ("last", run.Parse());

    FrontEndHarness open("#ifdef Z\n#ifdef Z\nx");
    EXPECT_EQ("", open.Parse());
}

TEST(CParseS2TPreproc, FindDefValRules) {
    FrontEndHarness h("#define A 1\n#define A 2\n#define Z 0\n");
    h.Parse();
    struct Row {
        char const* token;
        int32_t expected;
        char const* reason;
    } const rows[] = {
        {"A", 1, "the oldest definition wins"},
        {"Z", 0, "a macro of value 0"},
        {"12abc", 12, "a number's leading digits"},
        {" -3", -3, "blanks and sign"},
        {"0", kNoValue, "zero falls through to the search"},
        {"0x10", kNoValue, "hexadecimal is not read here"},
        {"missing", kNoValue, "unknown"},
    };
    for (auto const& row : rows) EXPECT_EQ(row.expected, h.Parser().FindDefVal(row.token)) << row.reason;
    int32_t mapped = 0;
    ASSERT_TRUE(g_DefinesMap.Lookup("A", mapped));
    EXPECT_EQ(2, mapped);  // the map keeps the latest
}

TEST(CParseS2TPreproc, DefineTableStartsAgainPerFileButTheMapDoesNot) {
    FrontEndHarness h("#define A 3\n");
    h.Parse();
    h.Open("#ifdef A\nseen\n#endif\nz");
    EXPECT_EQ("seen z", h.Parse());
    EXPECT_EQ(kNoValue, h.Parser().FindDefVal("A"));
}

TEST(CParseS2TPreproc, HiddenEnumEntryIsCountedButNotMapped) {
    FrontEndHarness h("");
    h.Parser().AddHiddenEnumDefine("Hidden");
    EXPECT_EQ(1, h.Parser().m_nDefinesCount);
    EXPECT_EQ(static_cast<int32_t>(0x80000001u), h.Parser().FindDefVal("Hidden"));
    EXPECT_EQ(nullptr, g_DefinesMap.Find("Hidden"));
}

TEST(CParseS2TPreproc, TableLimitPrintsForTheLastEntryAndBeyond) {
    std::string header;
    for (int i = 1; i <= 5002; ++i) header += "#define M" + std::to_string(i) + " " + std::to_string(i) + "\n";
    FrontEndHarness h(header + "tail");
    testsupport::CaptureStdout capture;
    std::string tokens = h.Parse();
    std::fflush(stdout);
    std::string const message = "Error: too many #define in file (maximum 5000 supported\n";
    EXPECT_EQ("\r38%\r79%" + message + message + message, capture.Stop());  // progress, then the limit
    EXPECT_EQ("tail", tokens);  // the dropped values were still read off their lines
    EXPECT_EQ(kMaxDefines, h.Parser().m_nDefinesCount);
    EXPECT_EQ(5000, h.Parser().FindDefVal("M5000"));
    EXPECT_EQ(kNoValue, h.Parser().FindDefVal("M5001"));
    EXPECT_NE(nullptr, g_DefinesMap.Find("M4999"));
    EXPECT_EQ(nullptr, g_DefinesMap.Find("M5000"));
    EXPECT_EQ(4999, g_DefinesMap.GetCount());
}

TEST(CParseS2TPreproc, IsTypeDefLetsEveryWordPass) {
    FrontEndHarness h("");
    for (char const* word : {"struct", "enum", "union", "X", ""}) EXPECT_TRUE(h.Parser().IsTypeDef(word)) << word;
}

TEST(CParseS2TPreproc, ParseDefineStatementReadsNameAndValue) {
    FrontEndHarness h("#define W 4 + 4\nnext");
    h.Parser().ReadLine(h.File(), 0);
    ASSERT_EQ(CString("define"), h.Parser().GetToken(h.File()));
    h.Parser().ParseDefineStatement(h.File());
    EXPECT_EQ(8, h.Parser().FindDefVal("W"));
    EXPECT_EQ(CString("next"), h.Parser().GetToken(h.File()));
}
