// Tests of the header file driver: opening, the do-not-preprocess marker,
// typedef aliases and their effect on field kinds, signals and exported-only
// modes, MakeAbsolutePath, and whole headers (every header under the test
// data, a realistic header cut short anywhere, a large generated header).
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "DeclarationsHarness.h"

using declarations::Harness;

namespace {

std::string RealisticHeader() { return testsupport::ReadFile(std::string(KS_TEST_DATA_DIR) + "/parser/realistic.h"); }

}  // namespace

TEST(CParseS2T_Driver, ParseS2TFileCannotOpen) {
    Harness h;
    testsupport::CaptureStdout capture;
    bool result = h.Parser().ParseS2TFile("/nonexistent/dir/signals.h", true, false);
    EXPECT_EQ("Error : Could not open file /nonexistent/dir/signals.h to read.\n", capture.Stop());
    EXPECT_FALSE(result);
    EXPECT_EQ(nullptr, h.Parser().m_pNestedNames);
}

TEST(CParseS2T_Driver, EmptyHeaderAddsNothing) {
    Harness h;
    EXPECT_EQ("", h.Parse(""));
    EXPECT_TRUE(h.Result());
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
    struct Row {
        char const* alias;
        char const* expected;
    } const rows[] = {
        {"BYTE", "unsigned char"}, {"PBYTE", "BYTE *"},   {"PB2", "BYTE *"}, {"fn", "<none>"},
        {"Name", "char[10]"},      {"int", "unsigned long"}, {"X", "<none>"}, {"A", "UINT16"},
        {"B", "UINT16"},           {"VU", "UINT8"},       {"CC", "const char"}, {"long", "<none>"},
        {";", "<none>"},
    };
    for (Row const& row : rows) EXPECT_EQ(row.expected, h.Typedef(row.alias)) << row.alias;
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
    Harness h(false);
    EXPECT_EQ("enum ShownE: X=0\nstruct Shown tag=Shown: a int long\nstruct Next tag=Next: s int long\n",
              h.Parse(header, true));
    EXPECT_EQ(kHiddenEnumValue, h.Parser().FindDefVal("HTag"));
    int32_t unused = 0;
    EXPECT_FALSE(g_DefinesMap.Lookup("HTag", unused));
    // In signals mode an unmarked enumeration is read all the same.
    Harness signals;
    EXPECT_EQ("enum ShownE: X=0\nenum HiddenE: Y=0\nstruct Shown tag=Shown: a int long\nstruct Next tag=Next: s int long\n",
              signals.Parse(header, true));
    // Without the mode everything is read.
    Harness all(false);
    EXPECT_EQ("enum ShownE: X=0\nenum HiddenE: Y=0\nstruct Shown tag=Shown: a int long\nstruct Next tag=Next: s int long\n"
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
    struct Row {
        char const* path;
        char const* base;
        char const* expected;
        bool result;
    } const rows[] = {
        {"..\\..\\inc\\a.h", "c:\\work\\prj\\src", "c:\\work\\inc\\a.h", true},
        {"../inc/a.h", "c:\\work\\prj\\", "c:\\work\\inc\\a.h", true},
        {"inc/a.h", "c:\\work", "c:\\work\\inc\\a.h", true},
        {"inc\\a.h", "c:\\work", "inc\\a.h", true},
        {"..\\..\\..\\a.h", "c:\\w", "\\a.h", true},
        {"", "c:\\work", "", false},
    };
    for (Row const& row : rows) {
        CString path(row.path);
        CString base(row.base);
        EXPECT_EQ(row.result, MakeAbsolutePath(path, base)) << row.path;
        EXPECT_EQ(row.expected, declarations::Text(path)) << row.path;
    }
}

TEST(CParseS2T_Driver, RealisticHeader) {
    Harness h;
    std::string printed;
    std::string dump = h.ParseCapturing(RealisticHeader(), printed);
    EXPECT_EQ("enum SignalId: DIAG_START=256 DIAG_RESET=257 DIAG_STATUS=258 GPS_FIX=320 GPS_SATELLITES=321 "
              "LAST_SIGNAL_ID=322\n"
              "enum Mode names=[OperatingMode]: MODE_OFF=0 MODE_STANDBY=83 MODE_RUN=4 MODE_TEST=-1\n"
              "enum Basic: BASIC_A=3 BASIC_B=4\n"
              "struct ksTag_0 tag=: latitude int long; longitude int long; fix union ksGenUnion_0\n"
              "struct Status tag=StatusTag names=[StatusAlias,PStatus]: mode char unsigned char; "
              "counters int unsigned short [4][2]; StatusTag_bitfield_0 char unsigned long bits=32; "
              "StatusTag_bitfield_1 char unsigned long bits=1; name struct char[NAME_LEN]; "
              "p_text ptr(int) unsigned short; buffer char char [16]; position struct ksTag_0; "
              "onChange struct Callback; FuncPtr_0 ptr(int) unsigned short; guarded int unsigned short\n"
              "struct Satellite tag=Satellite: id char unsigned char; snr int UINT32; elevation int UINT32; "
              "mode enum Mode; flags char unsigned char [3]\n"
              "struct SatelliteList tag=SatelliteList: sats struct Satellite [12]; count int long\n"
              "union ksGenUnion_0: raw int long; bytes int UBYTE [4]\n"
              "union StatusOrRaw: status int Status; p_next ptr(struct) unsigned short; bytes int UBYTE; "
              "words int long [12]\n"
              "union Signal: status int Status; satellites int SatelliteList\n"
              "group GPS=320\ngroup DIAG=256\n",
              dump);
    EXPECT_EQ("", printed);
}

TEST(CParseS2T_Driver, EveryDataHeaderParses) {
    int parsed = 0;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(KS_TEST_DATA_DIR)) {
        if (entry.path().extension() != ".h") continue;
        for (bool signalsMode : {true, false}) {
            Harness h(signalsMode);
            std::string printed;
            testsupport::CaptureStderr errors;
            h.ParseCapturing(testsupport::ReadFile(entry.path().string()), printed, !signalsMode);
            errors.Stop();
            EXPECT_TRUE(h.Result()) << entry.path();
        }
        ++parsed;
    }
    EXPECT_LT(0, parsed);
}

