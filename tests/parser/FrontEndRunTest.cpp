// Directives, macros, expressions and comments as a KSManCMD run stores what
// they produce: the enumerators written to the database file's "Enums" section.
#include <gtest/gtest.h>

#include <string>

#include "TestSupport.h"

namespace {

std::string EnumsSection(std::string const& database) {
    size_t start = database.find("\nEnums\n");
    if (start == std::string::npos) return "<none>";
    start += 7;
    return database.substr(start, database.find("<end>\n", start) - start);
}

}  // namespace

TEST(CParseS2TRun, DirectivesAndExpressionsReachTheDatabase) {
    struct Row {
        char const* header;
        char const* enums;
        char const* err;
    } const rows[] = {
        {"#define X 1 << 4\ntypedef enum { A = X, B = 1 << 4 } E;\n", "E,A,4,\nE,B,16,\n", ""},
        {"#define A 1\n#ifdef A // note\ntypedef enum { Q = 1 } E;\n#endif\n", "", ""},
        {"#if 0\ntypedef enum { Q = 1 } E;\n#endif\n", "E,Q,1,\n", ""},
        {"typedef enum { x/*c*/y = 3 } E;\n", "E,xy,3,\n", ""},
        {"#define A 5\n#define C (A) * 2\ntypedef enum { V = C } E;\n", "E,V,5,\n", ""},
        {"#define K 9\ntypedef enum { K = 2 } E1;\ntypedef enum { L = K } E2;\n", "E1,K,2,\nE2,L,2,\n", ""},
        {"#define W ( 2 + 3 * 4 )\n#define Z 0x1F\ntypedef enum { P = W, R = Z, S = 0xffffffff } E;\n",
         "E,P,20,\nE,R,31,\nE,S,-1,\n", ""},
        {"#else\ntypedef enum { Q = 2 } E;\n#endif\n", "E,Q,2,\n",
         "#else without matching if found on line 1\n#endif without matching if found on line 3 on file signals.h\n"},
    };
    for (auto const& row : rows) {
        testsupport::ScratchDir dir;
        testsupport::WriteFile(dir.File("signals.h"), row.header);
        testsupport::RunResult result =
            testsupport::Run(KS_KSMANCMD_PATH, {"-Ndatabase.txt", "-Ssignals.h"}, dir.Path());
        EXPECT_EQ(0, result.status) << row.header;
        EXPECT_EQ(row.err, result.err) << row.header;
        EXPECT_EQ(row.enums, EnumsSection(testsupport::ReadFile(dir.File("database.txt")))) << row.header;
    }
}
