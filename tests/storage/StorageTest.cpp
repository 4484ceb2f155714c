// CStorage: identifier allocation, the add/find/delete policies and the print
// walks, pinned as the whole sequence of calls made on a recording writer; the
// missing-items report, its file name rule and its exact bytes. Within a
// section of the report the names follow the index's buckets (h = h * 33 +
// byte, modulo 13931) and, inside a bucket, the order in which they were entered.
#include "Storage.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "RecordingWriter.h"
#include "TestSupport.h"

namespace {

template <typename T>
T* Named(char const* name, std::vector<char const*> aliases = {}) {
    T* record = new T;
    record->m_strName = name;
    for (char const* alias : aliases) record->m_Aliases.AddTail(alias);
    return record;
}

class StorageTest : public ::testing::Test {
protected:
    StorageTest() : store(&data) { store.SetDBWriter(&writer); }

    void AddCommand(int32_t id, char const* name) {
        stCommand* command = new stCommand;
        command->m_nID = id;
        command->m_strCat1 = name;
        store.AddCommand(command);
    }
    void AddReport(int32_t id, char const* name) {
        stReport* report = new stReport;
        report->m_nID = id;
        store.AddReport(report, name);
    }

    stData data;
    CStorage store;
    RecordingWriter writer;
};

TEST_F(StorageTest, NextIdSkipsTakenIds) {
    AddCommand(5, "a");
    AddCommand(6, "b");
    int32_t cursor = 5;
    EXPECT_EQ(7, store.GetNextAvailableCommandID(&cursor));
    EXPECT_EQ(8, cursor);
    EXPECT_EQ(8, store.GetNextAvailableCommandID(&cursor));

    AddReport(10, "a");
    AddReport(12, "b");
    cursor = 10;
    EXPECT_EQ(13, store.GetNextAvailableManyReportID(&cursor, 3)) << "11 is free but 12 is not";
    EXPECT_EQ(16, cursor);
    cursor = 11;
    EXPECT_EQ(11, store.GetNextAvailableReportID(&cursor)) << "11 was passed over, not reserved";
    EXPECT_EQ(16, store.GetNextAvailableReportID(&cursor)) << "13 to 15 are reserved";

    cursor = INT32_MAX;
    EXPECT_EQ(INT32_MAX, store.GetNextAvailableCommandID(&cursor));
    EXPECT_EQ(-1, store.GetNextAvailableCommandID(&cursor)) << "identifiers never wrap";
}

TEST_F(StorageTest, MonitorsFirstWins) {
    auto monitor = [](char const* name) {
        stMonitor* record = new stMonitor;
        record->m_strName = name;
        return record;
    };
    store.AddMonitor(monitor("m"), "__MON_m");
    store.AddMonitor(monitor("m2"), "__MON_m");  // deleted at once
    store.AddMonitor(monitor("n"), "__MON_n");
    store.PrintMonitors();
    EXPECT_EQ("monitor m #0\nmonitor n #1\n", writer.lines);
}

TEST_F(StorageTest, PrintWritesEachRecordUnderEveryName) {
    store.AddStruct(Named<stStruct>("S", {"S1", "S2"}));
    store.AddEnum(Named<stEnum>("E", {"E1"}));
    stSignal* signal = new stSignal;
    signal->m_strName = "Sig";
    signal->m_Names.AddTail("Sig1");
    store.AddSignal(signal);
    EXPECT_TRUE(store.AddNameToSignal(signal, "Sig2"));
    EXPECT_FALSE(store.AddNameToSignal(signal, "Sig1")) << "already indexed";
    store.PrintStructs();
    store.PrintEnumsTitle();
    store.PrintEnums();
    store.PrintSignals();
    EXPECT_EQ(
        "struct S of S\nstruct S1 of S\nstruct S2 of S\ntitle E\nenum E of E\nenum E1 of E\n"
        "signal Sig with 0\nsignal Sig1 with 0\nsignal Sig2 with 0\n",
        writer.lines);
}

TEST_F(StorageTest, PrintSignalTablePairsMembersWithValues) {
    stEnum* ids = Named<stEnum>("SignalId");
    ids->AddField("ID_A", 100);
    ids->AddField("ID_B", 101);
    store.AddEnum(ids);
    store.PrintSignalTable();
    EXPECT_EQ("", writer.lines) << "no union Signal yet";
    stUnion* members = Named<stUnion>("Signal");
    for (char const* name : {"a", "b", "c"}) members->GetNewField()->m_strName = name;
    store.AddUnion(members);
    store.PrintSignalTable();
    EXPECT_EQ("table a=100\ntable b=101\n", writer.lines);
}

TEST_F(StorageTest, GroupsPrintByBaseValueEqualOnesInInsertionOrder) {
    struct Row {
        char const* name;
        int32_t base;
    };
    for (Row row : {Row{"c", 30}, Row{"a", 10}, Row{"d", 30}, Row{"min", INT32_MIN}, Row{"b", 20}, Row{"a2", 10},
                    Row{"max", INT32_MAX}, Row{"e", 30}, Row{"b2", 20}})
        store.AddGroup(new stGroup(row.name, row.base));
    store.PrintGroups();
    EXPECT_EQ(
        "group min=-2147483648\ngroup a=10\ngroup a2=10\ngroup b=20\ngroup b2=20\ngroup c=30\ngroup d=30\n"
        "group e=30\ngroup max=2147483647\n",
        writer.lines);
}

TEST_F(StorageTest, MessagesPrintInIdOrderWithinBoundsAndEmptinessIgnoresUnionsAndSignals) {
    store.AddUnion(new stUnion);
    store.AddSignal(new stSignal);
    EXPECT_TRUE(store.IsStorageEmpty());
    AddReport(2, "r");
    EXPECT_FALSE(store.IsStorageEmpty());
    for (int32_t id : {0, 1}) AddReport(id, "r");
    for (int32_t id : {3, 0, INT32_MAX, 6}) AddCommand(id, ("c" + std::to_string(id)).c_str());
    int32_t cursor = 4;
    store.GetNextAvailableCommandID(&cursor);  // 4 is only reserved: nothing to write
    store.DeleteCommandByName("c6____");       // 6 stays reserved, its command is gone
    data.m_nMaxCommandID = INT32_MAX;
    data.m_nMaxReportID = 1;
    store.PrintCommands();
    store.PrintReports();
    EXPECT_EQ(
        "command 0,0,0,c0____,\ncommand 0,3,0,c3____,\ncommand 0,2147483647,0,c2147483647____,\n"
        "report 0,0,0,PRINTF__PRINTF__PRINTF,diagPrintf(\"%s\")\nreport 0,1,0,____,\n",
        writer.lines);
    cursor = 6;
    EXPECT_EQ(7, store.GetNextAvailableCommandID(&cursor));
}

TEST_F(StorageTest, DeleteLeavesNoEntryForDeletedRecord) {
    // "A" and "JZ_" share bucket 65 (74*1089+90*33+95 = 6*13931+65), so the
    // alias "JZ_" sits last in a chain and SetAt enters it a second time.
    stStruct* keeper = Named<stStruct>("A");
    store.AddStruct(keeper);
    store.AddStruct(Named<stStruct>("JZ_", {"JZ_", "B"}));
    stStruct* newer = Named<stStruct>("B");
    store.AddStruct(newer);
    store.DeleteStructByName("JZ_");
    EXPECT_EQ(nullptr, store.FindStructByName("JZ_"));
    EXPECT_EQ(newer, store.FindStructByName("B")) << "the newer record keeps its name";
    EXPECT_EQ(keeper, store.FindStructByName("A"));
}

TEST_F(StorageTest, CompareReportsByTrailingNumberAndQuotedPart) {
    struct Row {
        char const *a, *b;
        int32_t trailingB;
        bool expected;
        char const* reason;
    } rows[] = {
        {"x(\"v=%d\", v)", "y(\"v=%d\", w)", 0, true, "same quoted part, other text around it"},
        {"\"a\" \"b\"", "\"a\" \"c\"", 0, false, "first to last quote"},
        {"no quotes", "\"q\"", 0, true, "a text without quotes is not compared"},
        {"\"q\"", "\"q\"", 1, false, "trailing numbers differ"},
    };
    for (auto const& row : rows) {
        stReport a, b;
        a.m_strFormat = row.a;
        b.m_strFormat = row.b;
        b.m_nTrailingNumber = row.trailingB;
        EXPECT_EQ(row.expected, store.CompareReports(a, b)) << row.reason;
    }
}

TEST(CStorage, OrphanReportNamedAfterTheLastDotListsNamesInBucketOrder) {
    testsupport::ScratchDir dir;
    stData data;
    CStorage store(&data);
    ASSERT_EQ(0, mkdir((dir.Path() + "/dir.v2").c_str(), 0700));  // the last dot may sit in a folder name
    EXPECT_EQ(1, store.WriteOrphanReportsToFile((dir.Path() + "/dir.v2/db").c_str()));
    EXPECT_EQ(
        "****** List of Missing Commands ******\n\n\n****** List of Missing Reports ******\n"
        "\n\n****** List of Missing Structs ******\n\n\n****** List of Missing Enums ******\n",
        testsupport::ReadFile(dir.File("dir_predefined_error.txt")));
    EXPECT_EQ(0, store.WriteOrphanReportsToFile((dir.Path() + "/missing/db.txt").c_str()));
    // "JZ_" and "A" share bucket 65 (74*1089+90*33+95 = 6*13931+65), "B" is
    // 66, "CMD1" 276; "S" 83 and its alias "Q" 81; the empty name is bucket 0.
    for (char const* name : {"CMD1", "B", "JZ_", "A"}) store.AddCommand(new stCommand, name);
    store.AddReport(new stReport, "R");
    store.AddStruct(Named<stStruct>("S", {"Q"}));
    store.AddEnum(new stEnum);
    store.AddEnum(Named<stEnum>("E"));
    store.AddUnion(new stUnion);  // unions and monitors are not listed
    store.AddMonitor(new stMonitor, "M");
    ASSERT_EQ(1, store.WriteOrphanReportsToFile((dir.Path() + "/db.v1.txt").c_str()));
    EXPECT_EQ(
        "****** List of Missing Commands ******\nJZ_\nA\nB\nCMD1\n"
        "\n\n****** List of Missing Reports ******\nR\n"
        "\n\n****** List of Missing Structs ******\nQ\nS\n"
        "\n\n****** List of Missing Enums ******\n\nE\n",
        testsupport::ReadFile(dir.File("db.v1_predefined_error.txt")));
}

}  // namespace
