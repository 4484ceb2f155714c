// The records of the type database: structures with their fields, unions,
// enumerations with their enumerators, signals with their members, command and
// report messages, monitors, signal groups and union identifier pairs. The
// loader and the header transfer fill them, the store owns them once added, and
// the database writer prints them; member names say which column of the
// database file they hold.
#pragma once

#include <cstdint>

#include "CString.h"
#include "Collections.h"

// Field-kind codes of structure and union fields, as the database file uses them.
enum : int32_t {
    KIND_PRIMITIVE = 0,
    KIND_STRUCT = 1,
    KIND_ENUM = 2,
    KIND_UNION = 3,
    KIND_POINTER = 4,
};

constexpr int32_t kMaxDims = 10;

// One field of a structure or member of a union.
struct stStructVar {
    explicit stStructVar(bool bSignal = false);

    CString m_strName;
    CString m_strType;      // the type name looked up in the store
    CString m_strTypeText;  // the second type string, printed in the type column
    CString m_strDescription;
    int32_t m_nDim[kMaxDims];  // the value list: one database line per entry in use; all 1 at first
    int32_t m_nDimCount;       // entries in use; 0 still writes one line
    int32_t m_nKind;           // KIND_*
    bool m_bSignal;            // for KIND_STRUCT: the type names a signal
    CString m_strMode;
    CString m_strUnit;
    CString m_strDependency;

    void Clear();
    // Dimensions below this field's count, the counts (0 and 1 equal), kind,
    // type text, name and signal flag; documentation and m_strType do not count.
    bool operator==(stStructVar const& other) const;
    bool operator!=(stStructVar const& other) const { return !(*this == other); }
    // Description, mode and unit all present (the dependency is optional).
    bool IsAllDocExist() const;
};

struct stStruct {
    stStruct();
    stStruct(stStruct const& other);
    stStruct& operator=(stStruct const& other);
    virtual ~stStruct();
    virtual void Clear();

    CString m_strName;
    CStringList m_Aliases;
    int32_t m_nFlag;  // printed in the header line and in every field line
    CString m_strInfo;  // the second string, printed before the description
    CString m_strDescription;
    CString m_strDependency;
    CArray<stStructVar> m_Fields;

    // Same number of fields, pairwise equal, and equal names.
    bool operator==(stStruct const& other) const;
    bool operator!=(stStruct const& other) const { return !(*this == other); }

    void* GetFirstFieldPosition() const;
    // The field at pos, advancing pos; null once pos is null.
    stStructVar* GetNextField(void*& pos) const;
    // Appends a cleared field; the pointer is valid until the next field is added.
    stStructVar* GetNewField();
    void AddField(stStructVar const* field);
    // The same, taking the field's texts over instead of copying them.
    void AddField(stStructVar&& field);
    void CancelLastField();
    // Each sets the documentation of the last field; nothing without fields.
    void SetDescription(CString const& text);
    void SetMode(CString const& text);
    void SetUnit(CString const& text);
    void SetDependency(CString const& text);
};

struct stUnion : public stStruct {
    stUnion();
    void Clear() override;

    int32_t m_nSelector;
    CString m_strSelector;
};

struct stEnumVar {
    stEnumVar();
    stEnumVar(CString const& name, int32_t value, CString const& description);

    CString m_strName;
    int32_t m_nValue;
    CString m_strDescription;  // the enumerator line's third string

    void Set(CString const& name, int32_t value, CString const& description);
    // Name and value only.
    bool operator==(stEnumVar const& other) const;
    bool IsAllDocExist() const { return !m_strDescription.IsEmpty(); }
};

struct stEnum {
    stEnum();
    stEnum(stEnum const&) = default;
    stEnum& operator=(stEnum const&) = default;
    virtual ~stEnum();
    virtual void Clear();
    virtual void AddField(CString const& name, int32_t value);
    virtual void CopyVars(stEnum const& other);

    CString m_strName;
    CStringList m_Aliases;
    bool m_bFlag;           // printed as a number in the title line
    CString m_strTitle;     // first text column of the title line
    CString m_strDescription;  // second text column of the title line
    bool m_bHasTitle;       // the title line is written only when set (and the name is not empty)
    CArray<stEnumVar> m_Fields;
    int32_t m_nInitVal;
    int32_t m_nSizeof;  // 1, 2 or 4 bytes; never decreases
    int32_t m_nMaxVal;
    int32_t m_nMinVal;
    bool m_bHasNegative;

