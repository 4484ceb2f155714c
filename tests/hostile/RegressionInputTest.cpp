// The inputs that once made a tool crash, hang or misbehave, kept under
// tests/data/regression/ by the input surface they reached: header/ (signals
// headers, run by KSManCMD and by KSManUtil header), database/ (database files,
// loaded by KSManCMD), records/ (database files read by KSManUtil merge) and
// exports/ (module-definition files rewritten by KSManUtil exports).
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "HostileInput.h"

namespace {

std::vector<std::string> InputsOf(std::string const& surface) {
    std::vector<std::string> paths;
    std::filesystem::path folder = std::filesystem::path(KS_TEST_DATA_DIR) / "regression" / surface;
    if (!std::filesystem::is_directory(folder)) return paths;
    for (auto const& entry : std::filesystem::directory_iterator(folder))
        if (entry.is_regular_file()) paths.push_back(entry.path().string());
    return paths;
}

using Runs = std::vector<std::pair<std::string, std::vector<std::string>>>;

// Copies each input of surface into a scratch folder as file and makes the runs
// there in order: KSManCMD never refuses and always writes the database file back.
void ExpectEachRuns(char const* surface, char const* file, Runs const& runs) {
    for (auto const& path : InputsOf(surface)) {
        SCOPED_TRACE(path);
        testsupport::ScratchDir dir;
        testsupport::WriteFile(dir.File(file), testsupport::ReadFile(path));
        for (auto const& [program, args] : runs) {
            bool const tool = program == KS_KSMANCMD_PATH;
            hostile::ExpectFinished(hostile::RunLimited(program, args, dir.Path()), !tool);
            if (tool) EXPECT_EQ(0u, testsupport::ReadFile(dir.File("database.txt")).find("DbVersion\n"));
        }
    }
}

}  // namespace

TEST(RegressionInput, EverySurfaceRunsToTheEnd) {
    ExpectEachRuns("header", "signals.h",
                   {{KS_KSMANCMD_PATH, {"-Ndatabase.txt", "-Ssignals.h"}},
                    {KS_KSMANUTIL_PATH, {"header", "-Ssignals.h", "-Oout.h"}}});
    ExpectEachRuns("database", "database.txt", {{KS_KSMANCMD_PATH, {"-Ndatabase.txt", "-Snone.h"}}});
    ExpectEachRuns("records", "input.txt", {{KS_KSMANUTIL_PATH, {"merge", "-Pinput.txt", "-Iinput.txt", "-Nout.txt"}}});
    ExpectEachRuns("exports", "module.def", {{KS_KSMANUTIL_PATH, {"exports", "-Dmodule.def", "A", "B"}}});
}
