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

// The last column of a structure line: description, then mode, unit and
// dependency behind "@ITEM_MODE@", "@ITEM_UNIT@" and "@ITEM_DEPENDENCY@"; each
// marker is looked for only after the one before it was found.
struct DocTexts {
    CString description, mode, unit, dependency;
};
DocTexts SplitMarkers(CString const& text);

}  // namespace dbfields
