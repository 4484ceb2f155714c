// CParseS2T: the header file driver. ParseS2TFile opens one signals header,
// skips it when its first line carries the do-not-preprocess marker, and hands
// every top-level construct to its reader: #define to the define table,
// struct, union and enum to their parsers, and simple typedef aliases to the
// typedef map. Anything else at top level is read and ignored. Also here:
// MakeAbsolutePath, a path helper beside the class.
#include "ParseS2T.h"

#include <cstdio>

#include "ParserTexts.h"

namespace {

// True when the file is not to be parsed: it is empty or its first line, read
// directly, begins with the marker.
bool IsMarkedDoNotPreprocess(CFile& file) {
    CString first;
    if (!file.ReadString(first)) return true;
    return first.StartsWith(kDoNotPreprocess);
}

CString WithoutStars(CString const& text) {
    CString kept;
    for (int32_t i = 0; i < text.GetLength(); ++i) {
        if (text.GetAt(i) != '*') kept += text.GetAt(i);
    }
    return kept;
}

}  // namespace

bool CParseS2T::ParseS2TFile(CString path, bool /*firstFlag*/, bool exportedOnly) {
    m_nLineNo = 0;
    m_nProgressLines = 0;
    m_bExportedOnly = exportedOnly;
    m_strFileName = path;
    delete m_pNestedNames;
    m_pNestedNames = new CStringList;
    CFile file;
    bool opened = file.Open(path, "r") != 0;
    if (!opened) {
        std::printf(kMsgCannotOpen, path.GetData());
    } else {
        m_nFileLength = file.GetLength();
        ResetDefineTable();
        if (IsMarkedDoNotPreprocess(file)) {
            // The file is skipped; the one line the reader still takes keeps its
            // side effects (a stray #else there is reported).
            ReadLine(&file, 0);
        } else {
            file.SeekToBegin();
            ParseTopLevel(&file);
        }
        file.Close();
    }
    delete m_pNestedNames;
    m_pNestedNames = nullptr;
    return opened;
}

void CParseS2T::ParseTopLevel(CFile* file) {
    while (ReadLine(file, 0)) {
        for (;;) {
            CString token = GetToken(file);
            m_strToken = token;
            if (m_nTokenType == TOKEN_EOF) break;
            if (m_nTokenType == TOKEN_DEFINE) {
                CString name = GetToken(file);
                if (m_nTokenType == TOKEN_EOF) break;
                if (IsTypeDef(name)) AddDefineStatementToDefineArray(file, name);
            } else if (token == kUnion) {
                if (m_bPexilSignalsMode) DoUnion(file, 0, false);
            } else if (token == kStruct) {
                DoStruct(file, false);
            } else if (token == kEnum) {
                DoEnum(file);
            } else if (token == kTypedef) {
                if (!DispatchTypedef(file)) break;
            }
        }
    }
}

// False when the rest of the current line is to be read afresh by the outer
// loop (an enumeration left out in exported-only mode).
bool CParseS2T::DispatchTypedef(CFile* file) {
    CString word = GetNonEmptyToken(file);
    if (m_nTokenType != TOKEN_ORDINARY) return true;
    if (word == kStruct) {
        if (!m_bExportedOnly || m_bExportedStruct) DoStruct(file, true);
    } else if (word == kEnum) {
        if (m_bExportedOnly && !m_bPexilSignalsMode && !m_bExportedEnum) {
            CString tag = GetToken(file);
            AddHiddenEnumDefine(tag);
            return false;
        }
        DoEnum(file);
    } else if (word == kUnion) {
        DoUnion(file, 0, true);
    } else {
        ReadTypedefAlias(file, word);
    }
    return true;
}

void CParseS2T::ReadTypedefAlias(CFile* file, CString const& word) {
    // Only two words are taken: "typedef unsigned long int X;" records the
    // alias "int", not X. Kept so that existing headers resolve as before.
    CString type = word;
    if (word == kUnsigned || word == kSigned || word == kConst) {
        type += ' ';
        type += GetToken(file);
    } else if (word == kVolatile) {
        type = GetToken(file);
    }
    if (m_nTokenType != TOKEN_ORDINARY) return;
    CString alias = GetToken(file);
    if (m_nTokenType != TOKEN_ORDINARY || alias == "(" || alias == ")") return;
    if (alias == "*") {
        type += " *";
        alias = GetToken(file);
    }
    if (alias.Find('*') >= 0) {
        type += " *";
        alias = WithoutStars(alias);
    }
    if (m_nTokenType == TOKEN_ORDINARY) MapTypedefAlias(alias, type);
    ReadTypedefRest(file, alias, type);
}

// The rest of the statement: an array size after a name makes that name an
// array type ("Name" to "char[10]"), and each name after a "," is an alias too.
void CParseS2T::ReadTypedefRest(CFile* file, CString current, CString& type) {
    while (m_nTokenType == TOKEN_ORDINARY) {
        CString remembered = current;
        current = GetToken(file);
        if (current == "[" && m_nTokenType == TOKEN_ORDINARY) {
            type += current;
            do {
                current = GetToken(file);
                if (m_nTokenType != TOKEN_ORDINARY) return;
                type += current;
            } while (current != "]");
            MapTypedefAlias(remembered, type);
        }
        while (current == "," && m_nTokenType == TOKEN_ORDINARY) {
            CString alias = GetToken(file);
            if (m_nTokenType != TOKEN_ORDINARY) return;
            MapTypedefAlias(alias, type);
            current = GetToken(file);
        }
    }
}

void CParseS2T::MapTypedefAlias(CString const& alias, CString const& type) {
    // An empty alias (a name made only of "*") would map the empty word; skipped.
    if (alias.IsEmpty() || alias == type) return;
    DropResolvedAliases(alias);
    m_TypedefMap.SetAt(alias, type);
}

bool MakeAbsolutePath(CString& path, CString& base) {
    CString copy = path;
    copy.Replace('/', '\\');
    if (copy.IsEmpty()) return false;
    if (base.GetLength() > 0 && base.GetAt(base.GetLength() - 1) == '\\') base = base.Left(base.GetLength() - 1);
    for (int32_t up = copy.Find("..\\"); up >= 0; up = copy.Find("..\\")) {
        base = base.Left(base.ReverseFind('\\'));
        copy = copy.Mid(up + 3);
    }
    if (copy != path) path = base + "\\" + copy;
    return true;
}
