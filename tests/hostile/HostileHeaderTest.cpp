// Hostile signals headers through the built KSManCMD: each run must exit 0
// within seconds and write the database file back with every record it
// loaded. The inputs are generated here, a few megabytes at most.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "HostileInput.h"

namespace {

using hostile::Repeat;

// Lines of the loaded database that no hostile header touches: the run must
// write them back whatever the header held.
std::vector<std::string> const kSurvivors = {
    "\n5,7,1,2,CMD,GEN,SET,set %d, then %d\n",
    "\n3,4,0,0,RPT,IO,PLAIN,plain, with, commas\n",
    "\nPoint,,,,,0,1,pt,a point\n",
    "\nColor,Blue,65536,x,y\n",
    "\nAny,asPoint,struct,Point,1,0\n",
    "\nAny,ANY_ID\n",
};

void ExpectAllSurvive(std::vector<hostile::Case> const& cases) {
    for (auto const& hostileCase : cases) {
        SCOPED_TRACE(hostileCase.name);
        testsupport::ScratchDir dir;
        testsupport::WriteFile(dir.File("database.txt"),
                               testsupport::ReadFile(std::string(KS_TEST_DATA_DIR) + "/database/every_section.txt"));
        testsupport::WriteFile(dir.File("signals.h"), hostileCase.bytes);
        hostile::ExpectFinished(hostile::RunLimited(KS_KSMANCMD_PATH, {"-Ndatabase.txt", "-Ssignals.h"}, dir.Path()),
                                false);
        std::string database = testsupport::ReadFile(dir.File("database.txt"));
        EXPECT_EQ(0u, database.find("DbVersion\n12,3\n<end>\n"));
        for (auto const& line : kSurvivors) EXPECT_NE(std::string::npos, database.find(line)) << line;
    }
}

std::string Parenthesised(std::string const& inner, size_t depth) {
    return Repeat("(", depth) + inner + Repeat(")", depth);
}

}  // namespace

TEST(HostileHeader, UnterminatedCommentsAndParentheses) {
    ExpectAllSurvive({
        {"comment never closed", "typedef struct { int a; } H1;\n/* open\ntypedef struct { int b; } H2;\n"},
        {"comment opened on a directive", "#define A 1 /* open\n#if A\nint x;\n"},
        {"comment opened in a body", "typedef struct { int a; /* open\n int b; } H3;\n"},
        {"parentheses in directives", "#define P ((((1 + 2\n#if ((P\n#endif\n#define Q (\n"},
        {"parentheses in a body",
         "typedef struct { int a[((3 + 4]; char b[(]; int (*f)(int; } S;\nenum E { A = ((1, B = sizeof((, C };\n"},
        {"parentheses at the end of the file", "typedef struct { int a[((("},
        {"sizeof at the end of the file", "enum E { A = sizeof ( struct"},
    });
}

TEST(HostileHeader, DeepNestingEndsWithoutExhaustingTheStack) {
    std::string const nestedStructs =
        "typedef struct {\n" + Repeat("struct {\n", 2000) + "int x;\n" + Repeat("} n;\n", 2000) + "} Deep;\n";
    std::string const nestedUnions =
        "typedef union {\n" + Repeat("union {\n", 2000) + "int x;\n" + Repeat("} u;\n", 2000) + "} DeepU;\n";
    ExpectAllSurvive({
        {"10,000 nested conditionals",
         Repeat("#if 1\n", 5000) + Repeat("#ifdef X\n", 5000) + "typedef struct { int a; } S;\n" +
             Repeat("#else\n#endif\n", 10000)},
        {"10,000 unclosed conditionals", Repeat("#if 0\n", 10000) + "typedef struct { int a; } S;\n"},
        {"10,000 unmatched closings", Repeat("#endif\n#else\n", 10000)},
        {"2,000 nested structures", nestedStructs},
        {"2,000 nested unions", nestedUnions},
        {"2,000 nested aggregates never closed", "typedef struct {\n" + Repeat("struct {\nunion {\n", 1000)},
        {"4,000 braces in an enumeration", "enum E {" + Repeat("{", 4000) + "A };\n"},
        {"100,000 parentheses in a define", "#define DEEP " + Parenthesised("1", 100000) + "\n#if DEEP\n#endif\n"},
        {"100,000 parentheses in a condition", "#if " + Parenthesised("1", 100000) + "\n#endif\n"},
        {"100,000 parentheses in an array size",
         "typedef struct { int a[" + Parenthesised("2", 100000) + "]; } P;\n"},
        {"100,000 parentheses in an enumerator", "enum E { A = " + Parenthesised("1", 100000) + " };\n"},
        {"100,000 parentheses never closed", "enum E { A = " + Repeat("(", 100000)},
    });
}