TEST(CParseS2T_Driver, TruncatedHeadersNeverHang) {
    std::string const header = RealisticHeader();
    ASSERT_LT(1000u, header.size());
    for (size_t cut = 0; cut < header.size(); cut += 50) {
        for (bool signalsMode : {true, false}) {
            Harness h(signalsMode);
            std::string printed;
            testsupport::CaptureStderr errors;
            h.ParseCapturing(header.substr(0, cut), printed, !signalsMode);
            errors.Stop();
            EXPECT_TRUE(h.Result()) << cut;
            EXPECT_EQ(0, h.Parser().m_nNestingDepth) << cut;
        }
    }
}

TEST(CParseS2T_Driver, MutatedHeadersNeverCrash) {
    std::string const header = RealisticHeader();
    char const punctuation[] = "{};,*()[]:=#/'\n ";
    std::mt19937 random(77);
    for (int round = 0; round < 150; ++round) {
        std::string mutated = header;
        for (int i = 0; i < 12; ++i) {
            size_t at = random() % mutated.size();
            switch (random() % 3) {
                case 0: mutated[at] = punctuation[random() % (sizeof(punctuation) - 1)]; break;
                case 1: mutated.erase(at, 1 + random() % 20); break;
                default: mutated.insert(at, 1, static_cast<char>(random() % 256)); break;
            }
            if (mutated.empty()) mutated = "x";
        }
        Harness h;
        std::string printed;
        testsupport::CaptureStderr errors;
        h.ParseCapturing(mutated, printed);
        errors.Stop();
        EXPECT_TRUE(h.Result()) << round;
    }
}

TEST(CParseS2T_Driver, LargeGeneratedHeaderParses) {
    std::mt19937 random(5);
    std::string header;
    int structures = 0;
    while (header.size() < 3000000) {
        std::string n = std::to_string(structures++);
        header += "#define SIZE_" + n + " " + std::to_string(random() % 16 + 1) + "\n";
        header += "typedef enum { E" + n + "_A, E" + n + "_B = SIZE_" + n + " } Enum" + n + ";\n";
        header += "typedef struct Tag" + n + "\n{\n    int a;\n    char name[SIZE_" + n + "];\n    Enum" + n +
                  " e;\n    struct { int x : 3; int y : 5; } bits;\n";
        if (structures > 1) header += "    Struct" + std::to_string(structures - 2) + " *previous;\n";
        header += "} Struct" + n + ", Alias" + n + ";\n\n";
    }
    Harness h;
    std::string printed;
    h.ParseCapturing(header, printed);
    EXPECT_LT(100000, std::count(header.begin(), header.end(), '\n'));
    EXPECT_EQ(structures * 2, h.Parser().m_StructList.GetCount());
    EXPECT_EQ(structures, h.Parser().m_EnumList.GetCount());
    CStruct* last = h.Parser().FindStructByName(("Alias" + std::to_string(structures - 1)).c_str());
    ASSERT_NE(nullptr, last);
    EXPECT_EQ(5, last->m_lstVars.GetCount());
}
