// The install rules: `cmake --install` of this build folder with the prefix
// /usr into a scratch DESTDIR must place exactly the two programs and their two
// manual pages, the programs must run from there, and groff must find nothing
// to warn about in either page.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include "TestSupport.h"

using namespace testsupport;

namespace {

std::string const kPrograms[] = {"KSManCMD", "KSManUtil"};
std::string const kPages[] = {"KSManCMD.1", "KSManUtil.1"};

bool IsExecutableFile(std::string const& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) && (info.st_mode & S_IXUSR) &&
           (info.st_mode & S_IXGRP) && (info.st_mode & S_IXOTH);
}

// Every regular file under root, as a path relative to it.
std::set<std::string> FilesUnder(std::string const& root) {
    std::set<std::string> files;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(root)) {
        if (entry.is_regular_file()) files.insert(std::filesystem::relative(entry.path(), root).string());
    }
    return files;
}

// One install per test: DESTDIR is read from the environment by the install
// step, so it is set only around that one child process.
class InstallTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_Dest = m_Dir.File("dest");
        setenv("DESTDIR", m_Dest.c_str(), 1);
        m_Install = testsupport::Run(KS_CMAKE_COMMAND, {"--install", KS_BUILD_DIR, "--prefix", "/usr"}, m_Dir.Path());
        unsetenv("DESTDIR");
    }
    std::string Installed(std::string const& relative) const { return m_Dest + "/usr/" + relative; }

    ScratchDir m_Dir;
    std::string m_Dest;
    RunResult m_Install;
};

}  // namespace

TEST_F(InstallTest, InstallPlacesProgramsAndPagesOnly) {
    ASSERT_EQ(0, m_Install.status) << m_Install.err;
    std::set<std::string> const expected = {"usr/bin/KSManCMD", "usr/bin/KSManUtil", "usr/share/man/man1/KSManCMD.1",
                                            "usr/share/man/man1/KSManUtil.1"};
    EXPECT_EQ(expected, FilesUnder(m_Dest));
    for (std::string const& program : kPrograms) EXPECT_TRUE(IsExecutableFile(Installed("bin/" + program))) << program;
    for (std::string const& page : kPages) {
        EXPECT_EQ(ReadFile(std::string(KS_MAN_DIR) + "/" + page), ReadFile(Installed("share/man/man1/" + page)));
    }
}

TEST_F(InstallTest, InstallProgramsRunFromPrefix) {
    ASSERT_EQ(0, m_Install.status) << m_Install.err;
    RunResult util = testsupport::Run(Installed("bin/KSManUtil"), {}, m_Dir.Path());
    EXPECT_EQ(2, util.status);
    EXPECT_EQ("usage: KSManUtil <command> [options]\n", util.err.substr(0, util.err.find('\n') + 1));
    // Without options the run goes through every stage on empty paths and
    // writes nothing; its banner shows the program started.
    RunResult cmd = testsupport::Run(Installed("bin/KSManCMD"), {}, m_Dir.Path());
    EXPECT_EQ(0, cmd.status);
    EXPECT_EQ("KSManCMD version 2.1.5.26 (linux)\n", cmd.out.substr(0, cmd.out.find('\n') + 1));
}

TEST(ManualPageTest, GroffWarnsAboutNothing) {
    std::string const groff = KS_GROFF_PATH;
    if (groff.empty()) GTEST_SKIP() << "groff is not installed";
    ScratchDir dir;
    for (std::string const& page : kPages) {
        RunResult check =
            testsupport::Run(groff, {"-ww", "-z", "-man", std::string(KS_MAN_DIR) + "/" + page}, dir.Path());
        EXPECT_EQ(0, check.status) << page;
        EXPECT_EQ("", check.out) << page;
        EXPECT_EQ("", check.err) << page;
    }
}
