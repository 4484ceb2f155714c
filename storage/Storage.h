// The in-memory type database of a run. It owns every record added to it,
// keeps each kind in insertion order for output, indexes the named kinds by
// name and alias (13931 buckets, case-sensitive), hands out message
// identifiers, and drives the database writer section by section.
#pragma once

#include <cstdint>
#include <map>

#include "CString.h"
#include "Collections.h"
#include "RecordWriter.h"
#include "Records.h"
#include "RunContext.h"

class CStorage {
public:
    explicit CStorage(stData* data);
    CStorage(CStorage const&) = delete;
    CStorage& operator=(CStorage const&) = delete;
    ~CStorage();

    // Adding: the store takes ownership. A name already indexed is overwritten
    // in the index (the newer record wins look-ups); both stay in the list.
    void AddStruct(stStruct* record);
    void AddEnum(stEnum* record);
    void AddUnion(stUnion* record);
    void AddSignal(stSignal* record);
    // Returns whether the name was added (false when it is already indexed).
    bool AddNameToSignal(stSignal* record, CString const& name);
    void AddCommand(stCommand* command, CString const& fullName);
    void AddCommand(stCommand* command);
    void AddReport(stReport* report, CString const& name);
    // The same, the index taking the name over.
    void AddReport(stReport* report, CString&& name);
    // The first monitor of a name wins: a later one is deleted at once.
    void AddMonitor(stMonitor* monitor, CString const& name);
    void AddGroup(stGroup* group);
    // The first pair of a union name wins.
    void AddUnionIdentifier(CString const& unionName, CString const& identifier);

    stCommand* FindCommandByName(CString const& name) const;
    stReport* FindReportByName(CString const& name) const;
    stStruct* FindStructByName(CString const& name) const;
    stEnum* FindEnumByName(CString const& name) const;
    stUnion* FindUnionByName(CString const& name) const;
    stSignal* FindSignalByName(CString const& name) const;
    stMonitor* FindMonitorByName(CString const& name) const;
    // Null when the identifier is unknown or only reserved.
    stCommand* FindCommandById(int32_t id) const;
    stReport* FindReportById(int32_t id) const;
    stGroup* FindGroupById(int32_t baseValue) const;
    stStruct* GetLastStruct() const;
    stUnion* GetLastUnion() const;
    void* GetFirstReportPosition() const { return m_Reports.GetHeadPosition(); }
    stReport* GetNextReport(void*& pos) const { return m_Reports.GetNext(pos); }
    void* GetFirstSignalPosition() const { return m_Signals.GetHeadPosition(); }
    stSignal* GetNextSignal(void*& pos) const { return m_Signals.GetNext(pos); }

    // When the name is indexed: unlink the record, remove its names from the
    // index and delete it; otherwise nothing.
    void DeleteCommandByName(CString const& name);
    void DeleteReportByName(CString const& name);
    void DeleteStructByName(CString const& name);
    void DeleteEnumByName(CString const& name);
    void DeleteUnionByName(CString const& name);
    void DeleteSignalByName(CString const& name);

    bool CompareCommands(stCommand const& a, stCommand const& b) const;
    bool CompareReports(stReport const& a, stReport const& b) const;
    bool CompareStructs(stStruct const& a, stStruct const& b) const { return a == b; }
    bool CompareUnions(stUnion const& a, stUnion const& b) const { return a == b; }
    bool CompareEnums(stEnum const& a, stEnum const& b) const { return a == b; }

    // The first free identifier at or after the cursor; reserves it and moves
    // the cursor past it.
    int32_t GetNextAvailableCommandID(int32_t* cursor);
    int32_t GetNextAvailableReportID(int32_t* cursor);
    // The first run of count free report identifiers at or after the cursor.
    int32_t GetNextAvailableManyReportID(int32_t* cursor, int32_t count);

    stStruct* GetFreeStruct();
    stUnion* GetFreeUnion();
    stEnum* GetFreeEnum();
    void ReleaseStruct(stStruct* record);
    void ReleaseUnion(stUnion* record);
    void ReleaseEnum(stEnum* record);

    // No commands, reports, structures or enumerations (other kinds do not count).
    bool IsStorageEmpty() const;

    void SetDBWriter(CRecordWriter* writer) { m_pDBWriter = writer; }
    void PrintCommands();
    void PrintReports();
    void PrintMonitors();
    void PrintStructs();
    void PrintStruct(stStruct const& record);
    void PrintEnumsTitle();
    void PrintEnums();
    void PrintEnum(stEnum const& record);
    void PrintUnions();
    void PrintUnion(stUnion const& record);
    void PrintSignals();
    void PrintSignal(stSignal const& record);
    void PrintGroups();
    void PrintSignalTable();
    void PrintUnionIdentifiers();

    // The missing-items report beside the given database path; 1 when written.
    int WriteOrphanReportsToFile(CString const& predefinedPath);

    // Read access for the components that walk whole lists.
    CList<stReport*> const& Reports() const { return m_Reports; }
    CList<stCommand*> const& Commands() const { return m_Commands; }
    CList<stMonitor*> const& Monitors() const { return m_Monitors; }
    CList<stStruct*> const& Structs() const { return m_Structs; }
    CList<stUnion*> const& Unions() const { return m_Unions; }
    CList<stEnum*> const& Enums() const { return m_Enums; }
    CList<stSignal*> const& Signals() const { return m_Signals; }
    CListPtr<stGroup> const& Groups() const { return m_Groups; }
    CList<stUnionIdentifier*> const& UnionIdentifiers() const { return m_UnionIdentifiers; }
    stData* GetRunContext() const { return m_pData; }

private:
    CList<stReport*> m_Reports;
    CList<stCommand*> m_Commands;
    CList<stMonitor*> m_Monitors;
    CList<stStruct*> m_Structs;
    CList<stUnion*> m_Unions;
    CList<stEnum*> m_Enums;
    CList<stSignal*> m_Signals;
    CListPtr<stGroup> m_Groups;
    CList<stUnionIdentifier*> m_UnionIdentifiers;
    CMapStringTo<void*> m_CommandNames;
    CMapStringTo<void*> m_ReportNames;
    CMapStringTo<void*> m_MonitorNames;
    CMapStringTo<void*> m_StructNames;
    CMapStringTo<void*> m_UnionNames;
    CMapStringTo<void*> m_EnumNames;
    CMapStringTo<void*> m_SignalNames;
    CMapStringTo<void*> m_UnionIdentifierNames;
    CMap<int32_t, int32_t, void*, void*> m_CommandIds;
    CMap<int32_t, int32_t, void*, void*> m_ReportIds;
    CMap<int32_t, int32_t, void*, void*> m_GroupIds;
    // Base value -> list position of the first group with it: where AddGroup
    // inserts is found without walking the sorted list.
    std::map<int32_t, void*> m_GroupOrder;
    CRecordWriter* m_pDBWriter = nullptr;
    CList<stStruct*> m_FreeStructs;
    CList<stUnion*> m_FreeUnions;
    CList<stEnum*> m_FreeEnums;
    stData* m_pData;
    int32_t m_nMonitorCount = 0;
};
