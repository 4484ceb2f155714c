// CKSLDBWriter: recreates the database file at the end of a run. WriteDB writes
// the thirteen section headers and "<end>" markers and asks the store to print
// each section; the store calls back one routine below per record. Every line
// is its text and one line feed; the file is opened "wb", so no carriage return
// is ever written.
#include "KSLDBWriter.h"

#include "DatabaseTexts.h"
#include "Storage.h"

namespace {

// Line feeds inside a record would split it; message lines, structure headers
// and structure-kind field lines have them taken out, the others keep them.
void RemoveLineFeeds(CString& line) { line.Replace("\n", ""); }

// The tag text of a field: empty without any documentation, otherwise all three
// markers, even around empty parts.
CString TagText(stStructVar const& field) {
    CString tag;
    if (field.m_strDescription.IsEmpty() && field.m_strMode.IsEmpty() && field.m_strUnit.IsEmpty() &&
        field.m_strDependency.IsEmpty()) {
        return tag;
    }
    tag.Format(dbtexts::kTagText, field.m_strDescription.GetData(), dbtexts::kItemMode, field.m_strMode.GetData(),
               dbtexts::kItemUnit, field.m_strUnit.GetData(), dbtexts::kItemDependency,
               field.m_strDependency.GetData());
    return tag;
}

// The number of lines a field's value list takes: the count is checked only
// after a line is written, so a count of 0 (or less) still gives one line, and
// the list holds no more than its ten slots.
int32_t ValueLines(stStructVar const& field) {
    if (field.m_nDimCount < 1) return 1;
    return field.m_nDimCount < kMaxDims ? field.m_nDimCount : kMaxDims;
}

// Codes outside the table have no word; they get an empty one rather than a
// read past the table.
char const* SignalVarWord(int32_t type) {
    if (type < 0 || type >= dbtexts::kSignalVarTypeCount) return "";
    return dbtexts::kSignalVarType[type];
}

}  // namespace

CKSLDBWriter::CKSLDBWriter(CStorage* storage, stData* data) : m_pStorage(storage), m_pData(data) {}

CKSLDBWriter::~CKSLDBWriter() { Close(); }

int CKSLDBWriter::Open(char const* path) {
    Close();
    // The file object stays even when the open fails; writes through it then do
    // nothing, so WriteDB after a failed Open is harmless.
    m_pFile = new CFile;
    return m_pFile->Open(path, "wb");
}

void CKSLDBWriter::Close() {
    if (!m_pFile) return;
    m_pFile->Close();
    delete m_pFile;
    m_pFile = nullptr;
}

void CKSLDBWriter::PutLine(CString const& line) {
    if (m_pFile) m_pFile->WriteLine(line);
}

void CKSLDBWriter::PutLine(char const* line) {
    if (m_pFile) m_pFile->WriteLine(line);
}

void CKSLDBWriter::WriteDB() {
    CString version;
    version.Format(dbtexts::kVersionLine, static_cast<long>(m_pData ? m_pData->m_nDbVersion : 0),
                   m_pData ? m_pData->m_nDbVersionMinor : 0);
    PutLine(dbtexts::kDbVersion);
    PutLine(version);
    PutLine(dbtexts::kEnd);
    WriteSection(dbtexts::kEnumVals, &CStorage::PrintCommands);
    WriteSection(dbtexts::kEnumVals, &CStorage::PrintReports);
    PutLine(dbtexts::kParameters);
    WriteParameters();
    PutLine(dbtexts::kEnd);
    WriteSection(dbtexts::kMonitorParams, &CStorage::PrintMonitors);
    WriteSection(dbtexts::kNvm, &CStorage::PrintStructs);
    WriteSection(dbtexts::kEnumsTitle, &CStorage::PrintEnumsTitle);
    WriteSection(dbtexts::kEnums, &CStorage::PrintEnums);
    WriteSection(dbtexts::kUnions, &CStorage::PrintUnions);
    WriteSection(dbtexts::kSignals, &CStorage::PrintSignals);
    WriteSection(dbtexts::kSignalTable, &CStorage::PrintSignalTable);
    WriteSection(dbtexts::kGroups, &CStorage::PrintGroups);
    WriteSection(dbtexts::kUnionIdentifiers, &CStorage::PrintUnionIdentifiers);
}

void CKSLDBWriter::WriteSection(char const* keyword, void (CStorage::*print)()) {
    PutLine(keyword);
    if (m_pStorage) (m_pStorage->*print)();
    PutLine(dbtexts::kEnd);
}

