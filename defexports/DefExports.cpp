// CDefExports: reading a module-definition file, replacing the lines of its
// exports section with the collected names and writing it back. Nothing here is
// part of a KSManCMD run; KSManUtil's "exports" command drives it.
#include "DefExports.h"

#include <cstdio>
#include <utility>

#include "CFile.h"
#include "DefExportsTexts.h"

using namespace defexports_texts;

int CDefExports::Open(CString path) {
    if (path.IsEmpty()) return 0;
    CFile file;
    if (!file.Open(path, "rb")) return 0;
    m_strFileName = path;
    CString line;
    while (file.ReadString(line)) {
        // Indexes of the array, so lines added by an earlier Open are counted too.
        int32_t index = static_cast<int32_t>(m_FileLines.GetSize());
        m_FileLines.Add(line);
        if (line.StartsWith(kBeginMarker)) m_nBeginLine = index;
        if (line.StartsWith(kEndMarker)) m_nEndLine = index;
    }
    file.Close();
    if (m_nBeginLine == -1 || m_nEndLine == -1) {
        WarnSectionMissing();
        return 0;
    }
    m_bOpen = 1;
    return 1;
}

void CDefExports::Add(CString name) {
    m_Exports.Add(name);
}

// The lines removed are RemoveAt(B + 1, E - B - 1): a line count passed where
// the last index is expected. With the markers on lines 0 and 4 exactly lines
// 1 to 3 go; with adjacent markers (2 and 3) the count is 0, so the end marker
// line itself goes; with markers on 2 and 5 lines 2 and 3 go (the begin marker
// among them). Kept so that module-definition files keep coming out exactly as
// they always have from the tool set.
int CDefExports::InsetExportsToFileContents() {
    if (m_nBeginLine < 0 || m_nEndLine < 0) {
        WarnSectionMissing();
        return 0;
    }
    uint32_t begin = static_cast<uint32_t>(m_nBeginLine);
    uint32_t end = static_cast<uint32_t>(m_nEndLine);
    // An end marker above the begin marker wraps the count to a huge index, and
    // RemoveAt then removes nothing.
    m_FileLines.RemoveAt(begin + 1, end - begin - 1);
    m_nEndLine = m_nBeginLine + 1;
    InsertExportsAt(begin + 1);
    m_nEndLine += static_cast<int32_t>(m_Exports.GetSize());
    return 1;
}

// The same lines as inserting each name at the running index one by one, built
// in one pass. When the index lies past the end (the removal above can shorten
// the file below it), the gap is filled with empty lines as an indexed insert
// would do.
void CDefExports::InsertExportsAt(uint32_t at) {
    uint32_t count = m_Exports.GetSize();
    if (count == 0) return;
    uint32_t size = m_FileLines.GetSize();
    CStringArray lines;
    for (uint32_t i = 0; i < at && i < size; ++i) lines.Add(std::move(m_FileLines[i]));
    for (uint32_t i = size; i < at; ++i) lines.Add(CString());
    for (uint32_t i = 0; i < count; ++i) lines.Add(CString(kExportIndent) + m_Exports[i]);
    for (uint32_t i = at; i < size; ++i) lines.Add(std::move(m_FileLines[i]));
    m_FileLines = lines;
}

// A carriage return or line feed inside a line becomes a NUL, and the file
// writer stops at the first NUL: such a line is written only up to it and
// without its line feed. Kept as the tool set has always written these files.
bool CDefExports::Close() {
    if (!m_bOpen) return false;
    if (!InsetExportsToFileContents()) return false;
    CFile file;
    if (!file.Open(m_strFileName, "wb")) {
        std::fprintf(stderr, kCannotWrite, m_strFileName.GetData());
        return false;
    }
    for (uint32_t i = 0; i < m_FileLines.GetSize(); ++i) {
        CString text = m_FileLines[i];
        text.Replace('\r', '\0');
        text.Replace('\n', '\0');
        text += "\n";
        file.WriteString(text);
    }
    file.Close();
    return true;
}

void CDefExports::WarnSectionMissing() const {
    std::fprintf(stderr, kSectionMissing, m_strFileName.GetData());
}
