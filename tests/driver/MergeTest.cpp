// KSManUtil merge end to end: an Init database merged against a predefined one
// (files under tests/data/merge/), the output database and the missing-items
// report compared whole, and the exit status of each kind of failure.
#include <gtest/gtest.h>

#include <string>

#include "TestSupport.h"

using namespace testsupport;

namespace {

std::string DataFile(std::string const& name) {
    return ReadFile(std::string(KS_TEST_DATA_DIR) + "/merge/" + name);
}

class MergeTest : public ::testing::Test {
protected:
    void SetUp() override {
        WriteFile(Predefined(), DataFile("predefined.txt"));
        WriteFile(Init(), DataFile("init.txt"));
    }
    std::string Predefined() const { return m_Dir.File("predefined.txt"); }
    std::string Init() const { return m_Dir.File("init.txt"); }
    std::string Output() const { return m_Dir.File("out.txt"); }
    std::string Report() const { return m_Dir.File("predefined_predefined_error.txt"); }
    RunResult Merge(std::string const& p, std::string const& i, std::string const& n) {
        return testsupport::Run(KS_KSMANUTIL_PATH, {"merge", p, i, n}, m_Dir.Path());
    }

    ScratchDir m_Dir;
};

// MATCH and KEEP are taken out of the predefined database by the Init one,
// ORPHAN and GONE stay and are listed; the messages numbered here ("-") are
// not written, the Init database's own records are.
TEST_F(MergeTest, MergeWritesInitDatabaseAndMissingItems) {
    RunResult result = Merge("-P" + Predefined(), "-I" + Init(), "-N" + Output());
    EXPECT_EQ(0, result.status);
    EXPECT_EQ("", result.out);
    EXPECT_EQ("", result.err);
    EXPECT_EQ(DataFile("merged.expected.txt"), ReadFile(Output()));
    EXPECT_EQ(DataFile("predefined_predefined_error.expected.txt"), ReadFile(Report()));
}

TEST_F(MergeTest, MergeOptionsIgnoreCaseAndKeepLastValue) {
    RunResult result =
        testsupport::Run(KS_KSMANUTIL_PATH,
                         {"merge", "-pnowhere.txt", "-n" + Output(), "-i" + Init(), "-p" + Predefined()}, m_Dir.Path());
    EXPECT_EQ(0, result.status);
    EXPECT_EQ(DataFile("merged.expected.txt"), ReadFile(Output()));
}

TEST_F(MergeTest, MergeMismatchIsFatal) {
    WriteFile(Init(), "EnumVals\n# 14 src/init.c\n-,-,1,0,A,B,MATCH,other\n<end>\n");
    RunResult result = Merge("-P" + Predefined(), "-I" + Init(), "-N" + Output());
    EXPECT_EQ(1, result.status);
    EXPECT_EQ("Error: Mismatched predefined command -  A__B__MATCH, on line 14\n\n", result.err);
    EXPECT_TRUE(FileExists(Output()));
    EXPECT_TRUE(FileExists(Report()));
}

TEST_F(MergeTest, MergeMissingInputWritesNothing) {
    std::string const missing = m_Dir.File("missing.txt");
    struct Row {
        std::string predefined, init, out;
    } const rows[] = {
        {missing, Init(), "Error : Opening Predefined DB FILE " + missing + "\n"},
        {Predefined(), missing, ""},  // the Init database fails silently
    };
    for (Row const& row : rows) {
        RunResult result = Merge("-P" + row.predefined, "-I" + row.init, "-N" + Output());
        EXPECT_EQ(1, result.status);
        EXPECT_EQ(row.out, result.out);
        EXPECT_FALSE(FileExists(Output()));
        EXPECT_FALSE(FileExists(Report()));
    }
}

TEST_F(MergeTest, MergeWithoutItsOptionsIsUsageError) {
    std::string const p = "-P" + Predefined(), i = "-I" + Init(), n = "-N" + Output();
    RunResult const results[] = {
        testsupport::Run(KS_KSMANUTIL_PATH, {"merge", p, i}, m_Dir.Path()),
        testsupport::Run(KS_KSMANUTIL_PATH, {"merge", p, i, "-N"}, m_Dir.Path()),
        testsupport::Run(KS_KSMANUTIL_PATH, {"merge", p, i, n, "-Xextra"}, m_Dir.Path()),
        testsupport::Run(KS_KSMANUTIL_PATH, {"merge", p, i, n, "extra.txt"}, m_Dir.Path()),
    };
    for (RunResult const& result : results) {
        EXPECT_EQ(2, result.status);
        EXPECT_EQ(0u, result.err.find("usage: KSManUtil")) << result.err;
        EXPECT_FALSE(FileExists(Output()));
    }
}

}  // namespace
