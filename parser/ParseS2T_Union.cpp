// CParseS2T: unions. DoUnion reads one union declaration, after the driver met
// "union" or "typedef union" or a structure met a nested "union", into a CUnion
// with one CUnionVar per member. The union is listed before its body is read
// and renamed as its names become known; m_UnionIndex follows every rename and
// removal, so the by-name look-ups answer as a walk of the list would.
//
// Member statements: type declarator { "," declarator } ";" where type is a
// nested "union"/"struct" body, "union X", "struct X", an enumeration, a
// typedef of a primitive, a known union, "unsigned"/"signed" with one keyword,
// or any other word (kept as written, kind int; a qualifier such as "const"
// is such a word). A declarator is its words with "*", "(" and ")": the last
// word is the name, a "*" makes an "unsigned short" pointer named "p_<name>",
// and the first number in "[...]" sets the count.
#include "ParseS2T.h"

#include <cctype>
#include <cstring>

#include "NumberText.h"
#include "ParserTexts.h"

// A member statement's type, classified once for all its declarators.
struct CParseS2T::SMemberType {
    CString type;
    int32_t kind = FIELD_INT;
    int32_t pointedKind = FIELD_INT;  // the kind a "*" after this type points at
    bool nestedBody = false;
    bool consumed = false;  // no body followed after all: the statement was read
};

CUnion* CParseS2T::DoUnion(CFile* file, int nested, bool typedefForm) {
    CUnion* parsed = new CUnion;
    AppendUnion(parsed);
    CString name;
    if (!ReadUnionHead(file, typedefForm, name)) {
        DeleteUnion(parsed);
        return nullptr;
    }
    if (name.IsEmpty()) name.Format(kGeneratedUnion, m_nGenUnionCounter++);
    RenameUnion(parsed, name);
    AddTagToNestedNames(GenerateNestedNameForTag(name));
    if (IsNestingTooDeep()) {
        SkipBody(file);
    } else {
        ++m_nNestingDepth;
        ReadUnionBody(file, parsed);
        --m_nNestingDepth;
    }
    PopNestedName();
    if (m_nTokenType == TOKEN_EOF) return parsed;
    bool named = false;
    if (typedefForm) name = ReadUnionName(file, name, named);
    // A later top-level union replaces an earlier one of the same name.
    if (nested == 0) RemoveUnionByNameExcept(name, parsed);
    RenameUnion(parsed, name);
    if (named) ReadFurtherUnionNames(file, parsed);
    return parsed;
}

bool CParseS2T::ReadUnionHead(CFile* file, bool typedefForm, CString& tag) {
    CString token;
    for (;;) {
        ReadBodyToken(file, token);
        if (m_nTokenType != TOKEN_ORDINARY) return false;
        if (token == "{") return true;
        if (!typedefForm) tag = token;
    }
}

void CParseS2T::ReadUnionBody(CFile* file, CUnion* parsed) {
    CString token;
    for (;;) {
        ReadBodyToken(file, token);
        if (m_nTokenType == TOKEN_EOF || token == "}") return;
        if (m_nTokenType == TOKEN_END_OF_STATEMENT) continue;
        if (!ReadMemberStatement(file, parsed, token)) return;
    }
}

// False when the body ended inside the statement (a "}" or the end of the file).
bool CParseS2T::ReadMemberStatement(CFile* file, CUnion* parsed, CString token) {
    SMemberType type;
    CString pending;
    ClassifyMember(file, token, type, pending);
    if (m_nTokenType == TOKEN_EOF) return false;
    if (type.consumed) return true;
    if (pending.IsEmpty()) ReadBodyToken(file, pending);
    return ReadMemberDeclarators(file, parsed, type, pending);
}

void CParseS2T::ClassifyMember(CFile* file, CString const& token, SMemberType& type, CString& pending) {
    if (token == kUnion || token == kStruct) {
        ClassifyAggregateMember(file, token == kUnion, type, pending);
        return;
    }
    type.type = token;
    if (CEnum* known = FindEnumByName(token)) {
        type.type = known->m_strName;
        type.kind = FIELD_ENUM;
    } else if (m_TypedefMap.Find(token) && IsPrimitiveTypeName(NormaliseTypeName(ResolveTypeAlias(token)))) {
        type.kind = FIELD_INT;
    } else if (FindUnionByName(token)) {
        type.kind = FIELD_UNION;
    } else if (token == kUnsigned || token == kSigned) {
        // One keyword joins the word: "unsigned long int x" is an
        // "unsigned long" named x.
        ReadBodyToken(file, pending);
        if (m_nTokenType == TOKEN_ORDINARY && IsReservedKeyword(pending)) {
            type.type += ' ';
            type.type += pending;
            ReadBodyToken(file, pending);
        }
    }
    type.pointedKind = PointedKindOf(token);
}

