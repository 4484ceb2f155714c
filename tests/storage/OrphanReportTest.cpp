// The missing-items report: its file name rule and its exact bytes. Within a
// section the names follow the index's buckets (h = h * 33 + byte, modulo
// 13931) and, inside a bucket, the order in which they were entered.
#include "Storage.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "TestSupport.h"

namespace {

using testsupport::ReadFile;
using testsupport::ScratchDir;

constexpr char kEmptyReport[] =
    "****** List of Missing Commands ******\n"
    "\n\n****** List of Missing Reports ******\n"
    "\n\n****** List of Missing Structs ******\n"
    "\n\n****** List of Missing Enums ******\n";

void AddNamed(CStorage& store, char const* structName, char const* alias) {
    stStruct* record = new stStruct;
    record->m_strName = structName;
    if (alias) record->m_Aliases.AddTail(alias);
    store.AddStruct(record);
}

TEST(CStorage, OrphanReportEmptyStoreHasOnlyHeadings) {
    ScratchDir dir;
    stData data;
    CStorage store(&data);
    EXPECT_EQ(1, store.WriteOrphanReportsToFile((dir.Path() + "/db.txt").c_str()));
    EXPECT_EQ(kEmptyReport, ReadFile(dir.File("db_predefined_error.txt")));
}

TEST(CStorage, OrphanReportListsNamesInBucketOrder) {
    ScratchDir dir;
    stData data;
    CStorage store(&data);
    // Buckets: "B" 66, "JZ_" 65 (74*1089+90*33+95 = 6*13931+65), "A" 65 after
    // it in the chain, "CMD1" 276.
    for (char const* name : {"CMD1", "B", "JZ_", "A"}) {
        stCommand* command = new stCommand;
        store.AddCommand(command, name);
    }
    store.AddReport(new stReport, "R");
    AddNamed(store, "S", "Q");  // 83 and 81: the alias comes first
    stEnum* unnamed = new stEnum;
    store.AddEnum(unnamed);  // the empty name, bucket 0: an empty line
    stEnum* named = new stEnum;
    named->m_strName = "E";
    store.AddEnum(named);
    store.AddUnion(new stUnion);
    store.AddMonitor(new stMonitor, "M");
    ASSERT_EQ(1, store.WriteOrphanReportsToFile((dir.Path() + "/db.v1.txt").c_str()));
    EXPECT_EQ(
        "****** List of Missing Commands ******\nJZ_\nA\nB\nCMD1\n"
        "\n\n****** List of Missing Reports ******\nR\n"
        "\n\n****** List of Missing Structs ******\nQ\nS\n"
        "\n\n****** List of Missing Enums ******\n\nE\n",
        ReadFile(dir.File("db.v1_predefined_error.txt")));
}

TEST(CStorage, OrphanReportNameEndsAtLastDotAnywhere) {
    ScratchDir dir;
    stData data;
    CStorage store(&data);
    ASSERT_EQ(0, mkdir((dir.Path() + "/dir.v2").c_str(), 0700));
    EXPECT_EQ(1, store.WriteOrphanReportsToFile((dir.Path() + "/dir.v2/db").c_str()));
    EXPECT_EQ(kEmptyReport, ReadFile(dir.File("dir_predefined_error.txt")));

    char saved[4096];
    ASSERT_NE(nullptr, getcwd(saved, sizeof saved));
    ASSERT_EQ(0, chdir(dir.Path().c_str()));
    int written = store.WriteOrphanReportsToFile("nodot");
    ASSERT_EQ(0, chdir(saved));
    EXPECT_EQ(1, written);
    EXPECT_EQ(kEmptyReport, ReadFile(dir.File("_predefined_error.txt")));
}

TEST(CStorage, OrphanReportUncreatableFileGivesZero) {
    ScratchDir dir;
    stData data;
    CStorage store(&data);
    EXPECT_EQ(0, store.WriteOrphanReportsToFile((dir.Path() + "/missing/db.txt").c_str()));
    EXPECT_FALSE(testsupport::FileExists(dir.File("missing/db_predefined_error.txt")));
}

}  // namespace
