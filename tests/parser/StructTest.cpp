// Tests of the structure reader: declarators, pointers, function pointers,
// arrays, nested and anonymous structures with their generated names, further
// typedef names, replacement of a repeated tag, the warning for a broken body,
// the look-aheads, deep nesting, and the look-ups against a walk of the list.
#include <gtest/gtest.h>

#include <random>
#include <utility>

#include "DeclarationsHarness.h"

using declarations::ExpectRows;
using declarations::Harness;

TEST(CParseS2T_Struct, DoStructDeclaratorsAndPointers) {
    ExpectRows({
        {"struct S {\n  int a, b;\n  char *p, q;\n  char *text, buffer[4];\n};",
         "struct S tag=S: a int long; b int long; p_p ptr(int) unsigned short; q char char; "
         "p_text ptr(int) unsigned short; buffer char char [4]\n",
         "several declarators; a primitive pointer is an unsigned short; in a mixed statement each decides"},
        {"struct S { char a, b; long n[2]; char *p; };\nstruct T { S *s; long v; };",
         "struct S tag=S: p_a ptr(int) unsigned short; p_b ptr(int) unsigned short; "
         "p_n ptr(int) unsigned short [2]; p_p ptr(int) unsigned short\nstruct T tag=T: p_s ptr(struct) S; v int long\n",
         "a * further on the line makes every earlier primitive field of it a pointer, not a structure field"},
        {"struct S { char **pp; void *v; char const *c, d; };",
         "struct S tag=S: p_pp ptr(int) unsigned short; p_v ptr(int) unsigned short; p_c ptr(int) unsigned short; "
         "d char char\n",
         "one p_ for a primitive pointer whatever the stars, wherever they stand"},
        {"struct T { int x; };\nstruct S { struct T *t; T **tt; T u; };",
         "struct T tag=T: x int long\nstruct S tag=S: p_t ptr(struct) T; pp_tt ptr(struct) T; u struct T\n",
         "pointers to a structure keep its kind and count their stars"},
        {"enum E { A };\nunion U { int a; };\nstruct S { E *pe; union U *pu; };",
         "enum E: A=0\nstruct S tag=S: p_pe ptr(enum) E; p_pu ptr(union) U\nunion U: a int int\n",
         "pointers to an enumeration and a union"},
        {"struct S { int (*fn)(int a, int b); void (*g)(void); char * const c; };",
         "struct S tag=S: FuncPtr_0 ptr(int) unsigned short; FuncPtr_1 ptr(int) unsigned short; "
         "p_c ptr(int) unsigned short\n",
         "function pointers are numbered per structure"},
        {"struct S { T (*h)(int x); };", "struct S tag=S: p_x ptr(struct) T\n",
         "to a non-primitive: the last word is the name"},
        {"struct S { T (*cb)(int a, int b); };", "struct S tag=S: p_a ptr(struct) T; b struct T\n",
         "to a non-primitive a , inside the parentheses ends the declarator"},
        {"struct S {\n  int\n  *p;\n  int q;\n};", "struct S tag=S: p_p ptr(int) unsigned short; q int long\n",
         "the look-ahead for * reads the next line and comes back"},
    });
}

TEST(CParseS2T_Struct, DoStructArrays) {
    ExpectRows({
        {"#define N 4\nenum E { M = 3 };\nstruct S { char a[N][M][2]; char b[N*2]; int c[(N + 1)]; };",
         "enum E: M=3\nstruct S tag=S: a char char [4][3][2]; b char char [8]; c int long [5]\n",
         "macro, enumerator and expression sizes; * inside brackets is no pointer"},
        {"#define N 4\nstruct S { char *names[10]; char *q[N]; char *r[0x10]; char *s[(N)]; };",
         "struct S tag=S: p_names ptr(int) unsigned short [10]; p_q ptr(int) unsigned short; "
         "p_r ptr(int) unsigned short [16]; p_s ptr(int) unsigned short [4]\n",
         "a pointer array takes numbers only; a bare name is passed over"},
        {"struct S { int a[UNKNOWN]; };", "struct S tag=S: a int long [0]\n", "unknown size name reads as 0"},
        {"struct S { int a;\n#define K 7\n  char b[K]; };", "struct S tag=S: a int long; b char char [7]\n",
         "#define inside a body"},
    });
}

