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

TEST(WholeJob, OneRunOnEachCase) {
    struct Row {
        char const* header;    // under tests/data/signals/, copied in as signals.h; "" for none
        char const* database;  // likewise, copied in as database.txt
        char const* headerArg;
        std::string out, err;
        char const* expected;  // the rewritten database file
    } const rows[] = {
        // Enumerations new, aliased and already stored.
        {"enums/signals.h", "enums/database.txt", "-Ssignals.h",
         kBanner + Stages(3, 0, 0, "Enum 'StoredEnum' exist in Database!\n"),
         "#endif without matching if found on line 12 on file signals.h\n", "enums/expected_database.txt"},
        // Unions replace the stored ones, with every member kind.
        {"unions/signals.h", "unions/database.txt", "-Ssignals.h", kBanner + Stages(1, 2, 1), "",
         "unions/expected_database.txt"},
        // Structures become signals without a database file.
        {"structs/signals.h", "", "-Ssignals.h", kBanner + kNoDatabase + Stages(1, 1, 2), "",
         "structs/expected_database.txt"},
        // Signal groups and the signal table replace the loaded ones.
        {"groups/signals.h", "groups/database.txt", "-Ssignals.h", kBanner + Stages(1, 1, 3), "",
         "groups/expected_database.txt"},
        // A missing header still rewrites the loaded database.
        {"", "missing_header/database.txt", "-Smissing.h", kBanner + "Error : Could not open file missing.h to read.\n",
         "", "missing_header/expected_database.txt"},
        // The do-not-preprocess marker skips the header; the line after it is
        // still read once, so its directive is handled.
        {"no_preprocess/signals.h", "no_preprocess/database.txt", "-Ssignals.h", kBanner + Stages(0, 0, 0),
         "#else without matching if found on line 1\n", "no_preprocess/expected_database.txt"},
    };
    for (Row const& row : rows) {
        JobRun job;
        job.Prepare(row.header, row.database);
        job.Run(row.headerArg);
        EXPECT_EQ(0, job.result.status) << row.expected;
        EXPECT_EQ(row.out, job.result.out) << row.expected;
        EXPECT_EQ(row.err, job.result.err) << row.expected;
        EXPECT_EQ(testsupport::ReadFile(kData + row.expected), job.Database()) << row.expected;
    }
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
