// CString: storage management and the text operations. Short texts live in an
// inline buffer; longer ones on the heap. The length field is the authority for
// every length-based operation; %s and the character pointer read to the first NUL.
#include "CString.h"

#include <cctype>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

int32_t SafeStrLen(char const* text) {
    return text ? static_cast<int32_t>(std::strlen(text)) : 0;
}

bool InSet(char c, char const* set, int32_t setLength) {
    for (int32_t i = 0; i < setLength; ++i) {
        if (set[i] == c) return true;
    }
    return false;
}

}  // namespace

CString::CString(char const* text) : CString() { Assign(text, SafeStrLen(text)); }

CString::CString(char c) : CString() { Assign(&c, 1); }

CString& CString::operator=(char const* text) {
    // The text may point into this string's own block.
    if (text >= m_pch && text < m_pch + m_nCapacity) {
        CString copy(text);
        return *this = std::move(copy);
    }
    Assign(text, SafeStrLen(text));
    return *this;
}

CString& CString::operator=(char c) {
    Assign(&c, 1);
    return *this;
}

CString& CString::operator+=(char const* text) {
    if (text >= m_pch && text < m_pch + m_nCapacity) {
        CString copy(text);
        Append(copy.m_pch, copy.m_nLength);
        return *this;
    }
    Append(text, SafeStrLen(text));
    return *this;
}

CString& CString::operator+=(CString const& other) {
    if (&other == this) {
        CString copy(other);
        Append(copy.m_pch, copy.m_nLength);
        return *this;
    }
    Append(other.m_pch, other.m_nLength);
    return *this;
}

CString& CString::operator+=(char c) {
    Append(&c, 1);
    return *this;
}

__attribute__((noinline)) void CString::MoveBytes(char* to, char const* from, int32_t n) {
    std::memmove(to, from, static_cast<size_t>(n));
}

void CString::Reserve(int32_t n) {
    if (m_nCapacity >= n + 1) return;
    // Grow by at least half again, so that appending one character at a time
    // stays linear.
    int64_t wanted = static_cast<int64_t>(n) + 1;
    int64_t grown = static_cast<int64_t>(m_nCapacity) + m_nCapacity / 2;
    int64_t capacity = wanted > grown ? wanted : grown;
    if (capacity > INT32_MAX) capacity = INT32_MAX;
    char* block = static_cast<char*>(::operator new(static_cast<size_t>(capacity), std::nothrow));
    if (!block) std::abort();
    std::memcpy(block, m_pch, static_cast<size_t>(m_nLength));
    if (!IsInline()) ::operator delete(m_pch);
    m_pch = block;
    m_nCapacity = static_cast<int32_t>(capacity);
}

void CString::Resize(int32_t n) {
    Reserve(n);
    m_nLength = n;
}

void CString::Append(char const* text, int32_t length) {
    if (length <= 0) return;
    int32_t old = m_nLength;
    Resize(old + length);
    std::memcpy(m_pch + old, text, static_cast<size_t>(length));
    m_pch[m_nLength] = '\0';
}

// SetAt past the end: blanks fill the gap up to the new character.
void CString::SetAtPast(int32_t i, char c) {
    if (i < 0) return;
    int32_t old = m_nLength;
    Resize(i + 1);
    std::memset(m_pch + old, ' ', static_cast<size_t>(i + 1 - old));
    m_pch[m_nLength] = '\0';
    m_pch[i] = c;
    if (c == '\0') m_nLength = i;
}

CString CString::Left(int32_t n) const {
    if (n <= 0) return CString();
    if (n > m_nLength) return *this;
    return CString(m_pch, n);
}

CString CString::Right(int32_t n) const {
    if (n > m_nLength) return *this;
    if (n <= 0) return CString();
    return CString(m_pch + m_nLength - n, n);
}

CString CString::Mid(int32_t start) const {
    if (start < 0) start = 0;
    if (start >= m_nLength) return CString();
    return CString(m_pch + start, m_nLength - start);
}

CString CString::Mid(int32_t start, int32_t n) const {
    if (start < 0) start = 0;
    if (start >= m_nLength) return CString();
    if (n > m_nLength - start) n = m_nLength - start;
    if (n <= 0) return CString();
    return CString(m_pch + start, n);
}

