// The record reader: reads a database file section by section into a target
// store, checking names and identifiers against that store and against an
// optional store of predefined records. The sections are read in their fixed
// order, each header compared as a whole line. It knows no "MonitorParams"
// section, and the writer puts one right after "Parameters": a file the writer
// made is therefore read up to its parameters, and that read counts as complete.
// Lines are cut into fields at commas, as the loader cuts them.
#include "KSLDBParser.h"

#include <cstdio>

#include "DatabaseFields.h"
#include "DatabaseTexts.h"
#include "NumberText.h"
#include "Storage.h"

using namespace dbtexts;

namespace {

constexpr int32_t kLowestVisible = 33;  // blanks, tabs and control bytes lie below

using dbfields::CutField;

// The third column of a structure line runs through ")," when its own text
// holds "(": "f(a,b),x" gives "f(a,b)". Unlike the loader, a "(" in a later
// column (a description) does not pull the columns between into this one.
CString CutThirdField(CString& rest) {
    int32_t open = rest.Find('(');
    int32_t comma = rest.Find(',');
    if (open >= 0 && (comma < 0 || open < comma)) {
        int32_t close = rest.Find("),", open);
        if (close >= 0) {
            CString field = rest.Left(close + 1);
            rest = rest.Mid(close + 2);
            return field;
        }
    }
    return CutField(rest);
}

// A number column of a message line: a text reading as 0 behind a leading "-"
// ("-" alone, "-x") means -1, not assigned.
int32_t NumberOrUnassigned(CString const& field) {
    int32_t value = Atoi32(field);
    if (value == 0 && field.GetLength() > 0 && field.GetAt(0) == '-') return -1;
    return value;
}

int32_t SkipBelowVisible(CString const& line, int32_t pos) {
    while (pos < line.GetLength() && static_cast<unsigned char>(line.GetAt(pos)) < kLowestVisible) ++pos;
    return pos;
}

bool HasAtLeastThreeCommas(CString const& line) {
    int32_t count = 0;
    for (int32_t pos = line.Find(','); pos >= 0 && count < 3; pos = line.Find(',', pos + 1)) ++count;
    return count >= 3;
}

void CutMessageLine(CString const& line, stMessage& message) {
    CString rest = line;
    message.m_nLeadingNumber = NumberOrUnassigned(CutField(rest));
    message.m_nID = NumberOrUnassigned(CutField(rest));
    CutField(rest);  // command or report: the section says which
    message.m_nTrailingNumber = Atoi32(CutField(rest));
    message.m_strCat1 = CutField(rest);
    message.m_strCat2 = CutField(rest);
    message.m_strCat3 = CutField(rest);
    message.m_strFormat = rest;
}

// "identifier + 1", kept at the largest identifier instead of wrapping.
int32_t NextAfter(int32_t id) {
    return id == INT32_MAX ? id : id + 1;
}

// The store routines of one message kind, so that commands and reports share
// one builder.
struct CommandOps {
    using Record = stCommand;
    static constexpr bool kIsReport = false;
    static stCommand* FindByName(CStorage& s, CString const& n) { return s.FindCommandByName(n); }
    static stCommand* FindById(CStorage& s, int32_t id) { return s.FindCommandById(id); }
    static void Add(CStorage& s, stCommand* r, CString const& n) { s.AddCommand(r, n); }
    static void Delete(CStorage& s, CString const& n) { s.DeleteCommandByName(n); }
    static bool Same(CStorage& s, stCommand const& a, stCommand const& b) { return s.CompareCommands(a, b); }
    static int32_t NextId(CStorage& s, int32_t* cursor) { return s.GetNextAvailableCommandID(cursor); }
    static int32_t& MaxId(stData& d) { return d.m_nMaxCommandID; }
};

struct ReportOps {
    using Record = stReport;
    static constexpr bool kIsReport = true;
    static stReport* FindByName(CStorage& s, CString const& n) { return s.FindReportByName(n); }
    static stReport* FindById(CStorage& s, int32_t id) { return s.FindReportById(id); }
    static void Add(CStorage& s, stReport* r, CString const& n) { s.AddReport(r, n); }
    static void Delete(CStorage& s, CString const& n) { s.DeleteReportByName(n); }
    static bool Same(CStorage& s, stReport const& a, stReport const& b) { return s.CompareReports(a, b); }
    static int32_t NextId(CStorage& s, int32_t* cursor) { return s.GetNextAvailableReportID(cursor); }
    static int32_t& MaxId(stData& d) { return d.m_nMaxReportID; }
};

}  // namespace

