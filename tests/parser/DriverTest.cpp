// Tests of the header file driver: opening, the do-not-preprocess marker,
// typedef aliases and their effect on field kinds, signals and exported-only
// modes, MakeAbsolutePath, and a realistic header read whole (the hostile
// tests cut it short and feed the tool broken and huge headers).
#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "DeclarationsHarness.h"

using declarations::Harness;

namespace {

std::string RealisticHeader() { return testsupport::ReadFile(std::string(KS_TEST_DATA_DIR) + "/parser/realistic.h"); }

}  // namespace

TEST(CParseS2T_Driver, MissingFileFailsAndEmptyOneAddsNothing) {
    Harness h;
    testsupport::CaptureStdout capture;
    bool result = h.Parser().ParseS2TFile("/nonexistent/dir/signals.h", true, false);
    EXPECT_EQ("Error : Could not open file /nonexistent/dir/signals.h to read.\n", capture.Stop());
    EXPECT_FALSE(result);
    EXPECT_EQ(nullptr, h.Parser().m_pNestedNames);
    Harness empty;
    EXPECT_EQ("", empty.Parse(""));
    EXPECT_TRUE(empty.Result());
}

TEST(CParseS2T_Driver, DoNotPreprocessMarkerSkipsTheFile) {
    Harness h;
    testsupport::CaptureStderr capture;
    EXPECT_EQ("", h.Parse("//OMRA DO NOT PREPROCESS this file\n#else\nstruct S { int a; };\n"));
    // The one line still read is the second, and it is the first one counted.
    EXPECT_EQ("#else without matching if found on line 1\n", capture.Stop());
    EXPECT_TRUE(h.Result());
    Harness later;
    EXPECT_EQ("struct S tag=S: a int long\n", later.Parse(" //OMRA DO NOT PREPROCESS\nstruct S { int a; };\n"));
}

TEST(CParseS2T_Driver, TypedefAliases) {
    Harness h;
    h.Parse("typedef unsigned char BYTE;\ntypedef BYTE * PBYTE;\ntypedef BYTE *PB2;\ntypedef int (*fn)(void);\n"
            "typedef char Name[10];\ntypedef unsigned long int X;\ntypedef UINT16 A, B;\n"
            "typedef volatile UINT8 VU;\ntypedef const char CC;\ntypedef long long;\ntypedef Q;\n");
    std::pair<char const*, char const*> const rows[] = {
        {"BYTE", "unsigned char"}, {"PBYTE", "BYTE *"},   {"PB2", "BYTE *"}, {"fn", "<none>"},
        {"Name", "char[10]"},      {"int", "unsigned long"}, {"X", "<none>"}, {"A", "UINT16"},
        {"B", "UINT16"},           {"VU", "UINT8"},       {"CC", "const char"}, {"long", "<none>"},
        {";", "<none>"},
    };
    for (auto const& [alias, expected] : rows) EXPECT_EQ(expected, h.Typedef(alias)) << alias;
}

TEST(CParseS2T_Driver, AliasesDecideFieldKinds) {
    Harness h;
    // Structure fields follow the aliases to the end; union members only to
    // tell a primitive, and keep the alias as written.
    EXPECT_EQ("enum En: V=0\n"
              "struct Inner tag=Inner: a int long\n"
              "struct S tag=S: x struct Inner; b char unsigned char; p struct BYTE *; n struct char[10]; "
              "e enum En; c int UINT16\n"
              "union U: u int Alias; e int EnAlias; c int Counter\n",
              h.Parse("typedef struct { int a; } Inner;\ntypedef Inner Alias;\ntypedef unsigned char BYTE;\n"
                      "typedef BYTE * PBYTE;\ntypedef char Name[10];\ntypedef enum { V } En;\ntypedef En EnAlias;\n"
                      "typedef volatile UINT16 Counter;\n"
                      "struct S { Alias x; BYTE b; PBYTE p; Name n; En e; Counter c; };\n"
                      "typedef union { Alias u; EnAlias e; Counter c; } U;\n"));
}

TEST(CParseS2T_Driver, TopLevelUnionOnlyInSignalsMode) {
    Harness h(false);
    EXPECT_EQ("union V: b int char\n", h.Parse("union U { int a; };\ntypedef union { char b; } V;\n"));
}

