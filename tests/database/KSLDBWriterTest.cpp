// The database writer: the exact lines of each record kind, written through a
// real file and compared byte for byte.
#include "KSLDBWriter.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "Storage.h"
#include "TestSupport.h"

namespace {

using testsupport::ReadFile;
using testsupport::ScratchDir;

// Runs write on a writer opened on a fresh file and returns the file's bytes.
std::string Written(CStorage& store, std::function<void(CKSLDBWriter&)> const& write) {
    ScratchDir dir;
    CKSLDBWriter writer(&store, store.GetRunContext());
    store.SetDBWriter(&writer);
    EXPECT_NE(0, writer.Open(dir.File("db.txt").c_str()));
    write(writer);
    writer.Close();
    return ReadFile(dir.File("db.txt"));
}

stStructVar Field(char const* name, int32_t kind, char const* type, char const* typeText) {
    stStructVar field;
    field.m_strName = name;
    field.m_nKind = kind;
    field.m_strType = type;
    field.m_strTypeText = typeText;
    return field;
}

void Add(stStruct& record, stStructVar const& field) { record.AddField(&field); }

// The whole file of an empty store is pinned by the end-to-end database run.
TEST(CKSLDBWriter, WriteDBVersionLineKeepsTheSign) {
    stData data;
    CStorage store(&data);
    data.m_nDbVersion = 12;
    data.m_nDbVersionMinor = -3;
    EXPECT_EQ("DbVersion\n12,-3\n<end>\n", Written(store, [](CKSLDBWriter& w) { w.WriteDB(); }).substr(0, 22));
}

TEST(CKSLDBWriter, WriteMessageWrapsOnlyReports) {
    stData data;
    CStorage store(&data);
    struct Row {
        bool command, wrap;
        char const* text;
        char const* expected;
    } const rows[] = {
        {false, true, "%S pt", "4,9,0,1,A,B,C,diagStructPrintf(%S pt)\n"},  // capital %S: structure print
        {false, true, "%s\nx", "4,9,0,1,A,B,C,diagPrintf(%sx)\n"},          // line feed removed
        {false, false, "%S", "4,9,0,1,A,B,C,%S\n"},                         // flag clear: bare
        {true, true, "%S, y", "4,9,1,1,A,B,C,%S, y\n"},                     // commands never wrap
    };
    for (Row const& row : rows) {
        stReport report;
        report.m_nLeadingNumber = 4, report.m_nID = 9, report.m_nTrailingNumber = 1;
        report.m_strCat1 = "A", report.m_strCat2 = "B", report.m_strCat3 = "C";
        report.m_strFormat = row.text;
        report.m_bWrap = row.wrap;
        EXPECT_EQ(row.expected, Written(store, [&](CKSLDBWriter& w) {
                      if (row.command) w.WriteMessage(report, 1, false);
                      else w.WriteReport(report);
                  })) << row.text;
    }
}

TEST(CKSLDBWriter, WriteStructValueListAndTags) {
    stData data;
    CStorage store(&data);
    stStruct* inner = new stStruct;
    inner->m_strName = "In";
    store.AddStruct(inner);
    stStruct record;
    record.m_nFlag = 1, record.m_strInfo = "i", record.m_strDescription = "d\nd";
    stStructVar scalar = Field("s", KIND_PRIMITIVE, "int", "signed int");  // count 0: one line
    stStructVar list = Field("l", KIND_STRUCT, "In", "");
    list.m_nDimCount = 2, list.m_nDim[0] = 3, list.m_nDim[1] = 4;
    list.m_strMode = "m\n";
    stStructVar wide = Field("e", KIND_ENUM, "E", "ignored");
    wide.m_nDimCount = 12;  // never read past the ten slots
    wide.m_strDescription = "a\nb";
    for (stStructVar const* field : {&scalar, &list, &wide}) Add(record, *field);
    std::string tenLines;
    for (int i = 0; i < 10; ++i) tenLines += "S,,e,enum,E,1,1,i,a\nb@ITEM_MODE@@ITEM_UNIT@@ITEM_DEPENDENCY@\n";
    EXPECT_EQ("S,,,,,0,1,i,dd\nS,,s,int,signed int,1,1,i,\n" +
                  std::string("In,S,,,l,3,1,i,@ITEM_MODE@m@ITEM_UNIT@@ITEM_DEPENDENCY@\n") +
                  "In,S,,,l,4,1,i,@ITEM_MODE@m@ITEM_UNIT@@ITEM_DEPENDENCY@\n" + tenLines,
              Written(store, [&](CKSLDBWriter& w) { w.WriteStruct(record, "S"); }));
    record.m_strDependency = "D";
    record.m_Fields.RemoveAll();
    EXPECT_EQ("S,,,,,0,1,i,dd@ITEM_MODE@@ITEM_UNIT@@ITEM_DEPENDENCY@D\n",
              Written(store, [&](CKSLDBWriter& w) { w.WriteStruct(record, "S"); }));
}

TEST(CKSLDBWriter, WriteStructVarUnknownTypeLeavesFieldOut) {
    stData data;
    CStorage store(&data);
    stStructVar field = Field("f", KIND_STRUCT, "Ghost", "");
    testsupport::CaptureStdout out;
    std::string file = Written(store, [&](CKSLDBWriter& w) {
        EXPECT_EQ(0, w.WriteStructVar(&field, "S", 0, ""));
        EXPECT_EQ("Error : Unknown struct Ghost.", std::string(w.m_strLastError));
        field.m_bSignal = true;
        EXPECT_EQ(0, w.WriteUnionVar(&field, "U"));
        EXPECT_EQ("Error : Unknown signal Ghost.", std::string(w.m_strLastError));
    });
    EXPECT_EQ("", file);
    EXPECT_EQ("", out.Stop());
}

// Union lines put the type text before the kind text; signal members refer to
// known signals or come out "unknown"; enumerator lines keep their line feeds.
TEST(CKSLDBWriter, WriteUnionSignalAndEnumLines) {
    stData data;
    CStorage store(&data);
    stSignal* known = new stSignal;
    known->m_strName = "Known";
    store.AddSignal(known);
    stUnion record;
    Add(record, Field("p", KIND_PRIMITIVE, "int", "unsigned int"));
    stStructVar viaSignal = Field("s", KIND_STRUCT, "Known", "struct");
    viaSignal.m_bSignal = true;
    Add(record, viaSignal);
    for (int32_t kind : {KIND_ENUM, KIND_UNION, KIND_POINTER}) Add(record, Field("k", kind, "T", "tt"));
    CList<stSignalVar*> members;
    stSignalVar ofSignal, unknown, counted, odd;
    ofSignal.m_strName = "a", ofSignal.m_strTypeName = "Known", ofSignal.m_nCount = 2;
    unknown.m_strName = "b", unknown.m_strTypeName = "Nope";
    counted.m_nType = SIGVAR_POINTER, counted.m_strName = "c", counted.m_strTypeName = "int";
    counted.m_Values.Add(5), counted.m_Values.Add(0xFFFFFFFFu);
    odd.m_nType = 9, odd.m_strName = "d", odd.m_strTypeName = "x";  // no word for code 9
    for (stSignalVar* member : {&ofSignal, &unknown, &counted, &odd}) members.AddTail(member);
    stEnum titled, untitled;
    titled.m_strName = "E", titled.m_bFlag = true, titled.m_bHasTitle = true, titled.m_strTitle = "T";
    titled.AddField("A", -2, "x\ny");
    untitled.m_strName = "F";
    EXPECT_EQ("U,p,unsigned int,primitive,1,0\nU,s,struct,Known,1,0\nU,k,T,enum,1,0\nU,k,tt,T,1,0\nU,k,tt,pointer,1,0\n"
              "Sg,,,,1,\na,Sg,,,2,Known\nSg,,Nope,unknown,1,b\nSg,,int,pointer,1,c\nSg,,int,pointer,5,c\n"
              "Sg,,int,pointer,-1,c\nSg,,x,,1,d\nE,1,T,\nX,A,-2,x\ny\n",
              Written(store, [&](CKSLDBWriter& w) {
                  w.WriteUnion(record, "U");
                  w.WriteSignal("Sg", members);
                  w.WriteEnumTitle(titled);
                  w.WriteEnumTitle(untitled);
                  w.WriteEnum(titled, "X");
              }));
}

// Structures, enumerations and unions are written whole under each alias;
// an enumeration's title line only under its own name.
TEST(CKSLDBWriter, WriteDBRepeatsAliasedRecordsButNotTitles) {
    stData data;
    CStorage store(&data);
    stStruct* record = new stStruct;
    record->m_strName = "S", record->m_nFlag = 0;
    Add(*record, Field("f", KIND_PRIMITIVE, "int", "int"));
    stEnum* values = new stEnum;
    values->m_strName = "E", values->m_bHasTitle = true;
    values->AddField("A", 1);
    stUnion* choice = new stUnion;
    choice->m_strName = "U";
    Add(*choice, Field("m", KIND_PRIMITIVE, "primitive", "char"));
    for (char const* alias : {"T1", "T2"}) {
        record->m_Aliases.AddTail(alias), values->m_Aliases.AddTail(alias), choice->m_Aliases.AddTail(alias);
    }
    store.AddStruct(record), store.AddEnum(values), store.AddUnion(choice);
    std::string file = Written(store, [](CKSLDBWriter& w) { w.WriteDB(); });
    size_t from = file.find("nvm\n"), to = file.find("Signals\n");
    ASSERT_NE(std::string::npos, from);
    EXPECT_EQ("nvm\nS,,,,,0,0,,\nS,,f,int,int,1,0,,\nT1,,,,,0,0,,\nT1,,f,int,int,1,0,,\nT2,,,,,0,0,,\n"
              "T2,,f,int,int,1,0,,\n<end>\nEnumsTitle\nE,0,,\n<end>\nEnums\nE,A,1,\nT1,A,1,\nT2,A,1,\n<end>\n"
              "Unions\nU,m,char,primitive,1,0\nT1,m,char,primitive,1,0\nT2,m,char,primitive,1,0\n<end>\n",
              file.substr(from, to - from));
}

TEST(CKSLDBWriter, OpenFailureLeavesWritesHarmless) {
    stData data;
    CStorage store(&data);
    CKSLDBWriter writer(&store, &data);
    store.SetDBWriter(&writer);
    EXPECT_EQ(0, writer.Open("/nonexistent-dir/db.txt"));
    ASSERT_NE(nullptr, writer.m_pFile);
    writer.WriteDB();
    writer.Close();
    writer.Close();
    EXPECT_EQ(nullptr, writer.m_pFile);
}

}  // namespace
