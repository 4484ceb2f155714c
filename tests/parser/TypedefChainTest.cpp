// Typedef chains are followed once and remembered: the remembered answers of
// ResolveTypeAlias and FollowSizeofAlias must equal those of a fresh walk of
// the chain after any sequence of new and redefined aliases, loops included.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "ParseS2T.h"

namespace {

std::vector<std::string> const kTexts = {"T0", "T1", "T2", "T3", "T4", "T5", "long", "char", "volatile T2", "volatile T4"};

// The walks as written before their answers were remembered.
std::string FreshFieldAnswer(CParseS2T& parser, std::string start) {
    CString text(start.c_str());
    std::set<std::string> seen;
    for (;;) {
        if (text.Find("volatile") >= 0) text = text.Mid(9);
        CString const* alias = parser.m_TypedefMap.Find(text);
        if (!alias || !seen.insert(text.GetData()).second) return text.GetData();
        text = *alias;
    }
}

std::string FreshSizeofAnswer(CParseS2T& parser, std::string const& start) {
    CString type(start.c_str());
    std::set<std::string> seen{start};
    for (CString const* next = parser.m_TypedefMap.Find(type); next && seen.insert(next->GetData()).second;
         next = parser.m_TypedefMap.Find(type))
        type = *next;
    return type.GetData();
}

}  // namespace

TEST(CParseS2T_TypedefChains, RememberedAnswersMatchFreshWalks) {
    uint32_t state = 2024;
    auto next = [&state](size_t bound) {
        state = state * 1664525u + 1013904223u;
        return static_cast<size_t>(state >> 8) % bound;
    };
    for (int round = 0; round < 200; ++round) {
        auto parser = std::make_unique<CParseS2T>();
        for (int step = 0; step < 12; ++step) {
            // Aliases are names only; their targets may be any text.
            parser->MapTypedefAlias(CString(kTexts[next(6)].c_str()), CString(kTexts[next(kTexts.size())].c_str()));
            for (auto const& text : kTexts) {
                SCOPED_TRACE("round " + std::to_string(round) + " step " + std::to_string(step) + " " + text);
                // Asked twice: the second answer comes from what was remembered.
                for (int ask = 0; ask < 2; ++ask) {
                    EXPECT_EQ(FreshFieldAnswer(*parser, text), parser->ResolveTypeAlias(CString(text.c_str())).GetData());
                    EXPECT_EQ(FreshSizeofAnswer(*parser, text), parser->FollowSizeofAlias(CString(text.c_str())).GetData());
                }
            }
        }
    }
}

TEST(CParseS2T_TypedefChains, LoopAnswersDependOnTheStart) {
    auto owner = std::make_unique<CParseS2T>();
    CParseS2T& parser = *owner;
    char const* const chain[] = {"Entry", "A", "B", "C", "A"};  // Entry -> A -> B -> C -> A
    for (int i = 0; i < 4; ++i) parser.MapTypedefAlias(chain[i], chain[i + 1]);
    // Fields stop at the first text met twice, sizeof before it.
    std::string fields, sizes;
    for (char const* start : {"Entry", "B", "C", "A"}) {
        fields += std::string(fields.empty() ? "" : " ") + parser.ResolveTypeAlias(start).GetData();
        sizes += std::string(sizes.empty() ? "" : " ") + parser.FollowSizeofAlias(start).GetData();
    }
    EXPECT_EQ("A B C A", fields);
    EXPECT_EQ("C A B C", sizes);
}
