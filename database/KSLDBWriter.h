// The database writer: recreates the database file at the end of a run and
// writes its thirteen sections in their fixed order. The store walks its lists
// and calls back one routine per record; every line is its text and one line
// feed, fields separated by single commas, no quoting.
#pragma once

#include <cstdint>

#include "CFile.h"
#include "CString.h"
#include "Collections.h"
#include "LineText.h"
#include "RecordWriter.h"
#include "Records.h"
#include "RunContext.h"

class CStorage;

class CKSLDBWriter : public CRecordWriter {
public:
    CKSLDBWriter(CStorage* storage, stData* data);
    ~CKSLDBWriter() override;

    // Creates the file with mode "wb"; non-zero on success. After a failure the
    // writer still holds a closed file, through which writes do nothing.
    int Open(char const* path);
    int Open(CString const& path) { return Open(path.GetData()); }
    // Safe to call twice.
    void Close();
    void WriteDB();

    void WriteMessage(stMessage const& message, int32_t isCommand, bool wrap);
    void WriteCommand(stCommand const& command) override;
    void WriteReport(stReport const& report) override;
    void WriteMonitor(stMonitor const& monitor) override;
    void WriteParameter(CString const& name, CString const& value);
    void WriteParameters();
    void WriteStruct(stStruct const& record, CString const& name) override;
    // 1, or 0 when the field's structure or signal type is unknown (the
    // field's lines are then left out and m_strLastError says which).
    int WriteStructVar(stStructVar const* field, CString const& structName, int32_t flag, CString const& info);
    void WriteEnumTitle(stEnum const& record) override;
    void WriteEnum(stEnum const& record, CString const& name) override;
    void WriteUnion(stUnion const& record, CString const& name) override;
    int WriteUnionVar(stStructVar const* member, CString const& unionName);
    void WriteSignal(CString const& name, CList<stSignalVar*> const& members) override;
    void WriteSignalTable(CString const& memberName, int32_t value) override;
    void WriteGroup(stGroup const& group) override;
    void WriteUnionIdentifier(CString const& first, CString const& second) override;

    CFile* m_pFile = nullptr;
    CStorage* m_pStorage;
    stData* m_pData;
    CString m_strLastError;

private:
    // One line and its line feed; nothing before Open.
    void PutLine(char const* line);
    // Ends the line built in line; the ended lines go to the file in blocks.
    void PutLine(CLineText& line, bool removeLineFeeds = false);
    // Writes the lines gathered so far.
    void Flush();
    // The keyword, the store's print routine for the section, "<end>".
    void WriteSection(char const* keyword, void (CStorage::*print)());
    // Whether a structure-kind field's type is in the store (as a signal when
    // signalAllowed and the field's signal flag are set); sets m_strLastError if not.
    bool KnownType(stStructVar const& field, bool signalAllowed);
    void WriteSignalVar(CString const& signalName, stSignalVar const& member);

    CLineText m_Line;  // every record line, gathered until the next flush
};
