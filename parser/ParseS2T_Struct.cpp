// CParseS2T: structures. DoStruct reads one structure declaration, after the
// driver met "struct" or "typedef struct", into a CStruct with one CStructVar
// per field; nested structures and unions are read by recursion and land in
// the parser's lists under generated names. Also here: the look-ahead tests,
// the generated names, and the structure look-ups (answered by m_StructIndex).
//
// Field statements accepted inside a body (tokens as GetToken cuts them):
//   body        := "{" { statement } "}"
//   statement   := ";"                                  empty, skipped
//                | "define" ...                         handed to ParseDefineStatement
//                | { qualifier } type declarators ";"
//   qualifier   := "extern" | "volatile" | "const" | "register"      skipped
//   type        := "struct" [tag] body | "union" [tag] body           nested, named by prefix
//                | "struct" X | "union" X | "enum" X                  X is the type word
//                | "enum" [tag] body                                  enumeration read in place
//                | "unsigned" | "signed" { keyword }                  bare: "UINT32"
//                | word                                               through the typedef map
//   declarators := [ declarator { "," declarator } ]
//   declarator  := { "*" } { word | "(" | ")" | "*" } { "[" size "]" } [ ":" width ]
// Only "unsigned" and "signed" gather keywords: in "short int x" the type is
// "short" and "int x" the declarator. The name is the last word before "[",
// ":", "," or ";" (":" standing alone; "a:4" is a word); parentheses are
// skipped. Each "*" before the first word adds a "p" to the name's prefix
// ("**x" gives "pp_x"). When the type is primitive and a "*" follows the type
// word on its line, the declarators become "unsigned short" fields named
// "p_x" (or "FuncPtr_n" for one that ends with ")") with pointed kind int; a
// "," inside their parentheses does not end them. A union field is a pointer
// when a "*" follows "union" on its line.
// A declaration with no declarator adds a field only after a nested body (an
// anonymous member: empty name, the nested type). A "}" inside a statement
// ends the body with a warning; the end of the file ends the structure.
#include "ParseS2T.h"

#include <cstdio>
#include <cstring>

#include "NumberText.h"
#include "ParserTexts.h"

// A field statement's type, classified once for all its declarators.
struct CParseS2T::SFieldType {
    CString type;
    int32_t kind = FIELD_STRUCT;
    int32_t pointedKind = FIELD_STRUCT;  // what a "*" of a declarator points at
    bool primitivePointer = false;  // a primitive type with a "*" after it on the line
    bool ownStar = false;           // that "*" stands in this statement, not in a later one
    bool nestedBody = false;        // the type is an aggregate whose body was just read
    bool consumed = false;          // the whole statement was read already
};

// One structure body while it is read.
struct CParseS2T::SStructBody {
    CStruct* parsed = nullptr;
    int32_t funcPtrCounter = 0;
    int32_t holderCounter = 0;
    bool ended = false;      // a "}" inside a statement or the end of the file
    bool endOfFile = false;
};

// The reader's place, kept across a look-ahead.
struct CParseS2T::SLookAhead {
    int64_t position = 0;
    int32_t lineNo = 0;
    CString line;
};

// One declarator while it is read.
struct CParseS2T::SDeclarator {
    CString name;
    bool lastClosesParen = false;  // the last token read was ")"
    int32_t stars = 0;  // the leading ones
    bool starSeen = false;
    int32_t dims = 0;
    bool wordSeen = false;
    bool done = false;  // its field was made (and possibly folded into a bit-field holder)
    bool primitivePointer = false;
    CStructVar* field = nullptr;
};

namespace {

// Where the first ";" or "{" of the text stands, or -1.
int32_t StatementEnd(char const* text, int32_t length) {
    for (int32_t i = 0; i < length; ++i) {
        if (text[i] == ';' || text[i] == '{') return i;
    }
    return -1;
}

}  // namespace

CString CParseS2T::GetBodyToken(CFile* file) {
    CString token;
    ReadBodyToken(file, token);
    return token;
}

