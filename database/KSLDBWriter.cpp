// CKSLDBWriter: recreates the database file at the end of a run. WriteDB writes
// the thirteen section headers and "<end>" markers and asks the store to print
// each section; the store calls back one routine below per record. Every line
// is its text and one line feed; the file is opened "wb", so no carriage return
// is ever written.
#include "KSLDBWriter.h"

#include <cstdio>

#include "DatabaseTexts.h"
#include "LineFormat.h"
#include "Storage.h"

namespace {

// Whether a field carries any documentation; its lines then end in the tag text.
bool HasTag(stStructVar const& field) {
    return !field.m_strDescription.IsEmpty() || !field.m_strMode.IsEmpty() || !field.m_strUnit.IsEmpty() ||
           !field.m_strDependency.IsEmpty();
}

// The tag text: all three markers, even around empty parts.
void AppendTag(CLineText& line, stStructVar const& field) {
    line.Append(field.m_strDescription);
    line.Append(dbtexts::kItemMode);
    line.Append(field.m_strMode);
    line.Append(dbtexts::kItemUnit);
    line.Append(field.m_strUnit);
    line.Append(dbtexts::kItemDependency);
    line.Append(field.m_strDependency);
}

namespace lines {

// The record line formats, read when the program is built.
constexpr CLineFormat kWholeLine("%s");
constexpr CLineFormat kVersionLine(dbtexts::kVersionLine);
constexpr CLineFormat kMessageHead(dbtexts::kMessageHead);
constexpr CLineFormat kMonitorLine(dbtexts::kMonitorLine);
constexpr CLineFormat kParameterLine(dbtexts::kParameterLine);
constexpr CLineFormat kStructHeader(dbtexts::kStructHeader);
constexpr CLineFormat kStructHeaderWithDependency(dbtexts::kStructHeaderWithDependency);
constexpr CLineFormat kStructFieldOfStruct(dbtexts::kStructFieldOfStruct);
constexpr CLineFormat kStructField(dbtexts::kStructField);
constexpr CLineFormat kEnumTitleLine(dbtexts::kEnumTitleLine);
constexpr CLineFormat kEnumeratorLine(dbtexts::kEnumeratorLine);
constexpr CLineFormat kUnionMemberLine(dbtexts::kUnionMemberLine);
constexpr CLineFormat kSignalHeader(dbtexts::kSignalHeader);
constexpr CLineFormat kSignalMemberOfSignal(dbtexts::kSignalMemberOfSignal);
constexpr CLineFormat kSignalMemberUnknown(dbtexts::kSignalMemberUnknown);
constexpr CLineFormat kSignalMember(dbtexts::kSignalMember);
constexpr CLineFormat kSignalTableLine(dbtexts::kSignalTableLine);
constexpr CLineFormat kGroupLine(dbtexts::kGroupLine);
constexpr CLineFormat kUnionIdentifierLine(dbtexts::kUnionIdentifierLine);

}  // namespace lines

// A file of a few hundred thousand lines is written in large blocks: the
// lines gather in the line buffer and go to the file once this much is there.
constexpr size_t kWriteBufferSize = 1 << 20;
constexpr size_t kFlushSize = 1 << 16;
// The most one write hands the file.
constexpr size_t kMaxWrite = 1 << 30;

// The number of lines a field's value list takes: the count is checked only
// after a line is written, so a count of 0 (or less) still gives one line, and
// the list holds no more than its ten slots.
int32_t ValueLines(stStructVar const& field) {
    if (field.m_nDimCount < 1) return 1;
    return field.m_nDimCount < kMaxDims ? field.m_nDimCount : kMaxDims;
}

// A fixed word with its length, so that the line does not search for its end.
constexpr int32_t WordLength(char const* word) {
    int32_t length = 0;
    while (word[length]) ++length;
    return length;
}
CLineText::SArg Word(char const* word) { return CLineText::SArg(word, WordLength(word)); }

// Codes outside the table have no word; they get an empty one rather than a
// read past the table.
CLineText::SArg SignalVarWord(int32_t type) {
    if (type < 0 || type >= dbtexts::kSignalVarTypeCount) return Word("");
    return Word(dbtexts::kSignalVarType[type]);
}

}  // namespace

CKSLDBWriter::CKSLDBWriter(CStorage* storage, stData* data) : m_pStorage(storage), m_pData(data) {}

