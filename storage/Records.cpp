// The record operations of the type database: the initial values, the field
// cursors, record equality as the header merge judges it, and the enumeration
// size rule that every value an enumeration receives goes through. The loader
// and the header transfer call these while filling the store.
#include "Records.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "StorageTexts.h"

namespace {

// The number of dimension entries that take part in a comparison, kept inside
// the array whatever the count field holds.
int32_t DimsInUse(int32_t count) { return std::min(std::max(count, 0), kMaxDims); }

// Dimension counts 0 (a scalar) and 1 (an array of one) describe the same
// storage, so they compare equal.
int32_t NormalisedDimCount(int32_t count) { return count == 0 ? 1 : count; }

}  // namespace

// ---- stStructVar ----

stStructVar::stStructVar(bool bSignal) : m_nDimCount(0), m_nKind(KIND_PRIMITIVE), m_bSignal(bSignal) {
    std::fill(m_nDim, m_nDim + kMaxDims, 1);
}

void stStructVar::Clear() {
    *this = stStructVar(false);
}

bool stStructVar::operator==(stStructVar const& other) const {
    int32_t used = DimsInUse(m_nDimCount);
    for (int32_t i = 0; i < used; ++i) {
        if (m_nDim[i] != other.m_nDim[i]) return false;
    }
    return NormalisedDimCount(m_nDimCount) == NormalisedDimCount(other.m_nDimCount) && m_nKind == other.m_nKind &&
           m_strTypeText == other.m_strTypeText && m_strName == other.m_strName && m_bSignal == other.m_bSignal;
}

bool stStructVar::IsAllDocExist() const {
    return !m_strDescription.IsEmpty() && !m_strMode.IsEmpty() && !m_strUnit.IsEmpty();
}

// ---- stStruct ----

stStruct::stStruct() : m_nFlag(0) {}

stStruct::stStruct(stStruct const& other)
    : m_strName(other.m_strName),
      m_Aliases(other.m_Aliases),
      m_nFlag(other.m_nFlag),
      m_strInfo(other.m_strInfo),
      m_strDescription(other.m_strDescription),
      m_strDependency(other.m_strDependency),
      m_Fields(other.m_Fields) {}

stStruct& stStruct::operator=(stStruct const& other) {
    if (this == &other) return *this;
    m_strName = other.m_strName;
    m_Aliases = other.m_Aliases;
    m_nFlag = other.m_nFlag;
    m_strInfo = other.m_strInfo;
    m_strDescription = other.m_strDescription;
    m_strDependency = other.m_strDependency;
    m_Fields = other.m_Fields;
    return *this;
}

stStruct::~stStruct() = default;

void stStruct::Clear() {
    m_Fields.RemoveAll();
    m_strName.Empty();
    m_Aliases.RemoveAll();
    m_strInfo.Empty();
    m_strDescription.Empty();
    m_strDependency.Empty();
    m_nFlag = 0;
}

bool stStruct::operator==(stStruct const& other) const {
    if (m_Fields.GetSize() != other.m_Fields.GetSize()) return false;
    for (uint32_t i = 0; i < m_Fields.GetSize(); ++i) {
        if (m_Fields.GetAt(i) != other.m_Fields.GetAt(i)) return false;
    }
    return m_strName == other.m_strName;
}

void* stStruct::GetFirstFieldPosition() const { return m_Fields.GetHeadPosition(); }

stStructVar* stStruct::GetNextField(void*& pos) const {
    if (!pos) return nullptr;
    return &m_Fields.GetNext(pos);
}

stStructVar* stStruct::GetNewField() { return m_Fields.Emplace(false); }

void stStruct::AddField(stStructVar const* field) {
    if (field) m_Fields.Add(*field);
}

void stStruct::AddField(stStructVar&& field) { m_Fields.Add(std::move(field)); }

void stStruct::CancelLastField() { m_Fields.RemoveTail(); }

void stStruct::SetDescription(CString const& text) {
    if (!m_Fields.IsEmpty()) m_Fields.GetTail().m_strDescription = text;
}

void stStruct::SetMode(CString const& text) {
    if (!m_Fields.IsEmpty()) m_Fields.GetTail().m_strMode = text;
}

void stStruct::SetUnit(CString const& text) {
    if (!m_Fields.IsEmpty()) m_Fields.GetTail().m_strUnit = text;
}

void stStruct::SetDependency(CString const& text) {
    if (!m_Fields.IsEmpty()) m_Fields.GetTail().m_strDependency = text;
}

// ---- stUnion ----

stUnion::stUnion() : m_nSelector(0) {}

void stUnion::Clear() {
    stStruct::Clear();
    m_nSelector = 0;
    m_strSelector.Empty();
}

// ---- stEnumVar ----

stEnumVar::stEnumVar() : m_nValue(0) {}

stEnumVar::stEnumVar(CString const& name, int32_t value, CString const& description)
    : m_strName(name), m_nValue(value), m_strDescription(description) {}

void stEnumVar::Set(CString const& name, int32_t value, CString const& description) {
    m_strName = name;
    m_nValue = value;
    m_strDescription = description;
}

bool stEnumVar::operator==(stEnumVar const& other) const {
    return m_strName == other.m_strName && m_nValue == other.m_nValue;
}