void CParseS2T::ReadBodyToken(CFile* file, CString& token) {
    ReadToken(file, token);
    while (m_nTokenType == TOKEN_DEFINE || (m_nTokenType == TOKEN_ORDINARY && token.IsEmpty())) {
        if (m_nTokenType == TOKEN_DEFINE) ParseDefineStatement(file);
        ReadToken(file, token);
    }
}

CStruct* CParseS2T::DoStruct(CFile* file, bool typedefForm) { return ParseStruct(file, typedefForm, false); }

CStruct* CParseS2T::ParseStruct(CFile* file, bool typedefForm, bool nested) {
    CString tag;
    if (!ReadStructHead(file, tag)) return nullptr;
    CStruct* earlier = !nested && !tag.IsEmpty() ? FindStructByName(tag) : nullptr;
    CStruct* parsed = new CStruct;
    parsed->m_strTag = tag;
    if (nested) {
        parsed->m_strName = GenerateNestedNameForTag(tag);
        AddTagToNestedNames(parsed->m_strName);
    }
    SStructBody body;
    body.parsed = parsed;
    if (IsNestingTooDeep()) {
        SkipBody(file);
        body.endOfFile = m_nTokenType == TOKEN_EOF;
    } else {
        ++m_nNestingDepth;
        ReadStructBody(file, body);
        --m_nNestingDepth;
    }
    if (nested) PopNestedName();
    if (!nested && !body.endOfFile) FinishStruct(file, parsed, typedefForm, earlier);
    if (!nested) AddDSFile(m_strFileName);
    AppendStruct(parsed);
    return parsed;
}

bool CParseS2T::ReadStructHead(CFile* file, CString& tag) {
    CString token = GetBodyToken(file);
    if (token != "{" && m_nTokenType == TOKEN_ORDINARY) {
        tag = token;
        ReadBodyToken(file, token);
    }
    if (token == "{" && m_nTokenType == TOKEN_ORDINARY) return true;
    // No body: a declaration that only uses the structure type, read to its end.
    while (m_nTokenType != TOKEN_EOF && m_nTokenType != TOKEN_END_OF_STATEMENT) GetBodyToken(file);
    return false;
}

void CParseS2T::ReadStructBody(CFile* file, SStructBody& body) {
    CString token;
    while (!body.ended) {
        ReadBodyToken(file, token);
        if (m_nTokenType == TOKEN_EOF) {
            body.ended = body.endOfFile = true;
        } else if (token == "}") {
            return;
        } else if (m_nTokenType == TOKEN_ORDINARY) {
            ReadFieldStatement(file, body, token);
        }
    }
}

// True when token ends the statement early: the end of the file or a "}"
// (both end the body too) or a ";".
bool CParseS2T::StatementInterrupted(SStructBody& body, CString const& token) {
    if (m_nTokenType == TOKEN_EOF) {
        body.ended = body.endOfFile = true;
        return true;
    }
    if (token == "}") {
        std::printf(kMsgIncorrectStruct, body.parsed->m_strName.GetData(), m_strFileName.GetData(),
                    m_nLineNo);
        body.ended = true;
        return true;
    }
    return m_nTokenType == TOKEN_END_OF_STATEMENT;
}

void CParseS2T::ReadFieldStatement(CFile* file, SStructBody& body, CString& token) {
    while (IsFieldQualifier(token)) {
        ReadBodyToken(file, token);
        if (StatementInterrupted(body, token)) return;
    }
    SFieldType type;
    CString pending;
    if (token == kStruct || token == kUnion) {
        if (!ReadAggregateType(file, body, token == kUnion, type, pending)) return;
    } else if (token == kEnum) {
        if (!ReadEnumFieldType(file, body, type, pending)) return;
    } else {
        ClassifyTypeWord(file, token, type, pending);
    }
    if (type.consumed) return;
    if (pending.IsEmpty() && m_nTokenType != TOKEN_EOF) ReadBodyToken(file, pending);
    ReadDeclarators(file, body, type, pending);
}

void CParseS2T::ClassifyTypeWord(CFile* file, CString const& word, SFieldType& type, CString& pending) {
    // The look-ahead for a "*" is made right after the first type word, for
    // every field: its answer only matters for primitive types, but the lines
    // it reads count for the progress display.
    bool pointer = IsPointer(file);
    type.type = ResolveFieldType(file, word, pending);
    NormaliseTypeNameInPlace(type.type);
    type.kind = SelectFieldKind(type.type);
    type.pointedKind = type.kind;
    bool primitive = type.kind == FIELD_INT || type.kind == FIELD_CHAR;
    type.primitivePointer = pointer && primitive;
    if (type.primitivePointer) type.ownStar = StatementHoldsStar();
}

