// The string class every subsystem uses: single-byte text with an explicit
// length field. Its edge behaviour (clamping of Left/Right/Mid, -1 from failed
// searches, the trimming sets, the length field after Remove and Delete) is
// part of the contract the parsers and the database file code rely on.
// Positions and counts are 32-bit ints; an empty result is a new empty string.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <ostream>

class CString {
public:
    CString();
    CString(char const* text);  // null gives the empty string; stops at the first NUL
    CString(char const* text, int32_t length);  // exactly length bytes (NULs kept)
    CString(CString const& other);
    CString(CString&& other) noexcept;
    explicit CString(char c);
    ~CString();

    CString& operator=(CString const& other);
    CString& operator=(CString&& other) noexcept;
    CString& operator=(char const* text);
    CString& operator=(char c);
    // Exactly length bytes of text (NULs kept), as CString(text, length) would
    // hold them, into this string's own block; text may point into it.
    void AssignBytes(char const* text, int32_t length) { Assign(text, length < 0 ? 0 : length); }

    CString& operator+=(char const* text);  // null appends nothing
    CString& operator+=(CString const& other);
    CString& operator+=(char c);

    operator char const*() const { return m_pch; }
    char* GetData() const { return m_pch; }
    // The argument is ignored: nothing is reserved.
    char* GetBuffer(int) const { return m_pch; }

    int32_t GetLength() const { return m_nLength; }
    // True when the length is 0 or the first character is NUL.
    bool IsEmpty() const { return m_nLength == 0 || m_pch[0] == '\0'; }
    // Length 0, first character NUL; the block is kept.
    void Empty();

    // Unchecked.
    char GetAt(int32_t i) const { return m_pch[i]; }
    // At or past the end the string first grows to i+1 characters, the gap filled
    // with blanks; a NUL makes the length i. A negative i does nothing.
    void SetAt(int32_t i, char c) {
        if (i >= 0 && i < m_nLength) {
            m_pch[i] = c;
            if (c == '\0') m_nLength = i;
        } else {
            SetAtPast(i, c);
        }
    }

    // n <= 0 gives an empty string; n past the end gives the whole string.
    CString Left(int32_t n) const;
    // n past the end gives the whole string; a negative n gives an empty string.
    CString Right(int32_t n) const;
    // start at or past the end gives an empty string; a negative start counts as 0.
    CString Mid(int32_t start) const;
    // n <= 0 gives an empty string; n is cut to length minus start.
    CString Mid(int32_t start, int32_t n) const;

    // First position at or after start holding c, else -1.
    int32_t Find(char c, int32_t start = 0) const;
    // First position p >= start with p <= length - len(s) where s occurs, else -1.
    int32_t Find(char const* s, int32_t start = 0) const;
    int32_t Find(CString const& s, int32_t start = 0) const;
    // First position at or after start whose character is in set, else -1.
    int32_t FindOneOf(char const* set, int32_t start = 0) const;
    int32_t FindOneOf(CString const& set, int32_t start = 0) const;
    // Scanning down from start (cut to length - 1) to 0; -1 when absent.
    int32_t ReverseFind(char c, int32_t start) const;
    int32_t ReverseFind(char c) const;

    // Signed-byte difference of the first unequal pair, else the length difference.
    int32_t Compare(CString const& s) const;
    int32_t CompareNoCase(CString const& s) const;
    bool IsEqual(CString const& s) const;
    bool IsEqual(char const* s) const;

    void MakeUpper();
    void MakeLower();

    // Removes leading characters whose signed value lies from 1 to 32.
    void TrimLeft();
    // Removes trailing characters whose signed value is at most 32: bytes 128 to
    // 255 and NUL go too, unlike TrimLeft, which stops at them. Kept so that
    // lines are cleaned exactly as databases written before expect.
    void TrimRight();
    void TrimLeft(char c);
    void TrimRight(char c);
    void TrimLeft(CString const& set);
    void TrimRight(CString const& set);
    void Trim() { TrimRight(); TrimLeft(); }

    // s is inserted before position i (clamped to the text).
    void Insert(int32_t i, char const* s);
    int32_t Replace(char a, char b);
    // Left to right; the search resumes after the inserted text.
    int32_t Replace(char const* oldText, char const* newText);
    // Deletes every c; the length field then drops by exactly one when anything
    // was removed, so "a b c" minus blanks reads "abc" with length 4 (the fourth
    // byte is the terminator). Kept: directive lines rely on it as they always did.
    int32_t Remove(char c);
    // n is cut to length minus i; the tail moves forward and the length drops by
    // n, but no new terminator is written: the old tail stays visible through the
    // character pointer. Kept as the loader and parsers have always seen it.
    void Delete(int32_t i, int32_t n = 1);

    // Replaces the contents with the formatted text; any length is formatted whole.
    void Format(char const* format, ...) __attribute__((format(printf, 2, 3)));

    bool StartsWith(char const* prefix) const;  // byte comparison of the first strlen(prefix) characters
    bool EndsWith(char const* suffix) const;

