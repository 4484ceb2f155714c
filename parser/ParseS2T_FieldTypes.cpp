// CParseS2T: the type of a structure field. The first type word of a field is
// resolved through the typedef map (with the "unsigned"/"signed" rules), put
// into its canonical spelling, and given a field kind; consecutive bit-fields
// are folded into 32-bit holder fields, since the database knows no bits.
// Called by the structure and union parsers for every field they read.
#include "ParseS2T.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

#include "ParserTexts.h"

namespace {

// Primitive type names other than the character types. The eight-bit names
// are here on purpose: the kind only separates the character types from the
// other primitives.
char const* const kIntTypeNames[] = {
    "UINT8",         "DWORD",          "UINT32",         "WORD",          "UINT16",       "INT32",
    "INT16",         "Int16",          "Int8",           "Int32",         "USIGNED",      "SIGNED8",
    "USIGNED8",      "SIGNED16",       "USIGNED16",      "SIGNED32",      "USIGNED32",    "BOOLEAN",
    "SIGNED64",      "USIGNED64",      "XXXXXX",         "INT8",          "BOOL",         "short",
    "long",          "int",            "unsigned short", "signed short",  "unsigned int", "signed int",
    "unsigned long", "signed long",    "unsigned long64", "signed long64", "long64",
};

char const* const kCharTypeNames[] = {"BYTE", "CHAR", "char", "UBYTE", "unsigned char", "signed char"};

// Written spelling to canonical spelling; "int" depends on the target and is
// handled apart.
struct STypeSpelling {
    char const* written;
    char const* canonical;
};
STypeSpelling const kTypeSpellings[] = {
    {"unsigned int", "unsigned long"},       {"unsigned long int", "unsigned long"},
    {"signed int", "signed long"},           {"unsigned long long", "unsigned long64"},
    {"unsigned __int64", "unsigned long64"}, {"signed long long", "signed long64"},
    {"signed __int64", "signed long64"},     {"long long", "long64"},
    {"__int64", "long64"},
};

// The primitive names with their kinds, found by length and then by bytes:
// one short walk instead of a hash of the text, for each field a header declares.
class CPrimitiveNames {
public:
    CPrimitiveNames() {
        for (char const* name : kIntTypeNames) Add(name, FIELD_INT);
        for (char const* name : kCharTypeNames) Add(name, FIELD_CHAR);
    }
    // FIELD_INT, FIELD_CHAR, or -1 for any other text; exact, by length, so a
    // text holding a NUL is none of the names.
    int32_t KindOf(CString const& text) const {
        int32_t length = text.GetLength();
        if (length <= 0 || length > kLongest) return -1;
        char const* data = text.GetData();
        for (SEntry const& entry : m_byLength[length]) {
            if (entry.name[0] == data[0] && std::memcmp(entry.name, data, static_cast<size_t>(length)) == 0)
                return entry.kind;
        }
        return -1;
    }

private:
    static constexpr int32_t kLongest = 15;
    struct SEntry {
        char const* name;
        int32_t kind;
    };
    void Add(char const* name, int32_t kind) {
        size_t length = std::strlen(name);
        if (length <= kLongest) m_byLength[length].push_back(SEntry{name, kind});
    }
    std::vector<SEntry> m_byLength[kLongest + 1];
};

CPrimitiveNames const kPrimitiveNames;

// The canonical spelling of a written one, or null when the text stays.
char const* CanonicalSpelling(CString const& text, int32_t intBits) {
    int32_t length = text.GetLength();
    char const* data = text.GetData();
    if (length == 3 && std::memcmp(data, "int", 3) == 0) {
        if (intBits == 32) return "long";
        if (intBits == 16) return "SIGNED16";
        return nullptr;
    }
    // Every written spelling starts with one of these letters.
    char first = text.IsEmpty() ? '\0' : data[0];
    if (first != 'u' && first != 's' && first != 'l' && first != '_') return nullptr;
    for (STypeSpelling const& spelling : kTypeSpellings) {
        if (static_cast<size_t>(length) == std::strlen(spelling.written) &&
            std::memcmp(data, spelling.written, static_cast<size_t>(length)) == 0)
            return spelling.canonical;
    }
    return nullptr;
}

// Whether ResolveTypeAlias drops the text's first nine characters: it holds
// "volatile" anywhere.
bool HoldsVolatile(CString const& text) {
    constexpr int32_t kLength = sizeof kVolatile - 1;
    char const* data = text.GetData();
    int32_t last = text.GetLength() - kLength;
    for (int32_t at = 0; at <= last;) {
        char const* hit = static_cast<char const*>(std::memchr(data + at, 'v', static_cast<size_t>(last - at + 1)));
        if (!hit) return false;
        if (std::memcmp(hit, kVolatile, kLength) == 0) return true;
        at = static_cast<int32_t>(hit - data) + 1;
    }
    return false;
}

// The name kBitFieldHolderName formats for the tag and number, built without
// a printf: the tag up to its first NUL, the text between "%s" and "%d", the
// number in decimal.
constexpr int32_t kHolderNameMiddle = static_cast<int32_t>(sizeof kBitFieldHolderName) - 5;
static_assert(kBitFieldHolderName[0] == '%' && kBitFieldHolderName[1] == 's' &&
                  kBitFieldHolderName[kHolderNameMiddle + 2] == '%' && kBitFieldHolderName[kHolderNameMiddle + 3] == 'd',
              "the holder name is a tag, a fixed text and a number");

CString BitFieldHolderName(CString const& tag, int32_t number) {
    CString name(tag.GetData());
    name += CString(kBitFieldHolderName + 2, kHolderNameMiddle);
    char digits[12];
    int32_t at = sizeof digits;
    uint32_t value = number < 0 ? 0u - static_cast<uint32_t>(number) : static_cast<uint32_t>(number);
    do {
        digits[--at] = static_cast<char>('0' + value % 10u);
        value /= 10u;
    } while (value != 0);
    if (number < 0) digits[--at] = '-';
    name += CString(digits + at, static_cast<int32_t>(sizeof digits) - at);
    return name;
}

}  // namespace

