// CParseS2T: constant expressions and sizeof. Macro bodies, enumerator
// initialisers and array sizes are evaluated on the token stream with one
// 32-bit accumulator, strictly left to right: each operand is combined with
// the accumulator by the token read just before it. Names resolve against the
// enumerators parsed so far (through m_EnumIndex), then the define table.
#include "ParseS2T.h"

#include "NumberText.h"
#include "ParserTexts.h"

namespace {

// Signed 32-bit arithmetic that wraps as the target's did.
int32_t Wrap(uint32_t value) { return static_cast<int32_t>(value); }

using EnumEntryArrays = std::vector<std::vector<CParseS2T::SEnumIndexEntry>>;

void PushEnumEntry(CParseS2T::SEnumIndexEntries& entries, EnumEntryArrays& arrays, CParseS2T::SEnumIndexEntry entry) {
    if (entries.count++ == 0) {
        entries.first = entry;
        return;
    }
    if (!entries.more) {
        arrays.emplace_back();
        entries.more = static_cast<uint32_t>(arrays.size());
    }
    arrays[entries.more - 1].push_back(entry);
}

void PopEnumEntry(CParseS2T::SEnumIndexEntries& entries, EnumEntryArrays& arrays) {
    if (entries.count > 1) arrays[entries.more - 1].pop_back();
    if (entries.count > 0) --entries.count;
}

}  // namespace

int32_t CParseS2T::GetDefineVal(CFile* file) {
    CommitLinePos();
    if (m_strLine.IsEmpty()) return -1;
    CString token = GetToken(file);
    // A body that starts with "(" is its first group; what follows the ")" is
    // left in the line and ignored.
    if (token == "(") return ParseBrackets(file);
    CString rest = CurrentLine();
    int32_t slashes = rest.Find(kLineComment);
    int32_t opener = rest.Find(kBlockCommentOpen);
    int32_t cut = -1;
    if (slashes >= 0 && opener >= 0) cut = slashes < opener ? slashes : opener;
    else if (slashes >= 0) cut = slashes;
    else if (opener >= 0 && rest.Find(kBlockCommentClose) < 0) cut = opener;
    // The first token and the rest are joined without a blank, so "1 << 4"
    // becomes "1<< 4 )": "1<<" reads as 1 and then "4" replaces it, giving 4.
    // Kept so that macro values come out as they always have.
    CString line = token;
    if (cut < 0) {
        line += rest;
        line += " )";
    } else {
        line += rest.Left(cut);
        line += " )";
        line += rest.Mid(cut + 1);
    }
    m_strLine = line;
    SetLinePos(0);
    LineChanged();
    return ParseBrackets(file);
}

int32_t CParseS2T::ParseBrackets(CFile* file) { return ParseBracketsUntil(file, ")"); }

int32_t CParseS2T::ParseBracketsUntil(CFile* file, char const* closing) {
    // Each "(" opens a group evaluated with a fresh accumulator; its value is
    // then combined by the token before the "(". The groups are kept on a
    // stack of their own rather than by recursion, so that any depth of
    // parentheses is safe. The end of the file ends the innermost open group
    // only: the group around it then reads on, as a nested evaluation would.
    struct Group {
        int32_t acc;
        CString previous;
    };
    std::vector<Group> outer;
    int32_t acc = 0;
    CString previous;
    CString token;
    auto closeGroup = [&]() {
        int32_t inner = acc;
        acc = outer.back().acc;
        previous = outer.back().previous;
        outer.pop_back();
        token = "(";
        acc = Operation(previous, acc, inner);
        // The "(" itself then goes on like any other token.
        ApplyOperand(previous, token, acc);
    };
    for (;;) {
        if (token == (outer.empty() ? closing : ")")) {
            if (outer.empty()) return acc;
            closeGroup();
            continue;
        }
        previous = token;
        ReadToken(file, token);
        if (m_nTokenType == TOKEN_EOF) {
            if (outer.empty()) return acc;
            closeGroup();
            continue;
        }
        if (token == "(") {
            outer.push_back(Group{acc, previous});
            acc = 0;
            previous.Empty();
            token.Empty();
            continue;
        }
        if (token == kKeywordSizeof) acc = Operation(previous, acc, CalcSizeOf(file));
        ApplyOperand(previous, token, acc);
    }
}