void CKSLDBWriter::WriteMessage(stMessage const& message, int32_t isCommand, bool wrap) {
    CString line;
    line.Format(dbtexts::kMessageHead, message.m_nLeadingNumber, message.m_nID, isCommand, message.m_nTrailingNumber,
                message.m_strCat1.GetData(), message.m_strCat2.GetData(), message.m_strCat3.GetData());
    if (wrap) {
        bool structPrint = message.m_strFormat.Find(dbtexts::kStructPrintMark) >= 0;
        line += structPrint ? dbtexts::kWrapStructPrintf : dbtexts::kWrapPrintf;
        line += message.m_strFormat;
        line += dbtexts::kWrapClose;
    } else {
        line += message.m_strFormat;
    }
    RemoveLineFeeds(line);
    PutLine(line);
}

void CKSLDBWriter::WriteCommand(stCommand const& command) { WriteMessage(command, 1, false); }

void CKSLDBWriter::WriteReport(stReport const& report) { WriteMessage(report, 0, report.m_bWrap); }

void CKSLDBWriter::WriteMonitor(stMonitor const& monitor) {
    CString line;
    line.Format(dbtexts::kMonitorLine, monitor.m_nNumber, monitor.m_strName.GetData(), monitor.m_strSecond.GetData(),
                monitor.m_strThird.GetData(), monitor.m_nFlag ? 1 : 0);
    PutLine(line);
}

void CKSLDBWriter::WriteParameter(CString const& name, CString const& value) {
    CString line;
    line.Format(dbtexts::kParameterLine, name.GetData(), value.GetData());
    PutLine(line);
}

// Whatever parameters a loaded database named, exactly one is written back.
void CKSLDBWriter::WriteParameters() { WriteParameter(dbtexts::kOsTypeName, dbtexts::kOsTypeValue); }

void CKSLDBWriter::WriteStruct(stStruct const& record, CString const& name) {
    CString line;
    if (record.m_strDependency.IsEmpty()) {
        line.Format(dbtexts::kStructHeader, name.GetData(), record.m_nFlag, record.m_strInfo.GetData(),
                    record.m_strDescription.GetData());
    } else {
        line.Format(dbtexts::kStructHeaderWithDependency, name.GetData(), record.m_nFlag, record.m_strInfo.GetData(),
                    record.m_strDescription.GetData(), record.m_strDependency.GetData());
    }
    RemoveLineFeeds(line);
    PutLine(line);
    void* pos = record.GetFirstFieldPosition();
    while (stStructVar const* field = record.GetNextField(pos)) {
        WriteStructVar(field, name, record.m_nFlag, record.m_strInfo);
    }
}

int CKSLDBWriter::WriteStructVar(stStructVar const* field, CString const& structName, int32_t flag,
                                 CString const& info) {
    if (!field) return 0;
    bool ofStruct = field->m_nKind == KIND_STRUCT;
    if (ofStruct && !KnownType(*field, false)) return 0;
    CString tag = TagText(*field);
    bool ofEnum = field->m_nKind == KIND_ENUM;
    CString kindText = ofEnum ? CString(dbtexts::kKindEnum) : field->m_strType;
    CString typeText = ofEnum ? field->m_strType : field->m_strTypeText;
    int32_t lines = ValueLines(*field);
    for (int32_t i = 0; i < lines; ++i) {
        CString line;
        if (ofStruct) {
            line.Format(dbtexts::kStructFieldOfStruct, field->m_strType.GetData(), structName.GetData(),
                        field->m_strName.GetData(), field->m_nDim[i], flag, info.GetData(), tag.GetData());
            RemoveLineFeeds(line);
        } else {
            line.Format(dbtexts::kStructField, structName.GetData(), field->m_strName.GetData(), kindText.GetData(),
                        typeText.GetData(), field->m_nDim[i], flag, info.GetData(), tag.GetData());
        }
        PutLine(line);
    }
    return 1;
}

// A structure-kind field must name a known structure, or a known signal when
// its signal flag says so. An unknown one is recorded, not printed.
bool CKSLDBWriter::KnownType(stStructVar const& field, bool signalAllowed) {
    bool asSignal = signalAllowed && field.m_bSignal;
    bool known = m_pStorage &&
                 (asSignal ? m_pStorage->FindSignalByName(field.m_strType) != nullptr
                           : m_pStorage->FindStructByName(field.m_strType) != nullptr);
    if (!known) {
        m_strLastError.Format(asSignal ? dbtexts::kUnknownSignal : dbtexts::kUnknownStruct,
                              field.m_strType.GetData());
    }
    return known;
}