struct CKSLDBParser::MessageTexts {
    char const* dupInit;
    char const* dupPredefined;
    char const* dupWarning;
    char const* mismatch;
    char const* dupId;
};

// The structure or union being filled and its pending field. The writer puts
// one line per value of a field, so consecutive lines of one field name are
// joined back into one field holding a value per line. A field holds at most
// ten values: an eleventh line starts a second field of the same name, so no
// value is lost and none is stored past the end of the value list.
struct CKSLDBParser::RunState {
    bool started = false;
    CString name;               // the record the last line belonged to
    stStruct* owner = nullptr;  // null while a refused record's lines are skipped
    stStructVar field;
    bool hasField = false;

    bool AppendValue(CString const& fieldName, int32_t value) {
        if (!hasField || field.m_strName != fieldName || field.m_nDimCount >= kMaxDims) return false;
        field.m_nDim[field.m_nDimCount++] = value;
        return true;
    }
    void Flush() {
        if (hasField && owner) owner->AddField(&field);
        hasField = false;
    }
};

CKSLDBParser::CKSLDBParser(CStorage* storage, CStorage* predefined, stData* data)
    : m_pStorage(storage), m_pPredefined(predefined), m_pData(data) {}

// ---- File and sections ----

bool CKSLDBParser::ParseFile(char const* path, eFileType type) {
    m_bOpenFailed = false;
    if (!m_File.Open(path, "rb")) {
        m_bOpenFailed = true;
        // The Init database fails silently; its caller knows what it asked for.
        if (type == FILE_PREDEFINED)
            std::printf(kOpenPredefinedFailed, path ? path : "");
        else if (type == FILE_ORDINARY)
            std::printf(kOpenOrdinaryFailed, path ? path : "");
        return false;
    }
    m_eFileType = type;
    CString header;
    if (!ReadLine(header)) return false;
    m_EnumTitles.RemoveAll();
    if (header == kDbVersion && (!ReadVersionSection() || !ReadLine(header))) return false;
    if (header == kEnumVals) {
        BuildCommandsInfo();
        if (!ReadLine(header)) return false;
        if (header == kEnumVals) {
            BuildReportsInfo();
            if (!ReadLine(header)) return false;
        }
    }
    if (!ReadLaterSections(header)) return false;
    m_File.Close();
    return true;
}

// Every section after the messages, each read only when the current header
// names it. A header none of them names ends the read: the rest of the file is
// not looked at.
bool CKSLDBParser::ReadLaterSections(CString& header) {
    struct Section {
        char const* keyword;
        void (CKSLDBParser::*build)();
    };
    static constexpr Section kSections[] = {
        {kParameters, &CKSLDBParser::BuildParametersInfo},
        {kNvm, &CKSLDBParser::BuildStructsInfo},
        {kEnumsTitle, &CKSLDBParser::BuildEnumTitlesInfo},
        {kEnums, &CKSLDBParser::BuildEnumsInfo},
        {kUnions, &CKSLDBParser::BuildUnionsInfo},
        {kSignals, nullptr},
        {kSignalTable, nullptr},
        {kGroups, nullptr},
    };
    for (Section const& section : kSections) {
        if (header != section.keyword) continue;
        if (section.build)
            (this->*section.build)();
        else if (!SkipSection())
            return false;
        if (!ReadLine(header)) return false;
    }
    // The last section: nothing follows it, so no further header is read.
    if (header == kUnionIdentifiers) BuildUnionIdentifiersInfo();
    return true;
}

bool CKSLDBParser::ReadLine(CString& line) {
    return m_File.ReadString(line) != 0;
}

bool CKSLDBParser::ReadRecordLine(CString& line) {
    return ReadLine(line) && !line.StartsWith(kEnd);
}

