// Constant expressions of the header parser: macro values, the left-to-right
// accumulator, sizeof through typedefs and enumerators looked up before macros.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>

#include "FrontEndHarness.h"
#include "ParsedBuilders.h"

namespace {

CEnum* AddEnum(CParseS2T& parser, built::Values values) { return &built::AddEnum(parser, "", values); }

}  // namespace

TEST(CParseS2TExpr, MacroValues) {
    std::tuple<char const*, int32_t, char const*> const rows[] = {  // the body of V, its value, why
        {"A + 1", 6, "a macro plus one"},        {"(A) * 2", 5, "the first group only"},
        {"", -1, "an empty body"},               {"0x1F", 31, "hexadecimal"},
        {"0xffffffff", -1, "wraps negative"},    {"0x1ffffffff", -1, "saturates"},
        {"0x10UL", 16, "suffix ignored"},        {"0x", 0, "no digit reads as 0"},
        {"1 << 4", 4, "first token joined"},     {"2 + 3 * 4", 20, "no precedence"},
        {"8 / 0", 0, "division by zero"},        {"-8 >> 1", -4, "arithmetic shift"},
        {"A * -5", 0, "last operator counts"},   {"UNKNOWN + 3", 3, "unknown names skipped"},
        {"2147483647 + 1", INT32_MIN, "wraps"},  {"( 1 + 2", 3, "unclosed group ends at the end"},
        {"((((7))))", 7, "nested groups"},       {"sizeof ( short ) * 3", 6, "sizeof"},
    };
    for (auto const& [body, expected, reason] : rows) {
        FrontEndHarness h("#define A 5\n#define V " + std::string(body) + "\n");
        h.Parse();
        EXPECT_EQ(expected, h.P().FindDefVal("V")) << reason;
    }
}

TEST(CParseS2TExpr, ParseBracketsLeavesWhatFollowsTheClose) {
    FrontEndHarness h("#define N 3\nN * ( 1 + 1 ) ] x\n( 2 ) + 3\n) y");
    h.P().ReadLine(h.File(), 0);
    h.P().GetToken(h.File());
    h.P().ParseDefineStatement(h.File());
    EXPECT_EQ(6, h.P().ParseBracketsUntil(h.File(), "]"));  // an array size
    EXPECT_EQ(CString("x"), h.P().GetToken(h.File()));
    EXPECT_EQ(5, h.P().ParseBrackets(h.File()));  // across lines
    EXPECT_EQ(CString("y"), h.P().GetToken(h.File()));
    FrontEndHarness deep(std::string(100000, '(') + "1");
    deep.P().ReadLine(deep.File(), 0);
    EXPECT_EQ(1, deep.P().ParseBrackets(deep.File()));
}

TEST(CParseS2TExpr, EndOfFileEndsOnlyTheInnermostGroup) {
    // The comment left open on the raw line ends the file with "4" still in the
    // line; the group around the inner one reads it, so 1 + 2 becomes 4.
    FrontEndHarness h("#define V ( 1 + ( 2\nOMRA EXPORTED STRUCT\ntypedef struct /* c\n4");
    h.P().m_bExportedOnly = true;
    h.Parse();
    EXPECT_EQ(4, h.P().FindDefVal("V"));
}

TEST(CParseS2TExpr, OperationWrapsAndGuards) {
    FrontEndHarness h("");
    std::tuple<char const*, int32_t, int32_t, int32_t> const rows[] = {  // operator, accumulator, value, result
        {"+", INT32_MAX, 1, INT32_MIN}, {"-", INT32_MIN, 1, INT32_MAX}, {"*", 65536, 65536, 0},
        {"/", -7, 2, -3},               {"/", INT32_MIN, -1, INT32_MIN}, {"/", 8, 0, 0},
        {"<<", 1, 33, 2},               {">>", 256, 36, 16},            {"|", 5, 2, 7},
        {"&", 6, 3, 2},                 {"^", 6, 3, 5},                 {"%", 3, 4, 4},
    };
    for (auto const& [op, acc, value, expected] : rows) EXPECT_EQ(expected, h.P().Operation(op, acc, value)) << op;
}

