// Tests of the union reader: generated names, typedef and tagged forms,
// several names, replacement of a repeated name, member kinds, pointers,
// array sizes, nested aggregates and the union look-ups.
#include <gtest/gtest.h>

#include "DeclarationsHarness.h"

using declarations::Harness;

TEST(CParseS2T_Union, DoUnionForms) {
    declarations::ExpectRows({
        {"typedef union { int a; };\nunion { char b; };", "union ksGenUnion_0: a int int\nunion ksGenUnion_1: b int char\n",
         "anonymous unions are numbered"},
        {"typedef union Tag { int a; } U;", "union U: a int int\n", "the typedef form ignores the tag"},
        {"union Tag { int a; } u;", "union Tag: a int int\n", "the tagged form keeps its tag"},
        {"typedef union { int a; char b[4]; } A, *B, C;", "union A: a int int; b int char [4]\nunion B: a int int; b int char [4]\n"
         "union C: a int int; b int char [4]\n",
         "further names are unions with copied members"},
        {"typedef union { int a; } U;\ntypedef union { char b; } U;", "union U: b int char\n", "a later union replaces"},
        {"union U { int a; };\nunion U { char b; };", "union U: b int char\n", "tagged form replaces too"},
        {"union U u;\nunion U;\ntypedef union U V;", "", "no body creates nothing"},
        {"typedef union { int a; } A;\ntypedef union { int b; };", "union A: a int int\nunion ksGenUnion_1: b int int\n",
         "a typedef form uses up a generated number even when named"},
        {"union A { union A { int a; } in; };", "union A: in union A\n",
         "the top-level union removes a nested one of its name, never itself"},
        {"typedef union { long w; } *PU;\ntypedef union { char c; } *, V;",
         "union *: c int char\nunion V: c int char\n", "the token after the brace names it, a * too"},
        {"typedef union { long w; }", "union : w int long\n", "the empty token at the end of the file names it"},
        {"typedef union { long w;", "union ksGenUnion_0: w int long\n", "a body cut short keeps the generated name"},
        {"struct S { union A { int a; } x; };\nstruct T { union A { char b; } y; };",
         "struct S tag=S: x union A\nstruct T tag=T: y union A\nunion A: a int int\nunion A: b int char\n",
         "nested unions never replace"},
    });
}

TEST(CParseS2T_Union, DoUnionMemberKinds) {
    Harness h;
    EXPECT_EQ("enum E: A=0\nstruct X tag=X: a int long\n"
              "union V: v int int\n"
              "union U: e enum E; b int U8; w union v; s int unsigned short; x int unsigned; t int MyType; "
              "y int X; z struct X; q union Q; m int const; n int unsigned long; o int volatile\n",
              h.Parse("enum E { A };\nstruct X { int a; };\ntypedef unsigned char U8;\ntypedef union { int v; } V;\n"
                      "typedef union {\n  E e;\n  U8 b;\n  v w;\n  unsigned short s;\n  unsigned x;\n  MyType t;\n"
                      "  X y;\n  struct X z;\n  union Q q;\n  const unsigned long long m;\n  unsigned long int n;\n"
                      "  volatile unsigned char o;\n} U;\n"));
}

TEST(CParseS2T_Union, DoUnionPointersAndArrays) {
    Harness h;
    EXPECT_EQ("enum E: N=3\nstruct X tag=X: a int long\n"
              "union V: v int int\n"
              "union U: p_p ptr(struct) unsigned short; p_q ptr(int) unsigned short; p_r ptr(union) unsigned short; "
              "p_c ptr(int) unsigned short; p_w ptr(union) unsigned short; p_x ptr(struct) unsigned short; "
              "p_e ptr(int) unsigned short; a int char; b int char [3]; "
              "c int char [8]; d int char [0]; f int char [2]; g int char [4]\n",
              h.Parse("enum E { N = 3 };\nstruct X { int a; };\ntypedef union { int v; } V;\n"
                      "typedef union {\n  struct X *p;\n  struct Y *q;\n  union V *r;\n  char *c;\n  V **w;\n"
                      "  X *x;\n  E *e;\n  char a[UNKNOWN];\n  char b[N];\n  char c[(8)];\n  char d[0];\n"
                      "  char f[2][5];\n  char g[4 * N];\n} U;\n"));
}

TEST(CParseS2T_Union, DoUnionDeclaratorsAndNesting) {
    declarations::ExpectRows({
        {"typedef union { int a, *b, c; int d : 3, e : 4; } U;",
         "union U: a int int; p_b ptr(int) unsigned short; c int int; d int int; e int int\n",
         "several declarators; bit widths are dropped"},
        {"typedef union { struct { int a; } s; union { int b; } u; struct { int c; }; } W;",
         "struct ksGenUnion_0_ksTag_0 tag=: a int long\nstruct ksGenUnion_0_ksTag_1 tag=: c int long\n"
         "union W: s struct ksGenUnion_0_ksTag_0; u union ksGenUnion_1;  struct ksGenUnion_0_ksTag_1\n"
         "union ksGenUnion_1: b int int\n",
         "the union's prefix stands before nested names; an anonymous member keeps a member without a name"},
        {"struct S {\n  union Inner { int a; char b; } u,\n  *v;\n};",
         "struct S tag=S: u union Inner; p_v ptr(union) Inner\nunion Inner: a int int; b int char\n",
         "a union inside a structure"},
        {"struct X { int a; };\ntypedef union { struct X *p; struct { char *q; } s; } U;",
         "struct X tag=X: a int long\nstruct ksGenUnion_0_ksTag_0 tag=: p_q ptr(int) unsigned short\n"
         "union U: p_p ptr(struct) unsigned short; s struct ksGenUnion_0_ksTag_0\n",
         "a structure member takes a body only when the brace comes first, though * and body share the line"},
    });
}

TEST(CParseS2T_Union, LookupsFindWithoutCaseRemoveWithCase) {
    Harness h;
    h.Parse("typedef union { int a; } abc;\ntypedef union { int b; } ABC;\n");
    CUnion* first = h.Parser().FindUnionByName("Abc");
    ASSERT_NE(nullptr, first);
    EXPECT_EQ("abc", declarations::Text(first->m_strName));
    EXPECT_EQ(1, h.Parser().RemoveUnionByName("ABC"));
    EXPECT_EQ("union abc: a int int\n", declarations::Dump(h.Parser()));
    EXPECT_EQ(0, h.Parser().RemoveUnionByName("ABC"));
    EXPECT_EQ(0, h.Parser().RemoveUnionByName(""));
    EXPECT_EQ(first, h.Parser().FindUnionByNamePattern("b"));
    EXPECT_EQ(nullptr, h.Parser().FindUnionByNamePattern("B"));
    CUnion* added = new CUnion;
    added->m_strName = "Second";
    h.Parser().m_UnionList.AddTail(added);
    EXPECT_EQ(added, h.Parser().FindUnionByName("SECOND"));  // a union added directly is seen
    EXPECT_EQ(1, h.Parser().RemoveUnionByName("Second"));
    EXPECT_EQ(nullptr, h.Parser().FindUnionByName("second"));
}
