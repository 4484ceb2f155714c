// The object model the header parser builds while it reads a signals header:
// structures, unions and enumerations with their fields, members and
// enumerators. The parser owns them until it is destroyed; the transfer step
// turns them into database records and the header generator prints them as C.
#pragma once

#include <cstdint>

#include "CString.h"
#include "Collections.h"

enum : int32_t {
    OBJ_DEFINE = 0,
    OBJ_ENUM = 1,
    OBJ_STRUCTVAR = 2,
    OBJ_STRUCT = 3,
    OBJ_UNIONVAR = 4,
    OBJ_UNION = 5,
};

// Field kinds of structure fields and union members.
enum : int32_t {
    FIELD_INT = 0,
    FIELD_CHAR = 1,
    FIELD_STRUCT = 2,
    FIELD_ENUM = 3,
    FIELD_UNION = 4,
    FIELD_POINTER = 5,
};

constexpr int32_t kNoValue = INT32_MIN;  // 0x80000000: a look-up that found nothing

class CObject {
public:
    virtual int GetObjTypes() = 0;

protected:
    CObject() = default;
    ~CObject() = default;  // objects are deleted through their own type
};

// A define-table entry, and an enumerator of an enumeration.
class CDefines final : public CObject {
public:
    int GetObjTypes() override { return OBJ_DEFINE; }

    CString m_strName;
    int32_t m_nValue = 0;
};

class CEnum : public CObject {
public:
    CEnum() = default;
    CEnum(CEnum const&) = delete;
    CEnum& operator=(CEnum const&) = delete;
    int GetObjTypes() override { return OBJ_ENUM; }
    virtual ~CEnum();

    // The value of the first enumerator of that name (case-sensitive), or kNoValue.
    int32_t FindVal(CString const& name) const;

    CString m_strName;
    CList<CObject*> m_lstValues;  // CDefines*, owned
    CStringList m_lstNames;
};

class CStructVar final : public CObject {
public:
    int GetObjTypes() override { return OBJ_STRUCTVAR; }

    int32_t m_nBitCount = 0;
    int32_t m_nType = FIELD_STRUCT;
    int32_t m_nPointedType = 0;
    CString m_strName;
    CString m_strType;
    int32_t m_nArraySize = 1;
    CUIntArray m_arrDims;  // dimensions after the first
};

class CStruct final : public CObject {
public:
    CStruct() = default;
    CStruct(CStruct const&) = delete;
    CStruct& operator=(CStruct const&) = delete;
    ~CStruct();
    int GetObjTypes() override { return OBJ_STRUCT; }

    CString m_strName;
    CString m_strTag;
    CList<CObject*> m_lstVars;  // CStructVar*, owned
    CStringList m_lstNames;
};

class CUnionVar final : public CObject {
public:
    CUnionVar() = default;
    explicit CUnionVar(CUnionVar const* src);
    int GetObjTypes() override { return OBJ_UNIONVAR; }

    int32_t m_nType = 0;
    int32_t m_nPointedType = 0;
    int32_t m_nArraySize = 1;
    CString m_strName;
    CString m_strType;
};

class CUnion final : public CObject {
public:
    CUnion() = default;
    CUnion(CUnion const&) = delete;
    CUnion& operator=(CUnion const&) = delete;
    ~CUnion();
    int GetObjTypes() override { return OBJ_UNION; }

    // Appends deep copies of src's members; src keeps its own.
    void CopyVars(CList<CUnionVar*>& src);

    CString m_strName;
    CList<CUnionVar*> m_lstVars;  // owned
};
