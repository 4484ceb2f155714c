// The missing-items report: its file name rule and its exact bytes. Within a
// section the names follow the index's buckets (h = h * 33 + byte, modulo
// 13931) and, inside a bucket, the order in which they were entered.
#include "Storage.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "TestSupport.h"

namespace {

using testsupport::ReadFile;
using testsupport::ScratchDir;

TEST(CStorage, OrphanReportListsNamesInBucketOrder) {
    ScratchDir dir;
    stData data;
    CStorage store(&data);
    // "JZ_" and "A" share bucket 65 (74*1089+90*33+95 = 6*13931+65), "B" is
    // 66, "CMD1" 276; "S" 83 and its alias "Q" 81; the empty name is bucket 0.
    for (char const* name : {"CMD1", "B", "JZ_", "A"}) store.AddCommand(new stCommand, name);
    store.AddReport(new stReport, "R");
    stStruct* record = new stStruct;
    record->m_strName = "S";
    record->m_Aliases.AddTail("Q");
    store.AddStruct(record);
    store.AddEnum(new stEnum);
    stEnum* named = new stEnum;
    named->m_strName = "E";
    store.AddEnum(named);
    store.AddUnion(new stUnion);  // unions and monitors are not listed
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
    EXPECT_EQ(
        "****** List of Missing Commands ******\n\n\n****** List of Missing Reports ******\n"
        "\n\n****** List of Missing Structs ******\n\n\n****** List of Missing Enums ******\n",
        ReadFile(dir.File("dir_predefined_error.txt")));
    EXPECT_EQ(0, store.WriteOrphanReportsToFile((dir.Path() + "/missing/db.txt").c_str()));
}

}  // namespace