TEST(CParseS2T_Struct, DoStructNestedAndAnonymous) {
    ExpectRows({
        {"struct A { struct { int x; } inner; union { int u; char c; } un; int z; };",
         "struct ksTag_0 tag=: x int long\nstruct A tag=A: inner struct ksTag_0; un union ksGenUnion_0; z int long\n"
         "union ksGenUnion_0: u int int; c int char\n",
         "anonymous nested structure and union"},
        {"struct A { struct { struct { int y; } deep; } mid; };",
         "struct ksTag_0_0_ksTag_1 tag=: y int long\nstruct ksTag_0 tag=: deep struct ksTag_0_0_ksTag_1\n"
         "struct A tag=A: mid struct ksTag_0\n",
         "prefixes of the enclosing nested structures"},
        {"struct A {\n  struct B {\n    int b;\n  } b1, *b2;\n};",
         "struct B tag=B: b int long\nstruct A tag=A: b1 struct B; p_b2 ptr(struct) B\n", "nested tagged structure"},
        {"typedef struct { struct X x; struct { long a; } y; union U u; union { long b; } v; } T;",
         "struct ksTag_0 tag=: a int long\nstruct T tag=T: x struct X; y struct ksTag_0; u union U; v union ksGenUnion_0\n"
         "union ksGenUnion_0: b int long\n",
         "a body of a later statement on the line is not taken for this one's"},
        {"struct S { union { long a; } u; union V w; char c; };\nstruct P { union { char *q; } u; };",
         "struct S tag=S: u union ksGenUnion_0; w union V; c char char\n"
         "struct P tag=P: u ptr(union) ksGenUnion_1\n"
         "union ksGenUnion_0: a int long\nunion ksGenUnion_1: p_q ptr(int) unsigned short\n",
         "a union field is a pointer when its statement shows a * on the line, even inside its body"},
        {"struct A { struct { int x; }; int y; };", "struct ksTag_0 tag=: x int long\nstruct A tag=A:  struct ksTag_0; y int long\n",
         "an anonymous member keeps a field without a name"},
        {"struct A { enum Color { RED, GREEN, BLUE } c; int arr[BLUE]; };",
         "enum Color: RED=0 GREEN=1 BLUE=2\nstruct A tag=A: c enum Color; arr int long [2]\n", "enumeration inside a body"},
        {"struct A {\n  struct\n  {\n    int x;\n  } s;\n};", "struct ksTag_0 tag=: x int long\nstruct A tag=A: s struct ksTag_0\n",
         "a body on the next line"},
    });
}

TEST(CParseS2T_Struct, DoStructNames) {
    ExpectRows({
        {"typedef struct T { int a; } A, B, C;", "struct A tag=T names=[C,B]: a int long\n", "further names reversed"},
        {"typedef struct {\n  int a;\n} A, *PA;", "struct A tag=A names=[PA]: a int long\n", "stars before a further name"},
        {"typedef struct T {\n  int a;\n} *PT;", "struct PT tag=T *: a int long\n", "a star after the brace joins the tag"},
        {"struct { int a; };\nstruct { int b; };",
         "struct GeneratedKestrinStruct_0 tag=: a int long\nstruct GeneratedKestrinStruct_1 tag=: b int long\n",
         "anonymous without a name"},
        {"struct T { int a; } t1, t2;", "struct t1 tag=T: a int long\n", "tagged form: the first declarator names it"},
        {"struct T { int a; }; struct U { int b; };\nstruct V { int c; };",
         "struct T tag=T: a int long\nstruct V tag=V: c int long\n", "the rest of the line after the end is skipped"},
        {"typedef struct { int a; } A; typedef struct { int b; } B; struct C { int c; };",
         "struct A tag=A: a int long\nstruct B tag=B: b int long\nstruct C tag=C: c int long\n",
         "on the last line nothing is skipped"},
        {"struct T t;\nstruct T;\ntypedef struct T X;\nstruct T *f(void);\nstruct", "", "no body creates nothing"},
        {"struct S { int a; char b", "struct  tag=S: a int long; b char char\n", "the end of the file ends it"},
    });
}

