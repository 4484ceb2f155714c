// CLineText: the writer's formatter of record lines, a fast path for the few
// printf directives the database line formats hold, giving the same bytes.
#include "LineText.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr size_t kInitialCapacity = 1024;
// "-2147483648": the longest number a directive gives.
constexpr size_t kMaxNumberLength = 11;

// Writes the number at out and returns the end of it. Computed in unsigned
// arithmetic, so the smallest int prints whole.
char* PutNumber(char* out, int32_t number) {
    char digits[kMaxNumberLength];
    size_t at = sizeof digits;
    uint32_t magnitude = number < 0 ? 0u - static_cast<uint32_t>(number) : static_cast<uint32_t>(number);
    do {
        digits[--at] = static_cast<char>('0' + magnitude % 10u);
        magnitude /= 10u;
    } while (magnitude);
    if (number < 0) digits[--at] = '-';
    std::memcpy(out, digits + at, sizeof digits - at);
    return out + (sizeof digits - at);
}

}  // namespace

CLineText::CLineText()
    : m_pBuffer(static_cast<char*>(std::malloc(kInitialCapacity))), m_nCapacity(kInitialCapacity) {
    if (!m_pBuffer) std::abort();
}

CLineText::~CLineText() { std::free(m_pBuffer); }

void CLineText::Grow(size_t extra) {
    size_t wanted = m_nLength + extra;
    size_t capacity = m_nCapacity * 2 > wanted ? m_nCapacity * 2 : wanted;
    char* block = static_cast<char*>(std::realloc(m_pBuffer, capacity));
    if (!block) std::abort();
    m_pBuffer = block;
    m_nCapacity = capacity;
}

void CLineText::AppendBytes(char const* text, size_t length) {
    Reserve(length);
    std::memcpy(m_pBuffer + m_nLength, text, length);
    m_nLength += length;
}

void CLineText::Append(char const* text) {
    if (text) AppendBytes(text, std::strlen(text));
}

void CLineText::RemoveLineFeeds() {
    char* line = m_pBuffer + m_nLineStart;
    char* end = m_pBuffer + m_nLength;
    char* feed = static_cast<char*>(std::memchr(line, '\n', static_cast<size_t>(end - line)));
    if (!feed) return;
    char* kept = feed;
    for (char const* p = feed; p != end; ++p) {
        if (*p != '\n') *kept++ = *p;
    }
    m_nLength = static_cast<size_t>(kept - m_pBuffer);
}

void CLineText::EndLine() {
    Reserve(1);
    m_pBuffer[m_nLength++] = '\n';
    m_bEnded = true;
}

void CLineText::ClearBlock() {
    m_nLength = 0;
    m_nLineStart = 0;
    m_bEnded = false;
}

void CLineText::StartLine() {
    if (m_bEnded) m_nLineStart = m_nLength;
    else m_nLength = m_nLineStart;
    m_bEnded = false;
}

// Every byte of the format gives at most one byte of the line and every number
// at most eleven, so room for that is made once; each text makes its own room.
void CLineText::Apply(char const* format, SArg const* args, int32_t count) {
    StartLine();
    size_t const budget = std::strlen(format) + kMaxNumberLength * static_cast<size_t>(count);
    Reserve(budget);
    char* out = m_pBuffer + m_nLength;
    int32_t next = 0;
    for (char const* p = format; *p; ++p) {
        if (*p != '%') {
            *out++ = *p;
            continue;
        }
        char directive = p[1] == 'l' ? p[2] : p[1];
        if (directive == '%') {
            *out++ = '%';
            ++p;
            continue;
        }
        if (directive != 's' && directive != 'd') {
            *out++ = '%';  // not a directive of the line formats: kept as text
            continue;
        }
        p += p[1] == 'l' ? 2 : 1;
        if (next >= count) continue;
        SArg const& arg = args[next++];
        if (directive == 'd') {
            out = PutNumber(out, arg.m_pText ? 0 : arg.m_nNumber);
            continue;
        }
        if (!arg.m_pText) continue;
        size_t length = std::strlen(arg.m_pText);
        m_nLength = static_cast<size_t>(out - m_pBuffer);
        Reserve(length + budget);
        out = m_pBuffer + m_nLength;
        std::memcpy(out, arg.m_pText, length);
        out += length;
    }
    m_nLength = static_cast<size_t>(out - m_pBuffer);
}