// First position p >= start, p <= length - n, where the n bytes of s occur; else -1.
int32_t CString::FindBytes(char const* s, int32_t n, int32_t start) const {
    if (start < 0) start = 0;
    if (n == 0) return start <= m_nLength ? start : -1;
    int32_t last = m_nLength - n;
    for (int32_t p = start; p <= last;) {
        void const* hit = std::memchr(m_pch + p, s[0], static_cast<size_t>(last - p + 1));
        if (!hit) return -1;
        p = static_cast<int32_t>(static_cast<char const*>(hit) - m_pch);
        if (std::memcmp(m_pch + p, s, static_cast<size_t>(n)) == 0) return p;
        ++p;
    }
    return -1;
}

int32_t CString::Find(char const* s, int32_t start) const { return FindBytes(s ? s : "", SafeStrLen(s), start); }

int32_t CString::Find(CString const& s, int32_t start) const { return FindBytes(s.m_pch, s.m_nLength, start); }

int32_t CString::FindOneOf(char const* set, int32_t start) const {
    int32_t n = SafeStrLen(set);
    if (start < 0) start = 0;
    for (int32_t i = start; i < m_nLength; ++i) {
        if (InSet(m_pch[i], set, n)) return i;
    }
    return -1;
}

int32_t CString::FindOneOf(CString const& set, int32_t start) const {
    if (start < 0) start = 0;
    for (int32_t i = start; i < m_nLength; ++i) {
        if (InSet(m_pch[i], set.m_pch, set.m_nLength)) return i;
    }
    return -1;
}

int32_t CString::ReverseFind(char c, int32_t start) const {
    if (start > m_nLength - 1) start = m_nLength - 1;
    for (int32_t i = start; i >= 0; --i) {
        if (m_pch[i] == c) return i;
    }
    return -1;
}

int32_t CString::ReverseFind(char c) const { return ReverseFind(c, m_nLength - 1); }

int32_t CString::Compare(CString const& s) const {
    int32_t n = m_nLength < s.m_nLength ? m_nLength : s.m_nLength;
    for (int32_t i = 0; i < n; ++i) {
        int32_t a = static_cast<signed char>(m_pch[i]);
        int32_t b = static_cast<signed char>(s.m_pch[i]);
        if (a != b) return a - b;
    }
    return m_nLength - s.m_nLength;
}

int32_t CString::CompareNoCase(CString const& s) const {
    int32_t n = m_nLength < s.m_nLength ? m_nLength : s.m_nLength;
    for (int32_t i = 0; i < n; ++i) {
        int32_t a = static_cast<signed char>(std::toupper(static_cast<unsigned char>(m_pch[i])));
        int32_t b = static_cast<signed char>(std::toupper(static_cast<unsigned char>(s.m_pch[i])));
        if (a != b) return a - b;
    }
    return m_nLength - s.m_nLength;
}

void CString::MakeUpper() {
    for (int32_t i = 0; i < m_nLength; ++i) {
        unsigned char c = static_cast<unsigned char>(m_pch[i]);
        if (std::islower(c)) m_pch[i] = static_cast<char>(std::toupper(c));
    }
}

void CString::MakeLower() {
    for (int32_t i = 0; i < m_nLength; ++i) {
        unsigned char c = static_cast<unsigned char>(m_pch[i]);
        if (std::isupper(c)) m_pch[i] = static_cast<char>(std::tolower(c));
    }
}

void CString::TrimLeft() {
    int32_t i = 0;
    while (i < m_nLength) {
        int32_t v = static_cast<signed char>(m_pch[i]);
        if (v < 1 || v > 32) break;
        ++i;
    }
    if (i > 0) Assign(m_pch + i, m_nLength - i);
}

void CString::TrimRight() {
    int32_t n = m_nLength;
    while (n > 0 && static_cast<signed char>(m_pch[n - 1]) <= 32) --n;
    m_nLength = n;
    m_pch[n] = '\0';
}

void CString::TrimLeft(char c) {
    int32_t i = 0;
    while (i < m_nLength && m_pch[i] == c) ++i;
    if (i > 0) Assign(m_pch + i, m_nLength - i);
}

void CString::TrimRight(char c) {
    int32_t n = m_nLength;
    while (n > 0 && m_pch[n - 1] == c) --n;
    m_nLength = n;
    m_pch[n] = '\0';
}

void CString::TrimLeft(CString const& set) {
    int32_t i = 0;
    while (i < m_nLength && InSet(m_pch[i], set.m_pch, set.m_nLength)) ++i;
    if (i > 0) Assign(m_pch + i, m_nLength - i);
}