bool CKSLDBParser::SkipSection() {
    CString line;
    while (ReadLine(line)) {
        if (line.StartsWith(kEnd)) return true;
    }
    return false;
}

// The first line of the section is the version, unless this object has read
// one already: a second file never changes it.
bool CKSLDBParser::ReadVersionSection() {
    CString line;
    bool first = true;
    while (ReadLine(line)) {
        if (line.StartsWith(kEnd)) return true;
        if (first && !m_bVersionRead) {
            m_nVersion = Atoi32(line);
            m_bVersionRead = true;
        }
        first = false;
    }
    return false;
}

bool CKSLDBParser::GetDBVersion(uint32_t& version) const {
    if (m_bVersionRead) version = static_cast<uint32_t>(m_nVersion);
    return m_bVersionRead;
}

void CKSLDBParser::RecordFatal(char const* format, CString const& name) {
    m_pData->m_bFatalError = true;
    m_pData->m_strFatalError.Format(format, name.GetData());
}

// ---- Messages ----

bool CKSLDBParser::GetDBRecord(stMessage* message) {
    CString line;
    if (!ReadRecordLine(line)) return false;
    if (line.GetLength() > 0 && line.GetAt(0) == '#') {
        GetFileLine(line, message);
        // The line after a position line is the message, whatever it holds:
        // even "<end>" is taken as a message line there.
        if (!ReadLine(line)) return false;
    }
    CutMessageLine(line, *message);
    return true;
}

bool CKSLDBParser::GetFileLine(CString const& line, stMessage* message) {
    int32_t start = SkipBelowVisible(line, 1);
    int32_t end = line.FindOneOf(" \t", start);
    if (end < 0) return false;
    message->m_nSourceLine = Atoi32(line.Mid(start, end - start));
    message->m_strSourceFile = line.Mid(SkipBelowVisible(line, end));
    return true;
}

void CKSLDBParser::BuildCommandsInfo() {
    static constexpr MessageTexts kTexts = {kDupCommandInit, kDupCommandPredefined, kDupCommandWarning,
                                            kMismatchCommand, kDupCommandId};
    BuildMessagesInfo<CommandOps>(kTexts);
}

void CKSLDBParser::BuildReportsInfo() {
    static constexpr MessageTexts kTexts = {kDupReportInit, kDupReportPredefined, kDupReportWarning, kMismatchReport,
                                            kDupReportId};
    BuildMessagesInfo<ReportOps>(kTexts);
}

// One pending record is filled line after line and replaced only once the
// store has taken it. A message that receives its identifier here (written
// with "-") is not added: the next line overwrites it. Kept, so that an Init
// database merges into the same output it always did.
template <class Ops>
void CKSLDBParser::BuildMessagesInfo(MessageTexts const& texts) {
    using Record = typename Ops::Record;
    Record* pending = new Record;
    while (GetDBRecord(pending)) {
        CString name = pending->GetFullName();
        if (Ops::kIsReport && name == kPrintfReportName) continue;  // the writer's fixed first report
        if (Record* existing = Ops::FindByName(*m_pStorage, name)) {
            ReportDuplicateName(texts, name, *pending, *existing);
        } else if (pending->m_nID == -1) {
            if (!AssignIdentifier<Ops>(texts, name, pending)) return;
        } else if (Ops::FindById(*m_pStorage, pending->m_nID)) {
            RecordFatal(texts.dupId, name);
        } else {
            int32_t& highest = Ops::MaxId(*m_pData);
            if (highest <= pending->m_nID) highest = NextAfter(pending->m_nID);
            if (Ops::kIsReport) pending->m_nLeadingNumber = m_pData->m_nDbVersionMinor;
            Ops::Add(*m_pStorage, pending, name);
            pending = new Record;
        }
    }
    delete pending;
}

