// End-to-end runs of the built KSManCMD that pin the run sequence: which file
// the command line makes the run read and rewrite, which header it parses, the
// stages that still run with empty paths, the progress percentages of a long
// header, and the exit status, which is 0 whatever happened.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "TestSupport.h"

namespace {

using testsupport::ReadFile;
using testsupport::WriteFile;

std::string const kBanner = "KSManCMD version 2.1.5.26 (linux)\n";
std::string const kNoFile = "Error : Could not open file  to read.\n";
std::string const kEnumHeader = "typedef enum { A = 1 } E;\n";

std::string Stages(int enums) {
    return "\rDone!\nWrite enums to database\n\rTotal Enums: " + std::to_string(enums) +
           ".\rWrite unions to database\n\rTotal Unions: 0.\rWrite structures to database\n\rTotal Structs: 0.\r"
           "\rDone!\nWrite signal groups to database\n\rDone!\n";
}

// The file written from an empty store with the given version line, and with
// the enumerator lines of an enumeration E holding A = 1 when withEnum is set.
std::string Database(std::string const& version, bool withEnum) {
    std::string file = ReadFile(KS_TEST_DATA_DIR "/database/empty.expected.txt");
    file.replace(file.find("0,0\n"), 4, version + "\n");
    if (withEnum) file.insert(file.find("Enums\n") + 6, "E,A,1,\n");
    return file;
}

std::set<std::string> FilesIn(std::string const& dir) {
    std::set<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(dir)) names.insert(entry.path().filename().string());
    return names;
}

// A scratch folder holding foo.txt and bar.txt (versions 1,1 and 2,2) and the
// one-enumeration header h.h.
struct Folder {
    testsupport::ScratchDir dir;
    Folder() {
        WriteFile(dir.File("foo.txt"), "DbVersion\n1,1\n<end>\n");
        WriteFile(dir.File("bar.txt"), "DbVersion\n2,2\n<end>\n");
        WriteFile(dir.File("h.h"), kEnumHeader);
    }
    testsupport::RunResult Run(std::initializer_list<std::string> args) {
        return testsupport::Run(KS_KSMANCMD_PATH, args, dir.Path());
    }
};

}  // namespace

TEST(RunSequence, NoArgumentsRunsEveryStageAndWritesNothing) {
    testsupport::ScratchDir dir;
    testsupport::RunResult run = testsupport::Run(KS_KSMANCMD_PATH, {}, dir.Path());
    EXPECT_EQ(0, run.status);
    // The loader and the header parser each report the empty path; the writer
    // cannot create a file without a name.
    EXPECT_EQ(kBanner + kNoFile + kNoFile, run.out);
    EXPECT_EQ("", run.err);
    EXPECT_TRUE(FilesIn(dir.Path()).empty());
}

TEST(RunSequence, LastDatabaseOptionIsReadAndRewritten) {
    Folder folder;
    testsupport::RunResult run = folder.Run({"-Nfoo.txt", "-Nbar.txt"});
    EXPECT_EQ(0, run.status);
    EXPECT_EQ(kBanner + kNoFile, run.out);
    EXPECT_EQ("DbVersion\n1,1\n<end>\n", ReadFile(folder.dir.File("foo.txt")));
    EXPECT_EQ(Database("2,2", false), ReadFile(folder.dir.File("bar.txt")));
}

TEST(RunSequence, OptionLettersIgnoreCase) {
    Folder folder;
    testsupport::RunResult run = folder.Run({"-nbar.txt", "-sh.h", "-cbrantove"});
    EXPECT_EQ(0, run.status);
    EXPECT_EQ(kBanner + Stages(1), run.out);
    EXPECT_EQ(Database("2,2", true), ReadFile(folder.dir.File("bar.txt")));
}

// "-S" with its value in the next argument parses no header; that argument,
// the bare arguments and the options the run does not use change nothing.
TEST(RunSequence, UnusedArgumentsChangeNothing) {
    Folder folder;
    testsupport::RunResult run =
        folder.Run({"-S", "h.h", "tool.EXE", "x.exe", "-Z", "a", "-E1", "-Xdir", "-Ddefs", "-Oout", "-Nbar.txt"});
    EXPECT_EQ(0, run.status);
    EXPECT_EQ(kBanner + kNoFile, run.out);
    EXPECT_EQ(Database("2,2", false), ReadFile(folder.dir.File("bar.txt")));
    EXPECT_EQ(kEnumHeader, ReadFile(folder.dir.File("h.h")));
    EXPECT_EQ((std::set<std::string>{"bar.txt", "foo.txt", "h.h"}), FilesIn(folder.dir.Path()));
}

// Every 2000th header line prints the file position after that line as a
// percentage of the file length, in unsigned 32-bit arithmetic.
TEST(RunSequence, ProgressEvery2000HeaderLines) {
    std::string lines;  // lines 1 to 2000 end at byte 20890, line 4000 at 42890
    for (int i = 0; i < 4500; ++i) lines += "int x" + std::to_string(i) + ";\n";
    std::string const wide = "//" + std::string(21997, 'x') + "\n";  // 22000 bytes a line
    std::string huge;
    for (int i = 0; i < 2001; ++i) huge += wide;
    struct Row {
        std::string header, progress;
    } const rows[] = {
        {lines, "\r43%\r88%"},  // 48390 bytes: 2089000 / 48390 and 4289000 / 48390
        {huge, "\r2%"},         // 44000000 * 100 wraps to 105032704; / 44022000 gives 2
    };
    for (Row const& row : rows) {
        testsupport::ScratchDir dir;
        WriteFile(dir.File("h.h"), row.header);
        testsupport::RunResult run = testsupport::Run(KS_KSMANCMD_PATH, {"-Sh.h"}, dir.Path());
        EXPECT_EQ(0, run.status);
        EXPECT_EQ(kBanner + kNoFile + row.progress + Stages(0), run.out);
    }
}
