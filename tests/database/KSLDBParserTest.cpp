// The record reader on small database files: duplicate and mismatch messages by
// file type, identifiers handed out for "-", position lines, the sections it
// reads and the records it builds (checked by writing the store back).
#include <gtest/gtest.h>

#include <string>

#include "KSLDBParser.h"
#include "KSLDBWriter.h"
#include "Storage.h"
#include "TestSupport.h"

using namespace testsupport;

namespace {

std::string Messages(std::string const& commands, std::string const& reports) {
    return "DbVersion\n12,3\n<end>\nEnumVals\n" + commands + "<end>\nEnumVals\n" + reports + "<end>\n";
}

// Every section the reader knows, in its order (no "MonitorParams").
std::string Sections(std::string const& nvm, std::string const& titles, std::string const& enums,
                     std::string const& unions, std::string const& ids = "") {
    return Messages("", "") + "Parameters\n<end>\nnvm\n" + nvm + "<end>\nEnumsTitle\n" + titles + "<end>\nEnums\n" +
           enums + "<end>\nUnions\n" + unions + "<end>\nSignals\n<end>\nSignalTable\n<end>\nGroups\n<end>\n" +
           "UnionIdentifiers\n" + ids + "<end>\n";
}

stCommand* NewCommand(char const* cat3, int32_t id, char const* text) {
    stCommand* command = new stCommand;
    command->m_strCat1 = "A";
    command->m_strCat2 = "B";
    command->m_strCat3 = cat3;
    command->m_nID = id;
    command->m_nLeadingNumber = 2;
    command->m_strFormat = text;
    return command;
}

class CKSLDBParserTest : public ::testing::Test {
protected:
    bool Parse(std::string const& text, eFileType type, bool withPredefined = false) {
        return ParseInto(m_Data, m_Target, text, type, withPredefined ? &m_Predefined : nullptr);
    }
    // The same into a store of the caller's, for rows that each start afresh.
    bool ParseInto(stData& data, CStorage& target, std::string const& text, eFileType type,
                   CStorage* predefined = nullptr) {
        WriteFile(m_Dir.File("db.txt"), text);
        return CKSLDBParser(&target, predefined, &data).ParseFile(m_Dir.File("db.txt").c_str(), type);
    }
    std::string Dump(CStorage& store) {
        CKSLDBWriter writer(&store, &m_Data);
        store.SetDBWriter(&writer);
        writer.Open(m_Dir.File("dump.txt").c_str());
        writer.WriteDB();
        writer.Close();
        return ReadFile(m_Dir.File("dump.txt"));
    }