    void AddField(CString const& name, int32_t value, CString const& description);
    int32_t GetInitVal() const { return m_nInitVal; }
    void SetInitVal(int32_t value);
    void* GetFirstFieldPosition() const;
    // Copies the enumerator at pos out and advances; false once pos is null.
    bool GetNextField(CString& name, int32_t& value, CString& description, void*& pos) const;
    // Same enumerators in order (name and value) and equal names.
    bool operator==(stEnum const& other) const;
    bool operator!=(stEnum const& other) const { return !(*this == other); }
    // False without a description; otherwise every enumerator has one.
    bool IsAllDocExist() const;

private:
    void ApplySizeRule(int32_t value);
};

struct stUnionIdentifier {
    stUnionIdentifier(CString const& unionName, CString const& identifier)
        : m_strUnionName(unionName), m_strIdentifier(identifier) {}

    CString m_strUnionName;
    CString m_strIdentifier;
};

struct stGroup {
    stGroup() = default;
    stGroup(CString const& name, int32_t baseValue) : m_strName(name), m_nBaseValue(baseValue) {}

    CString m_strName;
    int32_t m_nBaseValue = 0;

    bool operator<(stGroup const& other) const { return m_nBaseValue < other.m_nBaseValue; }
};

// The common part of command and report messages.
struct stMessage {
    stMessage() = default;
    virtual ~stMessage() = default;

    CString m_strFormat;  // the message text; one containing "%S" is a structure print
    CString m_strCat1;
    CString m_strCat2;
    CString m_strCat3;
    int32_t m_nLeadingNumber = 0;  // first column of the message line
    int32_t m_nID = 0;             // second column: the identifier
    CString m_strSourceFile;       // from a position line of the record reader
    int32_t m_nSourceLine = 0;     // likewise
    CString m_strReserved1;
    CString m_strReserved2;
    int32_t m_nReserved = 0;
    int32_t m_nTrailingNumber = 0;  // fourth column of the message line

    // "%s__%s__%s" of the three categories.
    void GetFullName(CString& name) const;
    CString GetFullName() const;
};

struct stCommand : public stMessage {
    CString m_strCommandExtra;
};

struct stReport : public stMessage {
    stReport();

    CString m_strReportExtra1;
    CString m_strReportExtra2;
    bool m_bWrap = false;  // written wrapped in "diagPrintf(" / "diagStructPrintf("
    bool m_bReserved1 = false;
    int32_t m_nReserved1 = 0;
    bool m_bReserved2 = false;
    int32_t m_nFilterState;
    int32_t m_nReserved2 = 3;
    int32_t m_nReserved3 = 0;
    int32_t m_nReserved4 = -1;

    static bool m_bDefaultFiltered;
};

struct stMonitor {
    CString m_strName;
    CString m_strSecond;
    CString m_strThird;
    int32_t m_nIndex = 0;   // assigned by the store; not written
    int32_t m_nFlag = 0;    // written as 0 or 1
    int32_t m_nNumber = 0;  // written first on the monitor line
    CString m_strFourth;
};

// Type codes of signal members, printed with the SignalVarType words.
enum : int32_t {
    SIGVAR_INT = 0,
    SIGVAR_CHAR = 1,
    SIGVAR_STRUCT = 2,
    SIGVAR_ENUM = 3,
    SIGVAR_UNION = 4,
    SIGVAR_POINTER = 5,
};

// The two numbers stand together so that a member takes 96 bytes: a large
// header stores hundreds of thousands of members.
struct stSignalVar {
    int32_t m_nType = SIGVAR_STRUCT;  // 2: refers to another signal by name
    int32_t m_nCount = 1;             // the member's number
    CString m_strName;
    CString m_strTypeName;
    CUIntArray m_Values;  // extra numbers, one more line each
};

struct stSignal {
    stSignal() = default;
    stSignal(stSignal const&) = delete;
    stSignal& operator=(stSignal const&) = delete;
    ~stSignal();

    CString m_strName;
    CString m_strSecondName;
    CList<stSignalVar*> m_Fields;
    CStringList m_Names;  // further names, each written as a full signal

    void AddField(stSignalVar* field) { m_Fields.AddTail(field); }
};
