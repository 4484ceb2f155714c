// CDefExports: keeps the exports section of a module-definition (.def) file up
// to date. Open reads the file and finds the section between the lines that
// begin with ";KESTRIN EXPORTS BEGIN" and ";KESTRIN EXPORTS END"; Add collects
// export names; Close replaces the section with them, each behind a tab, and
// writes the file back. Every other line is kept as it was.
#pragma once

#include <cstdint>

#include "CString.h"
#include "Collections.h"

class CDefExports {
public:
    // 1 when the file was read and both markers were found. An empty path or a
    // file that cannot be read gives 0 silently; missing markers give 0 and a
    // warning on standard error. The last line beginning with a marker counts.
    int Open(CString path);
    // Appends a name to the exports to insert, in call order.
    void Add(CString name);
    // Replaces the section and rewrites the file; does nothing unless Open
    // succeeded. True when the file was rewritten; a file that cannot be opened
    // for writing prints an error on standard error and gives false.
    bool Close();
    // The replacement step of Close: 0 (with the warning) when a marker index is
    // missing, else 1. See the .cpp for the lines it removes.
    int InsetExportsToFileContents();

    int32_t m_bOpen = 0;
    CStringArray m_FileLines;  // without line ends
    CStringArray m_Exports;    // in Add order
    CString m_strFileName;
    int32_t m_nBeginLine = -1;  // last line beginning with the begin marker
    int32_t m_nEndLine = -1;    // last line beginning with the end marker

private:
    void WarnSectionMissing() const;
    // Inserts every export, each behind a tab, before line index at.
    void InsertExportsAt(uint32_t at);
};