TEST(CParseS2T_Struct, RepeatedTagReplacesEarlierAndTakesItsNames) {
    ExpectRows({
        {"struct T { int a; };\nstruct T { char b; };", "struct T tag=T: b char char\n", "the later one stays"},
        {"struct B { int x; };\nstruct A { struct B { char y; } b; };",
         "struct B tag=B: x int long\nstruct B tag=B: y char char\nstruct A tag=A: b struct B\n",
         "a nested structure never replaces"},
        {"typedef struct T { int a; } A, B;\nstruct X { int x; };\nstruct T { char c; };",
         "struct X tag=X: x int long\nstruct T tag=T names=[B]: c char char\n", "names handed over; appended last"},
    });
}

TEST(CParseS2T_Struct, BraceInsideStatementWarns) {
    Harness h;
    std::string printed;
    std::string dump = h.ParseCapturing("struct S { int a }\n;\nstruct T { int b;\nstruct { int x } in; };\n", printed);
    EXPECT_EQ("struct S tag=S: a int long\nstruct ksTag_0 tag=: x int long\nstruct T tag=T: b int long; in struct ksTag_0\n",
              dump);
    std::string path = h.Folder() + "/h0.h";
    EXPECT_EQ("\nWarning: incorrect Stuct :  FileName: " + path + " LineNum: 1\n" +
                  "\nWarning: incorrect Stuct : ksTag_0 FileName: " + path + " LineNum: 4\n",
              printed);
}

TEST(CParseS2T_Struct, LookAheadsRestoreTheReader) {
    Harness h;
    h.Parse("");
    CFile file;
    ASSERT_TRUE(file.OpenText("first\nsecond *\nthird;\nfourth {\n"));
    CParseS2T& parser = h.Parser();
    parser.ReadLine(&file, 0);
    parser.CurrentLine() = "x";
    int64_t position = file.GetPosition();
    EXPECT_TRUE(parser.IsPointer(&file));
    EXPECT_FALSE(parser.IsStructDeclaration(&file));
    EXPECT_EQ(1, parser.m_nLineNo);
    EXPECT_EQ(position, file.GetPosition());
    EXPECT_EQ("x", declarations::Text(parser.CurrentLine()));
    parser.CurrentLine() = "a[2*3];";
    EXPECT_FALSE(parser.IsPointer(&file));
    parser.CurrentLine() = "/* c */ x;";
    EXPECT_FALSE(parser.IsPointer(&file));
    parser.CurrentLine() = "{";
    EXPECT_TRUE(parser.IsStructDeclaration(&file));
    ASSERT_TRUE(file.OpenText("a\nb\n"));  // the look-aheads stop at the end of the file
    parser.ReadLine(&file, 0);
    EXPECT_FALSE(parser.IsPointer(&file));
    EXPECT_FALSE(parser.IsStructDeclaration(&file));
    EXPECT_EQ("a", declarations::Text(parser.CurrentLine()));
}

TEST(CParseS2T_Struct, LookAheadLinesCountForProgress) {
    // Each look-ahead reads on to the line that holds ";" or "{", past a "*"
    // already seen, and those lines are counted again when read for real; a
    // union field looks ahead once for its "*" and its body.
    std::pair<char const*, int32_t> const rows[] = {  // a header and the lines counted for progress
        {"struct S {\n  char\n  *\n  p;\n};\n", 5 + 2},
        {"struct S {\n  union\n  {\n    long a;\n  } u;\n};\n", 6 + 1},
        {"struct S {\n  Other\n  o;\n};\n", 4 + 1},
        {"struct S {\n  char c; long n;\n};\n", 3},
    };
    for (auto const& [header, lines] : rows) {
        Harness h;
        h.Parse(header);
        EXPECT_EQ(lines, h.Parser().m_nProgressLines) << header;
    }
}

