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

TEST(DatabaseRun, FilesAreRewritten) {
    std::string const loaded = kBanner + kNoHeader;
    struct Row {
        char const* input;  // under tests/data/database/; "" for no file
        std::string out;
        char const* expected;
    } const rows[] = {
        {"", kBanner + "Error : Could not open file db.txt to read.\n" + kNoHeader, "empty.expected.txt"},
        {"every_section.txt", loaded, "every_section.expected.txt"},
        // A missing "<end>" runs the section to the end of the file. The empty
        // line makes a structure without a name; "EnumsTitle" reuses it and
        // "E,0,,x" is the header of a structure named "0".
        {"missing_end.txt", loaded, "missing_end.expected.txt"},
    };
    for (Row const& row : rows) {
        std::string file, text = ReadFile(kData + row.input);
        testsupport::RunResult run = RunOn(*row.input ? &text : nullptr, file);
        EXPECT_EQ(0, run.status) << row.expected;
        EXPECT_EQ(row.out, run.out) << row.expected;
        EXPECT_EQ(ReadFile(kData + row.expected), file);
    }
}

// The empty store's file with lines inserted right after the first occurrence
// of each anchor (a section header, or the fixed report line for reports).
std::string EmptyWith(std::initializer_list<std::pair<std::string, std::string>> insertions) {
    std::string file = ReadFile(kData + "empty.expected.txt");
    for (auto const& [anchor, lines] : insertions) file.insert(file.find(anchor) + anchor.size(), lines);
    return file;
}

// "DbVersion", "EnumVals" and "Unions" are found by their first characters,
// every other keyword only as the whole line; the line read after a section's
// last line is tested by the keywords that follow in the same pass.
TEST(DatabaseRun, SectionKeywordsMatchByPrefixOrWholeLine) {
    std::string const empty = ReadFile(kData + "empty.expected.txt");
    std::string const command = "1,5,0,2,A,B,C,x\n<end>\n";
    struct Row {
        std::string text, expected;
    } const rows[] = {
        {empty, empty},  // the fixed report loads as report 0 and is not written twice
        {"DbVersionX\n12,3\n<end>\n", std::string(empty).replace(10, 4, "12,3\n")},
        {"DbVersion\n<end>\nEnumVals\n" + command, EmptyWith({{"<end>\nEnumVals\n", "1,5,1,2,A,B,C,x\n"}})},
        {"EnumVals \n" + command, EmptyWith({{"<end>\nEnumVals\n", "1,5,1,2,A,B,C,x\n"}})},
        {"EnumVals\n<end>\nEnumVals2\n" + command, EmptyWith({{"diagPrintf(\"%s\")\n", "1,5,0,2,A,B,C,x\n"}})},
        {"Unions \nU,m,int,primitive,1,0\n<end>\n", EmptyWith({{"Unions\n", "U,m,primitive,primitive,1,0\n"}})},
        {"MonitorParams \n3,M,a,b,1\n<end>\n", empty},
        {"nvm \nS,,,,,0,0,,\n<end>\n", empty},
        {"EnumsTitle \nE,0,,d\n<end>\n", empty},
        {"Enums \nE,A,1,\n<end>\n", empty},
        {"UnionIdentifiers \nA,1\n<end>\n", empty},
        // Any line that begins with "<end>" ends a section.
        {"Enums\nE,A,1,\n<end> x\nUnionIdentifiers\nA,1\n<end>\n",
         EmptyWith({{"Enums\n", "E,A,1,\n"}, {"UnionIdentifiers\n", "A,1\n"}})},
        // One command per identifier, the later of two, from 0 upward.
        {"EnumVals\n1,5,0,0,A,B,C,first\n2,5,0,0,D,E,F,second\n3,-1,0,0,G,H,I,minus\n4,0,0,0,A,B,C,zero\n<end>\n",
         EmptyWith({{"<end>\nEnumVals\n", "4,0,1,0,A,B,C,zero\n2,5,1,0,D,E,F,second\n"}})},
        // The third field runs to the first ")," after the first "(".
        {"nvm\nS,,a),b(c),d,e,f,1,0,,x\n<end>\n",
         EmptyWith({{"nvm\n", "S,,,,,0,1,0,,x\nS,,a),b(c),d,e,0,1,0,,x@ITEM_MODE@@ITEM_UNIT@@ITEM_DEPENDENCY@\n"}})},
    };
    for (Row const& row : rows) {
        std::string file;
        testsupport::RunResult run = RunOn(&row.text, file);
        EXPECT_EQ(0, run.status);
        EXPECT_EQ(row.expected, file) << row.text;
    }
}

}  // namespace
