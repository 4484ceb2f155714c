// CParseS2T: lines, comments and tokens. ReadLine brings in one trimmed line,
// cleaned of comments and with its directive handled; GetToken hands the
// declaration parsers one word at a time, reading further lines by itself.
// The rest of the current line is m_strLine from m_nLinePos on: a token is cut
// by moving the offset, and m_strLine is brought up to date (CommitLinePos)
// before any code reads it as a whole.
#include "ParseS2T.h"

#include <cstdio>
#include <cstring>

#include "ParserTexts.h"

namespace {

// The characters CString::TrimLeft removes: signed values 1 to 32.
bool IsLeftBlank(char c) {
    int32_t value = static_cast<signed char>(c);
    return value >= 1 && value <= 32;
}

// The first place at or after pos (up to length) whose character TrimLeft
// keeps. Runs of spaces, as lines are indented and columns aligned with, go
// eight at a time.
int32_t SkipBlanks(char const* text, int32_t pos, int32_t length) {
    static constexpr char kEightSpaces[] = "        ";
    while (pos + 8 <= length && std::memcmp(text + pos, kEightSpaces, 8) == 0) pos += 8;
    while (pos < length && IsLeftBlank(text[pos])) ++pos;
    return pos;
}

// The separator set as a table: a word ends at the first of them, as
// FindOneOf would find it, without comparing every character with the set.
struct SSeparatorTable {
    bool is[256];
};

constexpr SSeparatorTable MakeSeparatorTable() {
    SSeparatorTable table{};
    for (char const* c = kTokenSeparators; *c; ++c) table.is[static_cast<unsigned char>(*c)] = true;
    return table;
}

constexpr SSeparatorTable kSeparators = MakeSeparatorTable();

// The first length characters of line stay, as Left(length) would keep them,
// without a copy; length is below the line's length.
void CutLineAt(CString& line, int32_t length) { line.SetAt(length, '\0'); }

// The first count characters leave the line, as a left trim takes them, in
// place; count lies from 1 to the line's length.
void DropFront(CString& line, int32_t count) {
    int32_t rest = line.GetLength() - count;
    std::memmove(line.GetData(), line.GetData() + count, static_cast<size_t>(rest));
    CutLineAt(line, rest);
}

// TrimLeft of spaces and tabs, without a set built per call.
void TrimBlanksAndTabsLeft(CString& line) {
    int32_t count = 0;
    while (count < line.GetLength() && (line.GetAt(count) == ' ' || line.GetAt(count) == '\t')) ++count;
    if (count > 0) DropFront(line, count);
}

// StartsWith for a constant prefix, its length known without strlen.
template <size_t N>
bool TextStartsWith(CString const& text, char const (&prefix)[N]) {
    return text.GetLength() >= static_cast<int32_t>(N - 1) && std::memcmp(text.GetData(), prefix, N - 1) == 0;
}

// Where the two-character comment mark stands first at or after from, as
// CString::Find gives it, or -1. Every mark holds a "/", so the search runs
// with memchr from one "/" to the next.
int32_t FindCommentMark(CString const& line, char const (&mark)[3], int32_t from) {
    char const* text = line.GetData();
    int32_t length = line.GetLength();
    // The "/" is the mark's first character ("//", "/*") or its second ("*/").
    int32_t slashAt = mark[0] == '/' ? 0 : 1;
    char other = mark[1 - slashAt];
    int32_t at = from + slashAt;
    while (at < length) {
        char const* hit = static_cast<char const*>(std::memchr(text + at, '/', static_cast<size_t>(length - at)));
        if (!hit) return -1;
        int32_t slash = static_cast<int32_t>(hit - text);
        int32_t start = slash - slashAt;
        if (slashAt == 0 ? slash + 1 < length && text[slash + 1] == other : text[start] == other) return start;
        at = slash + 1;
    }
    return -1;
}

// DeleteRemark by plain searches, for a line of many slashes.
void DeleteCommentsBySearch(CString& line, bool& inComment) {
    int32_t slashes = FindCommentMark(line, kLineComment, 0);
    if (slashes >= 0) CutLineAt(line, slashes);
    // Every "/*" closed on the same line is deleted with its comment; the first
    // one left open cuts the line. Done in one pass, in place: after the "//"
    // cut no deletion can join a new "/*" or "*/" out of the characters around
    // it, and the kept text never overtakes the part still to be searched.
    bool openingSeen = false;
    char* text = line.GetData();
    int32_t kept = 0;
    int32_t from = 0;
    for (;;) {
        int32_t open = FindCommentMark(line, kBlockCommentOpen, from);
        if (open < 0) break;
        inComment = true;
        openingSeen = true;
        std::memmove(text + kept, text + from, static_cast<size_t>(open - from));
        kept += open - from;
        int32_t close = FindCommentMark(line, kBlockCommentClose, open);
        if (close < 0) {
            from = line.GetLength();
            break;
        }
        inComment = false;
        from = close + 2;
    }
    if (openingSeen) {
        std::memmove(text + kept, text + from, static_cast<size_t>(line.GetLength() - from));
        CutLineAt(line, kept + line.GetLength() - from);
    }
    int32_t close = FindCommentMark(line, kBlockCommentClose, 0);
    if (close >= 0) {
        // The end of a comment opened on an earlier line.
        inComment = false;
        int32_t rest = line.GetLength() - close - 2;
        std::memmove(line.GetData(), line.GetData() + close + 2, static_cast<size_t>(rest));
        CutLineAt(line, rest);
    }
    if (!openingSeen && close < 0 && inComment) line.Empty();
}

}  // namespace