TEST(CParseS2T_Struct, GeneratedNames) {
    Harness h;
    CParseS2T& parser = h.Parser();
    EXPECT_EQ("ksTag_0", declarations::Text(parser.GenerateNestedNameForTag("")));
    EXPECT_EQ("T", declarations::Text(parser.GenerateNestedNameForTag("T")));
    EXPECT_EQ("GeneratedKestrinStruct_0", declarations::Text(parser.GenerateKestrinStructureTag()));
    EXPECT_EQ("GeneratedKestrinStruct_1", declarations::Text(parser.GenerateKestrinStructureTag()));
    CStringList prefixes;
    parser.m_pNestedNames = &prefixes;
    parser.AddTagToNestedNames("ABCDEFGHIJKLMN");
    parser.AddTagToNestedNames("x");
    EXPECT_EQ("ABCDEFGHIJ_0_x_1_ksTag_1", declarations::Text(parser.GenerateNestedNameForTag("")));
    parser.m_pNestedNames = nullptr;
}

TEST(CParseS2T_Struct, DeepNestingIsBounded) {
    // Bodies past the nesting limit are skipped and kept as empty structures.
    int const depth = 2000;
    std::string structs, mixed = "typedef union {\n";
    for (int i = 0; i < depth; ++i) structs += "struct S" + std::to_string(i) + " {\n";
    for (int i = 1; i < depth; ++i) mixed += i % 2 ? "struct {\n" : "union {\n";
    structs += "int x;\n";
    mixed += "int x;\n";
    for (int i = depth - 1; i >= 0; --i) structs += i ? "} f" + std::to_string(i) + ";\n" : "};\n";
    for (int i = depth - 1; i >= 1; --i) mixed += "} m" + std::to_string(i) + ";\n";
    Harness h, u;
    h.Parse(structs);
    EXPECT_EQ(CParseS2T::kMaxNesting + 1, h.Parser().m_StructList.GetCount());
    ASSERT_NE(nullptr, h.Parser().FindStructByName("S0"));
    EXPECT_EQ("struct S0 tag=S0: f1 struct S1", declarations::DumpStruct(h.Parser().FindStructByName("S0")));
    EXPECT_EQ(0, h.Parser().m_nNestingDepth);
    u.Parse(mixed + "} Top;\n");
    EXPECT_EQ(CParseS2T::kMaxNesting + 1, u.Parser().m_StructList.GetCount() + u.Parser().m_UnionList.GetCount());
    ASSERT_NE(nullptr, u.Parser().FindUnionByName("Top"));
    EXPECT_EQ("union Top: m1 struct ksGenUnion_0_ksTag_0", declarations::DumpUnion(u.Parser().FindUnionByName("Top")));
}

namespace {

// The first entry of a parser list, in list order, that matches.
template <typename T, typename List, typename Match>
T* WalkFind(List const& list, Match match) {
    T* found = nullptr;
    declarations::Each<T>(list, [&](T* parsed) {
        if (!found && match(parsed)) found = parsed;
    });
    return found;
}

}  // namespace

