// The database loader: field cutting, the section tests in their fixed order
// and the records each section builds; and a file loaded and written back
// twice. The first pass, pinned by the end-to-end database run, rewrites the
// records the loader reads differently from how they were written; a second
// pass gives the same bytes again, except for union members of enumeration,
// union and pointer kind, whose kind word and type text trade columns on every
// pass, so they alternate between two forms. Malformed files are the hostile
// tests'.
#include "DBLoader.h"

#include <gtest/gtest.h>

#include <string>

#include "KSLDBWriter.h"
#include "Storage.h"
#include "TestSupport.h"

namespace {

using testsupport::ScratchDir;

// Loads text from a scratch file; returns what the loader printed.
std::string Load(CStorage& store, stData& data, std::string const& text) {
    ScratchDir dir;
    testsupport::WriteFile(dir.File("db.txt"), text);
    testsupport::CaptureStdout out;
    LoadDatabaseText(store, dir.File("db.txt").c_str(), data);
    EXPECT_FALSE(testsupport::FileExists(dir.File("db.txt")));
    return out.Stop();
}

// One run without a signals header: load the text, write the store back.
std::string LoadAndWrite(std::string const& text) {
    stData data;
    CStorage store(&data);
    Load(store, data, text);
    ScratchDir dir;
    CKSLDBWriter writer(&store, &data);
    store.SetDBWriter(&writer);
    writer.Open(dir.File("db.txt").c_str());
    writer.WriteDB();
    writer.Close();
    return testsupport::ReadFile(dir.File("db.txt"));
}

TEST(DBLoader, OpenFailurePrintsAndChangesNothing) {
    stData data;
    data.m_nDbVersion = 5;
    CStorage store(&data);
    testsupport::CaptureStdout out;
    LoadDatabaseText(store, "/nonexistent-dir/db.txt", data);
    EXPECT_EQ("Error : Could not open file /nonexistent-dir/db.txt to read.\n", out.Stop());
    EXPECT_EQ(5, data.m_nDbVersion);
    EXPECT_TRUE(store.IsStorageEmpty());
    ScratchDir emptyFolder;  // opens on this system, but is no file: refused and kept
    testsupport::CaptureStdout folderOut;
    LoadDatabaseText(store, emptyFolder.Path().c_str(), data);
    EXPECT_EQ("Error : Could not open file " + emptyFolder.Path() + " to read.\n", folderOut.Stop());
    EXPECT_TRUE(testsupport::FileExists(emptyFolder.Path()));
}

TEST(DBLoader, VersionLineCutsAtFirstComma) {
    struct Row {
        char const* text;
        int32_t version, minor;
        bool flag;
    } const rows[] = {
        {"DbVersion\n12,3\n<end>\n", 12, 3, false},
        {"DbVersion\n7\n<end>\n", 0, 7, false},         // no comma: the first field is empty
        {"DbVersionX\n-1,2,9\n<end>\n", -1, 2, false},  // nine characters compared; rest "2,9"
        {"DbVersion \n", 0, 0, true},                   // ends before the version line
    };
    for (Row const& row : rows) {
        stData data;
        data.m_bVersionFlag = true;
        CStorage store(&data);
        EXPECT_EQ("", Load(store, data, row.text));
        EXPECT_EQ(row.version, data.m_nDbVersion) << row.text;
        EXPECT_EQ(row.minor, data.m_nDbVersionMinor) << row.text;
        EXPECT_EQ(row.flag, data.m_bVersionFlag) << row.text;
    }
}

// Which keywords match by prefix and which as the whole line, and the records
// of each section, are pinned by the end-to-end database runs.
TEST(DBLoader, CommandsRaiseTheHighestIdentifier) {
    stData data;
    CStorage store(&data);
    Load(store, data, "EnumValsX\n1,5,0,2,A,B,C,x, y\n1,3,0,2,A,B,D,z\n<end>\n");
    EXPECT_EQ(5, data.m_nMaxCommandID);
    EXPECT_EQ("x, y", std::string(store.FindCommandByName("A__B__C")->m_strFormat));
}

TEST(DBLoader, StructLinesSplitParenthesisAndMarkers) {
    stData data;
    CStorage store(&data);
    Load(store, data,
         "nvm\nS,,,,,0,5,inf,desc@ITEM_MODE@m\nS,,f(1,2),int,t,9,0,,d@ITEM_MODE@mo@ITEM_UNIT@u\n"
         "S,,,,,0,0,other,changed\n<end>\n");
    stStruct const* record = store.FindStructByName("S");
    ASSERT_NE(nullptr, record);
    EXPECT_EQ(1, record->m_nFlag);  // any non-zero flag field loads as 1
    EXPECT_EQ("inf|desc|", std::string(record->m_strInfo + "|" + record->m_strDescription + "|" + record->m_strDependency));
    ASSERT_EQ(1u, record->m_Fields.GetSize());
    stStructVar const& field = record->m_Fields.GetAt(0);
    EXPECT_EQ("f(1,2)|int|t|d|mo|u|", std::string(field.m_strName + "|" + field.m_strType + "|" + field.m_strTypeText + "|" +
                                                   field.m_strDescription + "|" + field.m_strMode + "|" + field.m_strUnit +
                                                   "|" + field.m_strDependency));
    EXPECT_EQ(9, field.m_nDim[0]);
}

TEST(DBLoader, EnumsTitleContinuationLinesJoinLastCreated) {
    stData data;
    CStorage store(&data);
    Load(store, data, "EnumsTitle\n no target\nA,1,t,one\n two,x\nA,0,dup,three\n four\nB,0,,b\n<end>\n");
    stEnum const* a = store.FindEnumByName("A");
    ASSERT_NE(nullptr, a);
    EXPECT_EQ("one two,x four", std::string(a->m_strDescription));  // the duplicate is no target
    EXPECT_EQ("t", std::string(a->m_strTitle));
    EXPECT_TRUE(a->m_bFlag && a->m_bHasTitle);
    EXPECT_EQ(2, store.Enums().GetCount());
}

TEST(DBLoader, OneLineReadAfterEachEndExceptUnionIdentifiers) {
    stData data;
    CStorage store(&data);
    Load(store, data,
         "Enums\nE,X,1,d,e\n<end>\nEnumsTitle\nT,0,,d\n<end>\n"
         "UnionIdentifiers\nA,1\n<end>\nUnionIdentifiers\nB,2,3\n<end>\n");
    // "EnumsTitle" arrives after its test has passed, so its lines are read over.
    EXPECT_EQ(nullptr, store.FindEnumByName("T"));
    stEnum const* e = store.FindEnumByName("E");
    ASSERT_NE(nullptr, e);
    EXPECT_FALSE(e->m_bHasTitle);
    EXPECT_EQ("d,e", std::string(e->m_Fields.GetAt(0).m_strDescription));
    EXPECT_EQ(2, store.UnionIdentifiers().GetCount());
    EXPECT_EQ("2,3", std::string(store.UnionIdentifiers().GetTail()->m_strIdentifier));
}

TEST(DatabaseRoundTrip, SecondPassRepeatsFirstButAlternatingUnionMembers) {
    std::string first = LoadAndWrite(testsupport::ReadFile(KS_TEST_DATA_DIR "/database/every_section.txt"));
    std::string second = LoadAndWrite(first);
    std::string expected = first;
    struct Swap {
        char const* firstPass;
        char const* secondPass;
    } const swaps[] = {
        {"Any,asKind,enum,primitive,1,0", "Any,asKind,primitive,enum,1,0"},
        {"Any,asUnion,union,primitive,1,0", "Any,asUnion,primitive,union,1,0"},
        {"Any,asPtr,pointer,primitive,4,0", "Any,asPtr,primitive,pointer,4,0"},
    };
    for (Swap const& swap : swaps) {
        size_t at = expected.find(swap.firstPass);
        ASSERT_NE(std::string::npos, at) << swap.firstPass;
        expected.replace(at, std::string(swap.firstPass).size(), swap.secondPass);
    }
    EXPECT_EQ(expected, second);
    EXPECT_EQ(first, LoadAndWrite(second));
}

}  // namespace
