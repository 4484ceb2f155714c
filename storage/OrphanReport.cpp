// The missing-items report: every name still indexed for commands, reports,
// structures and enumerations, written beside the predefined database. A caller
// that deletes each item it matched is left with the unmatched ones, and this
// lists them. Names come in the indexes' bucket order, not in insertion order.
#include "Storage.h"

#include "CFile.h"
#include "StorageTexts.h"

namespace {

// The path up to its last "." (searched in the whole path, folders included)
// with the report suffix; a path without "." gives the bare suffix.
CString OrphanReportPath(CString const& predefinedPath) {
    return predefinedPath.Left(predefinedPath.ReverseFind('.')) + storagetexts::kOrphanFileSuffix;
}

void WriteSection(CFile& file, char const* heading, CMapStringTo<void*> const& index) {
    file.WriteString(heading);
    CString name;
    void* value = nullptr;
    for (void* pos = index.GetStartPosition(); pos;) {
        index.GetNextAssoc(pos, name, value);
        file.WriteLine(name);
    }
}

}  // namespace

int CStorage::WriteOrphanReportsToFile(CString const& predefinedPath) {
    CFile file;
    if (!file.Open(OrphanReportPath(predefinedPath), "wb")) return 0;
    WriteSection(file, storagetexts::kOrphanCommandsHeading, m_CommandNames);
    WriteSection(file, storagetexts::kOrphanReportsHeading, m_ReportNames);
    WriteSection(file, storagetexts::kOrphanStructsHeading, m_StructNames);
    WriteSection(file, storagetexts::kOrphanEnumsHeading, m_EnumNames);
    file.Close();
    return 1;
}
