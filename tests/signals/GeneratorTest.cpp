// Tests of the signals header generator: the parsed objects are built by hand
// in a CSignalParser (no header is parsed) and the generated text is compared
// byte for byte.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <string>

#include "SignalParser.h"
#include "parser/ParsedBuilders.h"
#include "Storage.h"
#include "TestSupport.h"

namespace {

using built::Field;

// "typedef struct" (or union) of name around body, as the generator writes it;
// names is the declarator list when it is more than the name.
std::string Typedef(char const* kind, std::string const& name, std::string const& body, std::string names = "") {
    if (names.empty()) names = name;
    return "#ifdef " + name + "\n#undef " + name + "\n#endif\ntypedef " + kind + "\n{\n" + body + "}" + names + ";\n\n";
}

class GeneratorTest : public ::testing::Test {
protected:
    CStruct& AddStruct(char const* name, std::initializer_list<Field> fields) {
        return built::AddStruct(parser, name, fields);
    }
    CUnion& AddUnion(char const* name, std::initializer_list<Field> members) {
        return built::AddUnion(parser, name, members);
    }
    CEnum& AddEnum(char const* name, built::Values values) { return built::AddEnum(parser, name, values); }

    // What write puts into a fresh file.
    std::string Written(std::function<void(CFile&)> const& write) {
        CFile file;
        EXPECT_TRUE(file.Open(dir.File("part.h").c_str(), "wb"));
        write(file);
        file.Close();
        return testsupport::ReadFile(dir.File("part.h"));
    }
    std::string StructText(CStruct& record) {
        return Written([&](CFile& file) { parser.WriteStruct(file, record); });
    }
    // The whole header, generated from inside the scratch folder under a
    // relative path so that the guard is predictable.
    std::string Generated(char const* path) {
        char previous[4096];
        if (!getcwd(previous, sizeof previous) || chdir(dir.Path().c_str()) != 0) return "<no chdir>";
        bool done = parser.GenerateSignalsHFile(path);
        std::string text = testsupport::ReadFile(path);
        if (chdir(previous) != 0) return "<no chdir back>";
        return done ? text : "<failed>";
    }

    testsupport::ScratchDir dir;
    stData data;
    CStorage storage{&data};
    CString signalsPath;
    CSignalParser parser{signalsPath, storage, ENUM_SIZE_BY_RANGE};
};

constexpr char kEpilog[] = "#pragma pack(pop)\n\n#endif\n\n";

}  // namespace

TEST_F(GeneratorTest, WriteStructPadsByPrimitiveSize) {
    CStruct& s = AddStruct("S", {{FIELD_CHAR, "char", "a"},
                                 {FIELD_INT, "short", "b"},
                                 {FIELD_INT, "long", "c"},
                                 {FIELD_CHAR, "char", "d"},
                                 {FIELD_INT, "UINT32", "u"},
                                 {FIELD_CHAR, "char", "e"},
                                 {FIELD_INT, "UINT32", "v", 8},
                                 {FIELD_INT, "signed short", "f"}});
    CStruct& t = AddStruct("T", {{FIELD_CHAR, "char", "x"}, {FIELD_INT, "unsigned long", "y"}});
    // UINT32 counts 0 bytes but aligns to 4: e sits at 12, f at 14.
    EXPECT_EQ(Typedef("struct", "S",
                      "\tchar a;\n\tchar pad_0[1];\n\tshort b;\n\tlong c;\n\tchar d;\n\tchar pad_1[3];\n\tUINT32 u;\n"
                      "\tchar e;\n\tchar pad_2[3];\n\tUINT32 v[8];\n\tsigned short f;\n"),
              StructText(s));
    // Pad names restart in every structure; no closing pad is written.
    EXPECT_EQ(Typedef("struct", "T", "\tchar x;\n\tchar pad_0[3];\n\tunsigned long y;\n"), StructText(t));
}

TEST_F(GeneratorTest, WriteStructSizesEnumerationsByMode) {
    AddEnum("Wide", {{"W0", 0}, {"W300", 300}});
    AddEnum("Small", {{"S0", 0}, {"S255", 255}});
    CStruct& s = AddStruct("S", {{FIELD_CHAR, "char", "a"},
                                 {FIELD_ENUM, "Wide", "w"},
                                 {FIELD_ENUM, "Small", "s", 3},
                                 {FIELD_ENUM, "Wide", "ws", 2},
                                 {FIELD_INT, "short", "l"}});
    EXPECT_EQ(Typedef("struct", "S",
                      "\tchar a;\n\tchar pad_0[1];\n\tshort w\t/* enum Wide */;\n\tchar s\t/* enum Small */[3];\n"
                      "\tchar pad_1[1];\n\tshort ws\t/* enum Wide */[2];\n\tshort l;\n"),
              StructText(s));
    // Four bytes whatever the element count: l sits at 12.
    parser.m_nEnumSize = ENUM_SIZE_FOUR_BYTES;
    EXPECT_EQ(Typedef("struct", "S",
                      "\tchar a;\n\tchar pad_0[3];\n\tWide w\t;\n\tSmall s\t[3];\n\tWide ws\t[2];\n\tshort l;\n"),
              StructText(s));
}