    friend bool operator==(CString const& a, CString const& b) { return a.IsEqual(b); }
    friend bool operator==(CString const& a, char const* b) { return a.IsEqual(b); }
    friend bool operator==(char const* a, CString const& b) { return b.IsEqual(a); }
    friend bool operator!=(CString const& a, CString const& b) { return !a.IsEqual(b); }
    friend bool operator!=(CString const& a, char const* b) { return !a.IsEqual(b); }
    friend bool operator!=(char const* a, CString const& b) { return !b.IsEqual(a); }

private:
    // 16 bytes keep a string at 32 bytes: records hold many strings, most of
    // them empty or short names.
    static constexpr int32_t kInline = 16;

    // Makes room for n characters plus a terminator, keeping the old characters;
    // sets the length to n.
    void Resize(int32_t n);
    void Reserve(int32_t n);
    void Assign(char const* text, int32_t length);
    // memmove of a longer text, kept out of line with the rare case it serves.
    static void MoveBytes(char* to, char const* from, int32_t n);
    void Append(char const* text, int32_t length);
    int32_t FindBytes(char const* s, int32_t n, int32_t start) const;
    void TakeFrom(CString& other);
    void SetAtPast(int32_t i, char c);
    bool IsInline() const { return m_pch == m_inline; }

    char* m_pch;
    int32_t m_nLength;
    int32_t m_nCapacity;  // usable bytes including the terminator
    char m_inline[kInline];
};

// The members every token and field passes through, defined here so that the
// compiler can inline them; a short text never leaves the inline buffer.

inline CString::CString() : m_pch(m_inline), m_nLength(0), m_nCapacity(kInline) { m_inline[0] = '\0'; }

inline CString::CString(char const* text, int32_t length) : CString() { Assign(text, length < 0 ? 0 : length); }

inline CString::CString(CString const& other) : CString() { Assign(other.m_pch, other.m_nLength); }

inline CString::CString(CString&& other) noexcept : CString() { TakeFrom(other); }

inline CString::~CString() {
    if (!IsInline()) ::operator delete(m_pch);
}

inline CString& CString::operator=(CString const& other) {
    if (this != &other) Assign(other.m_pch, other.m_nLength);
    return *this;
}

inline CString& CString::operator=(CString&& other) noexcept {
    if (this != &other) TakeFrom(other);
    return *this;
}

// Takes other's heap block (an inline text is copied) and leaves other empty.
inline void CString::TakeFrom(CString& other) {
    if (other.IsInline()) {
        Assign(other.m_pch, other.m_nLength);
        return;
    }
    if (!IsInline()) ::operator delete(m_pch);
    m_pch = other.m_pch;
    m_nLength = other.m_nLength;
    m_nCapacity = other.m_nCapacity;
    other.m_pch = other.m_inline;
    other.m_nCapacity = kInline;
    other.m_nLength = 0;
    other.m_inline[0] = '\0';
}

// Copies n bytes, n from 0 to 16, where the two ranges may overlap: every
// byte is loaded before the first one is stored. Most texts are names and
// tokens this short, and a call of memmove costs more than the copy.
inline void CopyShortBytes(char* to, char const* from, int32_t n) {
    if (n >= 8) {
        uint64_t head;
        uint64_t tail;
        std::memcpy(&head, from, 8);
        std::memcpy(&tail, from + n - 8, 8);
        std::memcpy(to, &head, 8);
        std::memcpy(to + n - 8, &tail, 8);
    } else if (n >= 4) {
        uint32_t head;
        uint32_t tail;
        std::memcpy(&head, from, 4);
        std::memcpy(&tail, from + n - 4, 4);
        std::memcpy(to, &head, 4);
        std::memcpy(to + n - 4, &tail, 4);
    } else if (n > 0) {
        char first = from[0];
        char middle = from[n / 2];
        char last = from[n - 1];
        to[0] = first;
        to[n / 2] = middle;
        to[n - 1] = last;
    }
}

inline void CString::Assign(char const* text, int32_t length) {
    if (length >= m_nCapacity) Reserve(length);
    m_nLength = length;
    if (length <= 16) CopyShortBytes(m_pch, text, length);
    else MoveBytes(m_pch, text, length);
    m_pch[length] = '\0';
}

inline void CString::Empty() {
    m_nLength = 0;
    m_pch[0] = '\0';
}

inline bool CString::IsEqual(CString const& s) const {
    return m_nLength == s.m_nLength && std::memcmp(m_pch, s.m_pch, static_cast<size_t>(m_nLength)) == 0;
}

inline bool CString::IsEqual(char const* s) const {
    if (!s) return m_nLength == 0;
    // One pass: every character must match and the text must end right here.
    for (int32_t i = 0; i < m_nLength; ++i) {
        if (s[i] != m_pch[i] || s[i] == '\0') return false;
    }
    return s[m_nLength] == '\0';
}

inline int32_t CString::Find(char c, int32_t start) const {
    if (start < 0) start = 0;
    if (start >= m_nLength) return -1;
    void const* hit = std::memchr(m_pch + start, c, static_cast<size_t>(m_nLength - start));
    return hit ? static_cast<int32_t>(static_cast<char const*>(hit) - m_pch) : -1;
}

CString operator+(CString const& a, CString const& b);
CString operator+(CString const& a, char b);
CString operator+(CString const& a, char const* b);
CString operator+(char const* a, CString const& b);

std::ostream& operator<<(std::ostream& out, CString const& s);
