// Structures written on one line longer than the lexer keeps exact: the
// look-aheads of the structure reader judge the whole rest of that line, as
// they do on an ordinary line.
#include <gtest/gtest.h>

#include <string>

#include "DeclarationsHarness.h"

TEST(CParseS2TLexer, LongLinesAreJudgedLikeShortOnes) {
    std::string pad;
    for (int i = 0; i < 2100; ++i) pad += " ;";  // empty statements, past the exact-line limit
    char const* const bodies[] = {
        "long a[2], *p; char b[3];",         // the line's last "]" lies after the first "*"
        "long (f)(void); long *q;",          // a "*" further on makes f a function pointer
        "struct X x; struct { int i; } y;",  // a body later on the line
        "union U u; char *c; union V *v;",
    };
    for (char const* body : bodies) {
        declarations::Harness shortLine;
        declarations::Harness longLine;
        std::string const head = std::string("typedef struct { ") + body;
        EXPECT_EQ(shortLine.Parse(head + " } S;\n"), longLine.Parse(head + pad + " } S;\n")) << body;
    }
}