CKSLDBWriter::~CKSLDBWriter() { Close(); }

int CKSLDBWriter::Open(char const* path) {
    Close();
    // The file object stays even when the open fails; writes through it then do
    // nothing, so WriteDB after a failed Open is harmless.
    m_pFile = new CFile;
    int opened = m_pFile->Open(path, "wb");
    if (opened) std::setvbuf(m_pFile->GetStream(), nullptr, _IOFBF, kWriteBufferSize);
    return opened;
}

void CKSLDBWriter::Close() {
    if (!m_pFile) return;
    Flush();
    m_pFile->Close();
    delete m_pFile;
    m_pFile = nullptr;
}

void CKSLDBWriter::Flush() {
    char const* data = m_Line.GetBlock();
    size_t left = m_Line.GetBlockLength();
    while (m_pFile && left > 0) {
        size_t piece = left < kMaxWrite ? left : kMaxWrite;
        m_pFile->WriteBytes(data, static_cast<int32_t>(piece));
        data += piece;
        left -= piece;
    }
    m_Line.ClearBlock();
}

void CKSLDBWriter::PutLine(char const* line) {
    m_Line.Format<lines::kWholeLine>(line);
    PutLine(m_Line);
}

inline void CKSLDBWriter::PutLine(CLineText& line, bool removeLineFeeds) {
    // Line feeds inside a record would split it; message lines, structure
    // headers and structure-kind field lines have them taken out.
    if (removeLineFeeds) line.RemoveLineFeeds();
    line.EndLine();
    if (!m_pFile) line.ClearBlock();
    else if (line.GetBlockLength() >= kFlushSize) Flush();
}

void CKSLDBWriter::WriteDB() {
    PutLine(dbtexts::kDbVersion);
    m_Line.Format<lines::kVersionLine>(static_cast<long>(m_pData ? m_pData->m_nDbVersion : 0),
                                       m_pData ? m_pData->m_nDbVersionMinor : 0);
    PutLine(m_Line);
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
    CLineText& line = m_Line;
    line.Format<lines::kMessageHead>(message.m_nLeadingNumber, message.m_nID, isCommand, message.m_nTrailingNumber,
                                     message.m_strCat1, message.m_strCat2, message.m_strCat3);
    if (wrap) {
        bool structPrint = message.m_strFormat.Find(dbtexts::kStructPrintMark) >= 0;
        line.Append(structPrint ? dbtexts::kWrapStructPrintf : dbtexts::kWrapPrintf);
        line.Append(message.m_strFormat);
        line.Append(dbtexts::kWrapClose);
    } else {
        line.Append(message.m_strFormat);
    }
    PutLine(line, true);
}

void CKSLDBWriter::WriteCommand(stCommand const& command) { WriteMessage(command, 1, false); }

void CKSLDBWriter::WriteReport(stReport const& report) { WriteMessage(report, 0, report.m_bWrap); }

void CKSLDBWriter::WriteMonitor(stMonitor const& monitor) {
    m_Line.Format<lines::kMonitorLine>(monitor.m_nNumber, monitor.m_strName, monitor.m_strSecond, monitor.m_strThird,
                                       monitor.m_nFlag ? 1 : 0);
    PutLine(m_Line);
}

void CKSLDBWriter::WriteParameter(CString const& name, CString const& value) {
    m_Line.Format<lines::kParameterLine>(name, value);
    PutLine(m_Line);
}

// Whatever parameters a loaded database named, exactly one is written back.
void CKSLDBWriter::WriteParameters() { WriteParameter(dbtexts::kOsTypeName, dbtexts::kOsTypeValue); }