void CParseS2T::ApplyOperand(CString const& previous, CString const& token, int32_t& acc) {
    // The three comparisons that the headers write as constants are four
    // characters long.
    if (token.GetLength() == 4) {
        if (token == kAlwaysFalse) {
            acc = 0;
            return;
        }
        if (token == kAlwaysTrue || token == kAlwaysTrueZero) {
            acc = 1;
            return;
        }
    }
    if (token.GetLength() >= 2 && token.GetAt(0) == kHexPrefix[0] && token.GetAt(1) == kHexPrefix[1]) {
        // Suffixes such as U or L end the digits; "0x" alone reads as 0.
        uint32_t number = 0;
        ReadHex32(token.GetData() + 2, number);
        acc = Operation(previous, acc, static_cast<int32_t>(number));
        return;
    }
    int32_t number = Atoi32(token.GetData());
    if (number != 0 || token == "0") {
        acc = Operation(previous, acc, number);
        return;
    }
    // Operators, punctuation and unknown names have no value and are skipped.
    int32_t value = FindEnumVal(token);
    if (value != kNoValue) acc = Operation(previous, acc, value);
}

int32_t CParseS2T::Operation(CString const& op, int32_t acc, int32_t value) {
    uint32_t a = static_cast<uint32_t>(acc);
    uint32_t v = static_cast<uint32_t>(value);
    // Every operator is one character long but the shifts.
    if (op.GetLength() == 1) {
        switch (op.GetAt(0)) {
            case '+': return Wrap(a + v);
            case '/':
                if (value == 0) break;
                if (acc == INT32_MIN && value == -1) return INT32_MIN;  // wraps on the target
                return acc / value;
            case '-': return Wrap(a - v);
            case '*': return Wrap(a * v);
            case '|': return Wrap(a | v);
            case '&': return Wrap(a & v);
            case '^': return Wrap(a ^ v);
            default: break;
        }
    } else if (op.GetLength() == 2 && op.GetAt(0) == op.GetAt(1)) {
        if (op.GetAt(0) == '<') return Wrap(a << (v & 31u));
        if (op.GetAt(0) == '>') return acc >> (v & 31u);  // sign-filling
    }
    // Any other token (empty at the start of a group, "(", a name) starts
    // afresh, and so does a division by zero: the operand is the result.
    return value;
}

int32_t CParseS2T::CalcSizeOf(CFile* file) {
    if (GetToken(file) != "(") return -1;
    CString type = GetToken(file);
    // A chain of typedefs is followed to its end; one that comes back to a text
    // already met stops there.
    type = FollowSizeofAlias(type);
    int32_t size = -1;
    if (type.EndsWith("char")) size = 1;
    else if (type.EndsWith("short")) size = 2;
    else if (type.EndsWith("long")) size = 4;
    if (GetToken(file) != ")") return -1;
    return size;
}

// ---- enumerator look-up

int32_t CParseS2T::FindEnumVal(CString const& name) {
    SyncEnumIndex();
    int32_t tailOrdinal = m_EnumList.GetCount() - 1;
    bool tailHasName = false;
    if (SEnumIndexEntries const* entries = m_EnumIndex.Find(name.GetData(), static_cast<size_t>(name.GetLength()))) {
        for (int32_t i = 0; i < entries->count; ++i) {
            int32_t value = EnumIndexEntry(*entries, i).nValue;
            if (value != kNoValue) return value;
        }
        tailHasName = entries->count > 0 && EnumIndexEntry(*entries, entries->count - 1).nOrdinal == tailOrdinal;
    }
    // The newest enumerator of the last enumeration is read in place: its value
    // may still be changing while its initialiser is evaluated.
    if (m_pEnumPartial && !tailHasName && m_nPartialValuesIndexed < m_pEnumPartial->m_lstValues.GetCount()) {
        CDefines* newest = static_cast<CDefines*>(m_pEnumPartial->m_lstValues.GetTail());
        if (newest && newest->m_strName == name && newest->m_nValue != kNoValue) return newest->m_nValue;
    }
    return FindDefVal(name);
}

void CParseS2T::NoteEnumListShrunk(int32_t count) {
    // Enumerations leave the list only from its tail (a repeated one is
    // dropped), and the parser reads a token between dropping one and
    // appending the next; noticing the drop here keeps the index from
    // answering for an enumeration that is gone.
    if (count == m_nEnumsIndexed && m_pEnumPartial) DropPartialEnum();
    else if (count < m_nEnumsIndexed) m_bEnumIndexStale = true;
}