// What a "*" after the type word points at: a known union, else a known
// structure, else an integer.
int32_t CParseS2T::PointedKindOf(CString const& word) {
    if (FindUnionByName(word)) return FIELD_UNION;
    return FindStructByName(word) ? FIELD_STRUCT : FIELD_INT;
}

void CParseS2T::ClassifyAggregateMember(CFile* file, bool isUnion, SMemberType& type, CString& pending) {
    type.kind = isUnion ? FIELD_UNION : FIELD_STRUCT;
    // A structure member asks for a "*" first; the lines that look-ahead reads
    // count for the progress display, so it is made though its answer is not
    // needed: a body that follows is read whether or not a "*" comes after
    // it, since the declarators after the closing brace carry their own stars.
    if (!isUnion) IsPointer(file);
    if (BodyFollows(file)) {
        CObject* nested = nullptr;
        if (isUnion) {
            CUnion* inner = DoUnion(file, 1, false);
            if (inner) type.type = inner->m_strName;
            nested = inner;
        } else {
            CStruct* inner = ParseStruct(file, false, true);
            if (inner) type.type = inner->m_strName;
            nested = inner;
        }
        type.consumed = !nested;
        type.nestedBody = true;
        type.pointedKind = type.kind;
        return;
    }
    // "union X" and "struct X" without a body take X as their type.
    type.type = GetBodyToken(file);
    if (m_nTokenType != TOKEN_ORDINARY || type.type == "}") {
        pending = type.type;  // the statement or the body ends here
        return;
    }
    type.pointedKind = PointedKindOf(type.type);
}

// Reads the declarators of one member statement; false when the body ended.
bool CParseS2T::ReadMemberDeclarators(CFile* file, CUnion* parsed, SMemberType const& type, CString token) {
    for (bool first = true;; first = false) {
        CUnionVar* member = new CUnionVar;
        member->m_nType = type.kind;
        member->m_strType = type.type;
        bool named = ReadMemberDeclarator(file, type, member, token);
        if (named || (first && type.nestedBody && m_nTokenType != TOKEN_EOF)) parsed->m_lstVars.AddTail(member);
        else delete member;
        if (m_nTokenType == TOKEN_EOF || token == "}") return false;
        if (m_nTokenType == TOKEN_END_OF_STATEMENT) return true;
        ReadBodyToken(file, token);  // past the ","
    }
}

// Reads one declarator into member; on return token holds the "," ";" or "}"
// that ended it. True when the declarator named something or was a pointer.
bool CParseS2T::ReadMemberDeclarator(CFile* file, SMemberType const& type, CUnionVar* member, CString& token) {
    bool pointer = false;
    bool wordSeen = false;
    bool sized = false;
    int32_t depth = 0;
    while (m_nTokenType == TOKEN_ORDINARY && token != "}" && !(token == "," && depth == 0)) {
        if (token == "[") {
            ReadMemberArraySize(file, member, !sized, token);
            sized = true;
            continue;
        }
        if (token == ":") {
            // The bit width is not kept for union members; "a:4" is one word.
            ReadBodyToken(file, token);
            if (m_nTokenType == TOKEN_ORDINARY && token != "}" && token != ",") ReadBodyToken(file, token);
            continue;
        }
        if (token == "*") pointer = true;
        else if (token == "(") ++depth;
        else if (token == ")") depth = depth > 0 ? depth - 1 : 0;
        else {
            member->m_strName = token;
            wordSeen = true;
        }
        ReadBodyToken(file, token);
    }
    if (pointer) {
        // Pointers are 16 bits wide on the target.
        member->m_strType = kPointerType;
        member->m_nType = FIELD_POINTER;
        member->m_nPointedType = type.pointedKind;
        member->m_strName = CString("p_") + member->m_strName;
    }
    return wordSeen || pointer;
}

