// End-to-end tests of the whole job: the built KSManCMD runs in a scratch
// folder on a small header (and a database file when the case has one), and
// the rewritten database file, standard output and standard error are compared
// byte for byte with the files kept under tests/data/signals/<case>/.
#include <gtest/gtest.h>

#include <string>

#include "TestSupport.h"

namespace {

std::string const kData = std::string(KS_TEST_DATA_DIR) + "/signals/";
std::string const kBanner = "KSManCMD version 2.1.5.26 (linux)\n";
std::string const kNoDatabase = "Error : Could not open file database.txt to read.\n";

// What a successful signal stage prints: the notices go between the
// enumeration heading and its total.
std::string Stages(int enums, int unions, int structs, std::string const& notices = "") {
    return "\rDone!\nWrite enums to database\n" + notices + "\rTotal Enums: " + std::to_string(enums) +
           ".\rWrite unions to database\n\rTotal Unions: " + std::to_string(unions) +
           ".\rWrite structures to database\n\rTotal Structs: " + std::to_string(structs) +
           ".\r\rDone!\nWrite signal groups to database\n\rDone!\n";
}

struct JobRun {
    testsupport::ScratchDir dir;
    testsupport::RunResult result;

    // Copies the header (and the database when given) into the scratch folder
    // and runs the tool there with relative paths.
    void Prepare(std::string const& header, std::string const& database) {
        if (!header.empty()) testsupport::WriteFile(dir.File("signals.h"), testsupport::ReadFile(kData + header));
        if (!database.empty()) testsupport::WriteFile(dir.File("database.txt"), testsupport::ReadFile(kData + database));
    }
    void Run(std::string const& headerArg = "-Ssignals.h") {
        result = testsupport::Run(KS_KSMANCMD_PATH, {"-Ndatabase.txt", headerArg}, dir.Path());
    }
    std::string Database() const { return testsupport::ReadFile(dir.File("database.txt")); }
};

}  // namespace

TEST(WholeJob, EnumerationsNewAliasedAndStored) {
    JobRun job;
    job.Prepare("enums/signals.h", "enums/database.txt");
    job.Run();
    EXPECT_EQ(0, job.result.status);
    EXPECT_EQ(kBanner + Stages(3, 0, 0, "Enum 'StoredEnum' exist in Database!\n"), job.result.out);
    EXPECT_EQ("#endif without matching if found on line 12 on file signals.h\n", job.result.err);
    EXPECT_EQ(testsupport::ReadFile(kData + "enums/expected_database.txt"), job.Database());
}

TEST(WholeJob, UnionsReplaceStoredOnesWithEveryMemberKind) {
    JobRun job;
    job.Prepare("unions/signals.h", "unions/database.txt");
    job.Run();
    EXPECT_EQ(kBanner + Stages(1, 2, 1), job.result.out);
    EXPECT_EQ("", job.result.err);
    EXPECT_EQ(testsupport::ReadFile(kData + "unions/expected_database.txt"), job.Database());
}

TEST(WholeJob, StructuresBecomeSignalsWithoutDatabase) {
    JobRun job;
    job.Prepare("structs/signals.h", "");
    job.Run();
    EXPECT_EQ(kBanner + kNoDatabase + Stages(1, 1, 2), job.result.out);
    EXPECT_EQ("", job.result.err);
    EXPECT_EQ(testsupport::ReadFile(kData + "structs/expected_database.txt"), job.Database());
}

TEST(WholeJob, SignalGroupsAndTableReplaceLoadedOnes) {
    JobRun job;
    job.Prepare("groups/signals.h", "groups/database.txt");
    job.Run();
    EXPECT_EQ(kBanner + Stages(1, 1, 3), job.result.out);
    EXPECT_EQ("", job.result.err);
    EXPECT_EQ(testsupport::ReadFile(kData + "groups/expected_database.txt"), job.Database());
}

TEST(WholeJob, MissingHeaderRewritesLoadedDatabase) {
    JobRun job;
    job.Prepare("", "missing_header/database.txt");
    job.Run("-Smissing.h");
    EXPECT_EQ(kBanner + "Error : Could not open file missing.h to read.\n", job.result.out);
    EXPECT_EQ("", job.result.err);
    EXPECT_EQ(testsupport::ReadFile(kData + "missing_header/expected_database.txt"), job.Database());
}

TEST(WholeJob, DoNotPreprocessMarkerSkipsHeader) {
    JobRun job;
    job.Prepare("no_preprocess/signals.h", "no_preprocess/database.txt");
    job.Run();
    EXPECT_EQ(kBanner + Stages(0, 0, 0), job.result.out);
    // The line after the marker is still read once, so its directive is handled.
    EXPECT_EQ("#else without matching if found on line 1\n", job.result.err);
    EXPECT_EQ(testsupport::ReadFile(kData + "no_preprocess/expected_database.txt"), job.Database());
}

// The first run normalises what only the database holds (a union read back
// with its type and kind columns swapped, a structure field whose type is
// listed later); the second run finds the header's enumeration stored and keeps
// it, and rebuilds unions, signals and groups from the header, so its database
// equals the first run's.
TEST(WholeJob, SecondRunKeepsFirstRunDatabase) {
    JobRun job;
    job.Prepare("unions/signals.h", "twice/database.txt");
    job.Run();
    EXPECT_EQ(kBanner + Stages(1, 2, 1), job.result.out);
    std::string const first = testsupport::ReadFile(kData + "twice/expected_first.txt");
    EXPECT_EQ(first, job.Database());
    job.Run();
    EXPECT_EQ(kBanner + Stages(1, 2, 1, "Enum 'Switch' exist in Database!\n"), job.result.out);
    EXPECT_EQ("", job.result.err);
    EXPECT_EQ(first, job.Database());
}

TEST(WholeJob, ExampleRunMatchesItsResult) {
    JobRun job;
    testsupport::WriteFile(job.dir.File("signals.h"), testsupport::ReadFile(std::string(KS_EXAMPLES_DIR) + "/signals.h"));
    testsupport::WriteFile(job.dir.File("database.txt"),
                           testsupport::ReadFile(std::string(KS_EXAMPLES_DIR) + "/database.txt"));
    job.Run();
    EXPECT_EQ(testsupport::ReadFile(kData + "example/expected_stdout.txt"), job.result.out);
    EXPECT_EQ("", job.result.err);
    EXPECT_EQ(testsupport::ReadFile(kData + "example/expected_database.txt"), job.Database());
}