bool CParseS2T::ReadAggregateType(CFile* file, SStructBody& body, bool isUnion, SFieldType& type,
                                  CString& pending) {
    if (!isUnion) return ReadAggregateTypeWord(file, body, false, BodyFollows(file), type, pending);
    // A union field asks for a "*" before anything of it is read; when the
    // statement shows one, the field points at the union whatever its
    // declarators carry. The same reading of the lines tells whether a body follows.
    SStatementAhead ahead = LookAheadStatement(file);
    bool ok = ReadAggregateTypeWord(file, body, true, ahead.braceFirst, type, pending);
    if (ahead.pointer) {
        type.kind = FIELD_POINTER;
        type.pointedKind = FIELD_UNION;
    }
    return ok;
}

bool CParseS2T::ReadAggregateTypeWord(CFile* file, SStructBody& body, bool isUnion, bool bodyFollows,
                                      SFieldType& type, CString& pending) {
    if (bodyFollows) {
        CString name;
        if (isUnion) {
            CUnion* nested = DoUnion(file, 1, false);
            if (nested) name = nested->m_strName;
            type.consumed = !nested;
        } else {
            CStruct* nested = ParseStruct(file, false, true);
            if (nested) name = nested->m_strName;
            type.consumed = !nested;
        }
        type.type = name;
        type.kind = type.pointedKind = isUnion ? FIELD_UNION : FIELD_STRUCT;
        type.nestedBody = true;
        if (m_nTokenType == TOKEN_EOF) body.ended = body.endOfFile = true;
        return !body.ended;
    }
    CString word = GetBodyToken(file);
    if (StatementInterrupted(body, word)) return false;
    if (!isUnion) {
        ClassifyTypeWord(file, word, type, pending);
        return true;
    }
    type.type = word;
    type.kind = type.pointedKind = FIELD_UNION;
    return true;
}

bool CParseS2T::ReadEnumFieldType(CFile* file, SStructBody& body, SFieldType& type, CString& pending) {
    if (BodyFollows(file)) {
        // An enumeration defined inside the structure: its enumerators are read
        // so that later sizes can use them; the field takes its tag as type.
        CString tag;
        type.consumed = !ReadNestedEnum(file, tag);
        if (m_nTokenType == TOKEN_EOF) body.ended = body.endOfFile = true;
        type.type = tag.IsEmpty() ? CString("long") : tag;
        type.kind = type.pointedKind = SelectFieldKind(type.type);
        return !body.ended;
    }
    CString word = GetBodyToken(file);
    if (StatementInterrupted(body, word)) return false;
    ClassifyTypeWord(file, word, type, pending);
    return true;
}

void CParseS2T::ReadDeclarators(CFile* file, SStructBody& body, SFieldType const& type, CString& token) {
    for (bool first = true;; first = false) {
        SDeclarator declarator;
        declarator.primitivePointer = type.primitivePointer;
        ReadDeclarator(file, body, type, declarator, token);
        bool anonymousMember = first && type.nestedBody && m_nTokenType != TOKEN_EOF;
        if (!declarator.done && !declarator.field && (declarator.wordSeen || declarator.stars > 0 || anonymousMember)) {
            CreateField(body, type, declarator);
        }
        if (StatementInterrupted(body, token)) return;
        ReadBodyToken(file, token);  // past the ","
    }
}

