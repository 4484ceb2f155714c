// A record writer for the store's tests: every call becomes one line of text,
// so a test compares the whole sequence of calls in one comparison.
#pragma once

#include <string>

#include "RecordWriter.h"

class RecordingWriter : public CRecordWriter {
public:
    std::string lines;

    void WriteCommand(stCommand const& m) override { Add("command " + Text(m)); }
    void WriteReport(stReport const& m) override { Add("report " + Text(m) + (m.m_bWrap ? " wrapped" : "")); }
    void WriteMonitor(stMonitor const& m) override { Add("monitor " + S(m.m_strName) + " #" + N(m.m_nIndex)); }
    void WriteStruct(stStruct const& r, CString const& n) override { Add("struct " + S(n) + " of " + S(r.m_strName)); }
    void WriteEnumTitle(stEnum const& r) override { Add("title " + S(r.m_strName)); }
    void WriteEnum(stEnum const& r, CString const& n) override { Add("enum " + S(n) + " of " + S(r.m_strName)); }
    void WriteUnion(stUnion const& r, CString const& n) override { Add("union " + S(n) + " of " + S(r.m_strName)); }
    void WriteSignal(CString const& n, CList<stSignalVar*> const& f) override {
        Add("signal " + S(n) + " with " + N(f.GetCount()));
    }
    void WriteSignalTable(CString const& n, int32_t v) override { Add("table " + S(n) + "=" + N(v)); }
    void WriteGroup(stGroup const& g) override { Add("group " + S(g.m_strName) + "=" + N(g.m_nBaseValue)); }
    void WriteUnionIdentifier(CString const& a, CString const& b) override { Add("pair " + S(a) + "," + S(b)); }

private:
    static std::string S(CString const& s) { return std::string(s.GetData()); }
    static std::string N(int32_t n) { return std::to_string(n); }
    static std::string Text(stMessage const& m) {
        return N(m.m_nLeadingNumber) + "," + N(m.m_nID) + "," + N(m.m_nTrailingNumber) + "," + S(m.GetFullName()) +
               "," + S(m.m_strFormat);
    }
    void Add(std::string const& line) { lines += line + "\n"; }
};
