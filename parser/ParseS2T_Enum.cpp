// CParseS2T: enumerations. DoEnum reads one C enumeration after the driver met
// "enum" (or "typedef enum") into a CEnum with its enumerators and values; the
// enumeration tagged "SignalIdTag" also declares the signal groups, entered at
// once into the parser's list and the store. The name look-ups of m_EnumList
// are answered by m_EnumNameIndex, which gives what a walk of the list would.
#include "ParseS2T.h"

#include "NumberText.h"
#include "ParserTexts.h"
#include "Records.h"
#include "Storage.h"

namespace {

bool IsEnumOperator(CString const& token) {
    for (char const* op : kEnumOperators) {
        if (token == op) return true;
    }
    return false;
}

int32_t PlusOne(int32_t value) { return static_cast<int32_t>(static_cast<uint32_t>(value) + 1u); }

bool IsDecimalNumber(CString const& token) { return Atoi32(token) != 0; }

}  // namespace

// The state of one enumeration body while it is read.
struct CParseS2T::SEnumBody {
    CEnum* parsed = nullptr;
    CString tag;
    CDefines* current = nullptr;
    int32_t implicitValue = 0;
    bool endOfFile = false;
};

CString CParseS2T::GetNonEmptyToken(CFile* file) {
    CString token;
    ReadNonEmptyToken(file, token);
    return token;
}

void CParseS2T::ReadNonEmptyToken(CFile* file, CString& token) {
    do {
        ReadToken(file, token);
    } while (m_nTokenType == TOKEN_ORDINARY && token.IsEmpty());
}

void CParseS2T::DoEnum(CFile* file) {
    CString tag;
    if (!ReadEnumTag(file, tag)) return;
    SEnumBody body;
    ReadEnumDefinition(file, tag, body);
    NameEnum(file, body);
}

// Appends a new enumeration to the list and reads its body up to "}".
void CParseS2T::ReadEnumDefinition(CFile* file, CString const& tag, SEnumBody& body) {
    body.parsed = new CEnum;
    body.tag = tag;
    m_EnumList.AddTail(body.parsed);
    m_EnumNameIndex.Appended(m_EnumList, body.parsed);
    ReadEnumBody(file, body);
    CompleteLastEnumerator(body);
}

bool CParseS2T::ReadEnumTag(CFile* file, CString& tag) {
    for (;;) {
        CString token = GetToken(file);
        // The end of the statement ends the search after "typedef" too: a
        // typedef of an enumeration without a body creates nothing.
        if (m_nTokenType == TOKEN_EOF || m_nTokenType == TOKEN_END_OF_STATEMENT) return false;
        if (token == "{") return true;
        if (token != kTypedef && token != kEnum && !token.IsEmpty()) tag = token;
    }
}

void CParseS2T::ReadEnumBody(CFile* file, SEnumBody& body) {
    bool nameExpected = true;
    CString token;
    for (;;) {
        if (nameExpected) {
            ReadNonEmptyToken(file, token);
            if (m_nTokenType == TOKEN_EOF || token == "}") break;
            body.current = new CDefines;
            body.current->m_strName = token;
            body.current->m_nValue = kNoValue;
            body.parsed->m_lstValues.AddTail(body.current);
            ReadNonEmptyToken(file, token);
            if (m_nTokenType == TOKEN_EOF) break;
        }
        if (token == ",") {
            body.current->m_nValue = body.implicitValue;
            body.implicitValue = PlusOne(body.implicitValue);
            nameExpected = true;
            continue;
        }
        if (token == "}") break;
        if (!IsEnumOperator(token)) {
            // After an initialiser a word that is no operator would be looked at
            // forever; it is skipped instead. After a name the next pass reads
            // a new name, so an enumerator followed by a stray word keeps no value.
            if (!nameExpected) ReadNonEmptyToken(file, token);
            if (m_nTokenType == TOKEN_EOF) break;
            continue;
        }
        if (!ReadEnumInitialiser(file, body, token)) break;
        ReadNonEmptyToken(file, token);
        if (m_nTokenType == TOKEN_EOF) break;
        nameExpected = token == ",";
        if (nameExpected) body.implicitValue = PlusOne(body.current->m_nValue);
    }
    body.endOfFile = m_nTokenType == TOKEN_EOF;
}

// An empty body has no enumerator to complete.
void CParseS2T::CompleteLastEnumerator(SEnumBody& body) {
    if (!body.current || body.current->m_nValue != kNoValue) return;
    body.current->m_nValue = body.implicitValue;
    body.implicitValue = PlusOne(body.implicitValue);
}