// ---- the rest of the current line

void CParseS2T::CheckLinePos() {
    // Another part of the parser replaced m_strLine while an offset was pending:
    // the new text is the whole rest of the line.
    if (m_nLinePos == 0) return;
    if (m_strLine.GetData() != m_pLineSeenData || m_strLine.GetLength() != m_nLineSeenLength ||
        m_nLinePos > m_strLine.GetLength()) {
        m_nLinePos = 0;
    }
}

void CParseS2T::SetLinePos(int32_t pos) {
    m_nLinePos = pos;
    m_pLineSeenData = m_strLine.GetData();
    m_nLineSeenLength = m_strLine.GetLength();
}

void CParseS2T::SkipLineBlanks() { SetLinePos(SkipBlanks(m_strLine.GetData(), m_nLinePos, m_strLine.GetLength())); }

void CParseS2T::CommitLinePos() {
    CheckLinePos();
    if (m_nLinePos == 0) return;
    int32_t rest = m_strLine.GetLength() - m_nLinePos;
    m_strLine.Delete(0, m_nLinePos);
    m_strLine.SetAt(rest, '\0');  // Delete leaves the old tail behind the text
    m_nLinePos = 0;
    LineChanged();
}

CString& CParseS2T::CurrentLine() {
    CommitLinePos();
    LineChanged();  // the caller may change the line through the reference
    return m_strLine;
}

bool CParseS2T::LineStartsWith(char const* prefix) const {
    int32_t n = static_cast<int32_t>(std::strlen(prefix));
    return m_strLine.GetLength() - m_nLinePos >= n && std::memcmp(m_strLine.GetData() + m_nLinePos, prefix, n) == 0;
}

// Empty by length: a NUL left inside the line (a directive that held several
// "#" loses only one character of length) is a character like any other.
bool CParseS2T::LineIsEmpty() const { return m_strLine.GetLength() - m_nLinePos <= 0; }

// ---- lines