// The numbers of an unassigned message: taken from the predefined message of
// the same name, or newly handed out. A predefined message with another text
// ends the section; the pending record is then destroyed and false returned.
template <class Ops, class Record>
bool CKSLDBParser::AssignIdentifier(MessageTexts const& texts, CString const& name, Record* pending) {
    Record* predefined = m_pPredefined ? Ops::FindByName(*m_pPredefined, name) : nullptr;
    if (!predefined) {
        pending->m_nLeadingNumber = m_pData->m_nDbVersionMinor;
        CStorage& source = m_pPredefined ? *m_pPredefined : *m_pStorage;
        pending->m_nID = Ops::NextId(source, &Ops::MaxId(*m_pData));
        return true;
    }
    bool same = Ops::Same(*m_pPredefined, *pending, *predefined);
    pending->m_nLeadingNumber = predefined->m_nLeadingNumber;
    pending->m_nID = predefined->m_nID;
    Ops::Delete(*m_pPredefined, name);
    if (same) return true;
    m_pData->m_strFatalError.Format(texts.mismatch, name.GetData(), pending->m_nSourceLine);
    m_pData->m_bFatalError = true;
    delete pending;
    return false;
}

// An ordinary file only warns (on standard output, and as an error of level 3
// that counts only where the run admits it); the Init and predefined databases
// record a fatal error.
void CKSLDBParser::ReportDuplicateName(MessageTexts const& texts, CString const& name, stMessage const& pending,
                                       stMessage const& existing) {
    if (m_eFileType != FILE_ORDINARY) {
        RecordFatal(m_eFileType == FILE_INIT ? texts.dupInit : texts.dupPredefined, name);
        return;
    }
    CString warning;
    warning.Format(texts.dupWarning, name.GetData(), pending.m_strSourceFile.GetData(),
                   existing.m_strSourceFile.GetData());
    std::printf("%s\n", warning.GetData());
    m_pData->SetFatalError(warning, 3);
}

// ---- Parameters, titles, identifiers ----

bool CKSLDBParser::GetParameter(CString& name, CString& value) {
    if (!ReadRecordLine(value)) return false;
    name = CutField(value);
    return true;
}

void CKSLDBParser::BuildParametersInfo() {
    CString name, value;
    while (GetParameter(name, value)) {
        if (name == kKscVersion) m_pData->m_KscVersions[value] = nullptr;
    }
}

bool CKSLDBParser::GetEnumTitle(CString& name, CString& rest) {
    if (!ReadRecordLine(rest)) return false;
    if (HasAtLeastThreeCommas(rest))
        name = CutField(rest);
    else
        name.Empty();
    return true;
}

// A line without the title's columns continues the description of the title
// before it, as the writer splits a description holding a line feed; before
// any title such a line has nowhere to go and is dropped.
void CKSLDBParser::BuildEnumTitlesInfo() {
    CString name, rest, last;
    bool haveLast = false;
    while (GetEnumTitle(name, rest)) {
        if (name.IsEmpty()) {
            if (haveLast) m_EnumTitles[last] += rest;
            continue;
        }
        // operator[] compares every node of the chain, so a later title of the
        // same name always replaces the earlier one.
        m_EnumTitles[name] = rest;
        last = name;
        haveLast = true;
    }
}

bool CKSLDBParser::GetUnionIdentifiers(CString& first, CString& second) {
    if (!ReadRecordLine(second)) return false;
    first = CutField(second);
    return true;
}

void CKSLDBParser::BuildUnionIdentifiersInfo() {
    CString first, second;
    while (GetUnionIdentifiers(first, second)) m_pStorage->AddUnionIdentifier(first, second);
}

// ---- Enumerations ----

bool CKSLDBParser::GetEnumDBRecord(CEnumRecord* record) {
    CString rest;
    if (!ReadRecordLine(rest)) return false;
    record->m_strEnumName = CutField(rest);
    record->m_strName = CutField(rest);
    record->m_nValue = Atoi32(CutField(rest));
    record->m_strDescription = rest;
    return true;
}

void CKSLDBParser::BuildEnumsInfo() {
    CEnumRecord record;
    CString previous;
    bool started = false;
    stEnum* current = nullptr;
    while (GetEnumDBRecord(&record)) {
        if (!started || record.m_strEnumName != previous) {
            started = true;
            previous = record.m_strEnumName;
            if (!StartEnum(current, previous)) return;
        }
        if (current) current->AddField(record.m_strName, record.m_nValue, record.m_strDescription);
    }
}

