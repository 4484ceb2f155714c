// A line format of the database writer read into its pieces: runs of literal
// text and the directives "%s", "%d" and "%ld". The writer reads each of its
// record line formats once, at compile time, so that building a line no longer
// scans the format; CLineText reads any other format the same way as it goes.
// "%%" gives "%", and a "%" before any other character stays as text.
#pragma once

#include <cstddef>
#include <cstdint>

class CLineFormat {
public:
    static constexpr int32_t kMaxPieces = 24;
    // The longest text of a number directive: "-2147483648".
    static constexpr size_t kMaxNumberLength = 11;

    struct SPiece {
        char const* m_pText = nullptr;  // the literal run; null for a directive
        size_t m_nLength = 0;
        char m_cDirective = 0;  // 's' or 'd' for a directive, 0 for a literal run
    };

    // Reads pieces up to the end of format, or until kMaxPieces are read;
    // GetRest is where the reading stopped.
    constexpr explicit CLineFormat(char const* format) {
        char const* p = format;
        while (*p && m_nCount < kMaxPieces) {
            if (*p != '%') {
                char const* run = p;
                while (*p && *p != '%') ++p;
                AddLiteral(run, static_cast<size_t>(p - run));
                continue;
            }
            char directive = p[1] == 'l' ? p[2] : p[1];
            if (directive == 's' || directive == 'd') {
                p += p[1] == 'l' ? 3 : 2;
                AddDirective(directive);
                continue;
            }
            AddLiteral(p, 1);               // the "%" of "%%", or a "%" that starts no directive
            p += directive == '%' ? 2 : 1;  // "%l%" too gives "%" and goes on after the "l"
        }
        m_pRest = p;
    }

    // Whether the whole format was read.
    constexpr bool IsWhole() const { return *m_pRest == '\0'; }
    constexpr char const* GetRest() const { return m_pRest; }
    constexpr int32_t GetCount() const { return m_nCount; }
    constexpr SPiece const& GetPiece(int32_t i) const { return m_Pieces[i]; }
    // The most bytes the pieces give besides the texts of "%s".
    constexpr size_t GetFixedLength() const { return m_nFixedLength; }
    constexpr int32_t GetDirectiveCount() const { return ArgumentOf(m_nCount); }
    // The argument a directive piece takes: the number of directives before it.
    constexpr int32_t ArgumentOf(int32_t piece) const {
        int32_t directives = 0;
        for (int32_t i = 0; i < piece; ++i) {
            if (m_Pieces[i].m_cDirective) ++directives;
        }
        return directives;
    }

private:
    constexpr void AddLiteral(char const* text, size_t length) {
        m_Pieces[m_nCount].m_pText = text;
        m_Pieces[m_nCount].m_nLength = length;
        ++m_nCount;
        m_nFixedLength += length;
    }
    constexpr void AddDirective(char directive) {
        m_Pieces[m_nCount].m_cDirective = directive;
        ++m_nCount;
        if (directive == 'd') m_nFixedLength += kMaxNumberLength;
    }

    SPiece m_Pieces[kMaxPieces] = {};
    int32_t m_nCount = 0;
    size_t m_nFixedLength = 0;
    char const* m_pRest = nullptr;
};
