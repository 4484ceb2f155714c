// Constant expressions of the header parser: macro values, the left-to-right
// accumulator, sizeof through typedefs and enumerators looked up before macros.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FrontEndHarness.h"

namespace {

// Parses the header and gives the value recorded for each name, as "N=v" joined.
std::string MacroValues(std::string const& header, std::vector<char const*> const& names) {
    FrontEndHarness h(header);
    h.Parse();
    std::string out;
    for (char const* name : names) {
        if (!out.empty()) out += ' ';
        out += std::string(name) + "=" + std::to_string(h.Parser().FindDefVal(name));
    }
    return out;
}

CEnum* AddEnum(CParseS2T& parser, std::vector<std::pair<char const*, int32_t>> const& values) {
    CEnum* enumeration = new CEnum;
    parser.m_EnumList.AddTail(enumeration);
    for (auto const& value : values) {
        CDefines* entry = new CDefines;
        entry->m_strName = value.first;
        entry->m_nValue = value.second;
        enumeration->m_lstValues.AddTail(entry);
    }
    return enumeration;
}

// FindEnumVal as a walk over every enumeration, to check the index against.
int32_t WalkEnums(CParseS2T& parser, CString const& name) {
    for (void* pos = parser.m_EnumList.GetHeadPosition(); pos;) {
        int32_t value = static_cast<CEnum*>(parser.m_EnumList.GetNext(pos))->FindVal(name);
        if (value != kNoValue) return value;
    }
    return parser.FindDefVal(name);
}

}  // namespace

TEST(CParseS2TExpr, MacroValuesOfTheUsualForms) {
    struct Row {
        char const* body;
        int32_t expected;
        char const* reason;
    } const rows[] = {
        {"5", 5, "a number"},
        {"A + 1", 6, "a macro plus one"},
        {"(A) * 2", 5, "the first group only"},
        {"", -1, "an empty body"},
        {"0x1F", 31, "hexadecimal"},
        {"0xffffffff", -1, "hexadecimal wraps to negative"},
        {"0x1ffffffff", -1, "hexadecimal saturates"},
        {"0x10UL", 16, "suffixes end the digits"},
        {"0x", 0, "no digit reads as 0"},
        {"1 << 4", 4, "the first token is joined to the rest"},
        {"2 + 3 * 4", 20, "no precedence"},
        {"8 / 0", 0, "division by zero gives the divisor"},
        {"-8 >> 1", -4, "arithmetic shift"},
        {"A * -5", 0, "only the operator just before an operand counts"},
        {"UNKNOWN + 3", 3, "unknown names are skipped"},
        {"2147483647 + 1", INT32_MIN, "wraps"},
        {"( 1 + 2", 3, "an unclosed group ends at the end of the file"},
        {"1 // note", 1, "a line comment ends the value"},
        {"((((7))))", 7, "nested groups"},
    };
    for (auto const& row : rows) {
        std::string header = "#define A 5\n#define V " + std::string(row.body) + "\n";
        EXPECT_EQ("V=" + std::to_string(row.expected), MacroValues(header, {"V"})) << row.reason;
    }
}

TEST(CParseS2TExpr, ParseBracketsFromTheTokenStream) {
    struct Row {
        char const* text;
        int32_t expected;
        char const* rest;  // the next token after the evaluation
    } const rows[] = {
        {"2 + 3 * 4 ) x", 20, "x"},
        {"( 2 ) + 3 ) x", 5, "x"},
        {"sizeof ( short ) * 3 ) x", 6, "x"},
        {"1==1 ) x", 1, "x"},
        {"5\n+\n1 ) x", 6, "x"},
    };
    for (auto const& row : rows) {
        FrontEndHarness h(row.text);
        h.Parser().ReadLine(h.File(), 0);
        EXPECT_EQ(row.expected, h.Parser().ParseBrackets(h.File())) << row.text;
        EXPECT_EQ(CString(row.rest), h.Parser().GetToken(h.File())) << row.text;
    }
}

TEST(CParseS2TExpr, ArraySizeStopsAtTheClosingBracket) {
    FrontEndHarness h("#define N 3\nN * ( 1 + 1 ) ] x");
    h.Parser().ReadLine(h.File(), 0);
    h.Parser().GetToken(h.File());
    h.Parser().ParseDefineStatement(h.File());
    EXPECT_EQ(6, h.Parser().ParseBracketsUntil(h.File(), "]"));
    EXPECT_EQ(CString("x"), h.Parser().GetToken(h.File()));
}

TEST(CParseS2TExpr, DeepParenthesesEndAtTheEndOfTheFile) {
    FrontEndHarness h(std::string(100000, '(') + "1");
    h.Parser().ReadLine(h.File(), 0);
    EXPECT_EQ(1, h.Parser().ParseBrackets(h.File()));
    FrontEndHarness closed(std::string(50000, '(') + "9" + std::string(50001, ')'));
    closed.Parser().ReadLine(closed.File(), 0);
    EXPECT_EQ(9, closed.Parser().ParseBrackets(closed.File()));
}

