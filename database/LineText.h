// The line buffer of the database writer: one record line is built here from a
// line format of DatabaseTexts.h and its arguments, then written whole. Only
// the directives the formats use are read: "%s" (a text up to its first NUL),
// "%d" and "%ld" (a 32-bit number) and "%%". The buffer is kept from line to
// line, so writing a large database allocates nothing per line.
#pragma once

#include <cstdint>
#include <string>

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

    // Replaces the contents with the formatted line. An argument of the wrong
    // kind for its directive is read as the directive asks (a number as an empty
    // text, a text as 0); a directive past the last argument gives nothing.
    template <typename... A>
    void Format(char const* format, A const&... args) {
        SArg const list[] = {SArg(args)..., SArg(0)};
        Apply(format, list, static_cast<int32_t>(sizeof...(A)));
    }
    // Appends a text up to its first NUL.
    void Append(char const* text);
    void RemoveLineFeeds();
    // Appends the line feed that ends the line.
    void EndLine() { m_text += '\n'; }

    char const* GetData() const { return m_text.data(); }
    int32_t GetLength() const { return static_cast<int32_t>(m_text.size()); }

private:
    void Apply(char const* format, SArg const* args, int32_t count);
    void AppendNumber(int32_t number);

    std::string m_text;
};