    ScratchDir m_Dir;
    stData m_Data;
    CStorage m_Target{&m_Data};
    CStorage m_Predefined{&m_Data};
};

TEST_F(CKSLDBParserTest, ParseFileOpenFailurePrintsByFileType) {
    std::string path = m_Dir.File("missing.txt");
    struct Row {
        eFileType type;
        std::string out;
    } const rows[] = {
        {FILE_PREDEFINED, "Error : Opening Predefined DB FILE " + path + "\n"},
        {FILE_ORDINARY, "Error : Could not Open file " + path + " for read.\n"},
        {FILE_INIT, ""},  // the Init database fails silently
    };
    for (Row const& row : rows) {
        CKSLDBParser parser(&m_Target, nullptr, &m_Data);
        CaptureStdout capture;
        EXPECT_FALSE(parser.ParseFile(path.c_str(), row.type));
        EXPECT_EQ(row.out, capture.Stop());
        EXPECT_TRUE(parser.LastOpenFailed());
    }
}

TEST_F(CKSLDBParserTest, DuplicateMessageNamesByFileType) {
    std::string const lines = "# 3 a.c\n1,1,1,0,A,B,C,x\n# 9 b.c\n2,2,1,0,A,B,C,y\n";
    struct Row {
        eFileType type;
        bool report;
        std::string fatal;
        std::string out;
    } const rows[] = {
        {FILE_INIT, false, "Error : Duplicate command CAT123 for A__B__C in Init database.", ""},
        {FILE_PREDEFINED, false, "Error : Duplicate command CAT123 for A__B__C in predefined database.", ""},
        {FILE_ORDINARY, false, "Warning :Duplicate Command Cat123 A__B__C on files b.c and a.c",
         "Warning :Duplicate Command Cat123 A__B__C on files b.c and a.c\n"},
        {FILE_INIT, true, "Error : Duplicate report CAT123 for A__B__C in Init database.", ""},
        {FILE_PREDEFINED, true, "Error : Duplicate report CAT123 for A__B__C in predefined database.", ""},
        {FILE_ORDINARY, true, "Warning :Duplicate Report Cat123 A__B__C on files b.c and a.c",
         "Warning :Duplicate Report Cat123 A__B__C on files b.c and a.c\n"},
    };
    for (Row const& row : rows) {
        stData data;
        CStorage target(&data);
        CaptureStdout capture;
        ParseInto(data, target, row.report ? Messages("", lines) : Messages(lines, ""), row.type);
        EXPECT_EQ(row.out, capture.Stop());
        EXPECT_TRUE(data.m_bFatalError);
        EXPECT_EQ(row.fatal, std::string(data.m_strFatalError));
        EXPECT_EQ(1, row.report ? target.Reports().GetCount() : target.Commands().GetCount());
    }
}

TEST_F(CKSLDBParserTest, DuplicateWarningIsNotFatalBelowItsLevel) {
    m_Data.m_nFatalLevel = 2;
    CaptureStdout capture;
    Parse(Messages("1,1,1,0,A,B,C,x\n2,2,1,0,A,B,C,y\n", ""), FILE_ORDINARY);
    EXPECT_EQ("Warning :Duplicate Command Cat123 A__B__C on files  and \n", capture.Stop());
    EXPECT_FALSE(m_Data.m_bFatalError);
}

TEST_F(CKSLDBParserTest, DuplicateRecordNamesByFileType) {
    std::string const nvm = "S,,,,,0,0,,\nS,,,,,0,0,,\n";
    std::string const enums = "E,A,1,\nF,B,2,\nE,C,3,\n";
    std::string const unions =
        "U,a,UINT8,primitive,1,0\nU,a,UINT8,primitive,1,0\nV,b,x,primitive,1,0\nU,c,x,primitive,1,0\n";
    struct Row {
        eFileType type;
        std::string file;
        std::string fatal;
    } const rows[] = {
        {FILE_INIT, Sections(nvm, "", "", ""), "Error : Duplicate Struct for S in Init database."},
        {FILE_PREDEFINED, Sections(nvm, "", "", ""), "Error : Duplicate Struct for S in predefined database."},
        {FILE_INIT, Sections("", "", enums, ""), "Error: Duplicate Enum for E in Init database."},
        {FILE_PREDEFINED, Sections("", "", enums, ""), "Error: Duplicate Enum for E in predefined database."},
        {FILE_INIT, Sections("", "", "", unions), "Error: Duplicate Union for U in Init database."},
        {FILE_PREDEFINED, Sections("", "", "", unions), "Error: Duplicate Union for U in predefined database."},
        {FILE_ORDINARY, Sections(nvm, "", enums, unions), ""},  // skipped silently
    };
    for (Row const& row : rows) {
        stData data;
        CStorage target(&data);
        ParseInto(data, target, row.file, row.type);
        EXPECT_EQ(!row.fatal.empty(), data.m_bFatalError);
        EXPECT_EQ(row.fatal, std::string(data.m_strFatalError));
    }
}

TEST_F(CKSLDBParserTest, DuplicateEnumStopsSectionOnlyOutsideOrdinaryFiles) {
    std::string const file = Sections("", "", "E,A,1,\nE,A,1,\nF,B,2,\nE,C,3,\nG,D,4,\n", "");
    EXPECT_TRUE(Parse(file, FILE_ORDINARY));
    EXPECT_EQ(3, m_Target.Enums().GetCount());
    EXPECT_EQ(2u, m_Target.FindEnumByName("E")->m_Fields.GetSize());

    stData data;
    CStorage target(&data);
    ParseInto(data, target, file, FILE_INIT);
    EXPECT_EQ(nullptr, target.FindEnumByName("G"));
}

TEST_F(CKSLDBParserTest, MismatchedPredefinedMessageStopsSection) {
    for (bool report : {false, true}) {
        stData data;
        CStorage target(&data), predefined(&data);
        if (report) {
            stReport* predefinedReport = new stReport;
            predefinedReport->m_strCat1 = "A";
            predefinedReport->m_strCat2 = "B";
            predefinedReport->m_strCat3 = "C";
            predefinedReport->m_nTrailingNumber = 1;  // reports differ by this column
            predefined.AddReport(predefinedReport, "A__B__C");
        } else {
            predefined.AddCommand(NewCommand("C", 4, "x"));
        }
        std::string const lines = "# 7 src.c\n-,-,1,0,A,B,C,y\n3,3,1,0,D,E,F,z\n";
        ParseInto(data, target, report ? Messages("", lines) : Messages(lines, ""), FILE_INIT, &predefined);
        EXPECT_EQ(report ? "Error: Mismatched predefined report -  A__B__C, on line 7\n"
                         : "Error: Mismatched predefined command -  A__B__C, on line 7\n",
                  std::string(data.m_strFatalError));
        EXPECT_TRUE(data.m_bFatalError);
        EXPECT_EQ(0, predefined.Commands().GetCount() + predefined.Reports().GetCount());
        EXPECT_EQ(0, target.Commands().GetCount() + target.Reports().GetCount());
    }
}

TEST_F(CKSLDBParserTest, MatchedPredefinedCommandLeavesBothStores) {
    m_Predefined.AddCommand(NewCommand("C", 4, "same"));
    Parse(Messages("-,-,1,0,A,B,C,same\n0,3,1,0,D,E,F,z\n", ""), FILE_INIT, true);
    EXPECT_FALSE(m_Data.m_bFatalError);
    EXPECT_EQ(nullptr, m_Predefined.FindCommandByName("A__B__C"));
    EXPECT_EQ(nullptr, m_Target.FindCommandByName("A__B__C"));  // overwritten by the next line
    EXPECT_EQ(3, m_Target.FindCommandByName("D__E__F")->m_nID);
}

TEST_F(CKSLDBParserTest, UnassignedIdentifierIsReservedInPredefinedStore) {
    m_Predefined.AddCommand(NewCommand("P", 5, "p"));
    m_Data.m_nMaxCommandID = 5;
    Parse(Messages("-,-,1,0,N,E,W,t\n0,6,1,0,X,Y,Z,t\n", ""), FILE_INIT, true);
    EXPECT_EQ(nullptr, m_Target.FindCommandByName("N__E__W"));
    EXPECT_EQ(6, m_Target.FindCommandByName("X__Y__Z")->m_nID);  // 6 is reserved in the other store only
    EXPECT_EQ(7, m_Data.m_nMaxCommandID);
    EXPECT_FALSE(m_Data.m_bFatalError);
}

TEST_F(CKSLDBParserTest, DuplicateIdentifierIsFatal) {
    Parse(Messages("0,6,1,0,A,B,C,t\n0,6,1,0,X,Y,Z,t\n", ""), FILE_ORDINARY);
    EXPECT_EQ("Error : Duplicate command ID for X__Y__Z in predefined database.", std::string(m_Data.m_strFatalError));
    EXPECT_EQ(7, m_Data.m_nMaxCommandID);
}

TEST_F(CKSLDBParserTest, MinusInLeadingNumberMeansUnassigned) {
    struct Row {
        char const* field;
        int32_t leading;
    } const rows[] = {{"-", -1}, {"-0", -1}, {"-x", -1}, {"0", 0}, {"-7", -7}, {"", 0}, {" -", 0}};
    std::string lines;
    for (size_t i = 0; i < sizeof rows / sizeof rows[0]; ++i)
        lines += std::string(rows[i].field) + "," + std::to_string(i) + ",1,0,C,M," + std::to_string(i) + ",t\n";
    Parse(Messages(lines, ""), FILE_INIT);
    for (size_t i = 0; i < sizeof rows / sizeof rows[0]; ++i)
        EXPECT_EQ(rows[i].leading, m_Target.FindCommandById(static_cast<int32_t>(i))->m_nLeadingNumber)
            << rows[i].field;
}

TEST_F(CKSLDBParserTest, PositionLineSetsLineAndFileOfNextMessage) {
    struct Row {
        char const* line;
        int32_t number;
        char const* file;
    } const rows[] = {
        {"#   12  \tdir/f.c", 12, "dir/f.c"},
        {"#\t7\tx y.c", 7, "x y.c"},
        {"# 12", 0, ""},  // no blank after the number: unchanged
        {"#", 0, ""},
    };
    std::string lines;
    for (size_t i = 0; i < 4; ++i)
        lines += std::string(rows[i].line) + "\n0," + std::to_string(i) + ",1,0,P,L," + std::to_string(i) + ",t\n";
    Parse(Messages(lines, ""), FILE_INIT);
    for (size_t i = 0; i < 4; ++i) {
        stCommand* command = m_Target.FindCommandById(static_cast<int32_t>(i));
        EXPECT_EQ(rows[i].number, command->m_nSourceLine) << rows[i].line;
        EXPECT_EQ(std::string(rows[i].file), std::string(command->m_strSourceFile)) << rows[i].line;
    }
}

TEST_F(CKSLDBParserTest, WrittenFileIsReadUpToItsParameters) {
    stData data;
    CStorage source(&data);
    source.AddCommand(NewCommand("C", 2, "cmd"));
    data.m_nMaxCommandID = 2;
    stStruct* record = new stStruct;
    record->m_strName = "S";
    source.AddStruct(record);
    EXPECT_TRUE(Parse(Dump(source), FILE_ORDINARY));
    EXPECT_EQ(2, m_Target.FindCommandByName("A__B__C")->m_nID);
    EXPECT_EQ(0, m_Target.Reports().GetCount());  // the fixed PRINTF report is skipped
    EXPECT_EQ(nullptr, m_Target.FindStructByName("S"));
}

TEST_F(CKSLDBParserTest, SecondParseKeepsFirstVersionAndParametersCollectKscVersions) {
    CKSLDBParser parser(&m_Target, nullptr, &m_Data);
    uint32_t version = 99;
    EXPECT_FALSE(parser.GetDBVersion(version));
    EXPECT_EQ(99u, version);
    WriteFile(m_Dir.File("a.txt"),
              Messages("", "") + "Parameters\nKSC Version,2.1\nOSType,Linux\nKSC Version,3,b\n<end>\nMonitorParams\n");
    WriteFile(m_Dir.File("b.txt"), "DbVersion\n40,1\n<end>\n");
    EXPECT_TRUE(parser.ParseFile(m_Dir.File("a.txt").c_str(), FILE_ORDINARY));
    EXPECT_FALSE(parser.ParseFile(m_Dir.File("b.txt").c_str(), FILE_ORDINARY));  // ends before its next header
    EXPECT_TRUE(parser.GetDBVersion(version));
    EXPECT_EQ(12u, version);
    EXPECT_EQ(0, m_Data.m_nDbVersion);
    EXPECT_EQ(2, m_Data.m_KscVersions.GetCount());
    EXPECT_NE(nullptr, m_Data.m_KscVersions.Find("3,b"));
}

// The records are rebuilt so that the writer prints the very lines it read:
// values of one field joined back, every field kind, documentation markers.
TEST_F(CKSLDBParserTest, RecordsAreWrittenBackAsRead) {
    std::string eleven;
    for (int i = 1; i <= 11; ++i) eleven += "S,,big,UINT8,unsigned char," + std::to_string(i) + ",1,inf,\n";
    std::string const file = Sections(
        "T,,,,,0,0,,plain\nT,,x,UINT16,unsigned short,1,0,,\n"
        "S,,,,,0,1,inf,desc@ITEM_MODE@@ITEM_UNIT@@ITEM_DEPENDENCY@dep\n"
        "T,S,,,t,2,1,inf,\nS,,e,enum,Colour,1,1,inf,d@ITEM_MODE@m@ITEM_UNIT@u@ITEM_DEPENDENCY@\n"
        "S,,p,pointer,UINT32*,1,1,inf,\nS,,f(a,b),UINT8,char,3,1,inf,\nS,,f(a,b),UINT8,char,4,1,inf,\n" +
            eleven,
        "Colour,1,Title,Desc\n", "Colour,Red,0,r\nColour,Green,1,\n",
        "U,a,UINT8,primitive,1,0\nU,b,Colour,enum,1,0\nU,c,struct,T,2,0\nU,c,struct,T,3,0\nU,d,V,union,1,0\n"
        "U,e,UINT8*,pointer,1,0\n",
        "U,SignalId\nW,x,y\n");
    EXPECT_TRUE(Parse(file, FILE_INIT));
    EXPECT_FALSE(m_Data.m_bFatalError);
    std::string dump = Dump(m_Target);
    std::string expected = file.substr(file.find("nvm\n"));
    expected.erase(expected.find("Colour,1,Title,Desc\n"), 20);  // taken over, but not marked as a title
    EXPECT_EQ(expected, dump.substr(dump.find("nvm\n")));
    stEnum const* titled = m_Target.FindEnumByName("Colour");
    EXPECT_TRUE(titled->m_bFlag && !titled->m_bHasTitle);
    EXPECT_EQ(CString("Title"), titled->m_strTitle);
    EXPECT_EQ(CString("Desc"), titled->m_strDescription);
    stStruct const* joined = m_Target.FindStructByName("S");
    EXPECT_EQ(2, joined->m_Fields.GetAt(3).m_nDimCount);
    EXPECT_EQ(10, joined->m_Fields.GetAt(4).m_nDimCount);  // an eleventh value starts another field
    EXPECT_EQ(1, joined->m_Fields.GetAt(5).m_nDimCount);
}

TEST_F(CKSLDBParserTest, TitleContinuationJoinsDescription) {
    CKSLDBParser parser(&m_Target, nullptr, &m_Data);
    WriteFile(m_Dir.File("db.txt"), Sections("", "first\nE,0,T,first line\nsecond line\n", "E,A,1,\n", ""));
    EXPECT_TRUE(parser.ParseFile(m_Dir.File("db.txt").c_str(), FILE_ORDINARY));
    EXPECT_EQ(std::string("first linesecond line"), std::string(m_Target.FindEnumByName("E")->m_strDescription));
    EXPECT_EQ(1, parser.EnumTitles().GetCount());
}

TEST_F(CKSLDBParserTest, FileCutAtALineStartIsIncomplete) {
    std::string const full =
        Sections("S,,,,,0,1,i,d\nS,,x,enum,E,2,1,i,\n", "E,1,t,d\n", "E,A,1,\n", "U,a,x,primitive,1,0\n", "U,I\n");
    for (size_t cut = 0; cut < full.size(); ++cut) {
        stData data;
        CStorage target(&data);
        bool complete = ParseInto(data, target, full.substr(0, cut), FILE_INIT);
        bool atLineStart = cut == 0 || full[cut - 1] == '\n';
        EXPECT_TRUE(!complete || !atLineStart || cut >= full.find("UnionIdentifiers")) << cut;
    }
}

}  // namespace