// The enumeration for a new run of lines; null when its lines are skipped.
// False when the section must stop.
bool CKSLDBParser::StartEnum(stEnum*& current, CString const& name) {
    current = nullptr;
    if (m_pStorage->FindEnumByName(name)) {
        if (m_eFileType == FILE_ORDINARY) return true;
        RecordFatal(m_eFileType == FILE_INIT ? kDupEnumInit : kDupEnumPredefined, name);
        return false;
    }
    // A nameless enumeration is never stored, so its lines have nowhere to go.
    if (name.IsEmpty()) return true;
    current = new stEnum;
    current->m_strName = name;
    ApplyEnumTitle(*current);
    m_pStorage->AddEnum(current);
    return true;
}

// The title's flag, second string and description are taken over, but the
// enumeration is not marked as having a title: unlike a loaded database, a
// merged one is written without the title lines of the file it came from.
void CKSLDBParser::ApplyEnumTitle(stEnum& record) {
    CString rest;
    if (!m_EnumTitles.Lookup(record.m_strName, rest)) return;
    record.m_bFlag = Atoi32(CutField(rest)) != 0;
    record.m_strTitle = CutField(rest);
    record.m_strDescription = rest;
}

// ---- Structures ----

bool CNvmRecord::IsHeader() const {
    return m_strField3.IsEmpty() && m_strField4.IsEmpty() && m_strField5.IsEmpty();
}

CString const& CNvmRecord::StructName() const {
    return m_strField2.IsEmpty() ? m_strField1 : m_strField2;
}

CString const& CNvmRecord::FieldName() const {
    return m_strField2.IsEmpty() ? m_strField3 : m_strField5;
}

bool CKSLDBParser::GetNvmDBRecord(CNvmRecord* record) {
    CString rest;
    if (!ReadRecordLine(rest)) return false;
    record->m_strField1 = CutField(rest);
    record->m_strField2 = CutField(rest);
    record->m_strField3 = CutThirdField(rest);
    record->m_strField4 = CutField(rest);
    record->m_strField5 = CutField(rest);
    record->m_nValue = Atoi32(CutField(rest));
    record->m_nFlag = Atoi32(CutField(rest)) != 0 ? 1 : 0;
    record->m_strInfo = CutField(rest);
    record->m_strTagText = rest;
    return true;
}

// A field line of a structure with no header line before it starts that
// structure as a header would, so that its fields are not lost.
void CKSLDBParser::BuildStructsInfo() {
    RunState state;
    CNvmRecord record;
    while (!m_pData->m_bFatalError && GetNvmDBRecord(&record)) {
        if (record.IsHeader() || !state.started || record.StructName() != state.name) StartStruct(state, record);
        if (record.IsHeader() || !state.owner) continue;
        if (state.AppendValue(record.FieldName(), record.m_nValue)) continue;
        state.Flush();
        ParseStructVar(state.field, &record);
        state.hasField = true;
    }
    state.Flush();
}

void CKSLDBParser::StartStruct(RunState& state, CNvmRecord const& record) {
    state.Flush();
    state.started = true;
    state.name = record.StructName();
    state.owner = nullptr;
    if (m_pStorage->FindStructByName(state.name)) {
        if (m_eFileType != FILE_ORDINARY)
            RecordFatal(m_eFileType == FILE_INIT ? kDupStructInit : kDupStructPredefined, state.name);
        return;
    }
    stStruct* created = new stStruct;
    created->m_strName = state.name;
    created->m_nFlag = record.m_nFlag;
    created->m_strInfo = record.m_strInfo;
    if (record.IsHeader()) {
        stStructVar doc;
        SetStructVarParameters(doc, record.m_strTagText);
        created->m_strDescription = doc.m_strDescription;
        created->m_strDependency = doc.m_strDependency;
    }
    m_pStorage->AddStruct(created);
    state.owner = created;
}

