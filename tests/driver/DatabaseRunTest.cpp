// End-to-end runs of the built KSManCMD with a database file and no signals
// header: the file is loaded, deleted and written back. Standard output and
// the rewritten file are compared whole.
#include <gtest/gtest.h>

#include <string>

#include "TestSupport.h"

namespace {

using testsupport::ReadFile;

std::string const kData = KS_TEST_DATA_DIR "/database/";
// The banner, then the signal run's message for its empty header path.
std::string const kBanner = "KSManCMD version 2.1.5.26 (linux)\n";
std::string const kNoHeader = "Error : Could not open file  to read.\n";

// Runs KSManCMD -Ndb.txt in a scratch folder holding text as db.txt (no file
// when text is null); returns the run and the rewritten file.
testsupport::RunResult RunOn(std::string const* text, std::string& rewritten) {
    testsupport::ScratchDir dir;
    if (text) testsupport::WriteFile(dir.File("db.txt"), *text);
    testsupport::RunResult run = testsupport::Run(KS_KSMANCMD_PATH, {"-Ndb.txt"}, dir.Path());
    rewritten = ReadFile(dir.File("db.txt"));
    return run;
}

TEST(DatabaseRun, EmptyRunWritesThirteenSections) {
    std::string file;
    testsupport::RunResult run = RunOn(nullptr, file);
    EXPECT_EQ(0, run.status);
    EXPECT_EQ(kBanner + "Error : Could not open file db.txt to read.\n" + kNoHeader, run.out);
    EXPECT_EQ(ReadFile(kData + "empty.expected.txt"), file);
}

TEST(DatabaseRun, EverySectionFileIsRewritten) {
    std::string file;
    std::string text = ReadFile(kData + "every_section.txt");
    testsupport::RunResult run = RunOn(&text, file);
    EXPECT_EQ(0, run.status);
    EXPECT_EQ(kBanner + kNoHeader, run.out);
    EXPECT_EQ(ReadFile(kData + "every_section.expected.txt"), file);
}

TEST(DatabaseRun, MissingEndRunsSectionToEndOfFile) {
    std::string file, text = "DbVersion\n4,1\n<end>\nnvm\nS,,,,,0,0,,d\n\nS,,f,int,int,1,0,,\nEnumsTitle\nE,0,,x";
    RunOn(&text, file);
    std::string expected = ReadFile(kData + "empty.expected.txt");
    expected.replace(expected.find("0,0\n"), 4, "4,1\n");
    // The empty line makes a structure without a name; "EnumsTitle" reuses it
    // and "E,0,,x" is the header of a structure named "0".
    expected.insert(expected.find("nvm\n") + 4, "S,,,,,0,0,,d\nS,,f,int,int,1,0,,\n,,,,,0,0,,\n0,,,,,0,0,,x\n");
    EXPECT_EQ(expected, file);
}

TEST(DatabaseRun, MalformedFilesStillRewriteTheFile) {
    std::string longLine(1 << 20, 'x');
    longLine[7] = ',';
    static char const binary[] = "EnumVals\n\x01\xfe,\0,\x80\n<end>\nnvm\n\0\0\n";
    std::string const rows[] = {
        std::string(binary, sizeof binary - 1),                                    // control, high and NUL bytes
        "nvm\n" + longLine + "\nEnumsTitle\n" + longLine + "\nUnions\n" + longLine,  // 1 MB lines
        "\n\n\nEnums\n\n<end>\n\n",                                               // empty lines
        "EnumVals\n1\n<end>\nEnumVals\n,\nMonitorParams\n2\n",                    // short lines
    };
    for (std::string const& text : rows) {
        std::string file;
        testsupport::RunResult run = RunOn(&text, file);
        EXPECT_EQ(0, run.status);
        EXPECT_EQ(kBanner + kNoHeader, run.out);
        EXPECT_EQ(0u, file.find("DbVersion\n")) << text.substr(0, 40);
        EXPECT_EQ("UnionIdentifiers\n<end>\n", file.substr(file.size() - 23)) << text.substr(0, 40);
    }
}

}  // namespace
