// Tests of the transfer of parsed types into the store: parsed objects are
// built by hand into a parser's lists, transferred into a real store, and the
// store's records are compared as one canonical dump per kind.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "ParseS2T.h"
#include "Storage.h"
#include "TestSupport.h"

namespace {

struct TransferFixture {
    stData data;
    CStorage store{&data};
    std::unique_ptr<CParseS2T> parser = std::make_unique<CParseS2T>();
    TransferFixture() { parser->SetStorage(&store); }

    CEnum* AddEnum(char const* name, std::initializer_list<std::pair<char const*, int32_t>> values) {
        CEnum* parsed = new CEnum;
        parsed->m_strName = name;
        for (auto const& value : values) {
            CDefines* entry = new CDefines;
            entry->m_strName = value.first;
            entry->m_nValue = value.second;
            parsed->m_lstValues.AddTail(entry);
        }
        parser->m_EnumList.AddTail(parsed);
        return parsed;
    }
    CUnion* AddUnion(char const* name) {
        CUnion* parsed = new CUnion;
        parsed->m_strName = name;
        parser->m_UnionList.AddTail(parsed);
        return parsed;
    }
    CStruct* AddStruct(char const* name, char const* tag) {
        CStruct* parsed = new CStruct;
        parsed->m_strName = name;
        parsed->m_strTag = tag;
        parser->m_StructList.AddTail(parsed);
        return parsed;
    }
};

void AddMember(CUnion* parsed, int32_t kind, char const* name, char const* type, int32_t count = 1) {
    CUnionVar* member = new CUnionVar;
    member->m_nType = kind;
    member->m_strName = name;
    member->m_strType = type;
    member->m_nArraySize = count;
    parsed->m_lstVars.AddTail(member);
}

CStructVar* AddField(CStruct* parsed, int32_t kind, char const* name, char const* type, int32_t count = 1) {
    CStructVar* field = new CStructVar;
    field->m_nType = kind;
    field->m_strName = name;
    field->m_strType = type;
    field->m_nArraySize = count;
    parsed->m_lstVars.AddTail(field);
    return field;
}

// "name: A=1 B=2" per enumeration, in store order.
std::string DumpEnums(CStorage const& store) {
    std::string out;
    for (void* pos = store.Enums().GetHeadPosition(); pos;) {
        stEnum const* record = store.Enums().GetNext(pos);
        out += std::string(record->m_strName) + ":";
        for (uint32_t i = 0; i < record->m_Fields.GetSize(); ++i) {
            stEnumVar const& value = record->m_Fields.GetAt(i);
            out += " " + std::string(value.m_strName) + "=" + std::to_string(value.m_nValue);
        }
        out += "\n";
    }
    return out;
}

// "union.member type/typeText kind dim0 count signal" per member.
std::string DumpUnions(CStorage const& store) {
    std::string out;
    for (void* pos = store.Unions().GetHeadPosition(); pos;) {
        stUnion const* record = store.Unions().GetNext(pos);
        out += std::string(record->m_strName) + ":\n";
        for (uint32_t i = 0; i < record->m_Fields.GetSize(); ++i) {
            stStructVar const& field = record->m_Fields.GetAt(i);
            out += "  " + std::string(field.m_strName) + " " + std::string(field.m_strType) + "/" +
                   std::string(field.m_strTypeText) + " kind " + std::to_string(field.m_nKind) + " dim " +
                   std::to_string(field.m_nDim[0]) + " count " + std::to_string(field.m_nDimCount) +
                   (field.m_bSignal ? " signal" : "") + "\n";
        }
    }
    return out;
}

// "name(second):" then "  type count name typeName" per member.
std::string DumpSignals(CStorage const& store) {
    std::string out;
    for (void* pos = store.Signals().GetHeadPosition(); pos;) {
        stSignal const* record = store.Signals().GetNext(pos);
        out += std::string(record->m_strName) + "(" + std::string(record->m_strSecondName) + "):\n";
        for (void* var = record->m_Fields.GetHeadPosition(); var;) {
            stSignalVar const* member = record->m_Fields.GetNext(var);
            out += "  " + std::to_string(member->m_nType) + " " + std::to_string(member->m_nCount) + " " +
                   std::string(member->m_strName) + " " + std::string(member->m_strTypeName) + "\n";
        }
    }
    return out;
}

}  // namespace

TEST(CParseS2T, WriteEnumsGivesEachNameAFullRecord) {
    TransferFixture t;
    CEnum* parsed = t.AddEnum("E1", {{"A", 1}});
    parsed->m_lstNames.AddTail("E2");
    t.AddEnum("Empty", {});
    testsupport::CaptureStdout capture;
    EXPECT_TRUE(t.parser->WriteEnums());
    EXPECT_EQ("Write enums to database\n\rTotal Enums: 2.\r", capture.Stop());
    EXPECT_EQ("E1: A=1\nE2: A=1\nEmpty:\n", DumpEnums(t.store));
}