// The two line shapes of the writer. A field of kind structure has its own:
// the type name first and the structure's name second, so the shape tells the
// kind. In the other shape the fourth column holds "enum" with the enumeration
// in the fifth, or the type name ("union", "pointer" or a primitive type) with
// the second type string in the fifth; the columns land where the writer took
// them from, so the field is written back as it was read.
void CKSLDBParser::ParseStructVar(stStructVar& field, CNvmRecord* record) {
    field.Clear();
    field.m_nDim[0] = record->m_nValue;
    field.m_nDimCount = 1;
    SetStructVarParameters(field, record->m_strTagText);
    if (!record->m_strField2.IsEmpty()) {
        field.m_strName = record->m_strField5;
        field.m_strType = record->m_strField1;
        field.m_nKind = KIND_STRUCT;
        return;
    }
    CString const& kind = record->m_strField4;
    field.m_strName = record->m_strField3;
    field.m_strType = kind;
    field.m_strTypeText = record->m_strField5;
    if (kind == kKindEnum) {
        field.m_nKind = KIND_ENUM;
        field.m_strType = record->m_strField5;
    } else if (kind == kKindUnion) {
        field.m_nKind = KIND_UNION;
    } else if (kind == kKindPointer) {
        field.m_nKind = KIND_POINTER;
    }
}

// Description, then mode, unit and dependency behind their markers; each
// marker is looked for only after the one before it was found.
void CKSLDBParser::SetStructVarParameters(stStructVar& field, CString const& tagText) {
    dbfields::DocTexts doc = dbfields::SplitMarkers(tagText);
    field.m_strDescription = doc.description;
    field.m_strMode = doc.mode;
    field.m_strUnit = doc.unit;
    field.m_strDependency = doc.dependency;
}

// ---- Unions ----

bool CKSLDBParser::GetUnionDBRecord(CUnionRecord* record) {
    CString rest;
    if (!ReadRecordLine(rest)) return false;
    record->m_strUnionName = CutField(rest);
    record->m_strName = CutField(rest);
    record->m_strTypeText = CutField(rest);
    record->m_strKindText = CutField(rest);
    record->m_nValue = Atoi32(CutField(rest));
    record->m_strRest = rest;
    return true;
}

// Lines are grouped by union name as structures are by their headers; a union
// already in the target store is refused and its lines are skipped.
void CKSLDBParser::BuildUnionsInfo() {
    RunState state;
    CUnionRecord record;
    while (GetUnionDBRecord(&record)) {
        if (!state.started || record.m_strUnionName != state.name) StartUnion(state, record.m_strUnionName);
        if (!state.owner || state.AppendValue(record.m_strName, record.m_nValue)) continue;
        state.Flush();
        ParseUnionVar(state.field, &record);
        state.hasField = true;
    }
    state.Flush();
}

void CKSLDBParser::StartUnion(RunState& state, CString const& name) {
    state.Flush();
    state.started = true;
    state.name = name;
    state.owner = nullptr;
    if (m_pStorage->FindUnionByName(name)) {
        if (m_eFileType != FILE_ORDINARY)
            RecordFatal(m_eFileType == FILE_INIT ? kDupUnionInit : kDupUnionPredefined, name);
        return;
    }
    if (name.IsEmpty()) return;  // as for enumerations: a nameless union is not stored
    stUnion* created = new stUnion;
    created->m_strName = name;
    m_pStorage->AddUnion(created);
    state.owner = created;
}

// The writer puts the type text in the third column and the kind text in the
// fourth; a member of kind structure has "struct" as its type text and its type
// name as kind text. As the loader does, the member is never marked as a
// signal. Each column lands where the writer took it from.
void CKSLDBParser::ParseUnionVar(stStructVar& member, CUnionRecord* record) {
    member.Clear();
    member.m_strName = record->m_strName;
    member.m_nDim[0] = record->m_nValue;
    member.m_nDimCount = 1;
    member.m_strTypeText = record->m_strTypeText;
    member.m_strType = record->m_strKindText;
    CString const& kind = record->m_strKindText;
    if (record->m_strTypeText == kKindStruct) {
        member.m_nKind = KIND_STRUCT;
    } else if (kind == kKindEnum) {
        member.m_nKind = KIND_ENUM;
        member.m_strType = record->m_strTypeText;
    } else if (kind == kKindUnion) {
        member.m_nKind = KIND_UNION;
    } else if (kind == kKindPointer) {
        member.m_nKind = KIND_POINTER;
    }
}