void CParseS2T::ReadDeclarator(CFile* file, SStructBody& body, SFieldType const& type, SDeclarator& declarator,
                               CString& token) {
    // A pointer to a primitive takes every word up to the end of the statement,
    // so a "," inside the parentheses of a function pointer does not end it;
    // elsewhere parentheses are passed over and every "," ends the declarator.
    int32_t depth = 0;
    for (;;) {
        // The punctuation tokens are one character long; every longer token is a word.
        char mark = token.GetLength() == 1 ? token.GetAt(0) : '\0';
        if (m_nTokenType != TOKEN_ORDINARY || mark == '}' || (mark == ',' && depth == 0)) return;
        if (mark == '[') {
            if (!declarator.done && !declarator.field) CreateField(body, type, declarator);
            ReadArrayDimension(file, declarator, token);
            continue;
        }
        // Only ":" standing alone starts a bit width; "a:4" is one word, a name.
        if (mark == ':') {
            if (!declarator.done && !declarator.field) CreateField(body, type, declarator);
            ReadBitWidth(file, body, declarator, token);
            continue;
        }
        if (mark == '(') {
            if (declarator.primitivePointer) ++depth;
        } else if (mark == ')') {
            if (depth > 0) --depth;
        } else if (mark == '*') {
            if (!declarator.wordSeen) ++declarator.stars;
            declarator.starSeen = true;
        } else if (!declarator.field && !declarator.done) {
            declarator.name = token;
            declarator.wordSeen = true;
        }
        declarator.lastClosesParen = mark == ')';
        ReadBodyToken(file, token);
    }
}

void CParseS2T::CreateField(SStructBody& body, SFieldType const& type, SDeclarator& declarator) {
    CStructVar* field = new CStructVar;
    bool functionPointer = declarator.lastClosesParen;
    // The "*" that the look-ahead saw makes the declarators of a primitive
    // type pointers. When the statement holds a "*" of its own, it mixes
    // pointers and plain fields ("char *text, buffer[8];") and each declarator
    // decides by its own stars; otherwise the "*" stands in a later statement
    // of the line, and every declarator is a pointer all the same.
    bool starred = declarator.starSeen || functionPointer || !type.ownStar;
    if (declarator.primitivePointer && starred) {
        field->m_strType = kPointerType;
        field->m_nType = FIELD_POINTER;
        field->m_nPointedType = FIELD_INT;
        if (functionPointer) field->m_strName.Format(kFunctionPointer, body.funcPtrCounter++);
        else field->m_strName = CString("p_") + declarator.name;
    } else {
        field->m_strType = type.type;
        field->m_nType = type.kind;
        field->m_strName = declarator.name;
        declarator.primitivePointer = false;
        if (field->m_nType == FIELD_POINTER) field->m_nPointedType = type.pointedKind;
        if (declarator.stars > 0) {
            field->m_nPointedType = type.pointedKind;
            field->m_nType = FIELD_POINTER;
            CString prefix;
            for (int32_t i = 0; i < declarator.stars; ++i) prefix += 'p';
            field->m_strName = prefix + "_" + declarator.name;
        }
    }
    body.parsed->m_lstVars.AddTail(field);
    declarator.field = field;
}

void CParseS2T::ReadArrayDimension(CFile* file, SDeclarator& declarator, CString& token) {
    int32_t size = 0;
    if (declarator.primitivePointer) {
        size = ReadPointerArraySize(file, token);
    } else {
        size = ParseBracketsUntil(file, "]");
        if (m_nTokenType == TOKEN_EOF) token.Empty();
        else ReadBodyToken(file, token);
    }
    if (!declarator.field) return;
    if (declarator.dims++ == 0) declarator.field->m_nArraySize = size;
    else declarator.field->m_arrDims.Add(static_cast<uint32_t>(size));
}

// The size of a pointer array: the last number (decimal, "0x" hexadecimal or a
// bracketed expression) before "]"; other words are passed over. On return
// token holds the token after "]", or the ";" or "}" that cut the size short.
int32_t CParseS2T::ReadPointerArraySize(CFile* file, CString& token) {
    int32_t count = 1;
    for (;;) {
        ReadBodyToken(file, token);
        if (m_nTokenType != TOKEN_ORDINARY || token == "}") return count;
        if (token == "]") break;
        if (Atoi32(token) != 0 || token == "0") {
            count = Atoi32(token);
        } else if (token.StartsWith(kHexPrefix)) {
            uint32_t number = 0;
            ReadHex32(token.GetData() + 2, number);
            count = static_cast<int32_t>(number);
        } else if (token == "(") {
            count = ParseBrackets(file);
        }
    }
    ReadBodyToken(file, token);
    return count;
}

