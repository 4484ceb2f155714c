// Directives and the define table of the header parser: conditional
// compilation, #undef, #define values and the limits of the table.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "FrontEndHarness.h"
#include "TestSupport.h"

TEST(CParseS2TPreproc, ConditionalCompilationRules) {
    TextRow const rows[] = {  // a header and the tokens read from it
        {"#define A 1\n#ifdef A\nyes\n#endif\nz", "yes z", "defined: read"},
        {"#ifdef A\nno\n#endif\nz", "z", "undefined: skipped"},
        {"#  ifdef A\nno\n#endif\nz", "z", "blanks after the hash"},
        {"#ifndef A\nyes\n#endif\nz", "yes z", "ifndef of an undefined name"},
        {"#if !defined A\nyes\n#endif\nz", "yes z", "!defined is ifndef"},
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
        {"int a; #ifdef A\nb\n#endif\nc", "int a ; c", "a directive after a word"},
        {"x\n#else\ny\n#endif\nz", "x else y endif z", "unmatched: the directive's words stay"},
    };
    for (auto const& row : rows) {
        FrontEndHarness h(row.input);
        testsupport::CaptureStderr quiet;
        EXPECT_EQ(row.expected, h.Parse()) << row.reason;
    }
}

TEST(CParseS2TPreproc, UnmatchedElseAndEndifAreReportedOnStandardError) {
    FrontEndHarness h("x\n#else\ny\n#endif\nz");
    testsupport::CaptureStderr capture;
    h.Parse();
    EXPECT_EQ("#else without matching if found on line 2\n#endif without matching if found on line 4 on file hdr.h\n",
              capture.Stop());
}

TEST(CParseS2TPreproc, DeepNestingAndLongDirectiveRunsEnd) {
    std::string nested;
    for (int i = 0; i < 10000; ++i) nested = "#ifdef Z\n" + nested + "#endif\n";
    FrontEndHarness h(nested.insert(nested.size() / 2, "x\n") + "y");
    std::string pragmas;
    for (int i = 0; i < 200000; ++i) pragmas += "#pragma pack\n";
    FrontEndHarness run(pragmas + "last");
    testsupport::CaptureStdout quiet;
    EXPECT_EQ("y", h.Parse());
    EXPECT_TRUE(h.P().m_IfStack.IsEmpty());
    EXPECT_EQ("last", run.Parse());
}

TEST(CParseS2TPreproc, FindDefValTakesNumbersThenTheOldestDefinition) {
    FrontEndHarness h("#define A 1\n#define A 2\n#define Z 0\n#define V 7\n#undef V\n");
    h.Parse();
    std::pair<char const*, int32_t> const rows[] = {{"A", 1},        {"Z", 0},           {"V", 7},
                                                    {"12abc", 12},   {" -3", -3},        {"0", kNoValue},
                                                    {"0x10", kNoValue}, {"missing", kNoValue}};
    for (auto const& [token, expected] : rows) EXPECT_EQ(expected, h.P().FindDefVal(token)) << token;
    EXPECT_EQ(2, *g_DefinesMap.Find("A"));  // the map keeps the latest
    EXPECT_EQ(nullptr, g_DefinesMap.Find("V"));
    h.Open("#ifdef A\nseen\n#endif\nz");  // the next file: a new table, the same map
    EXPECT_EQ("seen z", h.Parse());
    EXPECT_EQ(kNoValue, h.P().FindDefVal("A"));
    h.P().AddHiddenEnumDefine("Hidden");
    EXPECT_EQ(static_cast<int32_t>(0x80000001u), h.P().FindDefVal("Hidden"));
    EXPECT_EQ(nullptr, g_DefinesMap.Find("Hidden"));
}

TEST(CParseS2TPreproc, TableLimitPrintsForTheLastEntryAndBeyond) {
    std::string header;
    for (int i = 1; i <= 5002; ++i) header += "#define M" + std::to_string(i) + " " + std::to_string(i) + "\n";
    FrontEndHarness h(header + "tail");
    testsupport::CaptureStdout capture;
    EXPECT_EQ("tail", h.Parse());  // dropped values are still read off their lines
    std::fflush(stdout);
    std::string const message = "Error: too many #define in file (maximum 5000 supported\n";
    EXPECT_EQ("\r38%\r79%" + message + message + message, capture.Stop());
    EXPECT_EQ(kMaxDefines, h.P().m_nDefinesCount);
    EXPECT_EQ(5000, h.P().FindDefVal("M5000"));
    EXPECT_EQ(kNoValue, h.P().FindDefVal("M5001"));
    EXPECT_EQ(nullptr, g_DefinesMap.Find("M5000"));
    EXPECT_EQ(4999, g_DefinesMap.GetCount());
}

TEST(CParseS2TPreproc, ParseDefineStatementRecordsEveryName) {
    FrontEndHarness h("#define struct 4 + 4\nnext");
    h.P().ReadLine(h.File(), 0);
    ASSERT_EQ(CString("define"), h.P().GetToken(h.File()));
    h.P().ParseDefineStatement(h.File());
    EXPECT_EQ(8, h.P().FindDefVal("struct"));
    EXPECT_EQ(CString("next"), h.P().GetToken(h.File()));
}
