// CParseS2T: transfer of the parsed types into the type database. Runs once
// after a header has been parsed, in the order the signal run fixes:
// enumerations, unions, structures (each stored as a signal with its members),
// then the signal groups. Records are created here and belong to the store once
// added; the parser's own objects are read only and stay with the parser.
#include "ParseS2T.h"

#include <cstdio>

#include "Records.h"
#include "Storage.h"
#include "TransferTexts.h"

using namespace transfertexts;

namespace {

// A list entry of the expected class, or null (an entry of another kind is
// never transferred, so a mixed-up list cannot be misread).
CEnum* AsEnum(CObject* object) {
    return object && object->GetObjTypes() == OBJ_ENUM ? static_cast<CEnum*>(object) : nullptr;
}
CStruct* AsStruct(CObject* object) {
    return object && object->GetObjTypes() == OBJ_STRUCT ? static_cast<CStruct*>(object) : nullptr;
}
CStructVar* AsStructVar(CObject* object) {
    return object && object->GetObjTypes() == OBJ_STRUCTVAR ? static_cast<CStructVar*>(object) : nullptr;
}
CUnion* AsUnion(CObject* object) {
    return object && object->GetObjTypes() == OBJ_UNION ? static_cast<CUnion*>(object) : nullptr;
}

// One enumeration record under one name. A name the store already holds keeps
// the stored enumeration: the parsed one is dropped with a notice.
void TransferEnum(CStorage& store, CEnum const& parsed, CString const& name) {
    if (store.FindEnumByName(name)) {
        std::printf(kEnumExists, name.GetData());
        return;
    }
    stEnum* record = new stEnum;
    record->m_strName = name;
    record->m_Fields.Reserve(static_cast<uint32_t>(parsed.m_lstValues.GetCount()));
    for (void* pos = parsed.m_lstValues.GetHeadPosition(); pos;) {
        CObject* object = parsed.m_lstValues.GetNext(pos);
        if (object && object->GetObjTypes() == OBJ_DEFINE) {
            CDefines const* value = static_cast<CDefines const*>(object);
            record->AddField(value->m_strName, value->m_nValue);
        }
    }
    record->m_Fields.FreeExtra();
    store.AddEnum(record);
}

// The record kind of a union member: the field kind less one, never below 0,
// so characters and other primitives both become primitive.
int32_t UnionMemberKind(int32_t fieldKind) { return fieldKind > 0 ? fieldKind - 1 : 0; }

// The type name of a union member that is not a structure: the kind word,
// except for an enumeration (and any unknown kind), which keeps its own name.
CString UnionMemberType(CUnionVar const& member) {
    bool hasWord = member.m_nType >= FIELD_INT && member.m_nType <= FIELD_POINTER && member.m_nType != FIELD_ENUM;
    return hasWord ? CString(kUnionKindWords[member.m_nType]) : member.m_strType;
}

// The record of one union member. A structure member is flagged as a signal
// when its type names a parsed structure, since every parsed structure is
// stored as a signal.
void FillUnionMember(CParseS2T& parser, stStructVar& field, CUnionVar const& member) {
    field.m_strName = member.m_strName;
    field.m_nDim[0] = member.m_nArraySize;
    field.m_nKind = UnionMemberKind(member.m_nType);
    if (member.m_nType == FIELD_STRUCT) {
        field.m_strType = member.m_strType;
        field.m_strTypeText = kStructKindText;
        field.m_bSignal = parser.FindStructByName(member.m_strType) != nullptr;
    } else {
        field.m_strType = UnionMemberType(member);
        field.m_strTypeText = member.m_strType;
    }
}

// One signal member, appended to the signal.
void AddSignalVar(stSignal& signal, int32_t type, int32_t count, CString const& name, CString const& typeName) {
    signal.AddField(new stSignalVar{type, count, name, typeName, {}});
}

}  // namespace

bool CParseS2T::WriteEnums() {
    std::printf(kWriteEnums);
    int32_t count = 0;
    for (void* pos = m_EnumList.GetHeadPosition(); pos;) {
        CEnum* parsed = AsEnum(m_EnumList.GetNext(pos));
        if (!parsed) continue;
        ++count;
        if (!m_pStorage) continue;  // a parser without a store has nowhere to transfer to
        TransferEnum(*m_pStorage, *parsed, parsed->m_strName);
        // Each further name becomes an enumeration of its own with a full copy of the values.
        for (void* name = parsed->m_lstNames.GetHeadPosition(); name;) {
            TransferEnum(*m_pStorage, *parsed, parsed->m_lstNames.GetNext(name));
        }
    }
    std::printf(kTotalEnums, count);
    return true;
}

