// End-to-end runs of the built KSManCMD on small headers: how declarations
// written in the less common ways come out in the rewritten database file.
// Each row compares the file's "Enums" to "Signals" sections as a whole.
#include <gtest/gtest.h>

#include <string>

#include "TestSupport.h"

namespace {

struct RunRow {
    char const* header;
    char const* expected;  // the file from the line after "Enums" up to "<end>" of "Signals"
    char const* reason;
};

// Runs the tool on the header without a database file and returns the part
// of the written file between the "Enums" keyword and the end of "Signals".
std::string DeclarationSections(std::string const& header) {
    testsupport::ScratchDir dir;
    testsupport::WriteFile(dir.File("s.h"), header);
    testsupport::Run(KS_KSMANCMD_PATH, {"-Ndb.txt", "-Ss.h"}, dir.Path());
    std::string file = testsupport::ReadFile(dir.File("db.txt"));
    size_t from = file.find("\nEnums\n");
    size_t to = file.find("\nSignalTable\n");
    if (from == std::string::npos || to == std::string::npos || to < from) return "<no sections>";
    return file.substr(from + 7, to - from - 6);
}

}  // namespace

// Keyword pairs, pointers, union members, nested and replaced names, and an
// enumeration that ends the file.
TEST(DeclarationsRun, DeclarationsAsWrittenInTheDatabase) {
    RunRow const rows[] = {
        {"typedef struct T {\n  short int s;\n  unsigned short int us;\n  long long ll;\n  unsigned a:4;\n"
         "  unsigned b : 4;\n  unsigned c : 30;\n} R;\n",
         "<end>\nUnions\n<end>\nSignals\nR,,,,1,\nR,,short,int,1,s\nR,,unsigned short int,unknown,1,us\n"
         "R,,long,int,1,ll\nR,,UINT32,int,1,a:4\nR,,unsigned long,char,1,T_bitfield_0\n"
         "R,,unsigned long,char,1,T_bitfield_1\n<end>\n",
         "keyword pairs after the first word are declarators; a:4 is a name; holders of 32 bits"},
        {"typedef struct { char c; long n[2]; char *p; } P;\n",
         "<end>\nUnions\n<end>\nSignals\nP,,,,1,\nP,,unsigned short,pointer,1,p_c\n"
         "P,,unsigned short,pointer,2,p_n\nP,,unsigned short,pointer,1,p_p\n<end>\n",
         "a * on the line makes the primitive fields before it pointers"},
        {"typedef struct { int a; } A; typedef struct { int b; } B;",
         "<end>\nUnions\n<end>\nSignals\nA,,,,1,\nA,,long,int,1,a\nB,,,,1,\nB,,long,int,1,b\n<end>\n",
         "on the last line the declaration after a structure is read"},
        {"typedef struct { long x; } S;\ntypedef union {\n  const char k;\n  unsigned long int n;\n  char m[2][5];\n"
         "  S *s;\n} U;\ntypedef union { long w; } *PU;\n",
         "<end>\nUnions\nU,k,const,primitive,1,0\nU,n,unsigned long,primitive,1,0\nU,m,char,primitive,2,0\n"
         "U,p_s,unsigned short,pointer,1,0\n*,w,long,primitive,1,0\n<end>\nSignals\nS,,,,1,\nS,,long,int,1,x\n<end>\n",
         "the first word is the type; one keyword after unsigned; the first size counts; a * names a union"},
        {"typedef struct T {\n  struct {\n    long x;\n  } in;\n  union {\n    struct { char c; } s;\n    long w;\n"
         "  } u;\n} A, B, C;\nstruct T {\n  long y;\n};\n",
         "<end>\nUnions\nksGenUnion_0,s,struct,ksGenUnion_1_ksTag_1,1,0\nksGenUnion_0,w,long,primitive,1,0\n<end>\n"
         "Signals\nksTag_0,,,,1,\nksTag_0,,long,int,1,x\nksGenUnion_1_ksTag_1,,,,1,\nksGenUnion_1_ksTag_1,,char,char,1,c\n"
         "T,,,,1,\nT,,long,int,1,y\nC,,,,1,\nC,,long,int,1,y\nB,,,,1,\nB,,long,int,1,y\n<end>\n",
         "generated and prefixed names; the later T takes the further names, which stand reversed"},
        {"enum E { A, B }", ",A,0,\n,B,1,\n<end>\nUnions\n<end>\nSignals\n<end>\n",
         "the empty token of the end of the file names it"},
        {"typedef enum { A = 'a', B } T, T2", "T,A,97,\nT,B,98,\nT2,A,97,\nT2,B,98,\n<end>\nUnions\n<end>\nSignals\n<end>\n",
         "a further name just before the end of the file"},
    };
    for (RunRow const& row : rows) EXPECT_EQ(row.expected, DeclarationSections(row.header)) << row.reason;
}