TEST(CParseS2TExpr, SizeOfFollowsTypedefs) {
    FrontEndHarness h("");
    CParseS2T& p = h.P();
    for (auto const& alias : {std::pair<char const*, char const*>{"T", "long"}, {"U", "T"}, {"B", "unsigned char"},
                              {"L1", "L2"}, {"L2", "L1"}}) {
        p.m_TypedefMap.SetAt(alias.first, alias.second);
    }
    std::pair<char const*, int32_t> const rows[] = {{"( short )", 2}, {"( int )", -1}, {"( U )", 4},
                                                    {"( B )", 1}, {"( unsigned char )", -1}, {"( L1 )", -1},
                                                    {"short", -1}};
    for (auto const& row : rows) {
        h.Open(row.first);
        p.ReadLine(h.File(), 0);
        EXPECT_EQ(row.second, p.CalcSizeOf(h.File())) << row.first;
    }
}

TEST(CParseS2TExpr, EnumeratorsShadowMacros) {
    FrontEndHarness h("#define A 5\n#define B 6\n");
    h.Parse();
    AddEnum(h.P(), {{"A", 9}, {"A", 10}});
    AddEnum(h.P(), {{"A", 11}, {"C", kNoValue}});
    AddEnum(h.P(), {{"C", 12}});
    std::pair<char const*, int32_t> const rows[] = {{"A", 9}, {"B", 6}, {"C", 12}, {"E", kNoValue}};
    for (auto const& row : rows) EXPECT_EQ(row.second, h.P().FindEnumVal(row.first)) << row.first;
}

TEST(CParseS2TExpr, EnumeratorLookUpFollowsEnumerationsAsTheyAreBuilt) {
    // The steps of the enumeration parser: append an enumeration, append
    // enumerators with the no-value mark, set their values, drop a repeated one.
    FrontEndHarness h("");
    CParseS2T& p = h.P();
    auto walk = [&](char const* name) {
        for (void* pos = p.m_EnumList.GetHeadPosition(); pos;) {
            int32_t value = static_cast<CEnum*>(p.m_EnumList.GetNext(pos))->FindVal(name);
            if (value != kNoValue) return value;
        }
        return p.FindDefVal(name);
    };
    auto check = [&](char const* step) {
        for (char const* name : {"A", "B", "C"}) EXPECT_EQ(walk(name), p.FindEnumVal(name)) << step << name;
    };
    CEnum* first = AddEnum(p, {{"A", kNoValue}});
    check("newest without value");
    static_cast<CDefines*>(first->m_lstValues.GetTail())->m_nValue = 1;
    check("newest valued");
    AddEnum(p, {{"B", 2}});
    for (int round = 0; round < 3; ++round) {
        AddEnum(p, {{"A", 50 + round}, {"C", 60 + round}});
        check("repeated appended");
        delete static_cast<CEnum*>(p.m_EnumList.RemoveTail());
        p.GetToken(h.File());  // the parser reads a token between dropping and appending
        check("repeated dropped");
    }
    CEnum* last = AddEnum(p, {{"B", 4}, {"C", 3}});
    static_cast<CDefines*>(last->m_lstValues.GetTail())->m_nValue = 30;
    check("newest changed");
}

TEST(CParseS2TExpr, MacroLineIsCutAtItsFirstComment) {
    // The line after a block comment's closing line is read raw, comments and
    // all: the macro body is cut at "//", or at a "/*" that is never closed.
    std::tuple<char const*, int32_t, char const*> const rows[] = {  // line, value, the tokens the cut leaves behind
        {"#define X 5 // note", 5, "/ note"},
        {"#define X 5 /* note", 5, "* note"},
        {"#define X 5 /* n */ + 1", 6, ""},
        {"#define X 2 /* a */ * 3 // c", 2, "* a * / * 3"},  // a "//" left in front skips to the next line
        {"#define X 1 << 4 // c", 4, "/ c"},
    };
    for (auto const& [line, value, after] : rows) {
        FrontEndHarness h(std::string("OMRA EXPORTED STRUCT\ntypedef struct /*\n*/\n") + line + "\nY");
        h.P().m_bExportedOnly = true;
        std::string tokens = h.Parse();
        EXPECT_EQ(value, h.P().FindDefVal("X")) << line;
        EXPECT_EQ("OMRA EXPORTED STRUCT typedef struct " + (*after ? std::string(after) + " " : "") + "Y", tokens)
            << line;
    }
}