int CParseS2T::ReadLine(CFile* file, int raw) {
    char const* text = nullptr;
    int32_t length = 0;
    if (!file || !file->ReadLineView(text, length)) return 0;
    // Trimmed as TrimRight and then TrimLeft would, before the one copy.
    while (length > 0 && static_cast<signed char>(text[length - 1]) <= 32) --length;
    // Indentation is mostly spaces by fours.
    int32_t blanks = 0;
    while (blanks + 4 <= length && std::memcmp(text + blanks, "    ", 4) == 0) blanks += 4;
    while (blanks < length && IsLeftBlank(text[blanks])) ++blanks;
    char const* trimmed = text + blanks;
    int32_t kept = length - blanks;
    // The usual lines are cleaned of comments before the copy, as DeleteRemark
    // would clean them: one without a "/", and one whose only two slashes open
    // a comment and close it at the end of the line. Any other goes through
    // DeleteRemark below.
    bool cleaned = false;
    if (raw == 0 && !m_bExportedOnly) {
        char const* slash = static_cast<char const*>(std::memchr(trimmed, '/', static_cast<size_t>(kept)));
        if (!slash) {
            if (m_bInComment) kept = 0;
            cleaned = true;
        } else {
            int32_t open = static_cast<int32_t>(slash - trimmed);
            int32_t last = kept - 1;
            if (last >= open + 2 && trimmed[open + 1] == '*' && trimmed[last] == '/' && trimmed[last - 1] == '*' &&
                !std::memchr(trimmed + open + 1, '/', static_cast<size_t>(last - open - 1))) {
                kept = open;
                m_bInComment = false;
                cleaned = true;
            }
        }
    }
    m_strLine.AssignBytes(trimmed, kept);
    m_nLinePos = 0;
    LineChanged();
    m_nLineNo = static_cast<int32_t>(static_cast<uint32_t>(m_nLineNo) + 1u);
    DisplayFileProcessedSizePercentage(file);
    if (m_bExportedOnly) {
        // A marker counts only on the line directly above its typedef, and only
        // at the first character of the trimmed line.
        if (TextStartsWith(m_strLine, kTypedefStruct) && m_bExportedStruct) return 1;
        m_bExportedStruct = TextStartsWith(m_strLine, kExportedStructMarker);
        if (TextStartsWith(m_strLine, kTypedefEnum) && m_bExportedEnum) return 1;
        m_bExportedEnum = TextStartsWith(m_strLine, kExportedEnumMarker);
    }
    if (raw != 0) return 1;
    if (!cleaned) DeleteRemark(m_strLine);
    if (m_strLine.IsEmpty() || m_strLine.GetAt(0) != '#') return 1;
    m_strLine.Remove('#');
    TrimBlanksAndTabsLeft(m_strLine);
    if (TextStartsWith(m_strLine, kKeywordInclude) || TextStartsWith(m_strLine, kKeywordDefine)) return 1;
    // A directive read while another is being handled is handled after it, by
    // the loop in ParsePPStatements: a header of many directive lines in a row
    // must not nest one call per line.
    if (m_nDirectiveDepth > 0) m_bDirectivePending = true;
    else ParsePPStatements(file);
    return 1;
}

void CParseS2T::DisplayFileProcessedSizePercentage(CFile* file) {
    m_nProgressLines = static_cast<int32_t>(static_cast<uint32_t>(m_nProgressLines) + 1u);
    if (m_nProgressLines % 2000 != 0) return;
    uint32_t position = static_cast<uint32_t>(file->GetPosition());
    uint32_t length = static_cast<uint32_t>(m_nFileLength);
    // An empty file yields no line, so a length of 0 only comes from a caller
    // that never set it; it shows 0 rather than dividing by zero.
    uint32_t percent = length ? position * 100u / length : 0u;
    std::printf(kMsgFilePercentage, static_cast<long>(percent));
}

// ---- comments

void CParseS2T::DeleteRemark(CString& line) {
    // Every comment mark holds a "/", so the marks are read off the line's
    // slashes, found once. A line with more slashes than kept here goes
    // through the plain searches.
    constexpr int32_t kMaxSlashes = 16;
    int32_t slashAt[kMaxSlashes];
    int32_t slashCount = 0;
    char* text = line.GetData();
    int32_t length = line.GetLength();
    for (int32_t at = 0; at < length;) {
        char const* hit = static_cast<char const*>(std::memchr(text + at, '/', static_cast<size_t>(length - at)));
        if (!hit) break;
        if (slashCount == kMaxSlashes) {
            DeleteCommentsBySearch(line, m_bInComment);
            return;
        }
        at = static_cast<int32_t>(hit - text);
        slashAt[slashCount++] = at++;
    }
    if (slashCount == 0) {
        // Only a comment opened above can hide the line.
        if (m_bInComment) line.Empty();
        return;
    }
    for (int32_t i = 0; i < slashCount; ++i) {
        if (slashAt[i] + 1 < length && text[slashAt[i] + 1] == '/') {
            length = slashAt[i];
            CutLineAt(line, length);
            slashCount = i;
            break;
        }
    }
    // As in DeleteCommentsBySearch: each "/*" with its "*/", in one pass.
    bool openingSeen = false;
    bool slashKept = false;  // a "/" outside every comment stays in the line
    int32_t kept = 0;
    int32_t from = 0;
    int32_t i = 0;
    for (;;) {
        int32_t open = -1;
        for (; i < slashCount; ++i) {
            if (slashAt[i] + 1 < length && text[slashAt[i] + 1] == '*') {
                open = slashAt[i];
                break;
            }
            slashKept = true;
        }
        if (open < 0) break;
        m_bInComment = true;
        openingSeen = true;
        // Text before the first comment stays where it stands.
        if (kept != from) std::memmove(text + kept, text + from, static_cast<size_t>(open - from));
        kept += open - from;
        int32_t close = -1;
        for (++i; i < slashCount; ++i) {
            if (text[slashAt[i] - 1] == '*') {
                close = slashAt[i] - 1;
                break;
            }
        }
        if (close < 0) {
            from = length;
            break;
        }
        m_bInComment = false;
        from = close + 2;
        ++i;
    }
    if (openingSeen) {
        if (from < length) std::memmove(text + kept, text + from, static_cast<size_t>(length - from));
        CutLineAt(line, kept + length - from);
    }
    // A "*/" left needs a "/" left.
    int32_t close = slashKept ? FindCommentMark(line, kBlockCommentClose, 0) : -1;
    if (close >= 0) {
        // The end of a comment opened on an earlier line.
        m_bInComment = false;
        int32_t rest = line.GetLength() - close - 2;
        std::memmove(line.GetData(), line.GetData() + close + 2, static_cast<size_t>(rest));
        CutLineAt(line, rest);
    }
    if (!openingSeen && close < 0 && m_bInComment) line.Empty();
}

