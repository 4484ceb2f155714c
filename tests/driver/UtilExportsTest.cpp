// End-to-end tests of "KSManUtil exports": the built executable rewrites copies
// of the module-definition files kept under tests/data/exports/.
#include <gtest/gtest.h>

#include <string>

#include "TestSupport.h"

using testsupport::ReadFile;
using testsupport::RunResult;
using testsupport::ScratchDir;
using testsupport::WriteFile;

namespace {

std::string const kData = std::string(KS_TEST_DATA_DIR) + "/exports/";

// A copy of a data file in the scratch folder, under the name module.def.
void CopyIn(ScratchDir const& dir, char const* name) {
    WriteFile(dir.File("module.def"), ReadFile(kData + name));
}

// Runs KSManUtil in dir (the test's own Run is gtest's, hence the name).
RunResult Util(std::initializer_list<std::string> args, std::string const& dir) {
    return testsupport::Run(KS_KSMANUTIL_PATH, args, dir);
}

}  // namespace

TEST(UtilExports, ReplacesSectionWithNamesInOrder) {
    ScratchDir dir;
    CopyIn(dir, "module.def");
    // Any argument other than -D is a name, options-like ones included; the
    // last -D wins.
    RunResult r = Util({"exports", "-Dother.def", "ksOpen", "-dmodule.def", "ksClose"}, dir.Path());
    EXPECT_EQ(0, r.status);
    EXPECT_EQ("", r.out);
    EXPECT_EQ("", r.err);
    EXPECT_EQ(ReadFile(kData + "module_updated.def"), ReadFile(dir.File("module.def")));
}

TEST(UtilExports, FilesItCannotRewrite) {
    struct Row {
        char const* file;  // copied in as module.def, "" for none
        std::initializer_list<std::string> args;
        int status;
        std::string err;
    } const rows[] = {
        {"no_end_marker.def", {"exports", "-Dmodule.def", "ksOpen"}, 1,
         "[KSC Warning:] Kestrin export section is missing from file module.def\n"},  // the file is left as it was
        {"", {"exports", "-Dabsent.def", "ksOpen"}, 1, ""},  // an unreadable file fails silently
        {"", {"exports", "ksOpen"}, 2, "usage: KSManUtil <command> [options]\n"},  // no module-definition file
    };
    for (Row const& row : rows) {
        ScratchDir dir;
        if (*row.file) CopyIn(dir, row.file);
        RunResult r = Util(row.args, dir.Path());
        EXPECT_EQ(row.status, r.status) << row.err;
        EXPECT_EQ("", r.out);
        // The usage text is pinned whole by the header command's tests.
        EXPECT_EQ(row.err, row.status == 2 ? r.err.substr(0, row.err.size()) : r.err);
        if (*row.file) {
            EXPECT_EQ(ReadFile(kData + row.file), ReadFile(dir.File("module.def")));
        }
    }
}

TEST(UtilExports, WithoutNamesEmptiesSection) {
    ScratchDir dir;
    WriteFile(dir.File("module.def"), ";KESTRIN EXPORTS BEGIN\n\tA\n;KESTRIN EXPORTS END\n");
    RunResult r = Util({"exports", "-Dmodule.def"}, dir.Path());
    EXPECT_EQ(0, r.status);
    EXPECT_EQ(";KESTRIN EXPORTS BEGIN\n;KESTRIN EXPORTS END\n", ReadFile(dir.File("module.def")));
}