// "[" was read: the first word inside (past "(" and ")") is a decimal count or
// an enumerator; anything else keeps the count. Only the first size of a
// declarator counts ("a[2][5]" holds 2). The rest up to "]" is passed over;
// on return token holds the token after it (or the ";" "}" that cut it).
void CParseS2T::ReadMemberArraySize(CFile* file, CUnionVar* member, bool first, CString& token) {
    ReadBodyToken(file, token);
    while (m_nTokenType == TOKEN_ORDINARY && (token == "(" || token == ")")) ReadBodyToken(file, token);
    if (m_nTokenType == TOKEN_ORDINARY && token != "]" && token != "}") {
        int32_t value = Atoi32(token) != 0 || token == "0" ? Atoi32(token) : FindEnumVal(token);
        if (first && value != kNoValue) member->m_nArraySize = value;
        while (m_nTokenType == TOKEN_ORDINARY && token != "]" && token != "}") ReadBodyToken(file, token);
    }
    if (m_nTokenType == TOKEN_ORDINARY && token == "]") ReadBodyToken(file, token);
}

// The token after "}" names the union unless it is ";": a "*" ("} *PU;")
// and the empty token at the end of the file too.
CString CParseS2T::ReadUnionName(CFile* file, CString const& current, bool& named) {
    CString token = GetBodyToken(file);
    named = m_nTokenType != TOKEN_END_OF_STATEMENT;
    return named ? token : current;
}

// Every further declarator after a "," is a union of its own with copies of
// the members.
void CParseS2T::ReadFurtherUnionNames(CFile* file, CUnion* parsed) {
    CString token = GetBodyToken(file);
    while (token == "," && m_nTokenType == TOKEN_ORDINARY) {
        CString further = GetBodyToken(file);
        while (further == "*" && m_nTokenType == TOKEN_ORDINARY) ReadBodyToken(file, further);
        if (m_nTokenType != TOKEN_ORDINARY) return;
        CUnion* copy = new CUnion;
        copy->m_strName = further;
        copy->CopyVars(parsed->m_lstVars);
        AppendUnion(copy);
        ReadBodyToken(file, token);
    }
}

// ---- the union list and its look-ups

void CParseS2T::AppendUnion(CUnion* parsed) {
    m_UnionList.AddTail(parsed);
    m_UnionIndex.Appended(m_UnionList, parsed);
}

void CParseS2T::RenameUnion(CUnion* parsed, CString const& name) {
    parsed->m_strName = name;
    m_UnionIndex.Renamed(m_UnionList, parsed);
}

void CParseS2T::DeleteUnion(CUnion* parsed) {
    if (m_UnionIndex.Unlink(m_UnionList, parsed)) delete parsed;
}

namespace {

// std::toupper of every byte, asked once.
struct SUpperCase {
    char of[256];
    SUpperCase() {
        for (int32_t c = 0; c < 256; ++c) of[c] = static_cast<char>(std::toupper(c));
    }
};

// UpperCaseKey(name) without a call per character: the text up to its first
// NUL (which ends the key there), each character put through toupper.
CString UpperCaseName(CString const& name) {
    static SUpperCase const upper;
    char const* text = name.GetData();
    void const* nul = std::memchr(text, '\0', static_cast<size_t>(name.GetLength()));
    int32_t length = nul ? static_cast<int32_t>(static_cast<char const*>(nul) - text) : name.GetLength();
    CString key(text, length);
    char* out = key.GetData();
    for (int32_t i = 0; i < length; ++i) out[i] = upper.of[static_cast<unsigned char>(out[i])];
    return key;
}

}  // namespace

CUnion* CParseS2T::FindUnionByName(CString const& name) {
    return m_UnionIndex.First(m_UnionList, CUnionKeys::kNameNoCase, UpperCaseName(name));
}

int CParseS2T::RemoveUnionByName(CString const& name) { return RemoveUnionByNameExcept(name, nullptr); }

// Unlike FindUnionByName, the name is compared with case.
int CParseS2T::RemoveUnionByNameExcept(CString const& name, CUnion const* keep) {
    if (name.IsEmpty()) return 0;
    CUnion* found = m_UnionIndex.FirstExcept(m_UnionList, CUnionKeys::kName, name, keep);
    if (!found) return 0;
    DeleteUnion(found);
    return 1;
}

CUnion* CParseS2T::FindUnionByNamePattern(CString const& pattern) {
    return FirstNameHolding<CUnion, CUnionKeys>(m_UnionList, pattern);
}

void CParseS2T::RemoveUnion(CString const& /*name*/) {}
