// The parsed type objects: kind codes, construction, copying, look-up and the
// deep destruction of their member lists.
#include <gtest/gtest.h>

#include <string>

#include "ParseS2T.h"
#include "ParsedObjects.h"

namespace {

CDefines* Enumerator(char const* name, int32_t value) {
    CDefines* entry = new CDefines;
    entry->m_strName = name;
    entry->m_nValue = value;
    return entry;
}

CUnionVar* Member(char const* name, char const* type, int32_t kind) {
    CUnionVar* member = new CUnionVar;
    member->m_strName = name;
    member->m_strType = type;
    member->m_nType = kind;
    return member;
}

std::string Members(CUnion const& u) {
    std::string out;
    for (void* pos = u.m_lstVars.GetHeadPosition(); pos;) {
        CUnionVar* m = u.m_lstVars.GetNext(pos);
        out += std::string(m->m_strType) + " " + std::string(m->m_strName) + ":" + std::to_string(m->m_nType) + "/" +
               std::to_string(m->m_nPointedType) + "x" + std::to_string(m->m_nArraySize) + ";";
    }
    return out;
}

}  // namespace

TEST(ParsedObjects, KindCodes) {
    CDefines d;
    CEnum e;
    CStructVar v;
    CStruct s;
    CUnionVar m;
    CUnion u;
    EXPECT_EQ(0, d.GetObjTypes());
    EXPECT_EQ(1, e.GetObjTypes());
    EXPECT_EQ(2, v.GetObjTypes());
    EXPECT_EQ(3, s.GetObjTypes());
    EXPECT_EQ(4, m.GetObjTypes());
    EXPECT_EQ(5, u.GetObjTypes());
}

TEST(ParsedObjects, FreshObjectsStartAsDescribed) {
    CStructVar v;
    EXPECT_EQ(FIELD_STRUCT, v.m_nType);
    EXPECT_EQ(1, v.m_nArraySize);
    EXPECT_EQ(0, v.m_nBitCount);
    EXPECT_EQ(0u, v.m_arrDims.GetSize());
    CUnionVar m;
    EXPECT_EQ(0, m.m_nType);
    EXPECT_EQ(0, m.m_nPointedType);
    EXPECT_EQ(1, m.m_nArraySize);
    EXPECT_TRUE(m.m_strName.IsEmpty());
    CDefines d;
    EXPECT_TRUE(d.m_strName.IsEmpty());
}

TEST(ParsedObjects, FindValTakesTheFirstOfAName) {
    CEnum e;
    EXPECT_EQ(kNoValue, e.FindVal("A"));
    e.m_lstValues.AddTail(Enumerator("A", 1));
    e.m_lstValues.AddTail(nullptr);
    e.m_lstValues.AddTail(Enumerator("A", 2));
    e.m_lstValues.AddTail(Enumerator("b", 3));
    EXPECT_EQ(1, e.FindVal("A"));
    EXPECT_EQ(kNoValue, e.FindVal("B"));  // case-sensitive
}

TEST(ParsedObjects, CopyVarsAppendsIndependentCopies) {
    CUnion target;
    target.m_lstVars.AddTail(Member("old", "UINT8", FIELD_CHAR));
    CUnion* source = new CUnion;
    CUnionVar* pointer = Member("p_x", "unsigned short", FIELD_POINTER);
    pointer->m_nPointedType = FIELD_INT;
    pointer->m_nArraySize = 4;
    source->m_lstVars.AddTail(pointer);
    source->m_lstVars.AddTail(Member("u", "U", FIELD_UNION));
    target.CopyVars(source->m_lstVars);
    EXPECT_EQ(2, source->m_lstVars.GetCount());
    delete source;
    EXPECT_EQ("UINT8 old:1/0x1;unsigned short p_x:5/0x4;U u:4/0x1;", Members(target));
}

TEST(ParsedObjects, DestructionIsDeep) {
    // Run under the address sanitizer, a leak or a double deletion fails here.
    CStruct* s = new CStruct;
    s->m_lstVars.AddTail(new CStructVar);
    s->m_lstVars.AddTail(nullptr);
    s->m_lstNames.AddTail("Other");
    CEnum* e = new CEnum;
    e->m_lstValues.AddTail(Enumerator("A", 1));
    CUnion* u = new CUnion;
    u->m_lstVars.AddTail(Member("m", "T", FIELD_INT));
    CParseS2T* parser = new CParseS2T;
    parser->m_StructList.AddTail(s);
    parser->m_EnumList.AddTail(e);
    parser->m_UnionList.AddTail(u);
    delete parser;
    SUCCEED();
}
