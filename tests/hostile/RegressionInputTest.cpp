// The inputs that once made a tool crash, hang or misbehave, kept under
// tests/data/regression/ by the input surface they reached: header/ (signals
// headers, run by KSManCMD and by KSManUtil header), database/ (database files,
// loaded by KSManCMD), records/ (database files read by KSManUtil merge) and
// exports/ (module-definition files rewritten by KSManUtil exports).
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "HostileInput.h"
#include "TestSupport.h"

namespace {

std::vector<std::string> InputsOf(std::string const& surface) {
    std::vector<std::string> paths;
    std::filesystem::path folder = std::filesystem::path(KS_TEST_DATA_DIR) / "regression" / surface;
    if (!std::filesystem::is_directory(folder)) return paths;
    for (auto const& entry : std::filesystem::directory_iterator(folder))
        if (entry.is_regular_file()) paths.push_back(entry.path().string());
    return paths;
}

// Status 0, or 1 where the command may refuse its input; never a signal, a
// sanitizer report or the time limit.
void ExpectFinished(hostile::TimedRun const& run, bool mayRefuse) {
    EXPECT_TRUE(run.status == 0 || (mayRefuse && run.status == 1)) << run.status << "\n" << run.err;
    EXPECT_GT(hostile::kSecondsPerRun, run.seconds);
}

}  // namespace

TEST(RegressionInput, HeadersRunThroughTheWholeJobAndTheGenerator) {
    for (auto const& path : InputsOf("header")) {
        SCOPED_TRACE(path);
        testsupport::ScratchDir dir;
        testsupport::WriteFile(dir.File("signals.h"), testsupport::ReadFile(path));
        ExpectFinished(hostile::RunLimited(KS_KSMANCMD_PATH, {"-Ndatabase.txt", "-Ssignals.h"}, dir.Path()), false);
        EXPECT_EQ(0u, testsupport::ReadFile(dir.File("database.txt")).find("DbVersion\n"));
        ExpectFinished(hostile::RunLimited(KS_KSMANUTIL_PATH, {"header", "-Ssignals.h", "-Oout.h"}, dir.Path()), true);
    }
}

TEST(RegressionInput, DatabasesLoadAndAreWrittenBack) {
    for (auto const& path : InputsOf("database")) {
        SCOPED_TRACE(path);
        testsupport::ScratchDir dir;
        testsupport::WriteFile(dir.File("database.txt"), testsupport::ReadFile(path));
        ExpectFinished(hostile::RunLimited(KS_KSMANCMD_PATH, {"-Ndatabase.txt", "-Snone.h"}, dir.Path()), false);
        EXPECT_EQ(0u, testsupport::ReadFile(dir.File("database.txt")).find("DbVersion\n"));
    }
}

TEST(RegressionInput, RecordFilesMergeAsPredefinedAndInit) {
    for (auto const& path : InputsOf("records")) {
        SCOPED_TRACE(path);
        testsupport::ScratchDir dir;
        testsupport::WriteFile(dir.File("input.txt"), testsupport::ReadFile(path));
        ExpectFinished(
            hostile::RunLimited(KS_KSMANUTIL_PATH, {"merge", "-Pinput.txt", "-Iinput.txt", "-Nout.txt"}, dir.Path()),
            true);
    }
}

TEST(RegressionInput, ModuleDefinitionFilesAreRewritten) {
    for (auto const& path : InputsOf("exports")) {
        SCOPED_TRACE(path);
        testsupport::ScratchDir dir;
        testsupport::WriteFile(dir.File("module.def"), testsupport::ReadFile(path));
        ExpectFinished(hostile::RunLimited(KS_KSMANUTIL_PATH, {"exports", "-Dmodule.def", "A", "B"}, dir.Path()),
                       true);
    }
}
