// Tests of field types: resolution through the typedef map, the canonical
// spellings, the kind rules and the bit-field holders.
#include <gtest/gtest.h>

#include "DeclarationsHarness.h"

using declarations::Harness;

namespace {

struct FieldRow {
    char const* field;
    char const* expected;  // name kind type of each field
    char const* reason;
    char const* prelude = "";  // declarations before the structure
};

// The fields of the structure S declared after prelude.
std::string FieldsOf(Harness& h, std::string const& prelude, std::string const& fields) {
    h.Parse(prelude + "\nstruct S { " + fields + " };\n");
    CStruct* parsed = h.Parser().FindStructByName("S");
    if (!parsed) return "<no S>";
    std::string dump = declarations::DumpStruct(parsed);
    return dump.substr(dump.find(':') + 2);
}

void ExpectFields(std::initializer_list<FieldRow> rows) {
    for (FieldRow const& row : rows) {
        Harness h;
        EXPECT_EQ(row.expected, FieldsOf(h, row.prelude, row.field)) << row.reason;
    }
}

}  // namespace

TEST(CParseS2T_FieldTypes, ResolveNormaliseAndSelectKind) {
    ExpectFields({
        {"unsigned char c;", "c char unsigned char", "unsigned with a keyword"},
        {"unsigned c;", "c int UINT32", "bare unsigned"},
        {"signed c;", "c int UINT32", "bare signed is UINT32 too"},
        {"unsigned __int64 v;", "v int UINT32", "__int64 is no keyword"},
        {"int x;", "x int long", "32-bit int"},
        {"unsigned int x;", "x int unsigned long", "unsigned int"},
        {"unsigned long int x;", "x int unsigned long", "three words"},
        {"signed int x;", "x int signed long", "signed int"},
        {"unsigned long long x;", "x int unsigned long64", "unsigned long long"},
        {"signed long long x;", "x int signed long64", "signed long long"},
        {"long long x;", "x int long", "only unsigned and signed gather keywords: the second long is a word"},
        {"short int x;", "x int short", "short int: int x is the declarator"},
        {"long int x;", "x int long", "long int"},
        {"unsigned short int x;", "x struct unsigned short int", "three words are no primitive name"},
        {"signed long int x;", "x struct signed long int", "nor are these"},
        {"unsigned long long int x;", "x struct unsigned long long int", "four words"},
        {"__int64 x;", "x int long64", "__int64"},
        {"unsigned short s;", "s int unsigned short", "unsigned short"},
        {"UINT8 b;", "b int UINT8", "eight-bit names are int kind"},
        {"BOOL b;", "b int BOOL", "BOOL"},
        {"BYTE b;", "b char BYTE", "character type"},
        {"signed char b;", "b char signed char", "signed char"},
        {"void v;", "v char void", "void is char kind"},
        {"Unknown u;", "u struct Unknown", "any unknown name is a structure"},
        {"const volatile short s;", "s int short", "qualifiers skipped"},
        {"extern register char r;", "r char char", "more qualifiers"},
        {"struct X x;", "x struct X", "struct X without a body"},
        {"enum Missing m;", "m struct Missing", "unknown enumeration tag"},
        {"E e; enum E f; U u; union U v; union X w; U8 a; VU t;",
         "e enum E; f enum E; u union U; v union U; w union X; a char unsigned char; t int UINT16",
         "kinds of parsed types and aliases",
         "enum E { A };\ntypedef union { int a; } U;\ntypedef unsigned char U8;\ntypedef volatile UINT16 VU;"},
        {"u_type u;", "u union u_type", "a union name matches without case", "typedef union { int a; } U_TYPE;"},
    });
}

TEST(CParseS2T_FieldTypes, IntWidthAndAliasesSetDirectly) {
    Harness h, other, alias;
    h.Parser().m_nIntBits = 16;
    EXPECT_EQ("x int SIGNED16", FieldsOf(h, "", "int x;"));
    other.Parser().m_nIntBits = 8;
    EXPECT_EQ("x int int", FieldsOf(other, "", "int x;"));
    alias.Parser().m_TypedefMap.SetAt("VU", "volatile UINT16");
    alias.Parser().m_TypedefMap.SetAt("A", "B");
    alias.Parser().m_TypedefMap.SetAt("B", "A");
    // The alias text drops "volatile"; a looping chain stops.
    EXPECT_EQ("a int UINT16; b struct A", FieldsOf(alias, "", "VU a; A b;"));
}

TEST(CParseS2T_FieldTypes, BitFieldEdges) {
    ExpectFields({
        {"unsigned a : 8; unsigned b : 16; unsigned c : 8; unsigned d : 1;",
         "S_bitfield_0 char unsigned long bits=32; S_bitfield_1 char unsigned long bits=1", "holders of 32 bits"},
        {"int a : 4; int x; int b : 4;",
         "S_bitfield_0 char unsigned long bits=4; x int long; S_bitfield_1 char unsigned long bits=4",
         "an ordinary field ends a run"},
        {"unsigned int a : 1, b : 2;", "S_bitfield_0 char unsigned long bits=3", "several in one statement"},
        {"int a:4; int b :4;", "a:4 int long; :4 int long",
         "only a : standing alone makes a bit-field; a:4 and :4 are words, the last one the name"},
        {"int : 4; int b : 4;", "S_bitfield_0 char unsigned long bits=8", "unnamed bit-field"},
        {"int big : 40; int c : 1;", "S_bitfield_0 char unsigned long bits=40; S_bitfield_1 char unsigned long bits=1",
         "a wide first field keeps its holder"},
        {"char x; int a : 0; int b : 3;",
         "x char char; S_bitfield_0 char unsigned long; S_bitfield_1 char unsigned long bits=3",
         "a zero width leaves a holder without bits"},
    });
}

TEST(CParseS2T_FieldTypes, HolderOfTypedefStructHasNoTagYet) {
    Harness h;
    EXPECT_EQ("struct S tag=S: _bitfield_0 char unsigned long bits=3\n", h.Parse("typedef struct { int a : 3; } S;"));
}