TEST_F(GeneratorTest, WriteStructSplitsArrayTypesAndCommentsOutUnknownStructs) {
    parser.m_TypedefMap.SetAt("BYTE", "UBYTE8");
    parser.m_TypedefMap.SetAt("UBYTE8", "unsigned char");
    parser.m_TypedefMap.SetAt("LoopA", "LoopB");
    parser.m_TypedefMap.SetAt("LoopB", "LoopA");
    AddStruct("Inner", {});
    CStruct& s = AddStruct("S", {{FIELD_STRUCT, "Missing", "class", 3},
                                 {FIELD_STRUCT, "BYTE[4]", "b"},
                                 {FIELD_STRUCT, "LoopA[2][3]", "loop"},
                                 {FIELD_POINTER, "X *", "p_x"},
                                 {FIELD_STRUCT, "Inner", "template"},
                                 {FIELD_INT, "long", "arr", 2}});
    built::LastField(s)->m_arrDims.Add(3);
    built::LastField(s)->m_arrDims.Add(4);
    s.m_lstNames.AddTail("S2");
    s.m_lstNames.AddTail("PS");
    // A cyclic alias stops at the last new name; reserved words get "_".
    EXPECT_EQ(Typedef("struct", "S",
                      "//\tMissing class_[3];\n\tunsigned char b[4];\n\tLoopB loop[2][3];\n\tunsigned short p_x;\n"
                      "\tchar pad_0[2];\n\tInner template_;\n\tlong arr[2][3][4];\n",
                      "S,S2,PS"),
              StructText(s));
    EXPECT_EQ("class_", std::string(static_cast<CStructVar*>(s.m_lstVars.GetHead())->m_strName.GetData()));
}

TEST_F(GeneratorTest, WriteStructHandlesEmptyNameAndHugeCounts) {
    EXPECT_EQ("", StructText(AddStruct("", {{FIELD_CHAR, "char", "a"}})));
    // 0x7fffffff longs wrap the offset to 0xfffffffc; -5 chars take it to an odd offset.
    CStruct& s = AddStruct(
        "S", {{FIELD_INT, "long", "big", 0x7fffffff}, {FIELD_CHAR, "char", "c", -5}, {FIELD_INT, "short", "d"}});
    EXPECT_EQ(Typedef("struct", "S", "\tlong big[2147483647];\n\tchar c;\n\tchar pad_0[1];\n\tshort d;\n"),
              StructText(s));
}

TEST_F(GeneratorTest, WriteUnionWritesMembersWithoutPadding) {
    AddEnum("Wide", {{"W0", 0}, {"W300", 300}});
    AddEnum("Small", {{"S0", -1}});
    CUnion& u = AddUnion("U", {{FIELD_CHAR, "char", "c"},
                               {FIELD_ENUM, "Wide", "w"},
                               {FIELD_ENUM, "Small", "s", 2},
                               {FIELD_POINTER, "X *", "p_x"},
                               {FIELD_STRUCT, "char[6]", "name"},
                               {FIELD_STRUCT, "Nowhere", "n"},
                               {FIELD_INT, "long", "class", 4}});
    EXPECT_EQ(Typedef("union", "U",
                      "\tchar c;\n\tshort w;\n\tchar s\t/* enum Small */[2];\n\tunsigned short p_x;\n"
                      "\tchar name[6];\n//\tNowhere n;\n\tlong class_[4];\n"),
              Written([&](CFile& file) { parser.WriteUnion(file, u); }));
    parser.m_nEnumSize = ENUM_SIZE_FOUR_BYTES;
    CUnion& v = AddUnion("V", {{FIELD_ENUM, "Wide", "w"}});
    EXPECT_EQ(Typedef("union", "V", "\tWide w\t;\n"), Written([&](CFile& file) { parser.WriteUnion(file, v); }));
}

TEST_F(GeneratorTest, WriteDefinesRenamesBooleanEnumeratorsEachTime) {
    CEnum& boolean = AddEnum("Boolean", {{"FALSE", 0}, {"TRUE", 1}});
    boolean.m_lstNames.AddTail("BOOL_T");
    boolean.m_lstNames.AddTail("PBOOL_T");
    AddEnum("Empty", {});
    std::string const head = "#ifdef Boolean\n#undef Boolean\n#endif\ntypedef enum\n{";
    std::string const tail =
        "}Boolean,\nBOOL_T,\nPBOOL_T;\n\n#ifdef Empty\n#undef Empty\n#endif\ntypedef enum\n{}Empty;\n\n";
    EXPECT_EQ(head + "\tFALSE_Kestrin = \t0,\n\tTRUE_Kestrin = \t1\n" + tail,
              Written([&](CFile& file) { parser.WriteDefines(file); }));
    EXPECT_EQ(head + "\tFALSE_Kestrin_Kestrin = \t0,\n\tTRUE_Kestrin_Kestrin = \t1\n" + tail,
              Written([&](CFile& file) { parser.WriteDefines(file); }));
}

