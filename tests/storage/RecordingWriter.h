// A record writer for the store's tests: every call becomes one line of text,
// so a test compares the whole sequence of calls in one comparison.
#pragma once

#include <string>

#include "RecordWriter.h"

class RecordingWriter : public CRecordWriter {
public:
    std::string lines;

    void WriteCommand(stCommand const& command) override { Add("command " + Text(command)); }
    void WriteReport(stReport const& report) override {
        Add("report " + Text(report) + (report.m_bWrap ? " wrapped" : ""));
    }
    void WriteMonitor(stMonitor const& monitor) override {
        Add("monitor " + std::string(monitor.m_strName) + " #" + std::to_string(monitor.m_nIndex));
    }
    void WriteStruct(stStruct const& record, CString const& name) override {
        Add("struct " + std::string(name) + " of " + std::string(record.m_strName));
    }
    void WriteEnumTitle(stEnum const& record) override { Add("title " + std::string(record.m_strName)); }
    void WriteEnum(stEnum const& record, CString const& name) override {
        Add("enum " + std::string(name) + " of " + std::string(record.m_strName));
    }
    void WriteUnion(stUnion const& record, CString const& name) override {
        Add("union " + std::string(name) + " of " + std::string(record.m_strName));
    }
    void WriteSignal(CString const& name, CList<stSignalVar*> const& members) override {
        Add("signal " + std::string(name) + " with " + std::to_string(members.GetCount()));
    }
    void WriteSignalTable(CString const& memberName, int32_t value) override {
        Add("table " + std::string(memberName) + "=" + std::to_string(value));
    }
    void WriteGroup(stGroup const& group) override {
        Add("group " + std::string(group.m_strName) + "=" + std::to_string(group.m_nBaseValue));
    }
    void WriteUnionIdentifier(CString const& first, CString const& second) override {
        Add("pair " + std::string(first) + "," + std::string(second));
    }

private:
    static std::string Text(stMessage const& message) {
        return std::to_string(message.m_nLeadingNumber) + "," + std::to_string(message.m_nID) + "," +
               std::to_string(message.m_nTrailingNumber) + "," + std::string(message.GetFullName()) + "," +
               std::string(message.m_strFormat);
    }
    void Add(std::string const& line) { lines += line + "\n"; }
};