TEST(CParseS2T, WriteEnumsKeepsStoredEnumeration) {
    TransferFixture t;
    stEnum* stored = new stEnum;
    stored->m_strName = "E1";
    stored->AddField("OLD", 7);
    t.store.AddEnum(stored);
    CEnum* parsed = t.AddEnum("E1", {{"A", 1}, {"B", -2}});
    parsed->m_lstNames.AddTail("E3");
    testsupport::CaptureStdout capture;
    EXPECT_TRUE(t.parser->WriteEnums());
    EXPECT_EQ("Write enums to database\nEnum 'E1' exist in Database!\n\rTotal Enums: 1.\r", capture.Stop());
    EXPECT_EQ("E1: OLD=7\nE3: A=1 B=-2\n", DumpEnums(t.store));
}

TEST(CParseS2T, WriteEnumsAliasAlreadyStoredIsSkipped) {
    TransferFixture t;
    CEnum* parsed = t.AddEnum("First", {{"X", 3}});
    parsed->m_lstNames.AddTail("First");
    testsupport::CaptureStdout capture;
    t.parser->WriteEnums();
    EXPECT_EQ("Write enums to database\nEnum 'First' exist in Database!\n\rTotal Enums: 1.\r", capture.Stop());
    EXPECT_EQ("First: X=3\n", DumpEnums(t.store));
}

TEST(CParseS2T, WriteUnionsReplacesStoredUnion) {
    TransferFixture t;
    stUnion* stored = new stUnion;
    stored->m_strName = "U";
    stStructVar old(false);
    old.m_strName = "old";
    stored->AddField(&old);
    t.store.AddUnion(stored);
    stUnion* other = new stUnion;
    other->m_strName = "Other";
    t.store.AddUnion(other);
    AddMember(t.AddUnion("U"), FIELD_INT, "n", "long");
    testsupport::CaptureStdout capture;
    t.parser->WriteUnions();
    EXPECT_EQ("Write unions to database\n\rTotal Unions: 1.\r", capture.Stop());
    EXPECT_EQ("Other:\nU:\n  n primitive/long kind 0 dim 1 count 0\n", DumpUnions(t.store));
}

TEST(CParseS2T, WriteUnionsMapsEveryMemberKind) {
    TransferFixture t;
    t.AddStruct("Known", "KnownTag");
    CUnion* parsed = t.AddUnion("Signal");
    AddMember(parsed, FIELD_INT, "i", "long", 4);
    AddMember(parsed, FIELD_CHAR, "c", "char");
    AddMember(parsed, FIELD_STRUCT, "s", "Known");
    AddMember(parsed, FIELD_STRUCT, "t", "KnownTag");
    AddMember(parsed, FIELD_STRUCT, "u", "Unknown", 2);
    AddMember(parsed, FIELD_ENUM, "e", "Colour");
    AddMember(parsed, FIELD_UNION, "v", "Inner");
    AddMember(parsed, FIELD_POINTER, "p_q", "unsigned short");
    AddMember(parsed, 7, "odd", "Strange");
    t.AddUnion("Empty");
    testsupport::CaptureStdout capture;
    t.parser->WriteUnions();
    EXPECT_EQ("Write unions to database\n\rTotal Unions: 2.\r", capture.Stop());
    EXPECT_EQ("Signal:\n"
              "  i primitive/long kind 0 dim 4 count 0\n"
              "  c primitive/char kind 0 dim 1 count 0\n"
              "  s Known/struct kind 1 dim 1 count 0 signal\n"
              "  t KnownTag/struct kind 1 dim 1 count 0 signal\n"
              "  u Unknown/struct kind 1 dim 2 count 0\n"
              "  e Colour/Colour kind 2 dim 1 count 0\n"
              "  v union/Inner kind 3 dim 1 count 0\n"
              "  p_q pointer/unsigned short kind 4 dim 1 count 0\n"
              "  odd Strange/Strange kind 6 dim 1 count 0\n"
              "Empty:\n",
              DumpUnions(t.store));
}

TEST(CParseS2T, WriteDBMakesEachNameAFullSignal) {
    TransferFixture t;
    CStruct* parsed = t.AddStruct("S", "STag");
    AddField(parsed, FIELD_INT, "n", "long");
    parsed->m_lstNames.AddTail("PS");
    parsed->m_lstNames.AddTail("QS");
    t.AddStruct("Bare", "");
    testsupport::CaptureStdout capture;
    t.parser->WriteDB();
    EXPECT_EQ("Write structures to database\n\rTotal Structs: 2.\r", capture.Stop());
    EXPECT_EQ("S(STag):\n  0 1 n long\nPS(STag):\n  0 1 n long\nQS(STag):\n  0 1 n long\nBare():\n",
              DumpSignals(t.store));
}

