// CStorage: the in-memory type database of a run. The loader and the header
// transfer add records to it, the record reader finds, compares and deletes
// them and asks it for message identifiers, and at the end of the run the
// database writer is driven through the print walks, one call per record.
// Name indexes map a name to the record's list position; identifier maps map
// a message identifier to the position, or to null for a reserved identifier.
#include "Storage.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "StorageTexts.h"

namespace {

using NameIndex = CMapStringTo<void*>;
using IdIndex = CMap<int32_t, int32_t, void*, void*>;

// What the identifier allocators return once no identifier up to the largest
// int is free: the value that marks a message as not numbered.
constexpr int32_t kNoFreeId = -1;

template <typename T>
T* RecordAt(CList<T*> const& list, NameIndex const& index, CString const& name) {
    void* pos = nullptr;
    if (!index.Lookup(name, pos) || !pos) return nullptr;
    return list.GetAt(pos);
}

template <typename T>
T* RecordWithId(CList<T*> const& list, IdIndex const& ids, int32_t id) {
    void* pos = nullptr;
    if (!ids.Lookup(id, pos) || !pos) return nullptr;
    return list.GetAt(pos);
}

void IndexNames(NameIndex& index, CStringList const& names, void* pos) {
    for (void* it = names.GetHeadPosition(); it;) index.SetAt(names.GetNext(it), pos);
}

// Only entries that point at this record go: another record indexed under the
// same name keeps its entry, and a key that SetAt entered twice (the second
// copy appended when the first sat last in its chain) loses both copies, so no
// entry is left pointing at a deleted record.
void UnindexName(NameIndex& index, CString const& name, void* pos) {
    while (index.RemoveKeyValue(name, pos)) {
    }
}

void UnindexNames(NameIndex& index, CStringList const& names, void* pos) {
    for (void* it = names.GetHeadPosition(); it;) UnindexName(index, names.GetNext(it), pos);
}

// A deleted message's identifier stays reserved, as the identifiers handed out
// by the allocators are: the caller has usually given that identifier to a
// record elsewhere, and it must not be handed out again.
void ReleaseId(IdIndex& ids, int32_t id, void* pos) {
    while (ids.RemoveKeyValue(id, pos)) {
    }
    if (!ids.Find(id)) ids.SetAt(id, nullptr);
}

// Unlinks the record that the name finds, lets unindex remove its other index
// entries, and deletes it; nothing when the name is not indexed.
template <typename T, typename Unindex>
void DeleteByName(CList<T*>& list, NameIndex& index, CString const& name, Unindex unindex) {
    void* pos = nullptr;
    if (!index.Lookup(name, pos) || !pos) return;
    T* record = list.GetAt(pos);
    UnindexName(index, name, pos);
    unindex(*record, pos);
    list.RemoveAt(pos);
    delete record;
}

template <typename T>
void DeleteAll(MyList<T*>& list) {
    for (void* pos = list.GetHeadPosition(); pos;) delete list.GetNext(pos);
    list.RemoveAll();
}

bool IsTaken(IdIndex const& ids, int64_t id) { return ids.Find(static_cast<int32_t>(id)) != nullptr; }

// The first identifier at or after id that the map does not hold; past the
// largest int when every one up to it is taken (identifiers never wrap).
int64_t FirstFreeId(IdIndex const& ids, int64_t id) {
    while (id <= INT32_MAX && IsTaken(ids, id)) ++id;
    return id;
}

void ReserveIds(IdIndex& ids, int64_t first, int64_t count) {
    for (int64_t id = first; id < first + count; ++id) ids.SetAt(static_cast<int32_t>(id), nullptr);
}

// The cursor moves past the block; at the largest int it stays there, and the
// next request finds that identifier taken and gets kNoFreeId.
void AdvanceCursor(int32_t* cursor, int64_t next) {
    *cursor = static_cast<int32_t>(std::min<int64_t>(next, INT32_MAX));
}

int32_t NextFreeId(IdIndex& ids, int32_t* cursor) {
    if (!cursor) return kNoFreeId;
    int64_t id = FirstFreeId(ids, *cursor);
    if (id > INT32_MAX) return kNoFreeId;
    ReserveIds(ids, id, 1);
    AdvanceCursor(cursor, id + 1);
    return static_cast<int32_t>(id);
}

// The identifiers the map holds from low to high, ascending, each once: the
// same identifiers as trying every integer in between, without a walk over
// billions of integers when the highest identifier is large.
std::vector<int32_t> IdsBetween(IdIndex const& ids, int32_t low, int32_t high) {
    std::vector<int32_t> found;
    int32_t id = 0;
    void* value = nullptr;
    for (void* pos = ids.GetStartPosition(); pos;) {
        ids.GetNextAssoc(pos, id, value);
        if (id >= low && id <= high) found.push_back(id);
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

// The part of a message text from its first double quote up to, not
// including, its last one; false when the text holds no double quote.
bool QuotedPart(CString const& text, CString& part) {
    int32_t first = text.Find('"');
    if (first < 0) return false;
    part = text.Mid(first, text.ReverseFind('"') - first);
    return true;
}

// The report that heads the report section on every run: all three categories
// "PRINTF", the plain format, every number 0 and the wrap flag clear.
stReport BuiltInReport() {
    stReport report;
    report.m_strCat1 = storagetexts::kBuiltInReportCategory;
    report.m_strCat2 = storagetexts::kBuiltInReportCategory;
    report.m_strCat3 = storagetexts::kBuiltInReportCategory;
    report.m_strFormat = storagetexts::kBuiltInReportFormat;
    report.m_nFilterState = 0;
    report.m_nReserved2 = 0;
    report.m_nReserved4 = 0;
    return report;
}

}  // namespace

// The identifier indexes grow with the messages: the print walks sort the
// identifiers, so no output depends on their bucket order. The signal name
// index grows too: it is never walked, and a run only asks whether a name is a
// signal, which does not depend on the buckets; a large header files a signal
// per structure and alias, so fixed buckets would make its chains grow with it.
CStorage::CStorage(stData* data) : m_pData(data) {
    m_CommandIds.EnableGrowth();
    m_ReportIds.EnableGrowth();
    m_SignalNames.EnableGrowth();
}

CStorage::~CStorage() {
    DeleteAll(m_Reports);
    DeleteAll(m_Commands);
    DeleteAll(m_Monitors);
    DeleteAll(m_Structs);
    DeleteAll(m_Unions);
    DeleteAll(m_Enums);
    DeleteAll(m_Signals);
    DeleteAll(m_Groups);
    DeleteAll(m_UnionIdentifiers);
    DeleteAll(m_FreeStructs);
    DeleteAll(m_FreeUnions);
    DeleteAll(m_FreeEnums);
}

// ---- adding ----

void CStorage::AddStruct(stStruct* record) {
    if (!record) return;
    void* pos = m_Structs.AddTail(record);
    m_StructNames.SetAt(record->m_strName, pos);
    IndexNames(m_StructNames, record->m_Aliases, pos);
}

void CStorage::AddEnum(stEnum* record) {
    if (!record) return;
    void* pos = m_Enums.AddTail(record);
    m_EnumNames.SetAt(record->m_strName, pos);
    IndexNames(m_EnumNames, record->m_Aliases, pos);
}

void CStorage::AddUnion(stUnion* record) {
    if (!record) return;
    void* pos = m_Unions.AddTail(record);
    m_UnionNames.SetAt(record->m_strName, pos);
    IndexNames(m_UnionNames, record->m_Aliases, pos);
}

void CStorage::AddSignal(stSignal* record) {
    if (!record) return;
    void* pos = m_Signals.AddTail(record);
    m_SignalNames.SetAt(record->m_strName, pos);
    m_SignalNames.SetAt(record->m_strSecondName, pos);
    IndexNames(m_SignalNames, record->m_Names, pos);
}

// The name also joins the signal's name list, so the signal is written under
// it and a deletion of the signal takes this index entry along.
bool CStorage::AddNameToSignal(stSignal* record, CString const& name) {
    if (!record || m_SignalNames.Find(name)) return false;
    void* pos = nullptr;
    if (!m_SignalNames.Lookup(record->m_strName, pos) || !pos || m_Signals.GetAt(pos) != record) {
        pos = m_Signals.Find(record);
    }
    if (!pos) return false;
    record->m_Names.AddTail(name);
    m_SignalNames.SetAt(name, pos);
    return true;
}

void CStorage::AddCommand(stCommand* command, CString const& fullName) {
    if (!command) return;
    void* pos = m_Commands.AddTail(command);
    m_CommandNames.SetAt(fullName, pos);
    m_CommandIds.SetAt(command->m_nID, pos);
}

void CStorage::AddCommand(stCommand* command) {
    if (!command) return;
    void* pos = m_Commands.AddTail(command);
    m_CommandNames.SetAt(command->GetFullName(), pos);
    m_CommandIds.SetAt(command->m_nID, pos);
}

void CStorage::AddReport(stReport* report, CString const& name) { AddReport(report, CString(name)); }

void CStorage::AddReport(stReport* report, CString&& name) {
    if (!report) return;
    void* pos = m_Reports.AddTail(report);
    m_ReportNames.SetAt(std::move(name), pos);
    m_ReportIds.SetAt(report->m_nID, pos);
}

void CStorage::AddMonitor(stMonitor* monitor, CString const& name) {
    if (!monitor) return;
    if (m_MonitorNames.Find(name)) {
        delete monitor;
        return;
    }
    monitor->m_nIndex = m_nMonitorCount++;
    m_MonitorNames.SetAt(name, m_Monitors.AddTail(monitor));
}

void CStorage::AddGroup(stGroup* group) {
    if (!group) return;
    // The list stays sorted by base value, equal values in insertion order: a
    // new group goes before the first group of a greater value, as AddSort
    // would put it, found through the ordered index.
    auto greater = m_GroupOrder.upper_bound(group->m_nBaseValue);
    void* pos = greater == m_GroupOrder.end() ? m_Groups.AddTail(group) : m_Groups.InsertBefore(greater->second, group);
    m_GroupOrder.emplace(group->m_nBaseValue, pos);
    m_GroupIds.SetAt(group->m_nBaseValue, pos);
}

void CStorage::AddUnionIdentifier(CString const& unionName, CString const& identifier) {
    if (m_UnionIdentifierNames.Find(unionName)) return;
    void* pos = m_UnionIdentifiers.AddTail(new stUnionIdentifier(unionName, identifier));
    m_UnionIdentifierNames.SetAt(unionName, pos);
}

// ---- finding ----

stCommand* CStorage::FindCommandByName(CString const& name) const { return RecordAt(m_Commands, m_CommandNames, name); }
stReport* CStorage::FindReportByName(CString const& name) const { return RecordAt(m_Reports, m_ReportNames, name); }
stStruct* CStorage::FindStructByName(CString const& name) const { return RecordAt(m_Structs, m_StructNames, name); }
stEnum* CStorage::FindEnumByName(CString const& name) const { return RecordAt(m_Enums, m_EnumNames, name); }
stUnion* CStorage::FindUnionByName(CString const& name) const { return RecordAt(m_Unions, m_UnionNames, name); }
stSignal* CStorage::FindSignalByName(CString const& name) const { return RecordAt(m_Signals, m_SignalNames, name); }
stMonitor* CStorage::FindMonitorByName(CString const& name) const { return RecordAt(m_Monitors, m_MonitorNames, name); }

stCommand* CStorage::FindCommandById(int32_t id) const { return RecordWithId(m_Commands, m_CommandIds, id); }
stReport* CStorage::FindReportById(int32_t id) const { return RecordWithId(m_Reports, m_ReportIds, id); }

stGroup* CStorage::FindGroupById(int32_t baseValue) const {
    void* pos = nullptr;
    if (!m_GroupIds.Lookup(baseValue, pos) || !pos) return nullptr;
    return m_Groups.GetAt(pos);
}

stStruct* CStorage::GetLastStruct() const { return m_Structs.IsEmpty() ? nullptr : m_Structs.GetTail(); }
stUnion* CStorage::GetLastUnion() const { return m_Unions.IsEmpty() ? nullptr : m_Unions.GetTail(); }

// ---- deleting ----

void CStorage::DeleteCommandByName(CString const& name) {
    DeleteByName(m_Commands, m_CommandNames, name,
                 [this](stCommand const& record, void* pos) { ReleaseId(m_CommandIds, record.m_nID, pos); });
}

void CStorage::DeleteReportByName(CString const& name) {
    DeleteByName(m_Reports, m_ReportNames, name,
                 [this](stReport const& record, void* pos) { ReleaseId(m_ReportIds, record.m_nID, pos); });
}

void CStorage::DeleteStructByName(CString const& name) {
    DeleteByName(m_Structs, m_StructNames, name, [this](stStruct const& record, void* pos) {
        UnindexName(m_StructNames, record.m_strName, pos);
        UnindexNames(m_StructNames, record.m_Aliases, pos);
    });
}

void CStorage::DeleteEnumByName(CString const& name) {
    DeleteByName(m_Enums, m_EnumNames, name, [this](stEnum const& record, void* pos) {
        UnindexName(m_EnumNames, record.m_strName, pos);
        UnindexNames(m_EnumNames, record.m_Aliases, pos);
    });
}

void CStorage::DeleteUnionByName(CString const& name) {
    DeleteByName(m_Unions, m_UnionNames, name, [this](stUnion const& record, void* pos) {
        UnindexName(m_UnionNames, record.m_strName, pos);
        UnindexNames(m_UnionNames, record.m_Aliases, pos);
    });
}

void CStorage::DeleteSignalByName(CString const& name) {
    DeleteByName(m_Signals, m_SignalNames, name, [this](stSignal const& record, void* pos) {
        UnindexName(m_SignalNames, record.m_strName, pos);
        UnindexName(m_SignalNames, record.m_strSecondName, pos);
        UnindexNames(m_SignalNames, record.m_Names, pos);
    });
}

// ---- comparing ----

bool CStorage::CompareCommands(stCommand const& a, stCommand const& b) const { return a.m_strFormat == b.m_strFormat; }

// Reports match when their trailing numbers agree and the quoted parts of their
// texts agree; a text without any double quote is not compared at all.
bool CStorage::CompareReports(stReport const& a, stReport const& b) const {
    if (a.m_nTrailingNumber != b.m_nTrailingNumber) return false;
    CString partA;
    CString partB;
    if (!QuotedPart(a.m_strFormat, partA) || !QuotedPart(b.m_strFormat, partB)) return true;
    return partA == partB;
}

// ---- identifiers ----

int32_t CStorage::GetNextAvailableCommandID(int32_t* cursor) { return NextFreeId(m_CommandIds, cursor); }

int32_t CStorage::GetNextAvailableReportID(int32_t* cursor) { return NextFreeId(m_ReportIds, cursor); }

// A block of fewer than one identifier is taken as a block of one, so the
// identifier returned is always reserved. A block that would pass the largest
// int gives kNoFreeId, reserves nothing and leaves the cursor unchanged.
int32_t CStorage::GetNextAvailableManyReportID(int32_t* cursor, int32_t count) {
    if (!cursor) return kNoFreeId;
    int64_t size = std::max<int32_t>(count, 1);
    int64_t id = FirstFreeId(m_ReportIds, *cursor);
    for (int64_t i = 1; i < size && id + size - 1 <= INT32_MAX; ++i) {
        if (IsTaken(m_ReportIds, id + i)) {
            id += i + 1;
            i = -1;  // the new start is checked again, then the offsets after it
        }
    }
    if (id + size - 1 > INT32_MAX) return kNoFreeId;
    ReserveIds(m_ReportIds, id, size);
    AdvanceCursor(cursor, id + size);
    return static_cast<int32_t>(id);
}

// ---- pools ----

stStruct* CStorage::GetFreeStruct() { return m_FreeStructs.IsEmpty() ? new stStruct : m_FreeStructs.RemoveTail(); }
stUnion* CStorage::GetFreeUnion() { return m_FreeUnions.IsEmpty() ? new stUnion : m_FreeUnions.RemoveTail(); }
stEnum* CStorage::GetFreeEnum() { return m_FreeEnums.IsEmpty() ? new stEnum : m_FreeEnums.RemoveTail(); }

void CStorage::ReleaseStruct(stStruct* record) {
    if (!record) return;
    record->Clear();
    m_FreeStructs.AddTail(record);
}

void CStorage::ReleaseUnion(stUnion* record) {
    if (!record) return;
    record->Clear();
    m_FreeUnions.AddTail(record);
}

void CStorage::ReleaseEnum(stEnum* record) {
    if (!record) return;
    record->Clear();
    m_FreeEnums.AddTail(record);
}

bool CStorage::IsStorageEmpty() const {
    return m_Commands.IsEmpty() && m_Reports.IsEmpty() && m_Structs.IsEmpty() && m_Enums.IsEmpty();
}

// ---- print walks ----

void CStorage::PrintCommands() {
    if (!m_pDBWriter) return;
    int32_t highest = m_pData ? m_pData->m_nMaxCommandID : 0;
    for (int32_t id : IdsBetween(m_CommandIds, 0, highest)) {
        if (stCommand* command = FindCommandById(id)) m_pDBWriter->WriteCommand(*command);
    }
}

// The built-in report always comes first; a stored report numbered 0 is never
// written, since the walk over stored reports starts at 1.
void CStorage::PrintReports() {
    if (!m_pDBWriter) return;
    m_pDBWriter->WriteReport(BuiltInReport());
    int32_t highest = m_pData ? m_pData->m_nMaxReportID : 0;
    for (int32_t id : IdsBetween(m_ReportIds, 1, highest)) {
        if (stReport* report = FindReportById(id)) m_pDBWriter->WriteReport(*report);
    }
}

void CStorage::PrintMonitors() {
    if (!m_pDBWriter) return;
    for (void* pos = m_Monitors.GetHeadPosition(); pos;) m_pDBWriter->WriteMonitor(*m_Monitors.GetNext(pos));
}

void CStorage::PrintStructs() {
    for (void* pos = m_Structs.GetHeadPosition(); pos;) PrintStruct(*m_Structs.GetNext(pos));
}

void CStorage::PrintStruct(stStruct const& record) {
    if (!m_pDBWriter) return;
    m_pDBWriter->WriteStruct(record, record.m_strName);
    for (void* pos = record.m_Aliases.GetHeadPosition(); pos;) {
        m_pDBWriter->WriteStruct(record, record.m_Aliases.GetNext(pos));
    }
}

void CStorage::PrintEnumsTitle() {
    if (!m_pDBWriter) return;
    for (void* pos = m_Enums.GetHeadPosition(); pos;) m_pDBWriter->WriteEnumTitle(*m_Enums.GetNext(pos));
}

void CStorage::PrintEnums() {
    for (void* pos = m_Enums.GetHeadPosition(); pos;) PrintEnum(*m_Enums.GetNext(pos));
}

void CStorage::PrintEnum(stEnum const& record) {
    if (!m_pDBWriter) return;
    m_pDBWriter->WriteEnum(record, record.m_strName);
    for (void* pos = record.m_Aliases.GetHeadPosition(); pos;) {
        m_pDBWriter->WriteEnum(record, record.m_Aliases.GetNext(pos));
    }
}

void CStorage::PrintUnions() {
    for (void* pos = m_Unions.GetHeadPosition(); pos;) PrintUnion(*m_Unions.GetNext(pos));
}

void CStorage::PrintUnion(stUnion const& record) {
    if (!m_pDBWriter) return;
    m_pDBWriter->WriteUnion(record, record.m_strName);
    for (void* pos = record.m_Aliases.GetHeadPosition(); pos;) {
        m_pDBWriter->WriteUnion(record, record.m_Aliases.GetNext(pos));
    }
}

void CStorage::PrintSignals() {
    for (void* pos = m_Signals.GetHeadPosition(); pos;) PrintSignal(*m_Signals.GetNext(pos));
}

void CStorage::PrintSignal(stSignal const& record) {
    if (!m_pDBWriter) return;
    m_pDBWriter->WriteSignal(record.m_strName, record.m_Fields);
    for (void* pos = record.m_Names.GetHeadPosition(); pos;) {
        m_pDBWriter->WriteSignal(record.m_Names.GetNext(pos), record.m_Fields);
    }
}

void CStorage::PrintGroups() {
    if (!m_pDBWriter) return;
    for (void* pos = m_Groups.GetHeadPosition(); pos;) m_pDBWriter->WriteGroup(*m_Groups.GetNext(pos));
}

// The n-th member of the union "Signal" is paired with the n-th enumerator of
// "SignalId"; the shorter of the two ends the table.
void CStorage::PrintSignalTable() {
    if (!m_pDBWriter) return;
    stUnion const* members = FindUnionByName(storagetexts::kSignalUnionName);
    stEnum const* ids = FindEnumByName(storagetexts::kSignalIdEnumName);
    if (!members || !ids) return;
    uint32_t rows = std::min(members->m_Fields.GetSize(), ids->m_Fields.GetSize());
    for (uint32_t i = 0; i < rows; ++i) {
        m_pDBWriter->WriteSignalTable(members->m_Fields.GetAt(i).m_strName, ids->m_Fields.GetAt(i).m_nValue);
    }
}

void CStorage::PrintUnionIdentifiers() {
    if (!m_pDBWriter) return;
    for (void* pos = m_UnionIdentifiers.GetHeadPosition(); pos;) {
        stUnionIdentifier const* pair = m_UnionIdentifiers.GetNext(pos);
        m_pDBWriter->WriteUnionIdentifier(pair->m_strUnionName, pair->m_strIdentifier);
    }
}
