// CStorage: identifier allocation, the add/find/delete policies, report
// comparison, the pools and the print walks, the latter pinned as the whole
// sequence of calls the store makes on a recording writer.
#include "Storage.h"

#include <gtest/gtest.h>

#include <climits>

#include "RecordingWriter.h"

namespace {

template <typename T>
T* Message(int32_t id, char const* name, char const* format = "") {
    T* message = new T;
    message->m_nID = id;
    message->m_strCat1 = name;
    message->m_strFormat = format;
    return message;
}

stStruct* Struct(char const* name, std::vector<char const*> aliases = {}) {
    stStruct* record = new stStruct;
    record->m_strName = name;
    for (char const* alias : aliases) record->m_Aliases.AddTail(alias);
    return record;
}

class StorageTest : public ::testing::Test {
protected:
    StorageTest() : store(&data) { store.SetDBWriter(&writer); }

    void AddCommand(int32_t id, char const* name) { store.AddCommand(Message<stCommand>(id, name)); }
    void AddReport(int32_t id, char const* name) {
        stReport* report = Message<stReport>(id, name);
        store.AddReport(report, report->GetFullName());
    }

    stData data;
    CStorage store;
    RecordingWriter writer;
};

TEST_F(StorageTest, NextCommandIdSkipsTakenIds) {
    AddCommand(5, "a");
    AddCommand(6, "b");
    int32_t cursor = 5;
    EXPECT_EQ(7, store.GetNextAvailableCommandID(&cursor));
    EXPECT_EQ(8, cursor);
    EXPECT_EQ(8, store.GetNextAvailableCommandID(&cursor));
    cursor = 5;
    EXPECT_EQ(9, store.GetNextAvailableCommandID(&cursor)) << "7 and 8 are reserved now";
    EXPECT_EQ(nullptr, store.FindCommandById(7)) << "a reserved id holds no command";
}

TEST_F(StorageTest, ReportIdBlockRestartsPastTakenId) {
    AddReport(10, "a");
    AddReport(12, "b");
    int32_t cursor = 10;
    EXPECT_EQ(13, store.GetNextAvailableManyReportID(&cursor, 3));
    EXPECT_EQ(16, cursor);
    cursor = 11;
    EXPECT_EQ(11, store.GetNextAvailableReportID(&cursor)) << "11 was passed over, not reserved";
    EXPECT_EQ(16, store.GetNextAvailableReportID(&cursor)) << "13 to 15 are reserved";
}

TEST_F(StorageTest, IdAllocationEndsAtLargestInt) {
    int32_t cursor = INT32_MAX;
    EXPECT_EQ(INT32_MAX, store.GetNextAvailableCommandID(&cursor));
    EXPECT_EQ(INT32_MAX, cursor);
    EXPECT_EQ(-1, store.GetNextAvailableCommandID(&cursor));
    cursor = INT32_MAX - 1;
    EXPECT_EQ(-1, store.GetNextAvailableManyReportID(&cursor, 3));
    EXPECT_EQ(INT32_MAX - 1, cursor);
    EXPECT_EQ(INT32_MAX - 1, store.GetNextAvailableManyReportID(&cursor, 2));
}

TEST_F(StorageTest, MonitorsFirstWins) {
    stMonitor* first = new stMonitor;
    first->m_strName = "m";
    store.AddMonitor(first, "__MON_m");
    store.AddMonitor(new stMonitor, "__MON_m");  // deleted at once
    stMonitor* other = new stMonitor;
    other->m_strName = "n";
    store.AddMonitor(other, "__MON_n");
    EXPECT_EQ(first, store.FindMonitorByName("__MON_m"));
    store.PrintMonitors();
    EXPECT_EQ("monitor m #0\nmonitor n #1\n", writer.lines);
}

TEST_F(StorageTest, PrintWritesEachRecordUnderEveryName) {
    store.AddStruct(Struct("S", {"S1", "S2"}));
    stEnum* e = new stEnum;
    e->m_strName = "E";
    e->m_Aliases.AddTail("E1");
    store.AddEnum(e);
    stUnion* u = new stUnion;
    u->m_strName = "U";
    u->m_Aliases.AddTail("U1");
    store.AddUnion(u);
    stSignal* s = new stSignal;
    s->m_strName = "Sig";
    s->m_strSecondName = "SigTag";
    s->m_Names.AddTail("Sig1");
    s->AddField(new stSignalVar);
    store.AddSignal(s);
    EXPECT_TRUE(store.AddNameToSignal(s, "Sig2"));
    EXPECT_FALSE(store.AddNameToSignal(s, "SigTag")) << "already indexed";
    store.PrintStructs();
    store.PrintEnumsTitle();
    store.PrintEnums();
    store.PrintUnions();
    store.PrintSignals();
    EXPECT_EQ(
        "struct S of S\nstruct S1 of S\nstruct S2 of S\n"
        "title E\nenum E of E\nenum E1 of E\n"
        "union U of U\nunion U1 of U\n"
        "signal Sig with 1\nsignal Sig1 with 1\nsignal Sig2 with 1\n",
        writer.lines);
    EXPECT_EQ(s, store.FindSignalByName("SigTag"));
    EXPECT_EQ(e, store.FindEnumByName("E1"));
}

TEST_F(StorageTest, PrintSignalTablePairsMembersWithValues) {
    stEnum* ids = new stEnum;
    ids->m_strName = "SignalId";
    ids->AddField("ID_A", 100);
    ids->AddField("ID_B", 101);
    store.AddEnum(ids);
    store.PrintSignalTable();
    EXPECT_EQ("", writer.lines) << "no union Signal";
    stUnion* members = new stUnion;
    members->m_strName = "Signal";
    for (char const* name : {"a", "b", "c"}) members->GetNewField()->m_strName = name;
    store.AddUnion(members);
    store.PrintSignalTable();
    EXPECT_EQ("table a=100\ntable b=101\n", writer.lines);
}

TEST_F(StorageTest, IsStorageEmptyIgnoresUnionsAndSignals) {
    store.AddUnion(new stUnion);
    store.AddSignal(new stSignal);
    store.AddMonitor(new stMonitor, "m");
    store.AddGroup(new stGroup("G", 1));
    EXPECT_TRUE(store.IsStorageEmpty());
    AddReport(1, "r");
    EXPECT_FALSE(store.IsStorageEmpty());
}

TEST_F(StorageTest, MessagesPrintInIdOrderWithinBounds) {
    AddCommand(3, "c3");
    AddCommand(0, "c0");
    AddCommand(7, "c7");
    AddReport(2, "r2");
    AddReport(0, "r0");
    AddReport(1, "r1");
    int32_t cursor = 4;
    store.GetNextAvailableCommandID(&cursor);  // 4 reserved: nothing to write
    data.m_nMaxCommandID = 5;
    data.m_nMaxReportID = 2;
    store.PrintCommands();
    store.PrintReports();
    EXPECT_EQ(
        "command 0,0,0,c0____,\ncommand 0,3,0,c3____,\n"
        "report 0,0,0,PRINTF__PRINTF__PRINTF,diagPrintf(\"%s\")\n"
        "report 0,1,0,r1____,\nreport 0,2,0,r2____,\n",
        writer.lines);
}

TEST_F(StorageTest, MessageWalkEndsQuicklyAtLargestId) {
    AddCommand(INT32_MAX, "top");
    AddCommand(-1, "unnumbered");
    data.m_nMaxCommandID = INT32_MAX;
    store.PrintCommands();
    EXPECT_EQ("command 0,2147483647,0,top____,\n", writer.lines);
}

TEST_F(StorageTest, DeleteLeavesNoEntryForDeletedRecord) {
    // "A" and "JZ_" share bucket 65 (65 and 74*1089+90*33+95 = 6*13931+65), so
    // the alias "JZ_" sits last in a chain and SetAt enters it a second time.
    stStruct* keeper = Struct("A");
    store.AddStruct(keeper);
    store.AddStruct(Struct("JZ_", {"JZ_", "B"}));
    stStruct* newer = Struct("B");
    store.AddStruct(newer);
    store.DeleteStructByName("JZ_");
    EXPECT_EQ(nullptr, store.FindStructByName("JZ_"));
    EXPECT_EQ(newer, store.FindStructByName("B")) << "the newer record keeps its name";
    EXPECT_EQ(keeper, store.FindStructByName("A"));
    store.DeleteStructByName("JZ_");  // unknown now: nothing happens
    store.PrintStructs();
    EXPECT_EQ("struct A of A\nstruct B of B\n", writer.lines);
}

TEST_F(StorageTest, DeletedMessageIdStaysReserved) {
    AddCommand(4, "c");
    store.DeleteCommandByName("c____");
    EXPECT_EQ(nullptr, store.FindCommandByName("c____"));
    EXPECT_EQ(nullptr, store.FindCommandById(4));
    int32_t cursor = 4;
    EXPECT_EQ(5, store.GetNextAvailableCommandID(&cursor));
    AddReport(2, "r");
    store.DeleteReportByName("r____");
    data.m_nMaxCommandID = 10;
    data.m_nMaxReportID = 10;
    store.PrintCommands();
    store.PrintReports();
    EXPECT_EQ("report 0,0,0,PRINTF__PRINTF__PRINTF,diagPrintf(\"%s\")\n", writer.lines);
}

TEST_F(StorageTest, CompareReportsByTrailingNumberAndQuotedPart) {
    struct Row {
        char const* a;
        char const* b;
        int32_t trailingB;
        bool expected;
        char const* reason;
    } rows[] = {
        {"x(\"v=%d\", v)", "y(\"v=%d\", w)", 0, true, "same quoted part"},
        {"x(\"v=%d\", v)", "x(\"v=%u\", v)", 0, false, "quoted parts differ"},
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
    stCommand c1, c2;
    c1.m_strFormat = "t";
    EXPECT_FALSE(store.CompareCommands(c1, c2));
}

TEST_F(StorageTest, GroupsSortedAndPairsFirstWins) {
    store.AddGroup(new stGroup("five", 5));
    store.AddGroup(new stGroup("three", 3));
    store.AddGroup(new stGroup("five again", 5));
    store.AddUnionIdentifier("U", "first");
    store.AddUnionIdentifier("U", "second");
    store.AddUnionIdentifier("V", "v");
    EXPECT_EQ("three", std::string(store.FindGroupById(3)->m_strName));
    EXPECT_EQ(nullptr, store.FindGroupById(4));
    store.PrintGroups();
    store.PrintUnionIdentifiers();
    EXPECT_EQ("group three=3\ngroup five=5\ngroup five again=5\npair U,first\npair V,v\n", writer.lines);
}

TEST_F(StorageTest, PoolsHandBackClearedRecords) {
    stEnum* e = store.GetFreeEnum();
    e->m_strName = "E";
    e->AddField("A", 300);
    store.ReleaseEnum(e);
    EXPECT_EQ(e, store.GetFreeEnum());
    EXPECT_EQ(1, e->m_nSizeof);
    EXPECT_TRUE(e->m_Fields.IsEmpty());
    store.AddEnum(e);
    stUnion* u = store.GetFreeUnion();
    store.ReleaseUnion(u);
    store.ReleaseStruct(store.GetFreeStruct());  // left in the pools for the destructor
    store.AddStruct(Struct("last"));
    EXPECT_EQ("last", std::string(store.GetLastStruct()->m_strName));
    EXPECT_EQ(nullptr, store.GetLastUnion());
}

TEST(CStorage, PrintWithoutWriterDoesNothing) {
    stData data;
    CStorage store(&data);
    store.AddStruct(Struct("S"));
    store.PrintReports();
    store.PrintStructs();
    store.PrintSignalTable();
    EXPECT_EQ("S", std::string(store.FindStructByName("S")->m_strName));
}

}  // namespace
