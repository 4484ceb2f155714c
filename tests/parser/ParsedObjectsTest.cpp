// The parsed type objects: kind codes, the value look-up, copying and the deep
// destruction of their member lists (a leak or double deletion fails under
// the address sanitizer).
#include <gtest/gtest.h>

#include <string>

#include "ParseS2T.h"

TEST(ParsedObjects, KindCodesAndFindValTakesTheFirstOfAName) {
    CDefines d;
    CEnum e;
    CStructVar v;
    CStruct s;
    CUnionVar m;
    CUnion u;
    EXPECT_EQ("012345", std::to_string(d.GetObjTypes()) + std::to_string(e.GetObjTypes()) +
                            std::to_string(v.GetObjTypes()) + std::to_string(s.GetObjTypes()) +
                            std::to_string(m.GetObjTypes()) + std::to_string(u.GetObjTypes()));
    EXPECT_EQ(kNoValue, e.FindVal("A"));
    for (auto const& value : {std::pair<char const*, int32_t>{"A", 1}, {"A", 2}, {"b", 3}}) {
        CDefines* entry = new CDefines;
        entry->m_strName = value.first;
        entry->m_nValue = value.second;
        e.m_lstValues.AddTail(entry);
    }
    EXPECT_EQ(1, e.FindVal("A"));
    EXPECT_EQ(kNoValue, e.FindVal("B"));  // case-sensitive
}

TEST(ParsedObjects, CopyVarsAppendsIndependentCopiesAndOwnersDeleteDeeply) {
    CParseS2T* parser = new CParseS2T;
    CUnion* target = new CUnion;
    target->m_lstVars.AddTail(new CUnionVar);
    target->m_lstVars.GetTail()->m_strName = "old";
    CUnion* source = new CUnion;
    source->m_lstVars.AddTail(new CUnionVar);
    CUnionVar* pointer = source->m_lstVars.GetTail();
    pointer->m_strName = "p_x";
    pointer->m_strType = "unsigned short";
    pointer->m_nType = FIELD_POINTER;
    pointer->m_nPointedType = FIELD_INT;
    pointer->m_nArraySize = 4;
    target->CopyVars(source->m_lstVars);
    delete source;
    std::string members;
    for (void* pos = target->m_lstVars.GetHeadPosition(); pos;) {
        CUnionVar* m = target->m_lstVars.GetNext(pos);
        members += std::string(m->m_strType) + " " + std::string(m->m_strName) + ":" + std::to_string(m->m_nType) +
                   "/" + std::to_string(m->m_nPointedType) + "x" + std::to_string(m->m_nArraySize) + ";";
    }
    EXPECT_EQ(" old:0/0x1;unsigned short p_x:5/0x4;", members);
    CStruct* s = new CStruct;
    s->m_lstVars.AddTail(new CStructVar);
    s->m_lstVars.AddTail(nullptr);
    CEnum* e = new CEnum;
    e->m_lstValues.AddTail(new CDefines);
    parser->m_StructList.AddTail(s);
    parser->m_EnumList.AddTail(e);
    parser->m_UnionList.AddTail(target);
    delete parser;
}
