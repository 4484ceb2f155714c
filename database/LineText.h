// The line buffer of the database writer: one record line is built here from a
// line format of DatabaseTexts.h and its arguments. Only the directives the
// formats use are read: "%s" (a text up to its first NUL), "%d" and "%ld" (a
// 32-bit number) and "%%". Ended lines stay in the buffer behind each other
// until the writer takes them as one block, so writing a large database
// allocates nothing per line and hands the file large pieces.
#pragma once

#include <cstddef>
#include <cstdint>

#include "CString.h"

class CLineText {
public:
    // One argument of a format: a text or a number.
    struct SArg {
        SArg(char const* text) : m_pText(text ? text : "") {}
        SArg(CString const& text) : m_pText(text.GetData()) {}
        SArg(int32_t number) : m_nNumber(number) {}
        SArg(long number) : m_nNumber(static_cast<int32_t>(number)) {}
        char const* m_pText = nullptr;  // null for a number
        int32_t m_nNumber = 0;
    };

    CLineText();
    CLineText(CLineText const&) = delete;
    CLineText& operator=(CLineText const&) = delete;
    ~CLineText();

    // Replaces the current line with the formatted one; after EndLine it starts
    // a new line behind the ended one instead. An argument of the wrong kind for
    // its directive is read as the directive asks (a number as an empty text, a
    // text as 0); a directive past the last argument gives nothing.
    template <typename... A>
    void Format(char const* format, A const&... args) {
        SArg const list[] = {SArg(args)..., SArg(0)};
        Apply(format, list, static_cast<int32_t>(sizeof...(A)));
    }
    // Appends a text up to its first NUL to the current line; null appends nothing.
    void Append(char const* text);
    // Takes the line feeds out of the current line.
    void RemoveLineFeeds();
    // Appends the line feed that ends the current line.
    void EndLine();

    // The current line (with its line feed once ended).
    char const* GetData() const { return m_pBuffer + m_nLineStart; }
    int32_t GetLength() const { return static_cast<int32_t>(m_nLength - m_nLineStart); }
    // The ended lines not yet cleared, then the current line.
    char const* GetBlock() const { return m_pBuffer; }
    size_t GetBlockLength() const { return m_nLength; }
    // Empties the buffer; its memory is kept.
    void ClearBlock();

private:
    void StartLine();
    void Apply(char const* format, SArg const* args, int32_t count);
    // Makes room for extra more bytes behind the text.
    void Reserve(size_t extra) {
        if (m_nCapacity - m_nLength < extra) Grow(extra);
    }
    void Grow(size_t extra);
    void AppendBytes(char const* text, size_t length);

    char* m_pBuffer;
    size_t m_nLength = 0;
    size_t m_nCapacity;
    size_t m_nLineStart = 0;
    bool m_bEnded = false;
};