bool CParseS2T::IsFieldQualifier(CString const& word) {
    // By length first: most words are none of the four.
    for (char const* qualifier : kFieldQualifiers) {
        size_t length = std::char_traits<char>::length(qualifier);
        if (static_cast<size_t>(word.GetLength()) == length && std::memcmp(word.GetData(), qualifier, length) == 0)
            return true;
    }
    return false;
}

bool CParseS2T::IsReservedKeyword(CString const& word) {
    for (void* pos = m_ReservedKeywords.GetHeadPosition(); pos;) {
        if (m_ReservedKeywords.GetNext(pos) == word) return true;
    }
    return false;
}

bool CParseS2T::IsPrimitiveTypeName(CString const& type) { return kPrimitiveNames.KindOf(type) >= 0; }

CString CParseS2T::ResolveTypeAlias(CString const& start) {
    // Most texts are answered at once: no alias, or an alias met before. Every
    // text with a kept answer is an alias (the map of aliases only grows), so
    // a text that is none needs no second look-up.
    if (!HoldsVolatile(start)) {
        if (!m_TypedefMap.Find(start)) return start;
        auto known = m_ResolvedAliases.find(start);
        if (known != m_ResolvedAliases.end()) return known->second;
    }
    CString text = start;
    // A chain of aliases that comes back to a text already seen stops there,
    // so that a looping typedef cannot hold the parse: the answer is the first
    // text met twice, which for a text on the loop is that text itself.
    std::vector<CString> path;
    std::unordered_map<CString, size_t, CStringKeyHash> seen;
    size_t loopStart = SIZE_MAX;
    CString answer;
    for (;;) {
        if (HoldsVolatile(text)) text = text.Mid(9);
        auto known = m_ResolvedAliases.find(text);
        if (known != m_ResolvedAliases.end()) {
            answer = known->second;
            break;
        }
        CString const* alias = m_TypedefMap.Find(text);
        if (!alias) {
            answer = text;
            // Only a chain that was followed leaves answers to drop later; a
            // text that is no alias at all is answered afresh each time.
            if (!path.empty()) m_AliasChainEnds.insert(text);
            break;
        }
        auto met = seen.emplace(text, path.size());
        if (!met.second) {
            answer = text;
            loopStart = met.first->second;
            break;
        }
        path.push_back(text);
        text = *alias;
    }
    for (size_t i = 0; i < path.size(); ++i)
        m_ResolvedAliases.emplace(path[i], loopStart != SIZE_MAX && i > loopStart ? path[i] : answer);
    return answer;
}

