// A header parser reading an in-memory header, for the lexer, preprocessor and
// expression tests. Each harness starts from an empty process-wide define map.
#pragma once

#include <memory>
#include <string>

#include "CFile.h"
#include "ParseS2T.h"

// An input, what is expected of it and why the row is there.
struct TextRow {
    char const* input;
    char const* expected;
    char const* reason;
};

class FrontEndHarness {
public:
    explicit FrontEndHarness(std::string const& text) : m_parser(std::make_unique<CParseS2T>()) {
        g_DefinesMap.RemoveAll();
        Open(text);
    }
    // Another header for the same parser, as the driver starts each file.
    void Open(std::string const& text) {
        m_file.OpenText(CString(text.data(), static_cast<int32_t>(text.size())));
        m_parser->m_strFileName = "hdr.h";
        m_parser->m_nFileLength = m_file.GetLength();
        m_parser->ResetDefineTable();
    }
    // The driver's order: one cleaned line, then tokens to the end of the file.
    // With kinds, every token is text:kind; without, #defines are recorded and
    // the other non-empty tokens listed.
    std::string Tokens(bool kinds = true) {
        std::string out;
        if (!m_parser->ReadLine(&m_file, 0)) return "<no line>";
        for (;;) {
            CString token = m_parser->GetToken(&m_file);
            int32_t kind = m_parser->m_nTokenType;
            if (kind == TOKEN_EOF) return out;
            if (!kinds && kind == TOKEN_DEFINE) {
                m_parser->AddDefineStatementToDefineArray(&m_file, m_parser->GetToken(&m_file));
                continue;
            }
            if (!kinds && token.IsEmpty()) continue;
            out += (out.empty() ? "" : " ") + std::string(token.GetData(), static_cast<size_t>(token.GetLength()));
            if (kinds) out += ":" + std::to_string(kind);
        }
    }
    std::string Parse() { return Tokens(false); }
    CParseS2T& P() { return *m_parser; }
    CFile* File() { return &m_file; }

private:
    std::unique_ptr<CParseS2T> m_parser;
    CFile m_file;
};
