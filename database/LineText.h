// The line buffer of the database writer: one record line is built here from a
// line format of DatabaseTexts.h and its arguments. Only the directives the
// formats use are read: "%s" (a text up to its first NUL), "%d" and "%ld" (a
// 32-bit number) and "%%". Ended lines stay in the buffer behind each other
// until the writer takes them as one block, so writing a large database
// allocates nothing per line and hands the file large pieces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "CString.h"
#include "LineFormat.h"

class CLineText {
public:
    // One argument of a format: a text or a number.
    struct SArg {
        SArg(char const* text) : m_pText(text ? text : "") {}
        // A text of the given length without a NUL in it (a fixed word).
        SArg(char const* text, int32_t length) : m_pText(text), m_nLength(length) {}
        SArg(CString const& text) : m_pText(text.GetData()), m_nLength(text.GetLength()) {}
        SArg(int32_t number) : m_nNumber(number) {}
        SArg(long number) : m_nNumber(static_cast<int32_t>(number)) {}
        char const* m_pText = nullptr;  // null for a number
        int32_t m_nNumber = 0;
        int32_t m_nLength = -1;  // a string's length field; -1 when not known
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
    // The same with a format read at compile time, given one argument per
    // directive: its pieces are laid out in the code, so building the line
    // reads no format at all.
    template <CLineFormat const& F, typename... A>
    void Format(A const&... args) {
        static_assert(F.IsWhole() && F.GetDirectiveCount() == sizeof...(A), "one argument per directive");
        SArg const list[] = {SArg(args)..., SArg(0)};
        size_t room = F.GetFixedLength() + (KnownLength(args) + ... + 0);
        StartLine();
        Reserve(room);
        EmitPieces<F>(list, room, std::make_integer_sequence<int32_t, F.GetCount()>());
    }
    // Appends a text up to its first NUL to the current line; null appends nothing.
    void Append(char const* text);
    void Append(CString const& text) {
        SArg arg(text);
        Reserve(static_cast<size_t>(arg.m_nLength));
        m_nLength = static_cast<size_t>(PutText(m_pBuffer + m_nLength, arg, 0) - m_pBuffer);
    }
    // Takes the line feeds out of the current line.
    void RemoveLineFeeds();
    // Appends the line feed that ends the current line.
    void EndLine() {
        Reserve(1);
        m_pBuffer[m_nLength++] = '\n';
        m_bEnded = true;
    }

    // The current line (with its line feed once ended).
    char const* GetData() const { return m_pBuffer + m_nLineStart; }
    int32_t GetLength() const { return static_cast<int32_t>(m_nLength - m_nLineStart); }
    // The ended lines not yet cleared, then the current line.
    char const* GetBlock() const { return m_pBuffer; }
    size_t GetBlockLength() const { return m_nLength; }
    // Empties the buffer; its memory is kept.
    void ClearBlock();

private:
    void StartLine() {
        if (m_bEnded) m_nLineStart = m_nLength;
        else m_nLength = m_nLineStart;
        m_bEnded = false;
    }
    void Apply(char const* format, SArg const* args, int32_t count);
    // Appends the pieces of format; next is the first argument not yet used.
    void Emit(CLineFormat const& format, SArg const* args, int32_t count, int32_t& next);
    // Makes room for extra more bytes behind the text.
    void Reserve(size_t extra) {
        if (m_nCapacity - m_nLength < extra) Grow(extra);
    }
    void Grow(size_t extra);
    // Writes the number at out and returns the end of it.
    static char* PutNumber(char* out, int32_t number) {
        if (number < 0 || number > 9) return PutLongNumber(out, number);
        *out = static_cast<char>('0' + number);
        return out + 1;
    }
    static char* PutLongNumber(char* out, int32_t number);
    // Copies the text up to its first NUL to out, making room for it and for
    // fixed more bytes; returns the end of it.
    char* PutText(char* out, char const* text, size_t fixed);
    // The same for an argument whose length, when known, the caller has made
    // room for (room is what the rest of the line may still need). A string
    // whose length field is followed by a NUL and holds none before it is
    // copied by that length, without a search for its end; any other goes the
    // way of a plain text, so a string whose length field was cut short
    // (Remove, Delete) still prints to its first NUL.
    char* PutText(char* out, SArg const& arg, size_t room) {
        if (arg.m_nLength >= 0 && arg.m_pText[arg.m_nLength] == '\0' &&
            CopyWithoutNul(out, arg.m_pText, static_cast<size_t>(arg.m_nLength))) {
            return out + arg.m_nLength;
        }
        return PutText(out, arg.m_pText, room);
    }
    // Copies length bytes in words; false, with out partly written, when one
    // of them is a NUL.
    static bool CopyWithoutNul(char* out, char const* text, size_t length) {
        if (length >= 8) {
            for (size_t i = 0; i + 8 < length; i += 8) {
                if (!CopyWord<uint64_t>(out + i, text + i)) return false;
            }
            return CopyWord<uint64_t>(out + length - 8, text + length - 8);
        }
        if (length >= 4) return CopyWord<uint32_t>(out, text) && CopyWord<uint32_t>(out + length - 4, text + length - 4);
        for (size_t i = 0; i < length; ++i) {
            if (!text[i]) return false;
            out[i] = text[i];
        }
        return true;
    }
    template <typename W>
    static bool CopyWord(char* out, char const* text) {
        constexpr W kOnes = static_cast<W>(~W{0}) / 0xFF;
        constexpr W kHigh = kOnes << 7;
        W word;
        std::memcpy(&word, text, sizeof word);
        // The first test passes every word of bytes below 128 without a NUL.
        if (((word - kOnes) & kHigh) && ((word - kOnes) & ~word & kHigh)) return false;
        std::memcpy(out, &word, sizeof word);
        return true;
    }
    template <CLineFormat const& F, int32_t... I>
    void EmitPieces(SArg const* args, size_t room, std::integer_sequence<int32_t, I...>) {
        char* out = m_pBuffer + m_nLength;
        ((out = EmitPiece<F, I>(out, args, room)), ...);
        m_nLength = static_cast<size_t>(out - m_pBuffer);
    }
    template <CLineFormat const& F, int32_t I>
    char* EmitPiece(char* out, SArg const* args, size_t room) {
        constexpr CLineFormat::SPiece piece = F.GetPiece(I);
        if constexpr (!piece.m_cDirective) {
            std::memcpy(out, piece.m_pText, piece.m_nLength);
            return out + piece.m_nLength;
        } else {
            SArg const& arg = args[F.ArgumentOf(I)];
            if constexpr (piece.m_cDirective == 'd') return PutNumber(out, arg.m_pText ? 0 : arg.m_nNumber);
            else return arg.m_pText ? PutText(out, arg, room) : out;
        }
    }
    void AppendBytes(char const* text, size_t length);
    // The length of an argument that PutText may copy without making room.
    static size_t KnownLength(CString const& text) { return static_cast<size_t>(text.GetLength()); }
    static size_t KnownLength(SArg const& arg) { return arg.m_nLength > 0 ? static_cast<size_t>(arg.m_nLength) : 0; }
    template <typename A>
    static size_t KnownLength(A const&) {
        return 0;
    }

    char* m_pBuffer;
    size_t m_nLength = 0;
    size_t m_nCapacity;
    size_t m_nLineStart = 0;
    bool m_bEnded = false;
};