bool CParseS2T::ReadEnumInitialiser(CFile* file, SEnumBody& body, CString const& op) {
    CString operand = GetToken(file);
    if (m_nTokenType == TOKEN_EOF) return false;
    if (op == "=" && body.tag == kSignalIdTag) AddGroup(operand);
    int32_t& value = body.current->m_nValue;
    if (operand.StartsWith(kHexPrefix)) {
        uint32_t number = 0;
        ReadHex32(operand.GetData() + 2, number);
        value = Operation(op, value, static_cast<int32_t>(number));
        body.implicitValue = PlusOne(value);
    } else if (operand == "-") {
        CString digits = GetToken(file);
        value = static_cast<int32_t>(0u - static_cast<uint32_t>(Atoi32(digits)));
    } else if (IsDecimalNumber(operand)) {
        value = Operation(op, value, Atoi32(operand));
        body.implicitValue = PlusOne(value);
    } else if (int32_t known = FindEnumVal(operand); known != kNoValue) {
        value = Operation(op, value, known);
        body.implicitValue = PlusOne(value);
    } else if (operand == "(") {
        value = ParseBrackets(file);
        body.implicitValue = PlusOne(value);
    } else if (IsQuoted(operand)) {
        value = QuotedCharacterValue(operand);
        body.implicitValue = PlusOne(value);
    } else {
        // A name that is not known, or the literal 0, replaces the value.
        value = Atoi32(operand);
    }
    return m_nTokenType != TOKEN_EOF;
}

int32_t CParseS2T::QuotedCharacterValue(CString const& operand) {
    CString inner = operand.GetLength() >= 2 ? operand.Mid(1, operand.GetLength() - 2) : CString();
    int32_t number = Atoi32(inner);
    if (number != 0) return number;
    // '0' gives 48 and 'ab' gives 97: the code of the first character.
    return inner.IsEmpty() ? 0 : static_cast<int32_t>(static_cast<signed char>(inner.GetAt(0)));
}

void CParseS2T::NameEnum(CFile* file, SEnumBody& body) {
    CEnum* parsed = body.parsed;
    // Any token but the end of the statement names the enumeration, the empty
    // one at the end of the file too.
    CString token = body.endOfFile ? CString() : GetToken(file);
    bool fromTypedef = m_nTokenType != TOKEN_END_OF_STATEMENT;
    parsed->m_strName = fromTypedef ? token : body.tag;
    m_EnumNameIndex.Renamed(m_EnumList, parsed);
    if (EnumExists(parsed->m_strName)) {
        // The earlier definition stays; one more token is read first, which may
        // be the keyword of the declaration that follows.
        if (m_nTokenType != TOKEN_EOF) GetToken(file);
        m_EnumNameIndex.Unlink(m_EnumList, parsed);
        delete parsed;
        return;
    }
    if (fromTypedef) token = GetToken(file);
    AddDSFile(m_strFileName);
    // Whatever follows a "," is a further name, a ";" too; at the end of the
    // file the empty token is the last one.
    while (token == ",") {
        CString further = GetToken(file);
        parsed->m_lstNames.AddTail(further);
        m_EnumNameIndex.Renamed(m_EnumList, parsed);
        token = GetToken(file);
    }
}

bool CParseS2T::ReadNestedEnum(CFile* file, CString& tag) {
    if (!ReadEnumTag(file, tag)) return false;
    SEnumBody body;
    ReadEnumDefinition(file, tag, body);
    CEnum* parsed = body.parsed;
    // Named by its tag; the declarators after the body belong to the structure.
    parsed->m_strName = tag;
    m_EnumNameIndex.Renamed(m_EnumList, parsed);
    if (EnumExists(tag)) {
        m_EnumNameIndex.Unlink(m_EnumList, parsed);
        delete parsed;
    }
    return true;
}

bool CParseS2T::AddGroup(CString& name) {
    int32_t at = name.Find(kSignalBase);
    if (at <= 0) return true;
    SGroup group;
    group.m_strName = name.Left(at);
    group.m_nValue = FindEnumVal(name);
    m_SignalGroups.AddHead(group);
    // Tests parse without a store; then the groups stay in the parser's list.
    if (m_pStorage) m_pStorage->AddGroup(new stGroup(group.m_strName, group.m_nValue));
    return true;
}

bool CParseS2T::EnumExists(CString const& name) {
    // The last enumeration of the list is left out: it is the one being defined.
    CEnum* found = m_EnumNameIndex.First(m_EnumList, CEnumKeys::kName, name);
    return found && m_EnumList.GetCount() > 0 && found != m_EnumList.GetTail();
}

CEnum* CParseS2T::FindEnumByName(CString const& name) {
    return m_EnumNameIndex.First(m_EnumList, CEnumKeys::kAnyName, name);
}

void CParseS2T::RemoveEnum(CString const& /*name*/) {}