TEST(CParseS2TExpr, OperationWrapsAndGuards) {
    FrontEndHarness h("");
    CParseS2T& p = h.Parser();
    struct Row {
        char const* op;
        int32_t acc;
        int32_t value;
        int32_t expected;
    } const rows[] = {
        {"+", INT32_MAX, 1, INT32_MIN},  {"-", INT32_MIN, 1, INT32_MAX}, {"*", 65536, 65536, 0},
        {"/", -7, 2, -3},                {"/", INT32_MIN, -1, INT32_MIN}, {"/", 8, 0, 0},
        {"<<", 1, 33, 2},                {">>", -8, 1, -4},               {">>", 256, 36, 16},
        {"|", 5, 2, 7},                  {"&", 6, 3, 2},                  {"^", 6, 3, 5},
        {"%", 3, 4, 4},                  {"", 9, 4, 4},                   {"(", 9, 4, 4},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(row.expected, p.Operation(row.op, row.acc, row.value)) << row.acc << row.op << row.value;
    }
}

TEST(CParseS2TExpr, SizeOfFollowsTypedefs) {
    FrontEndHarness h("");
    CParseS2T& p = h.Parser();
    p.m_TypedefMap.SetAt("T", "long");
    p.m_TypedefMap.SetAt("U", "T");
    p.m_TypedefMap.SetAt("B", "unsigned char");
    p.m_TypedefMap.SetAt("L1", "L2");
    p.m_TypedefMap.SetAt("L2", "L1");
    struct Row {
        char const* text;
        int32_t expected;
        char const* reason;
    } const rows[] = {
        {"( short )", 2, "primitive"},
        {"( int )", -1, "int has no size"},
        {"( U )", 4, "a chain of typedefs"},
        {"( B )", 1, "two words through a typedef"},
        {"( unsigned char )", -1, "two words written directly"},
        {"( L1 )", -1, "a loop ends"},
        {"short", -1, "no parenthesis"},
    };
    for (auto const& row : rows) {
        h.Open(row.text);
        p.ReadLine(h.File(), 0);
        EXPECT_EQ(row.expected, p.CalcSizeOf(h.File())) << row.reason;
    }
}

TEST(CParseS2TExpr, EnumeratorsShadowMacros) {
    FrontEndHarness h("#define A 5\n#define B 6\n");
    h.Parse();
    AddEnum(h.Parser(), {{"A", 9}, {"A", 10}});
    AddEnum(h.Parser(), {{"A", 11}, {"C", kNoValue}});
    AddEnum(h.Parser(), {{"C", 12}, {"D", 13}});
    EXPECT_EQ(9, h.Parser().FindEnumVal("A"));
    EXPECT_EQ(6, h.Parser().FindEnumVal("B"));
    EXPECT_EQ(12, h.Parser().FindEnumVal("C"));  // the no-value mark passes on to the next enumeration
    EXPECT_EQ(13, h.Parser().FindEnumVal("D"));
    EXPECT_EQ(kNoValue, h.Parser().FindEnumVal("E"));
}

TEST(CParseS2TExpr, EnumeratorIndexFollowsTheListAsEnumerationsAreBuilt) {
    // The steps an enumeration parser takes: append an enumeration, append
    // enumerators with the no-value mark, set their values, drop a repeated one.
    FrontEndHarness h("");
    CParseS2T& p = h.Parser();
    std::vector<CString> const names = {"A", "B", "C", "D"};
    auto check = [&](char const* step) {
        for (CString const& name : names) EXPECT_EQ(WalkEnums(p, name), p.FindEnumVal(name)) << step << " " << name.GetData();
    };
    CEnum* first = AddEnum(p, {});
    check("empty");
    first->m_lstValues.AddTail(new CDefines);
    static_cast<CDefines*>(first->m_lstValues.GetTail())->m_strName = "A";
    static_cast<CDefines*>(first->m_lstValues.GetTail())->m_nValue = kNoValue;
    check("newest without value");
    static_cast<CDefines*>(first->m_lstValues.GetTail())->m_nValue = 1;
    check("newest valued");
    AddEnum(p, {{"B", 2}});
    static_cast<CDefines*>(first->m_lstValues.GetHead())->m_nValue = 1;
    check("second enumeration");
    for (int round = 0; round < 3; ++round) {
        CEnum* repeated = AddEnum(p, {{"A", 50 + round}, {"C", 60 + round}});
        check("repeated appended");
        p.m_EnumList.RemoveTail();
        delete repeated;
        p.GetToken(h.File());  // the parser reads a token between dropping and appending
        check("repeated dropped");
    }
    CEnum* last = AddEnum(p, {{"D", 4}, {"C", 3}});
    check("third");
    static_cast<CDefines*>(last->m_lstValues.GetTail())->m_nValue = 30;
    check("newest changed");
}
