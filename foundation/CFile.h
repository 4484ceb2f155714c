// A buffered text file over the C standard streams. Every reader and writer of
// the tool goes through it: the database loader and writer, the header parser
// (which seeks back after looking ahead) and the report writers. Writes through
// a file that is not open do nothing, so a failed open never crashes a run.
#pragma once

#include <cstdint>
#include <cstdio>

#include "CString.h"

class CFile {
public:
    enum SeekPosition { begin = 0, current = 1, end = 2 };

    // Open flags, as the usual file-open bit values.
    static constexpr int32_t modeRead = 0x0000;
    static constexpr int32_t modeWrite = 0x0001;
    static constexpr int32_t modeReadWrite = 0x0002;
    static constexpr int32_t modeNoTruncate = 0x2000;
    static constexpr int32_t typeText = 0x4000;
    static constexpr int32_t typeBinary = 0x8000;

    CFile() = default;
    CFile(CFile const&) = delete;
    CFile& operator=(CFile const&) = delete;
    ~CFile();

    // Non-zero on success; prints nothing.
    int Open(char const* path, char const* mode);
    int Open(CString const& path, char const* mode) { return Open(path.GetData(), mode); }
    int Open(char const* path, int32_t flags);
    int Open(CString const& path, int32_t flags) { return Open(path.GetData(), flags); }
    // Opens an in-memory copy of text for reading, with the path "<memory>"; lets
    // tests drive the readers without files.
    int OpenText(CString const& text);
    // Closes the stream when one is open; harmless on a closed file.
    void Close();
    bool IsOpen() const { return m_pStream != nullptr; }

    // "r" for no access bits; "a"/"a+" with modeNoTruncate; else "w"/"w+"; then
    // "t" for typeText or "b" for typeBinary.
    static CString ModeFromFlags(int32_t flags);

    // 0 at the end of the stream; otherwise at most n-1 characters (fgets), the
    // first line feed turned into NUL. A carriage return is kept.
    int ReadString(char* buffer, int32_t n);
    // One line in pieces of at most 998 characters (each piece appended up to its
    // first NUL), without its line feed and trailing carriage returns. 1 for a
    // line, 0 at the end of the stream with nothing read.
    int ReadString(CString& line);
    // The same line without a copy: text points at length bytes that stay
    // valid until the next read, seek or close of the file. Nothing is set at
    // the end of the stream.
    int ReadLineView(char const*& text, int32_t& length);

    void WriteString(char const* text);
    void WriteString(char* text);  // null or empty writes nothing
    void WriteString(CString const& text);
    void WriteLine(char* text);  // text unless null or empty, then a line feed
    void WriteLine(CString const& text);
    void WriteLine(char const* text);  // text, then a line feed
    // Writes exactly length bytes (NULs included).
    void WriteBytes(char const* data, int32_t length);

    // Size in bytes; 0 when closed.
    int32_t GetLength();
    int64_t GetPosition();
    // Origin current (1) or end (2); any other value from the start.
    void Seek(int64_t offset, int32_t origin);
    void SeekToBegin() { Seek(0, begin); }

    // Both return the path exactly as given to Open.
    CString GetFilePath() const { return CString(m_szPath); }
    CString GetFileName() const { return CString(m_szPath); }
    FILE* GetStream() const { return m_pStream; }

private:
    // ReadString(CString&) reads a seekable stream through a block of its own
    // and splits the lines there; any other use of the stream first puts the
    // stream back at the reader's place (EndBlockReading).
    bool StartBlockReading();
    bool FillBlock();
    void EndBlockReading();
    int TakeLine(char const* data, size_t length, bool holdsNul, char const*& text, int32_t& textLength);
    int TakePieces(char const* data, size_t length, bool hadFeed, char const*& text, int32_t& textLength);
    bool BlockHoldsNul(size_t from, size_t to);
    int ReadLineViewFilling(char const*& text, int32_t& length);

    FILE* m_pStream = nullptr;
    char m_szPath[513] = {};
    char* m_pLine = nullptr;  // getline buffer, reused across reads
    CString m_strMemory;      // the text behind OpenText
    CString m_strPieces;      // a line that held NUL bytes, as it is read
    size_t m_nLineCapacity = 0;
    char* m_pBlock = nullptr;  // one byte more than m_nBlockCapacity, for a terminator
    size_t m_nBlockCapacity = 0;
    size_t m_nBlockStart = 0;  // the reader's place in the block
    size_t m_nBlockEnd = 0;    // bytes read into the block
    int64_t m_nBlockOffset = 0;  // file position of the block's first byte
    bool m_bBlockReading = false;
    // The block from m_nNulFrom to m_nNulEnd was searched for a NUL byte and
    // holds its first one at m_nNulAt (m_nNulEnd when it holds none).
    size_t m_nNulFrom = 0;
    size_t m_nNulEnd = 0;
    size_t m_nNulAt = 0;
};