void CKSLDBWriter::WriteEnumTitle(stEnum const& record) {
    if (record.m_strName.IsEmpty() || !record.m_bHasTitle) return;
    CString line;
    line.Format(dbtexts::kEnumTitleLine, record.m_strName.GetData(), record.m_bFlag ? 1 : 0,
                record.m_strTitle.GetData(), record.m_strDescription.GetData());
    PutLine(line);
}

void CKSLDBWriter::WriteEnum(stEnum const& record, CString const& name) {
    CString enumerator, description, line;
    int32_t value = 0;
    void* pos = record.GetFirstFieldPosition();
    while (record.GetNextField(enumerator, value, description, pos)) {
        line.Format(dbtexts::kEnumeratorLine, name.GetData(), enumerator.GetData(), value, description.GetData());
        PutLine(line);
    }
}

void CKSLDBWriter::WriteUnion(stUnion const& record, CString const& name) {
    void* pos = record.GetFirstFieldPosition();
    while (stStructVar const* member = record.GetNextField(pos)) WriteUnionVar(member, name);
}

int CKSLDBWriter::WriteUnionVar(stStructVar const* member, CString const& unionName) {
    if (!member) return 0;
    if (member->m_nKind == KIND_STRUCT && !KnownType(*member, true)) return 0;
    // The type text comes before the kind text on a union line, the reverse of
    // a structure field line; readers of the file expect exactly this order.
    CString kindText, typeText;
    switch (member->m_nKind) {
        case KIND_ENUM:
            kindText = dbtexts::kKindEnum;
            typeText = member->m_strType;
            break;
        case KIND_POINTER:
            kindText = dbtexts::kKindPointer;
            typeText = member->m_strTypeText;
            break;
        case KIND_STRUCT:
        case KIND_UNION:
            kindText = member->m_strType;
            typeText = member->m_strTypeText;
            break;
        default:  // primitive, and any code the file format has no word for
            kindText = dbtexts::kKindPrimitive;
            typeText = member->m_strTypeText;
            break;
    }
    int32_t lines = ValueLines(*member);
    for (int32_t i = 0; i < lines; ++i) {
        CString line;
        line.Format(dbtexts::kUnionMemberLine, unionName.GetData(), member->m_strName.GetData(), typeText.GetData(),
                    kindText.GetData(), member->m_nDim[i]);
        PutLine(line);
    }
    return 1;
}

void CKSLDBWriter::WriteSignal(CString const& name, CList<stSignalVar*> const& members) {
    CString line;
    line.Format(dbtexts::kSignalHeader, name.GetData());
    PutLine(line);
    void* pos = members.GetHeadPosition();
    while (pos) {
        stSignalVar const* member = members.GetNext(pos);
        if (member) WriteSignalVar(name, *member);
    }
}

void CKSLDBWriter::WriteSignalVar(CString const& signalName, stSignalVar const& member) {
    CString line;
    if (member.m_nType == SIGVAR_STRUCT) {
        bool isSignal = m_pStorage && m_pStorage->FindSignalByName(member.m_strTypeName);
        if (isSignal) {
            line.Format(dbtexts::kSignalMemberOfSignal, member.m_strName.GetData(), signalName.GetData(),
                        member.m_nCount, member.m_strTypeName.GetData());
        } else {
            line.Format(dbtexts::kSignalMemberUnknown, signalName.GetData(), member.m_strTypeName.GetData(),
                        member.m_nCount, member.m_strName.GetData());
        }
        PutLine(line);
        return;
    }
    char const* word = SignalVarWord(member.m_nType);
    line.Format(dbtexts::kSignalMember, signalName.GetData(), member.m_strTypeName.GetData(), word, member.m_nCount,
                member.m_strName.GetData());
    PutLine(line);
    for (uint32_t i = 0; i < member.m_Values.GetSize(); ++i) {
        line.Format(dbtexts::kSignalMember, signalName.GetData(), member.m_strTypeName.GetData(), word,
                    static_cast<int32_t>(member.m_Values.GetAt(i)), member.m_strName.GetData());
        PutLine(line);
    }
}

void CKSLDBWriter::WriteSignalTable(CString const& memberName, int32_t value) {
    CString line;
    line.Format(dbtexts::kSignalTableLine, memberName.GetData(), value);
    PutLine(line);
}

void CKSLDBWriter::WriteGroup(stGroup const& group) {
    CString line;
    line.Format(dbtexts::kGroupLine, group.m_strName.GetData(), group.m_nBaseValue);
    PutLine(line);
}

void CKSLDBWriter::WriteUnionIdentifier(CString const& first, CString const& second) {
    CString line;
    line.Format(dbtexts::kUnionIdentifierLine, first.GetData(), second.GetData());
    PutLine(line);
}
