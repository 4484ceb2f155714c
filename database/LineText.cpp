// CLineText: the writer's formatter of record lines, a fast path for the few
// printf directives the database line formats hold, giving the same bytes.
#include "LineText.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr size_t kInitialCapacity = 1024;

}  // namespace

// Computed in unsigned arithmetic, so the smallest int prints whole. The
// room of a number directive is kMaxNumberLength bytes, so that many are
// copied whatever the number's length: a copy of fixed size needs no call.
char* CLineText::PutLongNumber(char* out, int32_t number) {
    char digits[2 * CLineFormat::kMaxNumberLength];
    size_t at = CLineFormat::kMaxNumberLength;
    uint32_t magnitude = number < 0 ? 0u - static_cast<uint32_t>(number) : static_cast<uint32_t>(number);
    do {
        digits[--at] = static_cast<char>('0' + magnitude % 10u);
        magnitude /= 10u;
    } while (magnitude);
    if (number < 0) digits[--at] = '-';
    std::memcpy(out, digits + at, CLineFormat::kMaxNumberLength);
    return out + (CLineFormat::kMaxNumberLength - at);
}

char* CLineText::PutText(char* out, char const* text, size_t fixed) {
    size_t length = std::strlen(text);
    m_nLength = static_cast<size_t>(out - m_pBuffer);
    Reserve(length + fixed);
    out = m_pBuffer + m_nLength;
    std::memcpy(out, text, length);
    return out + length;
}

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

void CLineText::ClearBlock() {
    m_nLength = 0;
    m_nLineStart = 0;
    m_bEnded = false;
}

// A format longer than one CLineFormat holds is read and applied in parts.
void CLineText::Apply(char const* format, SArg const* args, int32_t count) {
    StartLine();
    int32_t next = 0;
    for (char const* rest = format;;) {
        CLineFormat part(rest);
        Emit(part, args, count, next);
        if (part.IsWhole()) return;
        rest = part.GetRest();
    }
}

// Room for the literal runs and the longest numbers is made once; each text
// makes its own room.
void CLineText::Emit(CLineFormat const& format, SArg const* args, int32_t count, int32_t& next) {
    size_t const fixed = format.GetFixedLength();
    Reserve(fixed);
    char* out = m_pBuffer + m_nLength;
    for (int32_t i = 0; i < format.GetCount(); ++i) {
        CLineFormat::SPiece const& piece = format.GetPiece(i);
        if (!piece.m_cDirective) {
            for (size_t k = 0; k < piece.m_nLength; ++k) out[k] = piece.m_pText[k];
            out += piece.m_nLength;
            continue;
        }
        if (next >= count) continue;
        SArg const& arg = args[next++];
        if (piece.m_cDirective == 'd') {
            out = PutNumber(out, arg.m_pText ? 0 : arg.m_nNumber);
            continue;
        }
        if (arg.m_pText) out = PutText(out, arg.m_pText, fixed);
    }
    m_nLength = static_cast<size_t>(out - m_pBuffer);
}