// The look-ups against walks of the lists: a structure by name or tag, else the
// last one holding the name as a further name; a union without case; an
// enumeration by name or further name; EnumExists leaves out the last one.
TEST(CParseS2T_Struct, LookupsAgreeWithListWalk) {
    char const* const names[] = {"A", "B", "C", "a", "b", "D"};
    std::mt19937 random(20261121);
    auto pick = [&] { return std::string(names[random() % 6]); };
    Harness h;
    CParseS2T& p = h.Parser();
    for (int round = 0; round < 60; ++round) {
        std::string header;
        for (int i = 0; i < 8; ++i) {
            switch (random() % 5) {
                case 0: header += "typedef struct " + pick() + " { int x; } " + pick() + ", " + pick() + ";\n"; break;
                case 1: header += "struct " + pick() + " { struct " + pick() + " { int y; } n; };\n"; break;
                case 2: header += "typedef union { int u; } " + pick() + ", " + pick() + ";\n"; break;
                case 3: header += "union " + pick() + " { char c; };\n"; break;
                default: header += "typedef enum { E" + std::to_string(round * 8 + i) + " } " + pick() + ", " + pick() + ";\n";
            }
        }
        h.Parse(header);
        if (round % 7 == 0) p.RemoveUnionByName(CString(pick().c_str()));
        CObject* lastEnum = p.m_EnumList.IsEmpty() ? nullptr : p.m_EnumList.GetTail();
        for (char const* name : names) {
            CString key(name);
            std::string const at = std::to_string(round) + " " + name;
            auto named = [&](auto* parsed) { return parsed->m_strName == key; };
            CStruct* further = nullptr;
            declarations::Each<CStruct>(p.m_StructList, [&](CStruct* s) {
                if (s->m_lstNames.Find(key)) further = s;
            });
            CStruct* byName =
                WalkFind<CStruct>(p.m_StructList, [&](CStruct* s) { return named(s) || s->m_strTag == key; });
            ASSERT_EQ(byName ? byName : further, p.FindStructByName(key)) << at;
            ASSERT_EQ(WalkFind<CUnion>(p.m_UnionList, [&](CUnion* u) { return !u->m_strName.CompareNoCase(key); }),
                      p.FindUnionByName(key)) << at;
            ASSERT_EQ(WalkFind<CEnum>(p.m_EnumList, [&](CEnum* e) { return named(e) || e->m_lstNames.Find(key); }),
                      p.FindEnumByName(key)) << at;
            ASSERT_EQ(nullptr != WalkFind<CEnum>(p.m_EnumList, [&](CEnum* e) { return named(e) && e != lastEnum; }),
                      p.EnumExists(key)) << at;
        }
    }
}

TEST(CParseS2T_Struct, LookupsPreferNameOrTagAndSeeStructuresAddedDirectly) {
    Harness h;
    h.Parse("typedef struct T { int a; } A, B;\n");
    CStruct* added = new CStruct;
    added->m_strName = "Added";
    added->m_lstNames.AddTail("B");
    h.Parser().m_StructList.AddTail(added);
    EXPECT_EQ(added, h.Parser().FindStructByName("B"));
    EXPECT_TRUE(h.Parser().StructExists("Added"));
    EXPECT_FALSE(h.Parser().StructExists("T"));
    EXPECT_EQ(added, h.Parser().FindStructByNamePattern("dde"));
    EXPECT_EQ(nullptr, h.Parser().FindStructByNamePattern("zz"));
    // A name or tag wins over a further name, wherever it stands.
    Harness named;
    named.Parse("typedef struct { int a; } X, Y, Z;\ntypedef struct { int b; } P, Z;\ntypedef struct Q { int c; } Y;\n");
    CParseS2T& parser = named.Parser();
    EXPECT_EQ("Y", declarations::Text(parser.FindStructByName("Y")->m_strName));
    EXPECT_EQ("P", declarations::Text(parser.FindStructByName("Z")->m_strName));
    EXPECT_EQ("Y", declarations::Text(parser.FindStructByName("Q")->m_strName));
    EXPECT_EQ(nullptr, parser.FindStructByName("W"));
}

TEST(CParseS2T_Struct, MoveAdditionalNamesEmptiesTheSource) {
    Harness h;
    h.Parse("typedef struct { int a; } A, B, C;\ntypedef struct { int d; } D, E;\n");
    CStruct* a = h.Parser().FindStructByName("A");
    CStruct* d = h.Parser().FindStructByName("D");
    h.Parser().MoveAdditionalNames(d, a);
    EXPECT_EQ("struct A tag=A: a int long\nstruct D tag=D names=[E,C,B]: d int long\n", declarations::Dump(h.Parser()));
    EXPECT_EQ(d, h.Parser().FindStructByName("C"));
}