CString CParseS2T::FollowSizeofAlias(CString const& type) {
    auto known = m_SizeofAliases.find(type);
    if (known != m_SizeofAliases.end()) return known->second;
    // The answer is the last text before the chain ends or comes back to a
    // text already met; for a text on a loop, the one before it on the loop.
    std::vector<CString> path{type};
    std::unordered_map<CString, size_t, CStringKeyHash> seen{{type, 0}};
    size_t loopStart = SIZE_MAX;
    CString answer;
    for (;;) {
        CString const* next = m_TypedefMap.Find(path.back());
        if (!next) {
            answer = path.back();
            m_AliasChainEnds.insert(answer);
            break;
        }
        auto met = seen.find(*next);
        if (met != seen.end()) {
            answer = path.back();
            loopStart = met->second;
            break;
        }
        known = m_SizeofAliases.find(*next);
        if (known != m_SizeofAliases.end()) {
            answer = known->second;
            break;
        }
        seen.emplace(*next, path.size());
        path.push_back(*next);
    }
    for (size_t i = 0; i < path.size(); ++i)
        m_SizeofAliases.emplace(path[i], loopStart != SIZE_MAX && i > loopStart ? path[i - 1] : answer);
    return answer;
}

void CParseS2T::DropResolvedAliases(CString const& alias) {
    // A new alias changes an answer only when it redefines a text already
    // mapped or maps a text that some chain ended at.
    if (m_ResolvedAliases.empty() && m_SizeofAliases.empty()) return;
    if (!m_TypedefMap.Find(alias) && m_AliasChainEnds.find(alias) == m_AliasChainEnds.end()) return;
    m_ResolvedAliases.clear();
    m_SizeofAliases.clear();
    m_AliasChainEnds.clear();
}

CString CParseS2T::ResolveFieldType(CFile* file, CString const& first, CString& pending) {
    pending.Empty();
    CString text = ResolveTypeAlias(first);
    // Only "unsigned" and "signed" gather the keywords after them: in
    // "short int x" the type is "short" and "int x" is the declarator.
    if (text != kUnsigned && text != kSigned) return text;
    CString token = GetBodyToken(file);
    CString word = ResolveTypeAlias(token);
    if (m_nTokenType != TOKEN_ORDINARY || !IsReservedKeyword(word)) {
        // A bare "unsigned" or "signed" before the field name is recorded as
        // UINT32, the signed one too.
        pending = token;
        return kBareUnsignedType;
    }
    while (m_nTokenType == TOKEN_ORDINARY && IsReservedKeyword(word)) {
        text += ' ';
        text += word;
        ReadBodyToken(file, token);
        word = ResolveTypeAlias(token);
    }
    pending = token;
    return text;
}

CString CParseS2T::NormaliseTypeName(CString const& text) {
    char const* canonical = CanonicalSpelling(text, m_nIntBits);
    return canonical ? CString(canonical) : text;
}

void CParseS2T::NormaliseTypeNameInPlace(CString& text) {
    if (char const* canonical = CanonicalSpelling(text, m_nIntBits)) text = canonical;
}

int32_t CParseS2T::SelectFieldKind(CString const& type) {
    int32_t kind = kPrimitiveNames.KindOf(type);
    if (kind < 0) {
        kind = FIELD_STRUCT;
        if (FindEnumByName(type)) kind = FIELD_ENUM;
        else if (FindUnionByName(type)) kind = FIELD_UNION;
    }
    if (type == "void") kind = FIELD_CHAR;
    return kind;
}

void CParseS2T::AddBitField(CStruct* owner, CStructVar* field, int32_t width, int32_t& holderCounter) {
    CList<CObject*>& fields = owner->m_lstVars;
    CStructVar* holder = field;
    void* tail = fields.GetTailPosition();
    void* before = tail;
    if (tail) fields.GetPrev(before);
    CStructVar* previous = before ? static_cast<CStructVar*>(fields.GetAt(before)) : nullptr;
    if (previous && previous->m_nBitCount != 0) {
        // The bits join the run of the field before; this field's name is lost.
        holder = previous;
        if (tail && fields.GetAt(tail) == field) {
            fields.RemoveAt(tail);
            delete field;
        }
    }
    // A width above 32 on a fresh holder stays in that holder: a new holder is
    // only started for bits that do not fit beside bits already held.
    if (holder->m_nBitCount > 0 && static_cast<int64_t>(holder->m_nBitCount) + width > 32) {
        holder = new CStructVar;
        fields.AddTail(holder);
    }
    if (holder->m_nBitCount == 0) {
        holder->m_strName = BitFieldHolderName(owner->m_strTag, holderCounter++);
        holder->m_nType = FIELD_CHAR;
        holder->m_strType = kBitFieldHolderType;
    }
    int64_t bits = static_cast<int64_t>(holder->m_nBitCount) + (width > 0 ? width : 0);
    holder->m_nBitCount = bits > INT32_MAX ? INT32_MAX : static_cast<int32_t>(bits);
}
