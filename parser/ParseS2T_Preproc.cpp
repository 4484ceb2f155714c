// CParseS2T: directives and the define table. The lexer hands every "#" line
// other than #include and #define to ParsePPStatements, which keeps the
// conditional-compilation stack and #undef; #define values are recorded by
// AddDefineStatementToDefineArray, in the per-file table m_Defines (searched
// by value, oldest first, through m_DefineIndex) and in the process-wide
// g_DefinesMap (asked by #ifdef, #ifndef and #undef).
#include "ParseS2T.h"

#include <cstdio>

#include "NumberText.h"
#include "ParserTexts.h"

CMapStringTo<int32_t> g_DefinesMap;

// ---- directives

void CParseS2T::ParsePPStatements(CFile* file) {
    // Handling a directive reads the next line, which may be a directive too:
    // ReadLine then only marks it pending and it is handled here, one after the
    // other, so that a long run of directive lines does not nest calls.
    ++m_nDirectiveDepth;
    do {
        m_bDirectivePending = false;
        HandleDirective(file);
    } while (m_bDirectivePending);
    --m_nDirectiveDepth;
}

CString CParseS2T::DirectiveName() const {
    // The text after the last blank or tab, without parentheses: in
    // "#if defined(X)" the name is "definedX", in "#if defined (X)" it is "X".
    // Only the last name of a compound condition counts. Kept as headers tuned
    // to these rules expect.
    int32_t space = m_strLine.ReverseFind(' ');
    int32_t tab = m_strLine.ReverseFind('\t');
    int32_t last = space > tab ? space : tab;
    CString name = last < 0 ? m_strLine : m_strLine.Mid(last + 1);
    name.Remove('(');
    name.Remove(')');
    return name;
}

void CParseS2T::HandleDirective(CFile* file) {
    CommitLinePos();
    LineChanged();
    m_strLine.Remove('#');
    static CString const trimSet(kDirectiveTrimSet);
    m_strLine.TrimLeft(trimSet);
    // "else" is matched as the whole line: "else " (a blank left by a removed
    // comment) is an unknown directive and ignored.
    if (m_strLine.GetLength() == 4 && m_strLine.StartsWith(kDirectiveElse)) {
        if (m_IfStack.IsEmpty()) {
            std::fprintf(stderr, kMsgElseWithoutIf, m_nLineNo);
            return;
        }
        m_IfStack.GetTail() = m_IfStack.GetTail() == 0 ? 1 : 0;
        ReadLine(file, 0);
        return;
    }
    if (m_strLine.StartsWith(kDirectiveEndif)) {
        if (m_IfStack.IsEmpty()) {
            std::fprintf(stderr, kMsgEndifWithoutIf, m_nLineNo, m_strFileName.GetData());
            return;
        }
        m_IfStack.RemoveTail();
        ReadLine(file, 0);
        return;
    }
    if (m_strLine.StartsWith(kDirectiveIf)) {
        RemoveComments(m_strLine);
        if (m_strLine.Find(kDirectiveDefined) < 0 && m_strLine.Find(kDirectiveIfdef) < 0 &&
            m_strLine.Find(kDirectiveIfndef) < 0) {
            // A plain #if is taken as true without being evaluated; its words
            // stay in the line and reach the caller as ordinary tokens.
            m_IfStack.Add(1);
            return;
        }
        bool positive = !m_strLine.StartsWith(kDirectiveIfndef) && m_strLine.Find('!') < 0;
        bool defined = g_DefinesMap.Find(DirectiveName()) != nullptr;
        m_IfStack.Add(defined == positive ? 1 : 0);
        ReadLine(file, 0);
        return;
    }
    if (m_strLine.StartsWith(kDirectiveUndef)) {
        RemoveComments(m_strLine);
        g_DefinesMap.RemoveKey(DirectiveName());
    }
    // #undef, and every other directive (pragma, elif, error, line), which is ignored.
    ReadLine(file, 0);
}

// ---- the define table

bool CParseS2T::IsTypeDef(CString const& word) {
    // Every word passes: no word differs from all three keywords at once, so
    // every #define is recorded. Intended.
    return word != "struct" || word != "enum" || word != "union";
}

void CParseS2T::ParseDefineStatement(CFile* file) {
    CString name = GetToken(file);
    if (IsTypeDef(name)) AddDefineStatementToDefineArray(file, name);
}

void CParseS2T::AddDefineStatementToDefineArray(CFile* file, CString name) {
    name.Trim();
    if (m_nDefinesCount < 0 || m_nDefinesCount >= kMaxDefines) {
        // No room: the value is still read, so that the rest of the line is
        // consumed as usual, and the entry is dropped.
        GetDefineVal(file);
        StoreDefine(name, 0);
        return;
    }
    m_Defines[m_nDefinesCount].m_strName = name;
    int32_t value = GetDefineVal(file);
    if (StoreDefine(name, value)) g_DefinesMap.SetAt(name, value);
}

void CParseS2T::AddHiddenEnumDefine(CString const& name) {
    CString trimmed = name;
    trimmed.Trim();
    StoreDefine(trimmed, kHiddenEnumValue);
}

bool CParseS2T::StoreDefine(CString const& name, int32_t value) {
    // True when the entry also belongs in g_DefinesMap. The 5000th entry and
    // every one after it print the limit message; those after it are dropped.
    SyncDefineIndex();
    if (m_nDefinesCount >= 0 && m_nDefinesCount < kMaxDefines) {
        CDefines& entry = m_Defines[m_nDefinesCount];
        entry.m_strName = name;
        entry.m_nValue = value;
        IndexDefine(name, m_nDefinesCount);
        m_nDefineIndexCount = ++m_nDefinesCount;
        if (m_nDefinesCount <= kMaxDefines - 1) return true;
    }
    std::printf(kMsgTooManyDefines, kMaxDefines);
    return false;
}

void CParseS2T::ResetDefineTable() {
    m_nDefinesCount = 0;
    m_DefineIndex.Clear();
    m_nDefineIndexCount = 0;
}

void CParseS2T::SyncDefineIndex() {
    // The index follows the table; a count set back from outside (a new file)
    // starts it again.
    if (m_nDefinesCount < m_nDefineIndexCount) {
        m_DefineIndex.Clear();
        m_nDefineIndexCount = 0;
    }
    int32_t count = m_nDefinesCount < kMaxDefines ? m_nDefinesCount : kMaxDefines;
    for (int32_t i = m_nDefineIndexCount; i < count; ++i) {
        IndexDefine(m_Defines[i].m_strName, i);
    }
    if (count > m_nDefineIndexCount) m_nDefineIndexCount = count;
}

void CParseS2T::IndexDefine(CString const& name, int32_t entry) {
    bool added = false;
    uint32_t id = m_DefineIndex.Insert(name.GetData(), static_cast<size_t>(name.GetLength()), &added);
    if (added) m_DefineIndex.Value(id) = entry;  // the oldest entry of a name answers
}

int32_t CParseS2T::FindDefVal(CString const& token) {
    int32_t number = Atoi32(token.GetData());
    if (number != 0) return number;
    // "0" itself falls through to the search, like any name.
    SyncDefineIndex();
    int32_t const* index = m_DefineIndex.Find(token.GetData(), static_cast<size_t>(token.GetLength()));
    return index ? m_Defines[*index].m_nValue : kNoValue;
}