TEST(CParseS2T, WriteStructStoresParsedStructureTypeCrosswise) {
    TransferFixture t;
    t.AddStruct("Inner", "InnerTag");
    CStruct* outer = t.AddStruct("Outer", "OuterTag");
    AddField(outer, FIELD_STRUCT, "known", "Inner", 3);
    AddField(outer, FIELD_STRUCT, "viaTag", "InnerTag");
    AddField(outer, FIELD_STRUCT, "unknown", "Missing", 2);
    // A structure-kind field gets one member however many dimensions it has.
    AddField(outer, FIELD_STRUCT, "grid", "Inner", 2)->m_arrDims.Add(5);
    stSignal signal;
    t.parser->WriteStruct(&signal, outer, "Outer", "", "");
    std::string members;
    for (void* pos = signal.m_Fields.GetHeadPosition(); pos;) {
        stSignalVar const* member = signal.m_Fields.GetNext(pos);
        members += std::to_string(member->m_nType) + " " + std::to_string(member->m_nCount) + " " +
                   std::string(member->m_strName) + " " + std::string(member->m_strTypeName) + "\n";
    }
    EXPECT_EQ("2 3 Inner known\n2 1 InnerTag viaTag\n2 2 unknown Missing\n2 2 Inner grid\n", members);
}

TEST(CParseS2T, WriteStructAddsOneMemberPerFurtherDimension) {
    TransferFixture t;
    CStruct* parsed = t.AddStruct("S", "T");
    AddField(parsed, FIELD_INT, "a", "long", 3)->m_arrDims.Add(4);
    CStructVar* cube = AddField(parsed, FIELD_CHAR, "b", "char", 2);
    cube->m_arrDims.Add(5);
    cube->m_arrDims.Add(6);
    AddField(parsed, FIELD_ENUM, "e", "Colour");
    AddField(parsed, FIELD_UNION, "u", "Signal", 2);
    AddField(parsed, FIELD_POINTER, "p_x", "unsigned short");
    testsupport::CaptureStdout capture;
    t.parser->WriteDB();
    capture.Stop();
    EXPECT_EQ("S(T):\n"
              "  0 3 a long\n  0 4 a long\n"
              "  1 2 b char\n  1 5 b char\n  1 6 b char\n"
              "  3 1 e Colour\n  4 2 u Signal\n  5 1 p_x unsigned short\n",
              DumpSignals(t.store));
}

TEST(CParseS2T, TransferLeavesParsedObjectsInPlace) {
    TransferFixture t;
    t.AddEnum("E", {{"A", 0}});
    AddMember(t.AddUnion("U"), FIELD_INT, "n", "long");
    AddField(t.AddStruct("S", "T"), FIELD_INT, "n", "long");
    testsupport::CaptureStdout capture;
    t.parser->WriteEnums();
    t.parser->WriteUnions();
    t.parser->WriteDB();
    capture.Stop();
    EXPECT_EQ(1, t.parser->m_EnumList.GetCount());
    EXPECT_EQ(1, t.parser->m_UnionList.GetCount());
    EXPECT_EQ(1, t.parser->m_StructList.GetCount());
    EXPECT_EQ(1, static_cast<CStruct*>(t.parser->m_StructList.GetHead())->m_lstVars.GetCount());
}

TEST(CParseS2T, FinalStagesOnlyReport) {
    TransferFixture t;
    testsupport::CaptureStdout capture;
    EXPECT_TRUE(t.parser->WriteVersion());
    EXPECT_TRUE(t.parser->WriteSignalGroups());
    EXPECT_TRUE(t.parser->BuildSignalTable());
    EXPECT_EQ("Write signal groups to database\n", capture.Stop());
    EXPECT_EQ("", DumpEnums(t.store) + DumpUnions(t.store) + DumpSignals(t.store));
}

TEST(CParseS2T, TransferWithoutStoreOnlyCounts) {
    auto parser = std::make_unique<CParseS2T>();
    CEnum* parsed = new CEnum;
    parsed->m_strName = "E";
    parser->m_EnumList.AddTail(parsed);
    testsupport::CaptureStdout capture;
    EXPECT_TRUE(parser->WriteEnums());
    parser->WriteUnions();
    parser->WriteDB();
    EXPECT_EQ("Write enums to database\n\rTotal Enums: 1.\rWrite unions to database\n\rTotal Unions: 0.\r"
              "Write structures to database\n\rTotal Structs: 0.\r",
              capture.Stop());
}