TEST_F(GeneratorTest, GenerateWritesUnionsBeforeEachStructureUsingThem) {
    AddEnum("E", {{"A", -7}});
    AddUnion("U", {{FIELD_CHAR, "char", "c"}});
    AddStruct("FILE", {{FIELD_UNION, "U", "skipped"}});
    AddStruct("First", {{FIELD_UNION, "U", "u"}, {FIELD_UNION, "Gone", "g"}});
    AddStruct("Signal", {});
    AddStruct("fpos_t", {});
    AddStruct("Second", {{FIELD_CHAR, "char", "c"}, {FIELD_UNION, "U", "u"}});
    std::string const unionText = Typedef("union", "U", "\tchar c;\n");
    EXPECT_EQ(
        "//gen.h file automaticly generated by Kestrin\n#ifndef GEN_H\n#define GEN_H\n\n#pragma pack(push,4)\n"
        "#ifdef E\n#undef E\n#endif\ntypedef enum\n{\tA = \t-7\n}E;\n\n" +
            unionText + Typedef("struct", "First", "\tU u;\n\tGone g;\n") + unionText +
            Typedef("struct", "Second", "\tchar c;\n\tchar pad_0[3];\n\tU u;\n") + kEpilog,
        Generated("gen.h"));
}

TEST_F(GeneratorTest, GenerateFormsGuardFromPathAsGiven) {
    ASSERT_EQ(0, mkdir(dir.File("sub.d").c_str(), 0755));
    struct Row {
        char const* path;
        char const* guard;
    } const rows[] = {
        {"sub.d/out.hpp", "SUB.D/OUT"},  // directories stay, upper-cased
        {"sub.d/plain", "SUB"},          // the last "." may sit in a directory
        {"noext", ""},                   // no "." cuts the whole path away
        {".h", ""},                      // nothing before the "."
    };
    for (Row const& row : rows) {
        std::string guard = row.guard;
        EXPECT_EQ(std::string("//") + row.path + " file automaticly generated by Kestrin\n#ifndef " + guard +
                      "_H\n#define " + guard + "_H\n\n#pragma pack(push,4)\n" + kEpilog,
                  Generated(row.path));
    }
    testsupport::CaptureStdout out;
    EXPECT_FALSE(parser.GenerateSignalsHFile("/nonexistent/dir/x.h"));
    EXPECT_EQ("Error : Could not open file /nonexistent/dir/x.h to read.\n", out.Stop());
}

TEST_F(GeneratorTest, GetPrimitiveSizeByName) {
    struct Row {
        char const* type;
        int32_t size;
    } const rows[] = {
        {"char", 1},           {"CHAR", 1},                         // names are compared without case
        {"short", 2},          {"long", 4}, {"UNSIGNED short", 2},  // so is the prefix
        {"unsigned  long", 4},                                      // blanks left after the cut are trimmed
        {"unsignedXlong", 4},                                       // nine characters go whatever the ninth is
        {"signedshort", 2},                                         // "signed" takes only six
        {"unsigned", 0},       {"int", 0},  {"UINT32", 0},         {"unsigned long64", 0},
        {"char ", 0},  // trailing blanks are kept
    };
    for (Row const& row : rows) EXPECT_EQ(row.size, parser.GetPrimitiveSize(row.type)) << row.type;
}

TEST_F(GeneratorTest, ContainsUnionCollectsOneLevelWithoutClearing) {
    CStruct& s = AddStruct("S", {{FIELD_UNION, "U1", "a"}, {FIELD_CHAR, "char", "b"}, {FIELD_UNION, "U1", "c"}});
    CUnion& u = AddUnion("U", {{FIELD_UNION, "U2", "x"}, {FIELD_STRUCT, "S", "s"}});
    CEnum& e = AddEnum("E", {});
    CStringList names;
    EXPECT_FALSE(parser.ContainsUnion(&e, names));
    EXPECT_TRUE(parser.ContainsUnion(&s, names));
    EXPECT_TRUE(parser.ContainsUnion(&u, names));
    EXPECT_TRUE(parser.ContainsUnion(&e, names));
    std::string joined;
    for (void* pos = names.GetHeadPosition(); pos;) joined += std::string(names.GetNext(pos).GetData()) + ";";
    EXPECT_EQ("U1;U1;U2;", joined);
}
