// Loading the database file into the store at the start of a run. Each line is
// tested against the sections in a fixed order, and a section that matches reads
// its records up to "<end>" and then one more line, so the tests after it in the
// same pass see the next header. Sections without a test (parameters, signals,
// signal table, groups) are read over. After a successful read the file is
// deleted: the writer creates it anew at the end of the run.
#include "DBLoader.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <utility>

#include "CFile.h"
#include "DatabaseFields.h"
#include "DatabaseTexts.h"
#include "NumberText.h"
#include "Storage.h"

namespace {

using dbfields::CFieldCursor;
using dbfields::DocTexts;
using dbfields::SplitMarkers;

// The first ")," at or after start, as CString::Find("),", start) finds it; -1
// when there is none.
int32_t FindCloseComma(char const* text, int32_t length, int32_t start) {
    for (int32_t p = start; p + 1 < length; ++p) {
        void const* close = std::memchr(text + p, ')', static_cast<size_t>(length - 1 - p));
        if (!close) return -1;
        p = static_cast<int32_t>(static_cast<char const*>(close) - text);
        if (text[p + 1] == ',') return p;
    }
    return -1;
}

// A structure line's third field: when the rest holds "(" with ")," somewhere
// after it, the field runs through that ")" even across commas, so "a(1,2),b"
// gives "a(1,2)". The "(" may sit in any later column: "x,,,0,0,,d(1),e" gives
// "x,,,0,0,,d(1)" as the field. Kept so that files written for readers with this
// rule load the way they always did.
CString CutThirdField(CFieldCursor& rest) {
    char const* text = rest.GetData();
    int32_t length = rest.GetLength();
    void const* open = length > 0 ? std::memchr(text, '(', static_cast<size_t>(length)) : nullptr;
    int32_t close =
        open ? FindCloseComma(text, length, static_cast<int32_t>(static_cast<char const*>(open) - text)) : -1;
    if (close < 0) return rest.Next();
    CString field(text, close + 1);
    rest.Advance(close + 2);
    return field;
}

bool HasAtLeastThreeCommas(CString const& line) {
    int32_t count = 0;
    for (int32_t pos = line.Find(','); pos >= 0 && count < 3; pos = line.Find(',', pos + 1)) ++count;
    return count >= 3;
}

// StartsWith("<end>"), told by the first byte for the records' lines.
bool IsEndLine(CString const& line) {
    constexpr int32_t kEndLength = sizeof dbtexts::kEnd - 1;
    return line.GetLength() >= kEndLength && line.GetAt(0) == dbtexts::kEnd[0] &&
           std::memcmp(line.GetData(), dbtexts::kEnd, kEndLength) == 0;
}

int32_t FlagOf(int32_t number) { return number != 0 ? 1 : 0; }

// The columns of one "nvm" line, cut in file order.
struct NvmLine {
    CString first, second, third, fourth, fifth;
    int32_t value = 0;
    int32_t flag = 0;
    CString info;
    DocTexts doc;
};

NvmLine CutNvmLine(CString const& line) {
    NvmLine nvm;
    CFieldCursor rest(line);
    nvm.first = rest.Next();
    nvm.second = rest.Next();
    nvm.third = CutThirdField(rest);
    nvm.fourth = rest.Next();
    nvm.fifth = rest.Next();
    nvm.value = rest.NextNumber();
    nvm.flag = FlagOf(rest.NextNumber());
    nvm.info = rest.Next();
    SplitMarkers(rest.GetData(), rest.GetLength(), nvm.doc);
    return nvm;
}

// Commands and reports share the message line; the third column (command or
// report) is not read, the position of the section says which it is.
void CutMessageLine(CString const& line, stMessage& message) {
    CFieldCursor rest(line);
    message.m_nLeadingNumber = rest.NextNumber();
    message.m_nID = rest.NextNumber();
    rest.NextNumber();
    message.m_nTrailingNumber = rest.NextNumber();
    message.m_strCat1 = rest.Next();
    message.m_strCat2 = rest.Next();
    message.m_strCat3 = rest.Next();
    message.m_strFormat = rest.Rest();
}

class CDatabaseLoader {
public:
    CDatabaseLoader(CStorage& storage, stData& data, CFile& file) : m_storage(storage), m_data(data), m_file(file) {}

