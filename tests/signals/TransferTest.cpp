// Tests of the transfer of parsed types into the store: parsed objects are
// built by hand into a parser's lists, transferred into a real store, and the
// store's records are compared as one canonical dump per kind. The usual
// cases run end to end in the whole-job tests; these pin the edges.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "ParseS2T.h"
#include "parser/ParsedBuilders.h"
#include "Storage.h"
#include "TestSupport.h"

namespace {

std::string S(CString const& text) { return std::string(text.GetData()); }

struct Transfer {
    stData data;
    CStorage store{&data};
    std::unique_ptr<CParseS2T> parser = std::make_unique<CParseS2T>();
    Transfer() { parser->SetStorage(&store); }

    CEnum& AddEnum(char const* name, char const* alias) {
        CEnum& parsed = built::AddEnum(*parser, name, {{"A", 1}});
        if (*alias) parsed.m_lstNames.AddTail(alias);
        return parsed;
    }
};

std::string DumpEnums(CStorage const& store) {
    std::string out;
    for (void* pos = store.Enums().GetHeadPosition(); pos;) {
        stEnum const* record = store.Enums().GetNext(pos);
        out += S(record->m_strName) + ":";
        for (uint32_t i = 0; i < record->m_Fields.GetSize(); ++i) {
            out += " " + S(record->m_Fields.GetAt(i).m_strName) + "=" + std::to_string(record->m_Fields.GetAt(i).m_nValue);
        }
        out += "\n";
    }
    return out;
}

// "member type/typeText kind dim0 count [signal]" per union member.
std::string DumpUnions(CStorage const& store) {
    std::string out;
    for (void* pos = store.Unions().GetHeadPosition(); pos;) {
        stUnion const* record = store.Unions().GetNext(pos);
        out += S(record->m_strName) + ":\n";
        for (uint32_t i = 0; i < record->m_Fields.GetSize(); ++i) {
            stStructVar const& f = record->m_Fields.GetAt(i);
            out += "  " + S(f.m_strName) + " " + S(f.m_strType) + "/" + S(f.m_strTypeText) + " " +
                   std::to_string(f.m_nKind) + " " + std::to_string(f.m_nDim[0]) + " " + std::to_string(f.m_nDimCount) +
                   (f.m_bSignal ? " signal" : "") + "\n";
        }
    }
    return out;
}

// "name(second):" then "  type count name typeName" per signal member.
std::string DumpSignals(CStorage const& store) {
    std::string out;
    for (void* pos = store.Signals().GetHeadPosition(); pos;) {
        stSignal const* record = store.Signals().GetNext(pos);
        out += S(record->m_strName) + "(" + S(record->m_strSecondName) + "):\n";
        for (void* var = record->m_Fields.GetHeadPosition(); var;) {
            stSignalVar const* m = record->m_Fields.GetNext(var);
            out += "  " + std::to_string(m->m_nType) + " " + std::to_string(m->m_nCount) + " " + S(m->m_strName) + " " +
                   S(m->m_strTypeName) + "\n";
        }
    }
    return out;
}

}  // namespace

TEST(CParseS2T, WriteEnumsStoredNameWinsAndAliasesGetRecords) {
    Transfer t;
    stEnum* stored = new stEnum;
    stored->m_strName = "E1";
    stored->AddField("OLD", 7);
    t.store.AddEnum(stored);
    t.AddEnum("E1", "E2");
    t.AddEnum("E3", "E3");  // an alias repeating the name meets the record just added
    testsupport::CaptureStdout capture;
    EXPECT_TRUE(t.parser->WriteEnums());
    EXPECT_EQ("Write enums to database\nEnum 'E1' exist in Database!\nEnum 'E3' exist in Database!\n"
              "\rTotal Enums: 2.\r",
              capture.Stop());
    EXPECT_EQ("E1: OLD=7\nE2: A=1\nE3: A=1\n", DumpEnums(t.store));
}

TEST(CParseS2T, WriteUnionsReplacesStoredAndMapsEveryKind) {
    Transfer t;
    stUnion* stored = new stUnion;
    stored->m_strName = "U";
    stStructVar old(false);
    old.m_strName = "old";
    stored->AddField(&old);
    t.store.AddUnion(stored);
    built::AddStruct(*t.parser, "Known", {}, "KnownTag");
    built::AddUnion(*t.parser, "U",
                    {{FIELD_INT, "long", "i", 4},
                     {FIELD_CHAR, "char", "c"},
                     {FIELD_STRUCT, "KnownTag", "t"},  // found through its tag
                     {FIELD_STRUCT, "Unknown", "u"},
                     {FIELD_ENUM, "Colour", "e"},
                     {FIELD_UNION, "Inner", "v"},
                     {FIELD_POINTER, "unsigned short", "p_q"},
                     {7, "Strange", "odd"}});  // a code past the table keeps its type name
    testsupport::CaptureStdout capture;
    t.parser->WriteUnions();
    EXPECT_EQ("Write unions to database\n\rTotal Unions: 1.\r", capture.Stop());
    EXPECT_EQ("U:\n"
              "  i primitive/long 0 4 0\n"
              "  c primitive/char 0 1 0\n"
              "  t KnownTag/struct 1 1 0 signal\n"
              "  u Unknown/struct 1 1 0\n"
              "  e Colour/Colour 2 1 0\n"
              "  v union/Inner 3 1 0\n"
              "  p_q pointer/unsigned short 4 1 0\n"
              "  odd Strange/Strange 6 1 0\n",
              DumpUnions(t.store));
}

TEST(CParseS2T, WriteDBCrosswiseMembersAndFurtherDimensions) {
    Transfer t;
    built::AddStruct(*t.parser, "Inner", {}, "InnerTag");
    CStruct& outer = built::AddStruct(*t.parser, "Outer",
                                      {{FIELD_STRUCT, "Inner", "known", 3},
                                       {FIELD_STRUCT, "Missing", "unknown", 2},
                                       {FIELD_STRUCT, "Inner", "grid", 2}},
                                      "OuterTag");
    outer.m_lstNames.AddTail("Alias");
    built::LastField(outer)->m_arrDims.Add(5);  // one member only
    built::AddVars<CStructVar>(outer.m_lstVars, {{FIELD_CHAR, "char", "b", 2}});
    built::LastField(outer)->m_arrDims.Add(5);
    built::LastField(outer)->m_arrDims.Add(6);
    testsupport::CaptureStdout capture;
    t.parser->WriteDB();
    EXPECT_EQ("Write structures to database\n\rTotal Structs: 2.\r", capture.Stop());
    std::string const members = "  2 3 Inner known\n  2 2 unknown Missing\n  2 2 Inner grid\n"
                                "  1 2 b char\n  1 5 b char\n  1 6 b char\n";
    EXPECT_EQ("Inner(InnerTag):\nOuter(OuterTag):\n" + members + "Alias(OuterTag):\n" + members, DumpSignals(t.store));
}

TEST(CParseS2T, TransferWithoutStoreOnlyCounts) {
    auto parser = std::make_unique<CParseS2T>();
    parser->m_EnumList.AddTail(new CEnum);
    testsupport::CaptureStdout capture;
    EXPECT_TRUE(parser->WriteEnums());
    parser->WriteDB();
    EXPECT_TRUE(parser->WriteSignalGroups());
    EXPECT_EQ("Write enums to database\n\rTotal Enums: 1.\rWrite structures to database\n\rTotal Structs: 0.\r"
              "Write signal groups to database\n",
              capture.Stop());
}
