// End-to-end tests of "KSManUtil header": the built executable parses a signals
// header from tests/data/generator/ and the generated header is compared whole.
#include <gtest/gtest.h>

#include <string>

#include "TestSupport.h"

using testsupport::FileExists;
using testsupport::ReadFile;
using testsupport::RunResult;
using testsupport::ScratchDir;
using testsupport::WriteFile;

namespace {

std::string const kData = std::string(KS_TEST_DATA_DIR) + "/generator/";

constexpr char kUsage[] =
    "usage: KSManUtil <command> [options]\n"
    "commands:\n"
    "  merge   -P<predefined database> -I<Init database> -N<output database>\n"
    "  header  -S<signals header> -O<output header> [-C<target compiler>]\n"
    "  exports -D<module-definition file> NAME...\n";

// Runs KSManUtil in dir (the test's own Run is gtest's, hence the name).
RunResult Util(std::initializer_list<std::string> args, std::string const& dir) {
    return testsupport::Run(KS_KSMANUTIL_PATH, args, dir);
}

}  // namespace

TEST(UtilHeader, GeneratesPackedHeaderWithEnumerationsByRange) {
    ScratchDir dir;
    RunResult r = Util({"header", "-S" + kData + "signals.h", "-Oout.h"}, dir.Path());
    EXPECT_EQ(0, r.status);
    EXPECT_EQ("", r.out);
    EXPECT_EQ("", r.err);
    EXPECT_EQ(ReadFile(kData + "out_by_range.expected.txt"), ReadFile(dir.File("out.h")));
}

TEST(UtilHeader, FourByteCompilerWritesEnumerationTypeAndSticks) {
    ScratchDir dir;
    // Letters in any case; a later other compiler does not undo BRANTOVE.
    RunResult r =
        Util({"header", "-cBrantove", "-s" + kData + "signals.h", "-Cgcc", "-oignored.h", "-Oout.h"}, dir.Path());
    EXPECT_EQ(0, r.status);
    EXPECT_EQ(ReadFile(kData + "out_four_bytes.expected.txt"), ReadFile(dir.File("out.h")));
    EXPECT_FALSE(FileExists(dir.File("ignored.h")));
}

TEST(UtilHeader, MissingSignalsHeaderFailsWithoutOutput) {
    ScratchDir dir;
    RunResult r = Util({"header", "-Smissing.h", "-Oout.h"}, dir.Path());
    EXPECT_EQ(1, r.status);
    EXPECT_EQ("Error : Could not open file missing.h to read.\n", r.out);
    EXPECT_FALSE(FileExists(dir.File("out.h")));
}

TEST(UtilHeader, OutputThatCannotBeOpenedFails) {
    ScratchDir dir;
    WriteFile(dir.File("in.h"), "typedef struct { char c; } S;\n");
    RunResult r = Util({"header", "-Sin.h", "-Ono/such/dir/out.h"}, dir.Path());
    EXPECT_EQ(1, r.status);
    EXPECT_EQ("Error : Could not open file no/such/dir/out.h to read.\n", r.out);
}

TEST(UtilHeader, BadArgumentsPrintUsage) {
    ScratchDir dir;
    auto expectUsage = [&](std::initializer_list<std::string> args) {
        RunResult r = Util(args, dir.Path());
        EXPECT_EQ(2, r.status);
        EXPECT_EQ("", r.out);
        EXPECT_EQ(kUsage, r.err);
    };
    expectUsage({"header", "-Sin.h"});
    expectUsage({"header", "-Oout.h"});
    expectUsage({"header", "-Sin.h", "-Oout.h", "extra"});
    expectUsage({"header", "-Sin.h", "-Oout.h", "-X"});
    EXPECT_FALSE(FileExists(dir.File("out.h")));
}