    void Run();

private:
    using RecordLoader = void (CDatabaseLoader::*)(CString const&);

    bool Next() { return m_file.ReadString(m_strLine) != 0; }
    bool RunSectionTests();
    bool ReadSection(RecordLoader load, bool readAfterEnd = true);
    bool LoadVersion();
    void LoadCommand(CString const& line);
    void LoadReport(CString const& line);
    void LoadMonitor(CString const& line);
    void LoadStructLine(CString const& line);
    stStruct* FindOrCreateStruct(NvmLine const& nvm);
    void LoadEnumTitle(CString const& line);
    void LoadEnumerator(CString const& line);
    void LoadUnionMember(CString const& line);
    stEnum* EnumNamed(CString const& name);
    stUnion* UnionNamed(CString const& name);
    void LoadUnionIdentifier(CString const& line);

    CStorage& m_storage;
    stData& m_data;
    CFile& m_file;
    CString m_strLine;
    stEnum* m_pTitleTarget = nullptr;  // receives "EnumsTitle" continuation lines
};

// The loop ends as soon as any read reports the end of the file, whichever
// section it is in.
void CDatabaseLoader::Run() {
    while (Next()) {
        if (!RunSectionTests()) return;
    }
}

// One pass over the section tests, each on whatever line is current when its
// turn comes. "DbVersion", "EnumVals" and "Unions" compare only that many
// leading characters; the other keywords must make up the whole line.
bool CDatabaseLoader::RunSectionTests() {
    if (m_strLine.StartsWith(dbtexts::kDbVersion) && !LoadVersion()) return false;
    if (m_strLine.StartsWith(dbtexts::kEnumVals) && !ReadSection(&CDatabaseLoader::LoadCommand)) return false;
    if (m_strLine.StartsWith(dbtexts::kEnumVals) && !ReadSection(&CDatabaseLoader::LoadReport)) return false;
    if (m_strLine == dbtexts::kMonitorParams && !ReadSection(&CDatabaseLoader::LoadMonitor)) return false;
    if (m_strLine == dbtexts::kNvm && !ReadSection(&CDatabaseLoader::LoadStructLine)) return false;
    if (m_strLine == dbtexts::kEnumsTitle) {
        m_pTitleTarget = nullptr;
        if (!ReadSection(&CDatabaseLoader::LoadEnumTitle)) return false;
    }
    if (m_strLine == dbtexts::kEnums && !ReadSection(&CDatabaseLoader::LoadEnumerator)) return false;
    if (m_strLine.StartsWith(dbtexts::kUnions) && !ReadSection(&CDatabaseLoader::LoadUnionMember)) return false;
    // The last section reads nothing after its "<end>"; the main loop reads on.
    if (m_strLine == dbtexts::kUnionIdentifiers && !ReadSection(&CDatabaseLoader::LoadUnionIdentifier, false)) {
        return false;
    }
    return true;
}

// Records up to a line starting with "<end>", then the line after it. False
// when a read reports the end of the file.
bool CDatabaseLoader::ReadSection(RecordLoader load, bool readAfterEnd) {
    while (Next()) {
        if (IsEndLine(m_strLine)) return !readAfterEnd || Next();
        (this->*load)(m_strLine);
    }
    return false;
}

// The version line, then one more line (normally "<end>") that is not looked at.
bool CDatabaseLoader::LoadVersion() {
    if (!Next()) return false;
    CFieldCursor rest(m_strLine);
    m_data.m_nDbVersion = rest.NextNumber();
    m_data.m_nDbVersionMinor = Atoi32(rest.Rest());
    m_data.m_bVersionFlag = false;
    return Next();
}

void CDatabaseLoader::LoadCommand(CString const& line) {
    stCommand* command = new stCommand;
    CutMessageLine(line, *command);
    if (command->m_nID > m_data.m_nMaxCommandID) m_data.m_nMaxCommandID = command->m_nID;
    m_storage.AddCommand(command);
}

// The wrap flag is not restored: a wrapped report comes back with "diagPrintf("
// and ")" inside its text. The fixed "PRINTF" line loads like any other report.
void CDatabaseLoader::LoadReport(CString const& line) {
    stReport* report = new stReport;
    CutMessageLine(line, *report);
    if (report->m_nID > m_data.m_nMaxReportID) m_data.m_nMaxReportID = report->m_nID;
    m_storage.AddReport(report, report->GetFullName());
}

void CDatabaseLoader::LoadMonitor(CString const& line) {
    stMonitor* monitor = new stMonitor;
    CFieldCursor rest(line);
    monitor->m_nNumber = rest.NextNumber();
    monitor->m_strName = rest.Next();
    monitor->m_strSecond = rest.Next();
    monitor->m_strThird = rest.Next();
    monitor->m_nFlag = FlagOf(Atoi32(rest.Rest()));
    CString key;
    key.Format(dbtexts::kMonitorKey, monitor->m_strName.GetData());
    m_storage.AddMonitor(monitor, key);
}

// Every "nvm" line makes one field (header lines make none): a field written
// over several lines, one per value, comes back as several fields.
void CDatabaseLoader::LoadStructLine(CString const& line) {
    NvmLine nvm = CutNvmLine(line);
    stStruct* record = FindOrCreateStruct(nvm);
    if (nvm.third.IsEmpty() && nvm.fourth.IsEmpty() && nvm.fifth.IsEmpty()) return;
    stStructVar& field = *record->GetNewField();
    if (nvm.second.IsEmpty()) {
        // The kind is not read back: an enumeration field keeps "enum" as its
        // type name and the enumeration's name as its type text.
        field.m_strName = std::move(nvm.third);
        field.m_strType = std::move(nvm.fourth);
        field.m_strTypeText = std::move(nvm.fifth);
    } else {
        // Only a structure already loaded makes the field structure-kind; one
        // listed later in the file leaves it primitive.
        if (m_storage.FindStructByName(nvm.first)) field.m_nKind = KIND_STRUCT;
        field.m_strType = std::move(nvm.first);
        field.m_strName = std::move(nvm.fifth);
    }
    field.m_strDescription = std::move(nvm.doc.description);
    field.m_strMode = std::move(nvm.doc.mode);
    field.m_strUnit = std::move(nvm.doc.unit);
    field.m_strDependency = std::move(nvm.doc.dependency);
    field.m_nDim[0] = nvm.value;
}

// An existing structure is reused as it is; its header values are not updated.
stStruct* CDatabaseLoader::FindOrCreateStruct(NvmLine const& nvm) {
    CString const& name = nvm.second.IsEmpty() ? nvm.first : nvm.second;
    stStruct* record = m_storage.FindStructByName(name);
    if (record) return record;
    record = new stStruct;
    record->m_strName = name;
    record->m_nFlag = nvm.flag;
    record->m_strInfo = nvm.info;
    record->m_strDescription = nvm.doc.description;
    record->m_strDependency = nvm.doc.dependency;
    m_storage.AddStruct(record);
    return record;
}

// A line with fewer than three commas continues the description of the
// enumeration this section created last, joined with nothing between.
void CDatabaseLoader::LoadEnumTitle(CString const& line) {
    if (!HasAtLeastThreeCommas(line)) {
        if (m_pTitleTarget) m_pTitleTarget->m_strDescription += line;
        return;
    }
    CFieldCursor rest(line);
    CString name = rest.Next();
    int32_t flag = rest.NextNumber();
    CString title = rest.Next();
    if (m_storage.FindEnumByName(name)) return;
    stEnum* record = new stEnum;
    record->m_strName = name;
    record->m_bFlag = FlagOf(flag) != 0;
    record->m_bHasTitle = true;
    record->m_strTitle = title;
    record->m_strDescription = rest.Rest();
    m_storage.AddEnum(record);
    m_pTitleTarget = record;
}

void CDatabaseLoader::LoadEnumerator(CString const& line) {
    CFieldCursor rest(line);
    CString enumName = rest.Next();
    CString name = rest.Next();
    int32_t value = rest.NextNumber();
    EnumNamed(enumName)->AddField(name, value, rest.Rest());
}

// The stored record of that name, created empty and stored when there is none.
stEnum* CDatabaseLoader::EnumNamed(CString const& name) {
    stEnum* record = m_storage.FindEnumByName(name);
    if (record) return record;
    record = new stEnum;
    record->m_strName = name;
    m_storage.AddEnum(record);
    return record;
}

stUnion* CDatabaseLoader::UnionNamed(CString const& name) {
    stUnion* record = m_storage.FindUnionByName(name);
    if (record) return record;
    record = new stUnion;
    record->m_strName = name;
    m_storage.AddUnion(record);
    return record;
}

// The writer puts the type text in the third column and the kind word in the
// fourth, while this reads the kind from the third: only a member whose type
// text is itself a kind word regains its kind, "U,m,int,primitive,0,0" loads as
// a primitive of type "int" and type text "primitive". Kept so that databases
// round-trip exactly as they always have. Loaded members never name a signal.
void CDatabaseLoader::LoadUnionMember(CString const& line) {
    CFieldCursor rest(line);
    CString unionName = rest.Next();
    CString name = rest.Next();
    CString third = rest.Next();
    CString fourth = rest.Next();
    int32_t value = rest.NextNumber();
    stStructVar& member = *UnionNamed(unionName)->GetNewField();
    member.m_strName = std::move(name);
    member.m_nDim[0] = value;
    if (third == dbtexts::kKindStruct) {
        member.m_nKind = KIND_STRUCT;
        member.m_strType = fourth;
        member.m_strTypeText = third;
    } else {
        member.m_strType = third == dbtexts::kKindEnum ? fourth : third;
        member.m_strTypeText = fourth;
        if (third == dbtexts::kKindEnum) member.m_nKind = KIND_ENUM;
        if (third == dbtexts::kKindUnion) member.m_nKind = KIND_UNION;
        if (third == dbtexts::kKindPointer) member.m_nKind = KIND_POINTER;
    }
}

void CDatabaseLoader::LoadUnionIdentifier(CString const& line) {
    CFieldCursor rest(line);
    CString first = rest.Next();
    m_storage.AddUnionIdentifier(first, rest.Rest());
}

// A directory opens for reading here but yields no line, and the deletion after
// the read would remove it when empty; it is refused like any unreadable path.
bool IsDirectory(CFile const& file) {
    struct stat info;
    return fstat(fileno(file.GetStream()), &info) == 0 && S_ISDIR(info.st_mode);
}

// Fields and enumerators arrive line by line into arrays that grow by
// doubling; once the file is read, the slots no record will use are given back.
void FreeExtraFieldSlots(CStorage& storage) {
    for (void* pos = storage.Structs().GetHeadPosition(); pos;) storage.Structs().GetNext(pos)->m_Fields.FreeExtra();
    for (void* pos = storage.Unions().GetHeadPosition(); pos;) storage.Unions().GetNext(pos)->m_Fields.FreeExtra();
    for (void* pos = storage.Enums().GetHeadPosition(); pos;) storage.Enums().GetNext(pos)->m_Fields.FreeExtra();
}

}  // namespace

void LoadDatabaseText(CStorage& storage, CString const& path, stData& data) {
    CFile file;
    if (!file.Open(path, "rb") || IsDirectory(file)) {
        std::printf(dbtexts::kCouldNotOpen, path.GetData());
        return;
    }
    CDatabaseLoader(storage, data, file).Run();
    FreeExtraFieldSlots(storage);
    file.Close();
    std::remove(path.GetData());
}