void CParseS2T::RemoveComments(CString& text) {
    int32_t slashes = text.Find(kLineComment);
    if (slashes >= 0) text = text.Left(slashes);
    int32_t open = text.Find(kBlockCommentOpen);
    if (open < 0) return;
    // The tail is what follows the first "*/" from the start of the text. When
    // there is none the tail is every character but the first (its position
    // counts as -1); a "*/" at position 0 keeps no tail. Kept as directive
    // lines have always been cleaned.
    int32_t close = text.Find(kBlockCommentClose);
    CString result = text.Left(open);
    if (close != 0) result += text.Right(text.GetLength() - close - 2);
    result.TrimRight(CString(kBlankAndTab));
    text = result;
}

// ---- tokens

void CParseS2T::SkipBlockCommentLines(CFile* file, bool& endOfFile) {
    // The comment's closing line is skipped too, with whatever follows "*/".
    endOfFile = false;
    do {
        if (!ReadLine(file, 1)) {
            endOfFile = true;
            return;
        }
    } while (FindCommentMark(m_strLine, kBlockCommentClose, 0) < 0);
    if (!ReadLine(file, 1)) endOfFile = true;
}

CString CParseS2T::CutToken(int32_t length) {
    int32_t rest = m_strLine.GetLength() - m_nLinePos;
    if (length == 0) length = 1;
    if (length < 0 || length > rest) length = rest;
    char const* start = m_strLine.GetData() + m_nLinePos;
    // A token that ends with "/*" leaves the opener in the line.
    if (length > 2 && start[length - 2] == '/' && start[length - 1] == '*') length -= 2;
    CString token;
    CutTokenAt(length, token);
    return token;
}

// CutToken of a length from 1 to the rest's length, that ends in no "/*",
// into token.
inline void CParseS2T::CutTokenAt(int32_t length, CString& token) {
    int32_t pos = m_nLinePos;
    int32_t lineLength = m_strLine.GetLength();
    char const* text = m_strLine.GetData();
    char const* start = text + pos;
    // The blanks after the token go with it, as SkipLineBlanks takes them.
    m_nLinePos = SkipBlanks(text, pos + length, lineLength);
    m_pLineSeenData = text;
    m_nLineSeenLength = lineLength;
    // The token is trimmed as CString::Trim does it, the right end first, and
    // built once from what is left.
    int32_t end = length;
    while (end > 0 && static_cast<signed char>(start[end - 1]) <= 32) --end;
    int32_t begin = 0;
    while (begin < end && IsLeftBlank(start[begin])) ++begin;
    token.AssignBytes(start + begin, end - begin);
}

CString CParseS2T::GetToken(CFile* file) {
    CString token;
    ReadToken(file, token);
    return token;
}

