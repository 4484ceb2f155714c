// Parsed objects built by hand into a parser's lists, as the header reader
// leaves them, for the tests of what is done with them afterwards: the value
// look-ups, the transfer into the store and the header generator.
#pragma once

#include <initializer_list>
#include <utility>

#include "ParseS2T.h"

namespace built {

struct Field {
    int32_t kind;
    char const* type;
    char const* name;
    int32_t count = 1;
};

using Values = std::initializer_list<std::pair<char const*, int32_t>>;

template <typename Var, typename List>
void AddVars(List& vars, std::initializer_list<Field> fields) {
    for (Field const& field : fields) {
        Var* var = new Var;
        var->m_nType = field.kind;
        var->m_strType = field.type;
        var->m_strName = field.name;
        var->m_nArraySize = field.count;
        vars.AddTail(var);
    }
}

// The last field of a structure, to give it further dimensions.
inline CStructVar* LastField(CStruct& record) { return static_cast<CStructVar*>(record.m_lstVars.GetTail()); }

inline CStruct& AddStruct(CParseS2T& parser, char const* name, std::initializer_list<Field> fields,
                          char const* tag = "") {
    CStruct* record = new CStruct;
    record->m_strName = name;
    record->m_strTag = tag;
    AddVars<CStructVar>(record->m_lstVars, fields);
    parser.m_StructList.AddTail(record);
    return *record;
}

inline CUnion& AddUnion(CParseS2T& parser, char const* name, std::initializer_list<Field> members) {
    CUnion* record = new CUnion;
    record->m_strName = name;
    AddVars<CUnionVar>(record->m_lstVars, members);
    parser.m_UnionList.AddTail(record);
    return *record;
}

inline CEnum& AddEnum(CParseS2T& parser, char const* name, Values values) {
    CEnum* record = new CEnum;
    record->m_strName = name;
    for (auto const& value : values) {
        CDefines* entry = new CDefines;
        entry->m_strName = value.first;
        entry->m_nValue = value.second;
        record->m_lstValues.AddTail(entry);
    }
    parser.m_EnumList.AddTail(record);
    return *record;
}

}  // namespace built