// token is ":"; on return it holds the token after the width.
void CParseS2T::ReadBitWidth(CFile* file, SStructBody& body, SDeclarator& declarator, CString& token) {
    int32_t width = 0;
    ReadBodyToken(file, token);
    if (m_nTokenType == TOKEN_ORDINARY && token != "}" && token != ",") {
        width = Atoi32(token);
        ReadBodyToken(file, token);
    }
    if (declarator.field && !declarator.done) AddBitField(body.parsed, declarator.field, width, body.holderCounter);
    declarator.field = nullptr;
    declarator.done = true;
}

void CParseS2T::FinishStruct(CFile* file, CStruct* parsed, bool typedefForm, CStruct* earlier) {
    CString tag = parsed->m_strTag;
    CString token = GetBodyToken(file);
    while (token == "*" && m_nTokenType == TOKEN_ORDINARY) {
        tag += " *";
        ReadBodyToken(file, token);
    }
    bool named = m_nTokenType == TOKEN_ORDINARY;
    CString name = named ? token : tag;
    if (named && tag.IsEmpty()) tag = token;
    if (name.IsEmpty()) name = tag;
    if (name.IsEmpty()) name = GenerateKestrinStructureTag();
    parsed->m_strTag = tag;
    parsed->m_strName = name;
    if (earlier && m_StructIndex.Contains(m_StructList, earlier)) {
        // A later definition replaces the earlier one, which hands over its names.
        MoveAdditionalNames(parsed, earlier);
        DeleteStruct(earlier);
    } else if (typedefForm && named) {
        ReadFurtherStructNames(file, parsed);
    }
    SkipRestOfLine(file);
}

void CParseS2T::ReadFurtherStructNames(CFile* file, CStruct* parsed) {
    CString token = GetBodyToken(file);
    while (token == "," && m_nTokenType == TOKEN_ORDINARY) {
        CString further = GetBodyToken(file);
        while (further == "*" && m_nTokenType == TOKEN_ORDINARY) ReadBodyToken(file, further);
        if (m_nTokenType != TOKEN_ORDINARY) return;
        // Further names stand in reverse order of the source.
        parsed->m_lstNames.AddHead(further);
        ReadBodyToken(file, token);
    }
}

// At the end of the file the line stays as it is, and what follows the
// declaration on the last line is read as usual.
void CParseS2T::SkipRestOfLine(CFile* file) { ReadLine(file, 0); }

void CParseS2T::SkipBody(CFile* file) {
    int32_t depth = 1;
    CString token;
    while (depth > 0) {
        ReadBodyToken(file, token);
        if (m_nTokenType == TOKEN_EOF) return;
        if (token == "{") ++depth;
        else if (token == "}") --depth;
    }
}

// ---- look-ahead
// The look-aheads judge the whole rest of the current line, however long: the
// lexer's searches of the rest (RestFind) keep their answers, so a header
// written on one huge line is still read in linear time.

// Whether the statement being read holds a "*" of its own: one before the
// first ";" of the rest of the line, or a statement that goes on below.
bool CParseS2T::StatementHoldsStar() {
    int32_t semicolon = RestFind(';');
    int32_t star = RestFind('*');
    return semicolon < 0 || (star >= 0 && star < semicolon);
}

CParseS2T::SLookAhead CParseS2T::SaveLookAhead(CFile* file) {
    SLookAhead saved;
    saved.position = file->GetPosition();
    saved.lineNo = m_nLineNo;
    saved.line = CurrentLine();
    return saved;
}

void CParseS2T::RestoreLookAhead(CFile* file, SLookAhead const& saved) {
    m_nLineNo = saved.lineNo;
    file->Seek(saved.position, CFile::begin);
    CurrentLine() = saved.line;
}

