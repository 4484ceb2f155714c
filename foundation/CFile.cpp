// CFile: opening by mode text or flags, the two line readers and the writers.
#include "CFile.h"

#include <cstdlib>
#include <cstring>

CFile::~CFile() {
    Close();
    std::free(m_pLine);
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
    if (!m_pStream || n <= 0 || std::feof(m_pStream)) return 0;
    if (!std::fgets(buffer, n, m_pStream)) return 0;
    char* feed = std::strchr(buffer, '\n');
    if (feed) *feed = '\0';
    return 1;
}

int CFile::ReadString(CString& line) {
    line.Empty();
    if (!m_pStream) return 0;
    ssize_t got = getline(&m_pLine, &m_nLineCapacity, m_pStream);
    if (got <= 0) return 0;
    size_t length = static_cast<size_t>(got);
    bool hadFeed = m_pLine[length - 1] == '\n';
    if (!std::memchr(m_pLine, '\0', length)) {
        // The usual line, without NUL bytes, is taken in one piece.
        if (hadFeed) m_pLine[length - 1] = '\0';
        line = static_cast<char const*>(m_pLine);
        line.TrimRight('\r');
        return hadFeed || line.GetLength() > 0 ? 1 : 0;
    }
    // The line arrives in pieces of at most 998 characters, and each piece is
    // taken as a C string: a NUL byte hides the rest of its piece.
    constexpr size_t kPiece = 998;
    for (size_t at = 0; at < length; at += kPiece) {
        size_t piece = length - at < kPiece ? length - at : kPiece;
        size_t text = strnlen(m_pLine + at, piece);
        line += CString(m_pLine + at, static_cast<int32_t>(text));
    }
    if (hadFeed && line.GetLength() > 0 && line.GetAt(line.GetLength() - 1) == '\n') {
        line = line.Left(line.GetLength() - 1);
    }
    line.TrimRight('\r');
    if (!hadFeed && line.GetLength() == 0) return 0;
    return 1;
}

void CFile::WriteBytes(char const* data, int32_t length) {
    if (m_pStream && data && length > 0) std::fwrite(data, 1, static_cast<size_t>(length), m_pStream);
}

void CFile::WriteString(char const* text) {
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
    long here = std::ftell(m_pStream);
    std::fseek(m_pStream, 0, SEEK_END);
    long size = std::ftell(m_pStream);
    std::fseek(m_pStream, here, SEEK_SET);
    if (size < 0) return 0;
    return size > INT32_MAX ? INT32_MAX : static_cast<int32_t>(size);
}

int64_t CFile::GetPosition() { return m_pStream ? std::ftell(m_pStream) : 0; }

void CFile::Seek(int64_t offset, int32_t origin) {
    if (!m_pStream) return;
    int whence = origin == current ? SEEK_CUR : origin == end ? SEEK_END : SEEK_SET;
    std::fseek(m_pStream, static_cast<long>(offset), whence);
}
