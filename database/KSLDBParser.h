// The record-level reader of the database file. Where the loader copies a file
// into the store, this reader merges a file into a target store while checking
// it against an optional store of predefined records: it refuses duplicate
// names and identifiers, hands out identifiers to messages written with "-",
// and records conflicts in the run context. Its message lines may be preceded
// by position lines "# <line> <file>". KSManUtil merge drives it.
#pragma once

#include <cstdint>

#include "CFile.h"
#include "CString.h"
#include "Collections.h"
#include "Records.h"
#include "RunContext.h"

class CStorage;

// What kind of database a file is; it decides the duplicate messages.
enum eFileType : int32_t {
    FILE_ORDINARY = 0,
    FILE_INIT = 1,
    FILE_PREDEFINED = 2,
};

// One "nvm" line, cut as the loader cuts it.
class CNvmRecord {
public:
    CString m_strField1;  // structure name, or the field's type name in the structure-field shape
    CString m_strField2;  // structure name in the structure-field shape, else empty
    CString m_strField3;  // field name (other shapes)
    CString m_strField4;  // kind text
    CString m_strField5;  // type text, or the field name in the structure-field shape
    int32_t m_nValue = 0;
    int32_t m_nFlag = 0;  // 1 when the column reads as a non-zero number
    CString m_strInfo;
    CString m_strTagText;  // description, possibly followed by the documentation markers

    // Fields 3, 4 and 5 all empty.
    bool IsHeader() const;
    CString const& StructName() const;
    CString const& FieldName() const;
};

// One "Enums" line.
class CEnumRecord {
public:
    CString m_strEnumName;
    CString m_strName;
    int32_t m_nValue = 0;
    CString m_strDescription;
};

// One "Unions" line.
class CUnionRecord {
public:
    CString m_strUnionName;
    CString m_strName;
    CString m_strTypeText;  // third column
    CString m_strKindText;  // fourth column
    int32_t m_nValue = 0;
    CString m_strRest;  // the trailing column, not used
};

class CKSLDBParser {
public:
    // predefined may be null. The stores and the run context are not owned.
    CKSLDBParser(CStorage* storage, CStorage* predefined, stData* data);
    CKSLDBParser(CKSLDBParser const&) = delete;
    CKSLDBParser& operator=(CKSLDBParser const&) = delete;

    // True when the sections were read to their end, or up to a section this
    // reader does not know; false when the file cannot be opened (after the
    // message of its type) or ends early.
    bool ParseFile(char const* path, eFileType type);
    // The last ParseFile failed because its file could not be opened.
    bool LastOpenFailed() const { return m_bOpenFailed; }

    void BuildCommandsInfo();
    void BuildReportsInfo();
    void BuildParametersInfo();
    void BuildStructsInfo();
    void BuildEnumTitlesInfo();
    void BuildEnumsInfo();
    void BuildUnionsInfo();
    void BuildUnionIdentifiersInfo();

    // Each false at "<end>" or at the end of the file.
    bool GetDBRecord(stMessage* message);
    bool GetNvmDBRecord(CNvmRecord* record);
    bool GetEnumDBRecord(CEnumRecord* record);
    bool GetUnionDBRecord(CUnionRecord* record);
    bool GetParameter(CString& name, CString& value);
    // A line with fewer than three commas continues the previous title: it
    // comes back whole in rest, with an empty name.
    bool GetEnumTitle(CString& name, CString& rest);
    bool GetUnionIdentifiers(CString& first, CString& second);
    // Stores the version only when one was read; returns whether one was.
    bool GetDBVersion(uint32_t& version) const;
    // "#", blanks, the line number, blanks, the file; false (message unchanged)
    // when no blank or tab follows the number.
    bool GetFileLine(CString const& line, stMessage* message);

    void ParseStructVar(stStructVar& field, CNvmRecord* record);
    void ParseUnionVar(stStructVar& member, CUnionRecord* record);
    // Splits the documentation text at its markers into the field's description,
    // mode, unit and dependency.
    void SetStructVarParameters(stStructVar& field, CString const& tagText);

    CMapStringToString const& EnumTitles() const { return m_EnumTitles; }

private:
    struct MessageTexts;
    struct RunState;
    template <class Ops>
    void BuildMessagesInfo(MessageTexts const& texts);
    template <class Ops, class Record>
    bool AssignIdentifier(MessageTexts const& texts, CString const& name, Record* pending);
    void ReportDuplicateName(MessageTexts const& texts, CString const& name, stMessage const& pending,
                             stMessage const& existing);

    bool ReadLine(CString& line);
    bool ReadRecordLine(CString& line);
    bool SkipSection();
    bool ReadVersionSection();
    bool ReadLaterSections(CString& header);
    void RecordFatal(char const* format, CString const& name);

    void StartStruct(RunState& state, CNvmRecord const& record);
    void StartUnion(RunState& state, CString const& name);
    bool StartEnum(stEnum*& current, CString const& name);
    void ApplyEnumTitle(stEnum& record);

    CStorage* m_pStorage;
    CStorage* m_pPredefined;
    stData* m_pData;
    CFile m_File;
    int32_t m_nVersion = 0;
    bool m_bVersionRead = false;
    eFileType m_eFileType = FILE_ORDINARY;
    CMapStringToString m_EnumTitles;
    bool m_bOpenFailed = false;
};