// One look-ahead over the rest of the statement, as IsPointer and
// IsStructDeclaration make it: from the rest of the current line on, lines are
// read until one holds ";" or "{" (or the file ends), and the reader is put
// back. The lines read count for the progress display each time, so every
// test reads them afresh rather than keep an earlier answer.
CParseS2T::SStatementAhead CParseS2T::LookAheadStatement(CFile* file) {
    SStatementAhead ahead;
    ahead.pointer = RestMakesPointer();
    int32_t semicolon = RestFind(';');
    int32_t brace = RestFind('{');
    if (semicolon >= 0 || brace >= 0) {
        ahead.braceOnLine = brace >= 0;
        ahead.braceFirst = brace >= 0 && (semicolon < 0 || brace < semicolon);
        return ahead;
    }
    SLookAhead saved = SaveLookAhead(file);
    while (ReadLine(file, 0)) {
        CString const& line = CurrentLine();
        if (line.Find('*') >= 0) ahead.pointer = true;
        int32_t end = StatementEnd(line.GetData(), line.GetLength());
        if (end < 0) continue;
        ahead.braceOnLine = line.Find('{') >= 0;
        ahead.braceFirst = line.GetAt(end) == '{';
        break;
    }
    RestoreLookAhead(file, saved);
    return ahead;
}

bool CParseS2T::IsPointer(CFile* file) {
    // A ";" in the rest of the line ends the look-ahead there, whatever the
    // "{" would tell, which only the other tests ask for.
    if (RestFind(';') >= 0) return RestMakesPointer();
    return LookAheadStatement(file).pointer;
}

bool CParseS2T::IsStructDeclaration(CFile* file) { return LookAheadStatement(file).braceOnLine; }

// Whether a body follows: the first ";" or "{" from here on is a "{". Unlike
// IsStructDeclaration it does not take the body of a later statement on the
// same line ("struct X x; struct { int a; } y;") for one of this statement.
bool CParseS2T::BodyFollows(CFile* file) { return LookAheadStatement(file).braceFirst; }

// ---- generated names

CString CParseS2T::GenerateNestedNameForTag(CString tag) {
    CString name;
    if (m_pNestedNames) {
        for (void* pos = m_pNestedNames->GetHeadPosition(); pos;) name += m_pNestedNames->GetNext(pos);
    }
    if (tag.IsEmpty()) tag.Format(kGeneratedTag, m_nTagCounter++);
    return name + tag;
}

void CParseS2T::AddTagToNestedNames(CString tag) {
    CString prefix;
    prefix.Format(kNestedPrefix, tag.Left(10).GetData(), m_nNestedCounter++);
    // Outside a file parse there is no prefix list; the counter still moves on.
    if (m_pNestedNames) m_pNestedNames->AddTail(prefix);
}

void CParseS2T::PopNestedName() {
    if (m_pNestedNames && !m_pNestedNames->IsEmpty()) m_pNestedNames->RemoveTail();
}

CString CParseS2T::GenerateKestrinStructureTag() {
    CString tag;
    tag.Format(kGeneratedStruct, kGeneratedStructBase, m_nGeneratedStructCounter++);
    return tag;
}

// ---- the structure list and its look-ups

void CParseS2T::MoveAdditionalNames(CStruct* to, CStruct* from) {
    if (!to || !from || to == from) return;
    while (!from->m_lstNames.IsEmpty()) to->m_lstNames.AddTail(from->m_lstNames.RemoveHead());
    m_StructIndex.Renamed(m_StructList, from);
    m_StructIndex.Renamed(m_StructList, to);
}

void CParseS2T::AppendStruct(CStruct* parsed) {
    m_StructList.AddTail(parsed);
    m_StructIndex.Appended(m_StructList, parsed);
}

void CParseS2T::DeleteStruct(CStruct* parsed) {
    if (m_StructIndex.Unlink(m_StructList, parsed)) delete parsed;
}

CStruct* CParseS2T::FindStructByName(CString const& name) {
    // A name or tag match wins wherever it stands; otherwise the last
    // structure that carries the name among its further names.
    CStruct* direct = m_StructIndex.First(m_StructList, CStructKeys::kNameOrTag, name);
    return direct ? direct : m_StructIndex.Last(m_StructList, CStructKeys::kFurtherName, name);
}

bool CParseS2T::StructExists(CString const& name) {
    return m_StructIndex.First(m_StructList, CStructKeys::kName, name) != nullptr;
}

CStruct* CParseS2T::FindStructByNamePattern(CString const& pattern) {
    return FirstNameHolding<CStruct, CStructKeys>(m_StructList, pattern);
}
