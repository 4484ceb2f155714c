// The interface through which the store's print operations hand each record to
// the database writer. The store only knows this interface, so the storage
// library does not depend on the database-file library that implements it.
#pragma once

#include "CString.h"
#include "Collections.h"
#include "Records.h"

class CRecordWriter {
public:
    virtual ~CRecordWriter() = default;

    virtual void WriteCommand(stCommand const& command) = 0;
    virtual void WriteReport(stReport const& report) = 0;
    virtual void WriteMonitor(stMonitor const& monitor) = 0;
    virtual void WriteStruct(stStruct const& record, CString const& name) = 0;
    virtual void WriteEnumTitle(stEnum const& record) = 0;
    virtual void WriteEnum(stEnum const& record, CString const& name) = 0;
    virtual void WriteUnion(stUnion const& record, CString const& name) = 0;
    virtual void WriteSignal(CString const& name, CList<stSignalVar*> const& members) = 0;
    virtual void WriteSignalTable(CString const& memberName, int32_t value) = 0;
    virtual void WriteGroup(stGroup const& group) = 0;
    virtual void WriteUnionIdentifier(CString const& first, CString const& second) = 0;
};