void CParseS2T::ReadToken(CFile* file, CString& token) {
    NoteEnumListChanges();
    CheckLinePos();
    m_nTokenType = TOKEN_ORDINARY;
    for (;;) {
        // Each test below needs its first character at the start of the rest.
        char first = LineIsEmpty() ? '\0' : m_strLine.GetAt(m_nLinePos);
        if (first == '#') {
            CommitLinePos();
            m_strLine.Remove('#');
            TrimBlanksAndTabsLeft(m_strLine);
            LineChanged();
            if (!TextStartsWith(m_strLine, kKeywordInclude) && !TextStartsWith(m_strLine, kKeywordDefine)) {
                ParsePPStatements(file);
            }
            continue;
        }
        if (!m_IfStack.IsEmpty() && m_IfStack.GetTail() == 0) {
            // Inside a region left out by conditional compilation.
            if (!ReadLine(file, 0)) break;
            continue;
        }
        if (first == 'd' && LineStartsWith(kKeywordDefine)) {
            // Only the letters are tested: "defineCount;" gives "defineC".
            m_nTokenType = TOKEN_DEFINE;
            token = CutToken(7);
            return;
        }
        if (first == '/' && LineStartsWith(kBlockCommentOpen)) {
            int32_t close = FindCommentMark(m_strLine, kBlockCommentClose, m_nLinePos);
            if (close >= 0) {
                SetLinePos(close + 2);
            } else {
                bool endOfFile = false;
                SkipBlockCommentLines(file, endOfFile);
                if (endOfFile) break;
            }
            SkipLineBlanks();
            continue;
        }
        if (first == '/' && LineStartsWith(kLineComment)) {
            if (!ReadLine(file, 1)) break;
            continue;
        }
        if (first == ';') {
            m_nTokenType = TOKEN_END_OF_STATEMENT;
            CutTokenAt(1, token);
            return;
        }
        if (!LineIsEmpty()) {
            // A word runs to the first separator; a separator first is a token
            // of its own. No word holds the "/" of a "/*".
            char const* text = m_strLine.GetData();
            int32_t length = m_strLine.GetLength();
            int32_t end = m_nLinePos;
            // Two characters to a bound test.
            bool const* separates = kSeparators.is;
            for (;;) {
                if (end + 2 > length) {
                    if (end < length && !separates[static_cast<unsigned char>(text[end])]) ++end;
                    break;
                }
                if (separates[static_cast<unsigned char>(text[end])]) break;
                if (separates[static_cast<unsigned char>(text[end + 1])]) {
                    ++end;
                    break;
                }
                end += 2;
            }
            CutTokenAt(end == m_nLinePos ? 1 : end - m_nLinePos, token);
            return;
        }
        if (!ReadLine(file, 0)) break;
    }
    // The end of the file.
    m_nTokenType = TOKEN_EOF;
    token.Empty();
}

// ---- look-ahead

bool CParseS2T::FindCharToEOL(CFile* file, char c) {
    CommitLinePos();
    if (!file) return m_strLine.Find(c) >= 0;
    int64_t position = file->GetPosition();
    int32_t lineNo = m_nLineNo;
    CString line = m_strLine;
    bool found = false;
    // Stops at the end of the file: the answer is then false.
    for (;;) {
        if (m_strLine.Find(c) >= 0) {
            found = true;
            break;
        }
        if (m_strLine.Find(';') >= 0 || !ReadLine(file, 0)) break;
    }
    m_nLineNo = lineNo;
    file->Seek(position, CFile::begin);
    m_strLine = line;
    m_nLinePos = 0;
    LineChanged();
    return found;
}

// ---- searches of the rest of the line, for the look-aheads

CParseS2T::SLineSearch& CParseS2T::LineSearch(char c) {
    CheckLinePos();
    if (m_pSearchedData != m_strLine.GetData() || m_nSearchedLength != m_strLine.GetLength()) {
        // Another text in the line that the version did not hear of.
        LineChanged();
        m_pSearchedData = m_strLine.GetData();
        m_nSearchedLength = m_strLine.GetLength();
    }
    SLineSearch& search = m_LineSearches[static_cast<unsigned char>(c)];
    if (search.version != m_nLineVersion) {
        search = SLineSearch();
        search.version = m_nLineVersion;
        search.from = INT32_MAX;
    }
    return search;
}

int32_t CParseS2T::RestFind(char c) {
    SLineSearch& search = LineSearch(c);
    int32_t from = m_nLinePos;
    // A search from an earlier start answers while its find lies in the rest.
    if (search.from <= from && (search.at < 0 || search.at >= from)) return search.at;
    search.from = from;
    // CString::Find, in place: from lies from 0 to the line's length.
    int32_t length = m_strLine.GetLength();
    char const* text = m_strLine.GetData();
    void const* hit = from < length ? std::memchr(text + from, c, static_cast<size_t>(length - from)) : nullptr;
    search.at = hit ? static_cast<int32_t>(static_cast<char const*>(hit) - text) : -1;
    return search.at;
}

int32_t CParseS2T::RestLastOf(char c) {
    SLineSearch& search = LineSearch(c);
    if (search.last == -2) search.last = m_strLine.ReverseFind(c);
    return search.last >= m_nLinePos ? search.last : -1;
}

bool CParseS2T::RestMakesPointer() {
    int32_t star = RestFind('*');
    if (star < 0) return false;
    int32_t open = RestFind('[');
    if (open >= 0 && open < star && RestLastOf(']') > star) return false;
    return !(star > m_nLinePos && m_strLine.GetAt(star - 1) == '/');
}
