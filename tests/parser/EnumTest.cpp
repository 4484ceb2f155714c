// Tests of the enumeration reader: values (implicit, hexadecimal, negative,
// shifted, quoted and self-referencing), names, repeated names, signal groups
// and the enumeration look-ups.
#include <gtest/gtest.h>

#include "DeclarationsHarness.h"
#include "Records.h"
#include "RunContext.h"
#include "Storage.h"

using declarations::Harness;

TEST(CParseS2T_Enum, DoEnumValues) {
    declarations::ExpectRows({
        {"enum E { A, B, C };", "enum E: A=0 B=1 C=2\n", "implicit values from 0; the tag names it"},
        {"typedef enum { A = 5, B, C = 0x10, D } T;", "enum T: A=5 B=6 C=16 D=17\n", "hex and implicit after both"},
        {"enum E { A = -3, B };", "enum E: A=-3 B=-2\n", "negative value"},
        {"enum E { A = 1 << 4 };", "enum E: A=16\n", "shift written apart"},
        {"enum E { A = 'x', B };", "enum E: A=120 B=121\n", "character constant"},
        {"enum E { A = '0', B = 'ab', C = '7' };", "enum E: A=48 B=97 C=7\n", "quoted digit 0, two characters, 7"},
        {"enum E { A = 2, B = A + 1 };", "enum E: A=2 B=3\n", "earlier enumerator in an initialiser"},
        {"enum E { A = ( 2 + 3 ) * 4, B };", "enum E: A=20 B=21\n", "bracketed group then an operator"},
        {"enum E { A = 8, B = A - 1 | 16 };", "enum E: A=8 B=23\n", "left to right, no precedence"},
        {"enum E { A = UNKNOWN, B };", "enum E: A=0 B=1\n", "unknown name reads as 0; the , sets the next"},
        {"enum E { A = 1, B = 0, C };", "enum E: A=1 B=0 C=1\n", "literal 0 replaces, then , sets next"},
        {"enum E { };", "enum E:\n", "empty body"},
        {"enum E { A = 2147483646, B };", "enum E: A=2147483646 B=2147483647\n", "the last implicit value"},
        {"enum E { A = 2147483647, B, C };", "enum E: A=2147483647 B=-2147483648 C=-2147483647\n", "implicit values wrap"},
        {"enum E { A, B, };", "enum E: A=0 B=1\n", "trailing comma"},
        {"enum { A = 4 };", "enum : A=4\n", "no tag and no name"},
        {"enum E\n{\n  A = 1,\n  B\n}\n;", "enum E: A=1 B=2\n", "spread over lines"},
        {"enum E { A = 1 junk, B };", "enum E: A=2 B=3\n",
         "a stray word after an initialiser is skipped; the , after it gives A the next value"},
        {"enum E { A junk B, C };", "enum E: A=-2147483648 B=0 C=1\n", "a name followed by a word keeps no value"},
        {"enum E {\n#if 0\n  A,\n#endif\n  B\n};\n", "enum E: if=-2147483648 A=0 B=1\n",
         "a plain #if inside a body becomes an enumerator"},
        {"#define N 9\nenum E { N = 3 };\nstruct S { int a[N]; };\n", "enum E: N=3\nstruct S tag=S: a int long [3]\n",
         "enumerators resolve later sizes and macros lose to them"},
        {"#define DIAG_SIGNAL_BASE 256\nenum Other { X = DIAG_SIGNAL_BASE };", "enum Other: X=256\n",
         "groups need the SignalIdTag tag"},
        {"enum E;\nenum E e;\ntypedef enum E T;\nenum", "", "no body creates nothing"},
        // The token read after the repeated enumeration is the "struct" of the
        // next declaration, which is then lost.
        {"enum E { A };\nenum E { B };\nstruct S { int a; };\n", "enum E: A=0\n",
         "a repeated name keeps the first and swallows the next token"},
    });
}

TEST(CParseS2T_Enum, NamesFromTypedefAndLookups) {
    Harness h;
    EXPECT_EQ("enum First names=[Second,Third]: A=0\n", h.Parse("typedef enum Tag { A } First, Second, Third;"));
    EXPECT_EQ("First", declarations::Text(h.Parser().FindEnumByName("Third")->m_strName));
    EXPECT_EQ(nullptr, h.Parser().FindEnumByName("Tag"));
    // EnumExists leaves out the last enumeration; both see the list changed directly.
    Harness two;
    two.Parse("enum A { X };\nenum B { Y };\n");
    EXPECT_TRUE(two.Parser().EnumExists("A"));
    EXPECT_FALSE(two.Parser().EnumExists("B"));
    EXPECT_FALSE(two.Parser().EnumExists("C"));
    CEnum* added = new CEnum;
    added->m_strName = "Added";
    added->m_lstNames.AddTail("Alias");
    two.Parser().m_EnumList.AddTail(added);
    EXPECT_EQ(added, two.Parser().FindEnumByName("Alias"));
    EXPECT_TRUE(two.Parser().EnumExists("B"));
}

TEST(CParseS2T_Enum, EndOfFileNamesEnumerationWithEmptyToken) {
    // The token after the body is not the end of the statement, so the empty
    // token of the end of the file names the enumeration, whatever the tag.
    declarations::ExpectRows({
        {"enum E { A = 1, B", "enum : A=1 B=2\n", "end of the file inside the body"},
        {"enum E { A }", "enum : A=0\n", "end of the file right after the body"},
        {"typedef enum { A } T, U", "enum T names=[U]: A=0\n", "a further name at the end of the file"},
        {"typedef enum { A } T,", "enum T names=[]: A=0\n", "an empty further name at the end of the file"},
        {"typedef enum { A } T, ;\nenum F { B };", "enum T names=[;]: A=0\n",
         "a ; after a , is a further name and the next keyword is read past"},
    });
}

TEST(CParseS2T_Enum, SignalIdTagDeclaresGroups) {
    stData data;
    CStorage store(&data);
    Harness h;
    h.Parser().SetStorage(&store);
    // A base name with nothing before "_SIGNAL_BASE" makes no group; an
    // unknown base enters the group with the no-value mark. Newest first.
    EXPECT_EQ("enum SignalId: X=256 Y=257 Z=0 W=0\ngroup GPS=-2147483648\ngroup DIAG=256\n",
              h.Parse("#define DIAG_SIGNAL_BASE 256\n"
                      "typedef enum SignalIdTag { X = DIAG_SIGNAL_BASE, Y, Z = GPS_SIGNAL_BASE, W = _SIGNAL_BASE } "
                      "SignalId;\n"));
    ASSERT_NE(nullptr, store.FindGroupById(256));
    EXPECT_EQ("DIAG", declarations::Text(store.FindGroupById(256)->m_strName));
    EXPECT_NE(nullptr, store.FindGroupById(INT32_MIN));
}
