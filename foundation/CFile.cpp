// CFile: opening by mode text or flags, the two line readers and the writers.
#include "CFile.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr size_t kBlockSize = 64 * 1024;

}  // namespace

CFile::~CFile() {
    Close();
    std::free(m_pLine);
    std::free(m_pBlock);
}

int CFile::Open(char const* path, char const* mode) {
    Close();
    // The stored path is bounded at 512 characters, as every caller expects.
    std::strncpy(m_szPath, path ? path : "", 512);
    m_szPath[512] = '\0';
    if (!path) return 0;
    m_pStream = std::fopen(path, mode);
    return m_pStream != nullptr;
}

int CFile::OpenText(CString const& text) {
    Close();
    std::strcpy(m_szPath, "<memory>");
    m_strMemory = text;
    // fmemopen refuses a zero-sized buffer; an empty text still reads as empty.
    size_t size = static_cast<size_t>(m_strMemory.GetLength());
    m_pStream = size ? fmemopen(m_strMemory.GetData(), size, "r") : fopen("/dev/null", "r");
    return m_pStream != nullptr;
}

int CFile::Open(char const* path, int32_t flags) { return Open(path, ModeFromFlags(flags).GetData()); }

void CFile::Close() {
    if (m_pStream) std::fclose(m_pStream);
    m_pStream = nullptr;
    m_bBlockReading = false;
}

CString CFile::ModeFromFlags(int32_t flags) {
    int32_t access = flags & 0xF;
    CString mode;
    if (access == 0) mode = "r";
    else if (flags & modeNoTruncate) mode = access == 1 ? "a" : "a+";
    else mode = access == 1 ? "w" : "w+";
    if (flags & typeText) mode += "t";
    else if (flags & typeBinary) mode += "b";
    return mode;
}

int CFile::ReadString(char* buffer, int32_t n) {
    EndBlockReading();
    if (!m_pStream || n <= 0 || std::feof(m_pStream)) return 0;
    if (!std::fgets(buffer, n, m_pStream)) return 0;
    char* feed = std::strchr(buffer, '\n');
    if (feed) *feed = '\0';
    return 1;
}

bool CFile::StartBlockReading() {
    // A stream without a position (a pipe) is read line by line as it comes.
    long here = std::ftell(m_pStream);
    if (here < 0) return false;
    if (!m_pBlock) {
        m_pBlock = static_cast<char*>(std::malloc(kBlockSize + 1));
        if (!m_pBlock) return false;
        m_nBlockCapacity = kBlockSize;
    }
    m_nBlockOffset = here;
    m_nBlockStart = m_nBlockEnd = 0;
    m_nNulEnd = 0;
    m_bBlockReading = true;
    return true;
}

// Reads more of the stream behind what the block holds, first moving the
// unread part to the front (and growing the block when that part fills it).
// False when nothing more could be read.
bool CFile::FillBlock() {
    m_nNulEnd = 0;  // the bytes move
    if (m_nBlockStart > 0) {
        size_t unread = m_nBlockEnd - m_nBlockStart;
        std::memmove(m_pBlock, m_pBlock + m_nBlockStart, unread);
        m_nBlockOffset += static_cast<int64_t>(m_nBlockStart);
        m_nBlockStart = 0;
        m_nBlockEnd = unread;
    }
    if (m_nBlockEnd == m_nBlockCapacity) {
        char* grown = static_cast<char*>(std::realloc(m_pBlock, 2 * m_nBlockCapacity + 1));
        if (!grown) return false;
        m_pBlock = grown;
        m_nBlockCapacity *= 2;
    }
    size_t got = std::fread(m_pBlock + m_nBlockEnd, 1, m_nBlockCapacity - m_nBlockEnd, m_pStream);
    m_nBlockEnd += got;
    return got > 0;
}

void CFile::EndBlockReading() {
    if (!m_bBlockReading) return;
    m_bBlockReading = false;
    std::fseek(m_pStream, static_cast<long>(m_nBlockOffset + static_cast<int64_t>(m_nBlockStart)), SEEK_SET);
}

// One line of length bytes (its line feed included when it has one), cut to
// the text a reader gets.
inline int CFile::TakeLine(char const* data, size_t length, bool holdsNul, char const*& text, int32_t& textLength) {
    bool hadFeed = data[length - 1] == '\n';
    size_t kept = hadFeed ? length - 1 : length;
    while (kept > 0 && data[kept - 1] == '\r') --kept;
    // The usual line, without NUL bytes, is the text itself; the carriage
    // returns and the feed cut off hold none.
    if (kept > static_cast<size_t>(INT32_MAX) || holdsNul) return TakePieces(data, length, hadFeed, text, textLength);
    if (!hadFeed && kept == 0) return 0;
    text = data;
    textLength = static_cast<int32_t>(kept);
    return 1;
}

// The line arrives in pieces of at most 998 characters, and each piece is
// taken as a C string: a NUL byte hides the rest of its piece.
int CFile::TakePieces(char const* data, size_t length, bool hadFeed, char const*& text, int32_t& textLength) {
    CString& line = m_strPieces;
    line.Empty();
    constexpr size_t kPiece = 998;
    for (size_t at = 0; at < length; at += kPiece) {
        size_t piece = length - at < kPiece ? length - at : kPiece;
        size_t bytes = strnlen(data + at, piece);
        line += CString(data + at, static_cast<int32_t>(bytes));
    }
    if (hadFeed && line.GetLength() > 0 && line.GetAt(line.GetLength() - 1) == '\n') {
        line = line.Left(line.GetLength() - 1);
    }
    line.TrimRight('\r');
    if (!hadFeed && line.GetLength() == 0) return 0;
    text = line.GetData();
    textLength = line.GetLength();
    return 1;
}

