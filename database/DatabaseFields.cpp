// Field cutting and the documentation-marker split of database lines.
#include "DatabaseFields.h"

#include <cstring>

#include "DatabaseTexts.h"
#include "NumberText.h"

namespace dbfields {

namespace {

constexpr int32_t kItemModeLength = sizeof dbtexts::kItemMode - 1;
constexpr int32_t kItemUnitLength = sizeof dbtexts::kItemUnit - 1;
constexpr int32_t kItemDependencyLength = sizeof dbtexts::kItemDependency - 1;

// The first place at or after start where the n bytes of what stand in
// text[0, length), NULs compared like any byte; -1 when absent.
int32_t FindBytes(char const* text, int32_t length, char const* what, int32_t n, int32_t start) {
    for (int32_t p = start; p <= length - n;) {
        void const* hit = std::memchr(text + p, what[0], static_cast<size_t>(length - n - p + 1));
        if (!hit) return -1;
        p = static_cast<int32_t>(static_cast<char const*>(hit) - text);
        if (std::memcmp(text + p, what, static_cast<size_t>(n)) == 0) return p;
        ++p;
    }
    return -1;
}

}  // namespace

CString CutField(CString& rest) {
    int32_t pos = rest.Find(',');
    CString field = rest.Left(pos);
    rest = rest.Mid(pos + 1);
    return field;
}

char const* CFieldCursor::Comma() const {
    return m_nLeft > 0 ? static_cast<char const*>(std::memchr(m_pText, ',', static_cast<size_t>(m_nLeft))) : nullptr;
}

void CFieldCursor::Advance(int32_t n) {
    if (n > m_nLeft) n = m_nLeft;
    if (n <= 0) return;
    m_pText += n;
    m_nLeft -= n;
}

CString CFieldCursor::Next() {
    char const* comma = Comma();
    if (!comma) return CString();
    int32_t length = static_cast<int32_t>(comma - m_pText);
    CString field(m_pText, length);
    Advance(length + 1);
    return field;
}

// The number is read where it stands: the comma that ends the field stops the
// conversion just as the end of a copied field would. A field of one to nine
// plain digits, the usual case, cannot saturate and is read here directly; when
// a comma follows its digits, it is the field's own, found without a search.
int32_t CFieldCursor::NextNumber() {
    int32_t digits = 0;
    int32_t value = 0;
    for (; digits < m_nLeft && digits < 9 && m_pText[digits] >= '0' && m_pText[digits] <= '9'; ++digits) {
        value = value * 10 + (m_pText[digits] - '0');
    }
    if (digits > 0 && digits < m_nLeft && m_pText[digits] == ',') {
        Advance(digits + 1);
        return value;
    }
    return NextNumberSearched();
}

int32_t CFieldCursor::NextNumberSearched() {
    char const* comma = Comma();
    if (!comma) return 0;
    int32_t length = static_cast<int32_t>(comma - m_pText);
    int32_t value = 0;
    bool plain = length > 0 && length < 10;
    for (int32_t i = 0; plain && i < length; ++i) {
        char digit = m_pText[i];
        plain = digit >= '0' && digit <= '9';
        if (plain) value = value * 10 + (digit - '0');
    }
    if (!plain) value = Atoi32(m_pText);
    Advance(length + 1);
    return value;
}

DocTexts SplitMarkers(CString const& text) {
    DocTexts doc;
    SplitMarkers(text.GetData(), text.GetLength(), doc);
    return doc;
}

// Each marker is looked for behind the one before, as in the rest that a cut
// at that marker would leave; every part is copied by its bytes, NULs included.
void SplitMarkers(char const* text, int32_t length, DocTexts& doc) {
    struct Part {
        char const* marker;
        int32_t markerLength;
        CString* text;
    } const parts[] = {
        {dbtexts::kItemMode, kItemModeLength, &doc.description},
        {dbtexts::kItemUnit, kItemUnitLength, &doc.mode},
        {dbtexts::kItemDependency, kItemDependencyLength, &doc.unit},
    };
    int32_t start = 0;
    for (Part const& part : parts) {
        int32_t at = FindBytes(text, length, part.marker, part.markerLength, start);
        if (at < 0) {
            *part.text = CString(text + start, length - start);
            return;
        }
        *part.text = CString(text + start, at - start);
        start = at + part.markerLength;
    }
    doc.dependency = CString(text + start, length - start);
}

}  // namespace dbfields
