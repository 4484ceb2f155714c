// A header parser reading an in-memory header, for the lexer, preprocessor and
// expression tests. Each harness starts from an empty process-wide define map.
#pragma once

#include <memory>
#include <string>

#include "CFile.h"
#include "ParseS2T.h"

class FrontEndHarness {
public:
    explicit FrontEndHarness(std::string const& text) : m_parser(std::make_unique<CParseS2T>()) {
        g_DefinesMap.RemoveAll();
        Open(text);
    }

    // Starts on another header with the same parser, as the driver does per file.
    void Open(std::string const& text) {
        m_file.OpenText(CString(text.data(), static_cast<int32_t>(text.size())));
        m_parser->m_strFileName = "hdr.h";
        m_parser->m_nFileLength = m_file.GetLength();
        m_parser->m_nLineNo = 0;
        m_parser->ResetDefineTable();
    }

    // The driver's order: one cleaned line, then tokens until the end of the file.
    // Each token is written as text:kind; at most limit tokens are taken.
    std::string Tokens(int limit = 100000) {
        std::string out;
        if (!m_parser->ReadLine(&m_file, 0)) return "<no line>";
        for (int i = 0; i < limit; ++i) {
            CString token = m_parser->GetToken(&m_file);
            if (m_parser->m_nTokenType == TOKEN_EOF) break;
            if (!out.empty()) out += ' ';
            out += std::string(token.GetData(), static_cast<size_t>(token.GetLength())) + ":" +
                   std::to_string(m_parser->m_nTokenType);
        }
        return out;
    }

    // Reads the whole header as the driver does: every #define is recorded and
    // every other token is returned, separated by blanks.
    std::string Parse() {
        std::string out;
        if (!m_parser->ReadLine(&m_file, 0)) return out;
        for (;;) {
            CString token = m_parser->GetToken(&m_file);
            if (m_parser->m_nTokenType == TOKEN_EOF) return out;
            if (m_parser->m_nTokenType == TOKEN_DEFINE) {
                CString name = m_parser->GetToken(&m_file);
                if (m_parser->IsTypeDef(name)) m_parser->AddDefineStatementToDefineArray(&m_file, name);
                continue;
            }
            if (token.IsEmpty()) continue;
            if (!out.empty()) out += ' ';
            out += token.GetData();
        }
    }

    CParseS2T& Parser() { return *m_parser; }
    CFile* File() { return &m_file; }
    std::string Line() { return std::string(m_parser->CurrentLine().GetData()); }

private:
    std::unique_ptr<CParseS2T> m_parser;
    CFile m_file;
};