TEST(HostileHeader, HugeLinesAndBytes) {
    std::string fields;
    for (int i = 0; i < 50000; ++i) fields += (i ? ", f" : "f") + std::to_string(i);
    ExpectAllSurvive({
        {"1 MB line of words", Repeat("x ", 512 * 1024) + "\n"},
        {"1 MB word", Repeat("w", 1024 * 1024) + "\n"},
        {"1 MB define", "#define L " + Repeat("1+", 512 * 1024) + "1\n"},
        {"1 MB comment line", "/*" + Repeat("*", 1024 * 1024) + "*/\ntypedef struct { int a; } C;\n"},
        {"50,000 fields on one line", "typedef struct { int " + fields + "; } Wide;\n"},
        {"binary bytes", hostile::PseudoRandomBytes(256 * 1024, 11)},
        {"every byte value", Repeat(hostile::EveryByteValue(), 64)},
        {"NUL bytes",
         std::string("typedef struct {\0 int a;\0} S\0;\n#define N\0 1\nenum { A\0 = 1 };\n", 58) +
             std::string(1000, '\0') + "typedef struct { int b; } T;\n"},
    });
}

TEST(HostileHeader, TruncatedHeaders) {
    std::string const header = testsupport::ReadFile(std::string(KS_TEST_DATA_DIR) + "/parser/realistic.h");
    ASSERT_FALSE(header.empty());
    ExpectAllSurvive(hostile::Truncations(header, 24));
}

TEST(HostileHeader, CyclesLimitsAndHugeSizes) {
    std::string defines;
    for (int i = 0; i < 6000; ++i) defines += "#define D" + std::to_string(i) + " " + std::to_string(i) + "\n";
    std::string enumerators;
    for (int i = 0; i < 6000; ++i) enumerators += "E" + std::to_string(i) + " = D" + std::to_string(i) + ",\n";
    std::string chain = "typedef long T0;\n";
    std::string chainUses = "typedef struct {\n";
    for (int i = 0; i < 20000; ++i) {
        chain += "typedef T" + std::to_string(i) + " T" + std::to_string(i + 1) + ";\n";
        chainUses += "T20000 f" + std::to_string(i) + "; char s" + std::to_string(i) + "[sizeof(T20000)];\n";
    }
    std::string signalIds = "typedef enum SignalIdTag {\n";
    for (int i = 0; i < 60000; ++i)
        signalIds += "S" + std::to_string(i) + " = G" + std::to_string(i) + "_SIGNAL_BASE + " + std::to_string(i) + ",\n";
    ExpectAllSurvive({
        {"60,000 signal groups", signalIds + "} SignalId;\n"},
        {"20,000 typedefs in a chain named 40,000 times", chain + chainUses + "} Chained;\n"},
        {"a loop of 20,001 typedefs named 40,000 times",
         "typedef T20000 T0;\n" + chain.substr(chain.find('\n') + 1) + chainUses + "} Looped;\n"},
        {"typedef cycles",
         "typedef A B;\ntypedef B C;\ntypedef C A;\ntypedef T T;\n"
         "typedef struct { A x; B y[sizeof(C)]; C *z; T t; } Cyc;\n"},
        {"structure cycles",
         "typedef struct SA { struct SB b; } SA;\ntypedef struct SB { struct SA a; SA s[2]; } SB;\n"
         "typedef struct Self { struct Self next; Self again; } Self;\n"
         "typedef union U1 { union U2 u; SA s; } U1;\ntypedef union U2 { U1 u; } U2;\n"},
        {"more than 5,000 definitions",
         defines + "enum Big {\n" + enumerators + "};\ntypedef struct { int a[D5999]; } UsesLast;\n"},
        {"0x7fffffff array sizes",
         "typedef struct { int a[0x7fffffff]; char b[0x7fffffff][0x7fffffff]; short c[2147483647*2]; "
         "int d[-2147483648]; int e : 0x7fffffff; } Huge;\n"
         "typedef union { int a[0x7fffffff]; Huge h[0x7fffffff]; } HugeU;\n"
         "typedef struct { Huge h[0x7fffffff][16]; HugeU u[0x7fffffff]; } Outer;\n"},
    });
}

TEST(HostileHeader, KeywordsAtEndOfFile) {
    std::vector<std::string> const endings = {
        "typedef",  "typedef struct", "typedef struct {", "struct", "struct X", "struct X {",
        "union",    "typedef union",  "typedef union {",  "enum",   "typedef enum", "enum { A =",
        "#define",  "#define X",      "#define X \\",     "#if",    "#ifdef",       "#ifndef",
        "#else",    "#endif",         "#undef",           "#",      "sizeof",       "sizeof(",
        "int a[",   "int a :",        "\\",               "/",      "'",            "\"",
        "typedef struct { int a[4]; } S; typedef S"};
    std::vector<hostile::Case> cases;
    for (auto const& ending : endings) {
        cases.push_back({ending, "typedef struct { int a; } Lead;\n" + ending});
        cases.push_back({ending + " and a line end", ending + "\n"});
    }
    ExpectAllSurvive(cases);
}
