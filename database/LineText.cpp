// CLineText: the writer's formatter of record lines, a fast path for the few
// printf directives the database line formats hold, giving the same bytes.
#include "LineText.h"

#include <cstring>

void CLineText::Append(char const* text) {
    if (text) m_text.append(text);
}

void CLineText::RemoveLineFeeds() {
    size_t kept = 0;
    for (char c : m_text) {
        if (c != '\n') m_text[kept++] = c;
    }
    m_text.resize(kept);
}

void CLineText::AppendNumber(int32_t number) {
    char digits[12];
    int32_t at = sizeof digits;
    // Computed in unsigned arithmetic, so the smallest int prints whole.
    uint32_t magnitude = number < 0 ? 0u - static_cast<uint32_t>(number) : static_cast<uint32_t>(number);
    do {
        digits[--at] = static_cast<char>('0' + magnitude % 10u);
        magnitude /= 10u;
    } while (magnitude);
    if (number < 0) digits[--at] = '-';
    m_text.append(digits + at, sizeof digits - static_cast<size_t>(at));
}

void CLineText::Apply(char const* format, SArg const* args, int32_t count) {
    m_text.clear();
    int32_t next = 0;
    for (char const* p = format; *p; ++p) {
        if (*p != '%') {
            char const* stop = std::strchr(p, '%');
            size_t run = stop ? static_cast<size_t>(stop - p) : std::strlen(p);
            m_text.append(p, run);
            p += run - 1;
            continue;
        }
        char directive = p[1] == 'l' ? p[2] : p[1];
        if (directive == '%') {
            m_text += '%';
            ++p;
            continue;
        }
        if (directive != 's' && directive != 'd') {
            m_text += '%';  // not a directive of the line formats: kept as text
            continue;
        }
        p += p[1] == 'l' ? 2 : 1;
        if (next >= count) continue;
        SArg const& arg = args[next++];
        if (directive == 's') Append(arg.m_pText);
        else AppendNumber(arg.m_pText ? 0 : arg.m_nNumber);
    }
}