void CKSLDBWriter::WriteStruct(stStruct const& record, CString const& name) {
    if (record.m_strDependency.IsEmpty()) {
        m_Line.Format<lines::kStructHeader>(name, record.m_nFlag, record.m_strInfo, record.m_strDescription);
    } else {
        m_Line.Format<lines::kStructHeaderWithDependency>(name, record.m_nFlag, record.m_strInfo,
                                                          record.m_strDescription, record.m_strDependency);
    }
    PutLine(m_Line, true);
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
    bool tagged = HasTag(*field);
    bool ofEnum = field->m_nKind == KIND_ENUM;
    CLineText::SArg kindText = ofEnum ? Word(dbtexts::kKindEnum) : CLineText::SArg(field->m_strType);
    CLineText::SArg typeText(ofEnum ? field->m_strType : field->m_strTypeText);
    int32_t lines = ValueLines(*field);
    for (int32_t i = 0; i < lines; ++i) {
        if (ofStruct) {
            m_Line.Format<lines::kStructFieldOfStruct>(field->m_strType, structName, field->m_strName, field->m_nDim[i],
                                                       flag, info, "");
        } else {
            m_Line.Format<lines::kStructField>(structName, field->m_strName, kindText, typeText, field->m_nDim[i], flag,
                                               info, "");
        }
        // Both formats end in the tag text.
        if (tagged) AppendTag(m_Line, *field);
        PutLine(m_Line, ofStruct);
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
    m_Line.Format<lines::kEnumTitleLine>(record.m_strName, record.m_bFlag ? 1 : 0, record.m_strTitle,
                                         record.m_strDescription);
    PutLine(m_Line);
}

void CKSLDBWriter::WriteEnum(stEnum const& record, CString const& name) {
    for (uint32_t i = 0; i < record.m_Fields.GetSize(); ++i) {
        stEnumVar const& enumerator = record.m_Fields.GetAt(i);
        m_Line.Format<lines::kEnumeratorLine>(name, enumerator.m_strName, enumerator.m_nValue,
                                              enumerator.m_strDescription);
        PutLine(m_Line);
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
    CLineText::SArg kindText(member->m_strType);
    CLineText::SArg typeText(member->m_strTypeText);
    switch (member->m_nKind) {
        case KIND_ENUM:
            kindText = Word(dbtexts::kKindEnum);
            typeText = CLineText::SArg(member->m_strType);
            break;
        case KIND_POINTER:
            kindText = Word(dbtexts::kKindPointer);
            break;
        case KIND_STRUCT:
        case KIND_UNION:
            break;
        default:  // primitive, and any code the file format has no word for
            kindText = Word(dbtexts::kKindPrimitive);
            break;
    }
    int32_t lines = ValueLines(*member);
    for (int32_t i = 0; i < lines; ++i) {
        m_Line.Format<lines::kUnionMemberLine>(unionName, member->m_strName, typeText, kindText, member->m_nDim[i]);
        PutLine(m_Line);
    }
    return 1;
}

void CKSLDBWriter::WriteSignal(CString const& name, CList<stSignalVar*> const& members) {
    m_Line.Format<lines::kSignalHeader>(name);
    PutLine(m_Line);
    void* pos = members.GetHeadPosition();
    while (pos) {
        stSignalVar const* member = members.GetNext(pos);
        if (member) WriteSignalVar(name, *member);
    }
}

void CKSLDBWriter::WriteSignalVar(CString const& signalName, stSignalVar const& member) {
    if (member.m_nType == SIGVAR_STRUCT) {
        bool isSignal = m_pStorage && m_pStorage->FindSignalByName(member.m_strTypeName);
        if (isSignal) {
            m_Line.Format<lines::kSignalMemberOfSignal>(member.m_strName, signalName, member.m_nCount,
                                                        member.m_strTypeName);
        } else {
            m_Line.Format<lines::kSignalMemberUnknown>(signalName, member.m_strTypeName, member.m_nCount,
                                                       member.m_strName);
        }
        PutLine(m_Line);
        return;
    }
    CLineText::SArg word = SignalVarWord(member.m_nType);
    m_Line.Format<lines::kSignalMember>(signalName, member.m_strTypeName, word, member.m_nCount, member.m_strName);
    PutLine(m_Line);
    for (uint32_t i = 0; i < member.m_Values.GetSize(); ++i) {
        m_Line.Format<lines::kSignalMember>(signalName, member.m_strTypeName, word,
                                            static_cast<int32_t>(member.m_Values.GetAt(i)), member.m_strName);
        PutLine(m_Line);
    }
}

void CKSLDBWriter::WriteSignalTable(CString const& memberName, int32_t value) {
    m_Line.Format<lines::kSignalTableLine>(memberName, value);
    PutLine(m_Line);
}

void CKSLDBWriter::WriteGroup(stGroup const& group) {
    m_Line.Format<lines::kGroupLine>(group.m_strName, group.m_nBaseValue);
    PutLine(m_Line);
}

void CKSLDBWriter::WriteUnionIdentifier(CString const& first, CString const& second) {
    m_Line.Format<lines::kUnionIdentifierLine>(first, second);
    PutLine(m_Line);
}