// ---- stEnum ----

stEnum::stEnum()
    : m_bFlag(false),
      m_bHasTitle(false),
      m_nInitVal(-1),
      m_nSizeof(1),
      m_nMaxVal(-1),
      m_nMinVal(0),
      m_bHasNegative(false) {}

stEnum::~stEnum() = default;

// The name goes too: a pooled enumeration handed out again must not answer to
// the name of the one it held before.
void stEnum::Clear() {
    m_Fields.RemoveAll();
    m_Aliases.RemoveAll();
    m_strName.Empty();
    m_strTitle.Empty();
    m_strDescription.Empty();
    m_nInitVal = -1;
    m_nSizeof = 1;
    m_nMaxVal = -1;
    m_nMinVal = 0;
    m_bFlag = false;
    m_bHasTitle = false;
    m_bHasNegative = false;
}

void stEnum::AddField(CString const& name, int32_t value) { AddField(name, value, CString()); }

void stEnum::AddField(CString const& name, int32_t value, CString const& description) {
    m_Fields.Emplace(name, value, description);
    ApplySizeRule(value);
}

void stEnum::CopyVars(stEnum const& other) {
    if (&other == this) {
        stEnum copy(other);
        CopyVars(copy);
        return;
    }
    for (uint32_t i = 0; i < other.m_Fields.GetSize(); ++i) m_Fields.Add(other.m_Fields.GetAt(i));
}

void stEnum::SetInitVal(int32_t value) {
    m_nInitVal = value;
    ApplySizeRule(value);
}

void* stEnum::GetFirstFieldPosition() const { return m_Fields.GetHeadPosition(); }

bool stEnum::GetNextField(CString& name, int32_t& value, CString& description, void*& pos) const {
    if (!pos) return false;
    stEnumVar const& field = m_Fields.GetNext(pos);
    name = field.m_strName;
    value = field.m_nValue;
    description = field.m_strDescription;
    return true;
}

bool stEnum::operator==(stEnum const& other) const {
    if (m_Fields.GetSize() != other.m_Fields.GetSize()) return false;
    for (uint32_t i = 0; i < m_Fields.GetSize(); ++i) {
        if (!(m_Fields.GetAt(i) == other.m_Fields.GetAt(i))) return false;
    }
    return m_strName == other.m_strName;
}

bool stEnum::IsAllDocExist() const {
    if (m_strDescription.IsEmpty()) return false;
    for (uint32_t i = 0; i < m_Fields.GetSize(); ++i) {
        if (!m_Fields.GetAt(i).IsAllDocExist()) return false;
    }
    return true;
}

// The storage size only ever grows: one byte while every value fits a byte,
// two while they fit a short, four otherwise; signed ranges once a negative
// value has been seen.
void stEnum::ApplySizeRule(int32_t value) {
    if (value < 0) {
        m_bHasNegative = true;
        m_nMinVal = std::min(m_nMinVal, value);
    } else {
        m_nMaxVal = std::max(m_nMaxVal, value);
    }
    if (!m_bHasNegative) {
        if (m_nMaxVal > 0xFFFF) m_nSizeof = 4;
        else if (m_nMaxVal > 0xFF && m_nSizeof != 4) m_nSizeof = 2;
        return;
    }
    if (m_nMaxVal > 32767 || m_nMinVal < -32768) m_nSizeof = 4;
    else if ((m_nMaxVal > 127 || m_nMinVal < -128) && m_nSizeof != 4) m_nSizeof = 2;
}

// ---- messages, signals ----

// "%s__%s__%s" of the categories, each up to its first NUL, built without a
// printf: every loaded and transferred message names itself this way.
void stMessage::GetFullName(CString& name) const {
    constexpr size_t kSeparatorLength = sizeof storagetexts::kFullNameSeparator - 1;
    char const* parts[] = {m_strCat1.GetData(), m_strCat2.GetData(), m_strCat3.GetData()};
    size_t lengths[] = {std::strlen(parts[0]), std::strlen(parts[1]), std::strlen(parts[2])};
    size_t total = lengths[0] + lengths[1] + lengths[2] + 2 * kSeparatorLength;
    char local[256];
    char* text = total <= sizeof local ? local : static_cast<char*>(std::malloc(total));
    if (!text) std::abort();
    char* out = text;
    for (int32_t i = 0; i < 3; ++i) {
        if (i > 0) {
            std::memcpy(out, storagetexts::kFullNameSeparator, kSeparatorLength);
            out += kSeparatorLength;
        }
        std::memcpy(out, parts[i], lengths[i]);
        out += lengths[i];
    }
    // The categories may be name itself, so it is replaced only at the end.
    name = CString(text, static_cast<int32_t>(total));
    if (text != local) std::free(text);
}

CString stMessage::GetFullName() const {
    CString name;
    GetFullName(name);
    return name;
}

bool stReport::m_bDefaultFiltered = false;

stReport::stReport() : m_nFilterState(m_bDefaultFiltered ? 1 : 0) {}

stSignal::~stSignal() {
    for (void* pos = m_Fields.GetHeadPosition(); pos;) delete m_Fields.GetNext(pos);
}