TEST(CParseS2T_Driver, ExportedOnlyTakesMarkedDeclarations) {
    // A marker counts for the line right below it, and for the typedef lines
    // that follow that one directly; any other line clears it.
    std::string const header =
        "OMRA EXPORTED STRUCT\ntypedef struct { int a; } Shown;\ntypedef struct { int s; } Next;\n\n"
        "typedef struct { int b; } Hidden;\n"
        "OMRA EXPORTED ENUM\ntypedef enum { X } ShownE;\n\n"
        "typedef enum HTag { Y } HiddenE;\n"
        "OMRA EXPORTED STRUCT\n\ntypedef struct { int c; } Apart;\n";
    std::string const shown = "struct Shown tag=Shown: a int long\nstruct Next tag=Next: s int long\n";
    Harness h(false);
    EXPECT_EQ("enum ShownE: X=0\n" + shown, h.Parse(header, true));
    EXPECT_EQ(kHiddenEnumValue, h.Parser().FindDefVal("HTag"));
    int32_t unused = 0;
    EXPECT_FALSE(g_DefinesMap.Lookup("HTag", unused));
    // In signals mode an unmarked enumeration is read all the same.
    Harness signals;
    EXPECT_EQ("enum ShownE: X=0\nenum HiddenE: Y=0\n" + shown, signals.Parse(header, true));
    // Without the mode everything is read.
    Harness all(false);
    EXPECT_EQ("enum ShownE: X=0\nenum HiddenE: Y=0\n" + shown +
                  "struct Hidden tag=Hidden: b int long\nstruct Apart tag=Apart: c int long\n",
              all.Parse(header));
}

TEST(CParseS2T_Driver, DefinesOfEachFileStartAfresh) {
    Harness h;
    h.Parse("#define A 5\nstruct S { char a[A]; };\n");
    EXPECT_EQ("struct S tag=S: a char char [5]\nstruct T tag=T: b char char [0]\n", h.Parse("struct T { char b[A]; };\n"));
    EXPECT_EQ(1, h.Parser().m_nLineNo);
    EXPECT_EQ(nullptr, h.Parser().m_pNestedNames);
}

TEST(CParseS2T_Driver, MakeAbsolutePathResolvesAgainstBase) {
    std::tuple<char const*, char const*, char const*, bool> const rows[] = {  // path, base, path after, result
        {"..\\..\\inc\\a.h", "c:\\work\\prj\\src", "c:\\work\\inc\\a.h", true},
        {"../inc/a.h", "c:\\work\\prj\\", "c:\\work\\inc\\a.h", true},
        {"inc/a.h", "c:\\work", "c:\\work\\inc\\a.h", true},
        {"inc\\a.h", "c:\\work", "inc\\a.h", true},
        {"..\\..\\..\\a.h", "c:\\w", "\\a.h", true},
        {"", "c:\\work", "", false},
    };
    for (auto const& [written, base, expected, result] : rows) {
        CString path(written), root(base);
        EXPECT_EQ(result, MakeAbsolutePath(path, root)) << written;
        EXPECT_EQ(expected, declarations::Text(path)) << written;
    }
}

TEST(CParseS2T_Driver, RealisticHeader) {
    Harness h;
    std::string printed;
    std::string dump = h.ParseCapturing(RealisticHeader(), printed);
    EXPECT_EQ(testsupport::ReadFile(KS_TEST_DATA_DIR "/parser/realistic.expected.txt"), dump);
    EXPECT_EQ("", printed);
}

// The hostile tests cut the header short in a whole run; this covers the
// exported-only mode, which no run of the tool uses.
TEST(CParseS2T_Driver, TruncatedHeadersNeverHangInEitherMode) {
    std::string const header = RealisticHeader();
    ASSERT_LT(1000u, header.size());
    for (size_t cut = 0; cut < header.size(); cut += 50) {
        for (bool signalsMode : {true, false}) {
            Harness h(signalsMode);
            std::string printed;
            testsupport::CaptureStderr errors;
            h.ParseCapturing(header.substr(0, cut), printed, !signalsMode);
            EXPECT_TRUE(h.Result()) << cut;
            EXPECT_EQ(0, h.Parser().m_nNestingDepth) << cut;
        }
    }
}