void CParseS2T::WriteUnions() {
    std::printf(kWriteUnions);
    int32_t count = 0;
    for (void* pos = m_UnionList.GetHeadPosition(); pos;) {
        CUnion* parsed = AsUnion(m_UnionList.GetNext(pos));
        if (!parsed) continue;
        ++count;
        if (!m_pStorage) continue;
        // The parsed union always replaces a stored one of the same name.
        m_pStorage->DeleteUnionByName(parsed->m_strName);
        stUnion* record = new stUnion;
        record->m_strName = parsed->m_strName;
        m_pStorage->AddUnion(record);
        record->m_Fields.Reserve(static_cast<uint32_t>(parsed->m_lstVars.GetCount()));
        for (void* var = parsed->m_lstVars.GetHeadPosition(); var;) {
            CUnionVar* member = parsed->m_lstVars.GetNext(var);
            if (member) FillUnionMember(*this, *record->m_Fields.Emplace(false), *member);
        }
        record->m_Fields.FreeExtra();  // the union is complete
    }
    std::printf(kTotalUnions, count);
}

void CParseS2T::WriteDB() {
    std::printf(kWriteStructs);
    int32_t count = 0;
    for (void* pos = m_StructList.GetHeadPosition(); pos;) {
        CStruct* parsed = AsStruct(m_StructList.GetNext(pos));
        if (!parsed) continue;
        ++count;
        if (!m_pStorage) continue;
        // The structure's own name, then each further name as a full, separate signal.
        CString const* name = &parsed->m_strName;
        void* alias = parsed->m_lstNames.GetHeadPosition();
        while (name) {
            stSignal* signal = new stSignal;
            signal->m_strName = *name;
            signal->m_strSecondName = parsed->m_strTag;
            WriteStruct(signal, parsed, parsed->m_strName, CString(), CString());
            m_pStorage->AddSignal(signal);
            name = alias ? &parsed->m_lstNames.GetNext(alias) : nullptr;
        }
    }
    std::printf(kTotalStructs, count);
}

// The signal name and the second string are not read: the members depend on
// the source structure alone.
void CParseS2T::WriteStruct(stSignal* signal, CStruct* source, CString, CString, CString prefix) {
    if (!signal || !source) return;
    for (void* pos = source->m_lstVars.GetHeadPosition(); pos;) {
        CStructVar* field = AsStructVar(source->m_lstVars.GetNext(pos));
        if (!field) continue;
        if (field->m_nType == FIELD_STRUCT) {
            // A member whose type is a parsed structure stores the type in the
            // name and the field name in the type name, crosswise on purpose:
            // the database line of such a member lists them in that order.
            if (prefix.IsEmpty() && FindStructByName(field->m_strType)) {
                AddSignalVar(*signal, SIGVAR_STRUCT, field->m_nArraySize, field->m_strType, field->m_strName);
            } else {
                AddSignalVar(*signal, SIGVAR_STRUCT, field->m_nArraySize, field->m_strName, field->m_strType);
            }
            continue;
        }
        // Without a prefix the field name is used as it stands: the copy a
        // member takes of it is the same as that of an empty prefix joined to it.
        CString prefixed;
        if (prefix.GetLength() > 0) prefixed = prefix + field->m_strName;
        CString const& name = prefix.GetLength() > 0 ? prefixed : field->m_strName;
        AddSignalVar(*signal, field->m_nType, field->m_nArraySize, name, field->m_strType);
        // Every further dimension becomes one more member of the same name.
        for (uint32_t i = 0; i < field->m_arrDims.GetSize(); ++i) {
            AddSignalVar(*signal, field->m_nType, static_cast<int32_t>(field->m_arrDims.GetAt(i)), name, field->m_strType);
        }
    }
}

// The version is carried by the run context; nothing to add here.
bool CParseS2T::WriteVersion() { return true; }

// The groups reached the store as the signal-identifier enumeration was parsed.
bool CParseS2T::WriteSignalGroups() {
    std::printf(kWriteSignalGroups);
    return true;
}

// The writer derives the signal table from the stored union and enumeration.
bool CParseS2T::BuildSignalTable() { return true; }