// Whether the block's bytes from from to to hold a NUL. The first NUL from a
// place on is searched for once, not line by line.
inline bool CFile::BlockHoldsNul(size_t from, size_t to) {
    if (from < m_nNulFrom || to > m_nNulEnd || m_nNulAt < from) {
        void const* nul = std::memchr(m_pBlock + from, '\0', m_nBlockEnd - from);
        m_nNulFrom = from;
        m_nNulEnd = m_nBlockEnd;
        m_nNulAt = nul ? static_cast<size_t>(static_cast<char const*>(nul) - m_pBlock) : m_nBlockEnd;
    }
    return m_nNulAt < to;
}

int CFile::ReadLineView(char const*& text, int32_t& length) {
    // The usual line lies whole in the block already read.
    if (m_bBlockReading) {
        size_t start = m_nBlockStart;
        void const* feed = std::memchr(m_pBlock + start, '\n', m_nBlockEnd - start);
        if (feed) {
            size_t end = static_cast<size_t>(static_cast<char const*>(feed) - m_pBlock) + 1;
            bool holdsNul = BlockHoldsNul(start, end);
            m_nBlockStart = end;
            return TakeLine(m_pBlock + start, end - start, holdsNul, text, length);
        }
    }
    return ReadLineViewFilling(text, length);
}

// ReadLineView for a line that needs more of the stream than the block holds.
int CFile::ReadLineViewFilling(char const*& text, int32_t& length) {
    if (!m_pStream) return 0;
    if (!m_bBlockReading && !StartBlockReading()) {
        ssize_t got = getline(&m_pLine, &m_nLineCapacity, m_pStream);
        if (got <= 0) return 0;
        bool holdsNul = std::memchr(m_pLine, '\0', static_cast<size_t>(got)) != nullptr;
        return TakeLine(m_pLine, static_cast<size_t>(got), holdsNul, text, length);
    }
    size_t searched = m_nBlockStart;
    size_t end = 0;
    for (;;) {
        void const* feed = std::memchr(m_pBlock + searched, '\n', m_nBlockEnd - searched);
        if (feed) {
            end = static_cast<size_t>(static_cast<char const*>(feed) - m_pBlock) + 1;
            break;
        }
        size_t unread = m_nBlockEnd - m_nBlockStart;
        if (!FillBlock()) {
            end = m_nBlockEnd;
            break;
        }
        searched = m_nBlockStart + unread;
    }
    size_t lineLength = end - m_nBlockStart;
    if (lineLength == 0) return 0;
    char const* data = m_pBlock + m_nBlockStart;
    bool holdsNul = BlockHoldsNul(m_nBlockStart, end);
    m_nBlockStart = end;
    return TakeLine(data, lineLength, holdsNul, text, length);
}

int CFile::ReadString(CString& line) {
    line.Empty();
    char const* text = nullptr;
    int32_t length = 0;
    if (!ReadLineView(text, length)) return 0;
    line.AssignBytes(text, length);
    return 1;
}

void CFile::WriteBytes(char const* data, int32_t length) {
    EndBlockReading();
    if (m_pStream && data && length > 0) std::fwrite(data, 1, static_cast<size_t>(length), m_pStream);
}

void CFile::WriteString(char const* text) {
    EndBlockReading();
    if (m_pStream && text) std::fputs(text, m_pStream);
}

void CFile::WriteString(char* text) {
    if (text && *text) WriteString(static_cast<char const*>(text));
}

void CFile::WriteString(CString const& text) {
    if (!text.IsEmpty()) WriteString(text.GetData());
}

void CFile::WriteLine(char* text) {
    WriteString(text);
    WriteString("\n");
}

void CFile::WriteLine(CString const& text) {
    WriteString(text);
    WriteString("\n");
}

void CFile::WriteLine(char const* text) {
    WriteString(text);
    WriteString("\n");
}

int32_t CFile::GetLength() {
    if (!m_pStream) return 0;
    EndBlockReading();
    long here = std::ftell(m_pStream);
    std::fseek(m_pStream, 0, SEEK_END);
    long size = std::ftell(m_pStream);
    std::fseek(m_pStream, here, SEEK_SET);
    if (size < 0) return 0;
    return size > INT32_MAX ? INT32_MAX : static_cast<int32_t>(size);
}

int64_t CFile::GetPosition() {
    if (m_bBlockReading) return m_nBlockOffset + static_cast<int64_t>(m_nBlockStart);
    return m_pStream ? std::ftell(m_pStream) : 0;
}

void CFile::Seek(int64_t offset, int32_t origin) {
    if (!m_pStream) return;
    // A place inside the block is reached without touching the stream: the
    // look-aheads of the header parser come back to a line just read.
    if (m_bBlockReading && origin != current && origin != end && offset >= m_nBlockOffset &&
        offset <= m_nBlockOffset + static_cast<int64_t>(m_nBlockEnd)) {
        m_nBlockStart = static_cast<size_t>(offset - m_nBlockOffset);
        return;
    }
    EndBlockReading();
    int whence = origin == current ? SEEK_CUR : origin == end ? SEEK_END : SEEK_SET;
    std::fseek(m_pStream, static_cast<long>(offset), whence);
}
