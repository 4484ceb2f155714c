// Cutting a database line into its columns, shared by the loader and the
// record reader: comma-separated fields with the free text always last, and the
// documentation markers inside a structure field's last column.
#pragma once

#include "CString.h"

namespace dbfields {

// The text before the first comma; rest keeps what follows it. Without a comma
// the field is empty (Left(-1)) and rest stays whole (Mid(0)), so a short line
// simply yields empty fields.
CString CutField(CString& rest);

// Reads the fields of one line where they stand, giving exactly what a series
// of CutField calls on a copy of the line gives, without copying the rest of
// the line at every field. The line must outlive the cursor.
class CFieldCursor {
public:
    explicit CFieldCursor(CString const& line) : m_pText(line.GetData()), m_nLeft(line.GetLength()) {}

    // The text before the next comma, the cursor moving past that comma. Without
    // a comma the field is empty and the cursor stays where it is.
    CString Next();
    // Atoi32 of the field Next would give; the cursor moves the same way.
    int32_t NextNumber();
    // What a CutField rest would hold now.
    CString Rest() const { return CString(m_pText, m_nLeft); }

    char const* GetData() const { return m_pText; }
    int32_t GetLength() const { return m_nLeft; }
    // Moves past n characters (at most the rest).
    void Advance(int32_t n);

private:
    char const* Comma() const;
    // NextNumber for a field that is not digits and its comma.
    int32_t NextNumberSearched();

    char const* m_pText;
    int32_t m_nLeft;
};

// The last column of a structure line: description, then mode, unit and
// dependency behind "@ITEM_MODE@", "@ITEM_UNIT@" and "@ITEM_DEPENDENCY@"; each
// marker is looked for only after the one before it was found.
struct DocTexts {
    CString description, mode, unit, dependency;
};
DocTexts SplitMarkers(CString const& text);
// The same for the length bytes at text, into a doc whose texts are empty.
void SplitMarkers(char const* text, int32_t length, DocTexts& doc);

}  // namespace dbfields