void CParseS2T::DropPartialEnum() {
    for (uint32_t id : m_PartialNames) {
        SEnumIndexEntries& entries = m_EnumIndex.Value(id);
        if (entries.count > 0 && EnumIndexEntry(entries, entries.count - 1).nOrdinal == m_nEnumsIndexed) {
            PopEnumEntry(entries, m_EnumIndexMore);
        }
    }
    m_PartialNames.clear();
    m_pEnumPartial = nullptr;
    m_nPartialValuesIndexed = 0;
    m_posPartialValue = nullptr;
}

void CParseS2T::ClearEnumIndex() {
    m_EnumIndex.Clear();
    m_EnumIndexMore.clear();
    m_PartialNames.clear();
    m_nEnumsIndexed = 0;
    m_posLastEnumIndexed = nullptr;
    m_pEnumPartial = nullptr;
    m_nPartialValuesIndexed = 0;
    m_posPartialValue = nullptr;
    m_bEnumIndexStale = false;
}

void CParseS2T::SyncEnumIndex() {
    NoteEnumListChanges();
    if (m_bEnumIndexStale || m_EnumList.GetCount() < m_nEnumsIndexed) ClearEnumIndex();
    void* pos = m_posLastEnumIndexed;
    if (pos) m_EnumList.GetNext(pos);
    else pos = m_EnumList.GetHeadPosition();
    if (m_pEnumPartial) {
        // The enumeration indexed in part must still stand where it stood.
        CEnum* standing = pos ? static_cast<CEnum*>(m_EnumList.GetAt(pos)) : nullptr;
        if (standing != m_pEnumPartial || standing->m_lstValues.GetCount() < m_nPartialValuesIndexed) {
            ClearEnumIndex();
            pos = m_EnumList.GetHeadPosition();
        }
    }
    while (pos) {
        void* here = pos;
        CEnum* enumeration = static_cast<CEnum*>(m_EnumList.GetNext(pos));
        if (enumeration != m_pEnumPartial) {
            m_pEnumPartial = enumeration;
            m_nPartialValuesIndexed = 0;
            m_posPartialValue = nullptr;
            m_PartialNames.clear();
        }
        int32_t values = enumeration ? enumeration->m_lstValues.GetCount() : 0;
        if (!pos) {
            IndexEnumValues(enumeration, values - 1);
            return;
        }
        IndexEnumValues(enumeration, values);
        ++m_nEnumsIndexed;
        m_posLastEnumIndexed = here;
        m_pEnumPartial = nullptr;
        m_nPartialValuesIndexed = 0;
        m_posPartialValue = nullptr;
        m_PartialNames.clear();
    }
}

void CParseS2T::IndexEnumValues(CEnum* enumeration, int32_t limit) {
    if (!enumeration) return;
    CList<CObject*> const& values = enumeration->m_lstValues;
    void* pos = m_posPartialValue;
    if (pos) values.GetNext(pos);
    else pos = values.GetHeadPosition();
    // The index's slots of the names a few places ahead are fetched early, so
    // that the waits for them overlap.
    auto hashOf = [](CDefines const* value) {
        return NameTableHash(value->m_strName.GetData(), static_cast<size_t>(value->m_strName.GetLength()));
    };
    void* ahead = pos;
    auto fetchAhead = [&]() {
        if (!ahead) return;
        if (CDefines const* value = static_cast<CDefines*>(values.GetNext(ahead))) m_EnumIndex.Prefetch(hashOf(value));
    };
    for (int32_t i = 0; i < 4; ++i) fetchAhead();
    while (pos && m_nPartialValuesIndexed < limit) {
        fetchAhead();
        void* here = pos;
        CDefines* value = static_cast<CDefines*>(values.GetNext(pos));
        if (value) {
            // Only the first enumerator of a name in each enumeration answers.
            CString const& name = value->m_strName;
            uint32_t id = m_EnumIndex.Insert(name.GetData(), static_cast<size_t>(name.GetLength()), hashOf(value));
            SEnumIndexEntries& entries = m_EnumIndex.Value(id);
            if (entries.count == 0 || EnumIndexEntry(entries, entries.count - 1).nOrdinal != m_nEnumsIndexed) {
                PushEnumEntry(entries, m_EnumIndexMore, SEnumIndexEntry{m_nEnumsIndexed, value->m_nValue});
                m_PartialNames.push_back(id);
            }
        }
        m_posPartialValue = here;
        ++m_nPartialValuesIndexed;
    }
}