void CString::TrimRight(CString const& set) {
    int32_t n = m_nLength;
    while (n > 0 && InSet(m_pch[n - 1], set.m_pch, set.m_nLength)) --n;
    m_nLength = n;
    m_pch[n] = '\0';
}

void CString::Insert(int32_t i, char const* s) {
    if (i < 0) i = 0;
    if (i > m_nLength) i = m_nLength;
    CString inserted(s);
    int32_t n = inserted.m_nLength;
    if (n == 0) return;
    int32_t old = m_nLength;
    Resize(old + n);
    std::memmove(m_pch + i + n, m_pch + i, static_cast<size_t>(old - i));
    std::memcpy(m_pch + i, inserted.m_pch, static_cast<size_t>(n));
    m_pch[m_nLength] = '\0';
}

int32_t CString::Replace(char a, char b) {
    int32_t count = 0;
    for (int32_t i = 0; i < m_nLength; ++i) {
        if (m_pch[i] == a) {
            m_pch[i] = b;
            ++count;
        }
    }
    return count;
}

int32_t CString::Replace(char const* oldText, char const* newText) {
    int32_t oldLength = SafeStrLen(oldText);
    if (oldLength == 0) return 0;
    int32_t newLength = SafeStrLen(newText);
    CString result;
    int32_t count = 0;
    int32_t from = 0;
    for (int32_t p = Find(oldText, 0); p >= 0; p = Find(oldText, from)) {
        result.Append(m_pch + from, p - from);
        result.Append(newText, newLength);
        from = p + oldLength;
        ++count;
    }
    if (count == 0) return 0;
    result.Append(m_pch + from, m_nLength - from);
    *this = std::move(result);
    return count;
}

int32_t CString::Remove(char c) {
    // The text between two of them moves in one piece.
    char const* hit = static_cast<char const*>(std::memchr(m_pch, c, static_cast<size_t>(m_nLength)));
    if (!hit) return 0;
    int32_t write = static_cast<int32_t>(hit - m_pch);
    int32_t read = write + 1;
    while (read < m_nLength) {
        size_t rest = static_cast<size_t>(m_nLength - read);
        char const* next = static_cast<char const*>(std::memchr(m_pch + read, c, rest));
        int32_t stop = next ? static_cast<int32_t>(next - m_pch) : m_nLength;
        std::memmove(m_pch + write, m_pch + read, static_cast<size_t>(stop - read));
        write += stop - read;
        read = stop + 1;
    }
    int32_t removed = m_nLength - write;
    m_pch[write] = '\0';
    m_nLength -= 1;
    return removed;
}

void CString::Delete(int32_t i, int32_t n) {
    if (i < 0 || i >= m_nLength || n <= 0) return;
    if (n > m_nLength - i) n = m_nLength - i;
    std::memmove(m_pch + i, m_pch + i + n, static_cast<size_t>(m_nLength - i - n));
    m_nLength -= n;
}

void CString::Format(char const* format, ...) {
    char buffer[9985];
    va_list args;
    va_start(args, format);
    int needed = std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    if (needed < 0) {
        Empty();
        return;
    }
    if (static_cast<size_t>(needed) < sizeof buffer) {
        Assign(buffer, needed);
        return;
    }
    // Longer than the working buffer: format the whole result into a block of its own.
    CString result;
    result.Resize(needed);
    va_start(args, format);
    std::vsnprintf(result.m_pch, static_cast<size_t>(needed) + 1, format, args);
    va_end(args);
    *this = std::move(result);
}

bool CString::StartsWith(char const* prefix) const {
    if (!prefix) return true;
    // Most prefixes asked for are short and differ at once.
    for (int32_t i = 0; prefix[i] != '\0'; ++i) {
        if (i >= m_nLength || m_pch[i] != prefix[i]) return false;
    }
    return true;
}

bool CString::EndsWith(char const* suffix) const {
    int32_t n = SafeStrLen(suffix);
    return n <= m_nLength && std::memcmp(m_pch + m_nLength - n, suffix, static_cast<size_t>(n)) == 0;
}

CString operator+(CString const& a, CString const& b) {
    CString result(a);
    result += b;
    return result;
}

CString operator+(CString const& a, char b) {
    CString result(a);
    result += b;
    return result;
}

CString operator+(CString const& a, char const* b) {
    CString result(a);
    result += b;
    return result;
}

CString operator+(char const* a, CString const& b) {
    CString result(a);
    result += b;
    return result;
}

std::ostream& operator<<(std::ostream& out, CString const& s) { return out << static_cast<char const*>(s); }
