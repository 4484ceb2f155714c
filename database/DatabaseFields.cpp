// Field cutting and the documentation-marker split of database lines.
#include "DatabaseFields.h"

#include "DatabaseTexts.h"

namespace dbfields {

namespace {

constexpr int32_t kItemModeLength = sizeof dbtexts::kItemMode - 1;
constexpr int32_t kItemUnitLength = sizeof dbtexts::kItemUnit - 1;
constexpr int32_t kItemDependencyLength = sizeof dbtexts::kItemDependency - 1;

}  // namespace

CString CutField(CString& rest) {
    int32_t pos = rest.Find(',');
    CString field = rest.Left(pos);
    rest = rest.Mid(pos + 1);
    return field;
}

DocTexts SplitMarkers(CString const& text) {
    DocTexts doc;
    int32_t at = text.Find(dbtexts::kItemMode);
    if (at < 0) {
        doc.description = text;
        return doc;
    }
    doc.description = text.Left(at);
    CString rest = text.Mid(at + kItemModeLength);
    at = rest.Find(dbtexts::kItemUnit);
    if (at < 0) {
        doc.mode = rest;
        return doc;
    }
    doc.mode = rest.Left(at);
    rest = rest.Mid(at + kItemUnitLength);
    at = rest.Find(dbtexts::kItemDependency);
    if (at < 0) {
        doc.unit = rest;
        return doc;
    }
    doc.unit = rest.Left(at);
    doc.dependency = rest.Mid(at + kItemDependencyLength);
    return doc;
}

}  // namespace dbfields
