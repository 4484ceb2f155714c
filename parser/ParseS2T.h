// The signal header parser. It reads one C header of signal and type
// declarations line by line, handles the directives itself (conditional
// compilation, #define values, #undef), evaluates constant expressions, builds
// the parsed objects of enumerations, structures and unions, and transfers
// them into the type database. One object may parse several headers; parsed
// objects, the typedef map and the counters carry over from one to the next.
// The operations are spread over one source file per concern:
//   ParseS2T.cpp            construction, destruction, small helpers
//   ParseS2T_Lexer.cpp      lines, comments, tokens
//   ParseS2T_Preproc.cpp    directives and the define table
//   ParseS2T_Expr.cpp       constant expressions and sizeof
//   ParseS2T_Enum.cpp       enumerations and signal groups
//   ParseS2T_FieldTypes.cpp type names, field kinds, bit-field holders
//   ParseS2T_Struct.cpp     structures
//   ParseS2T_Union.cpp      unions
//   ParseS2T_Driver.cpp     the header file driver
//   ParseS2T_Transfer.cpp   transfer into the type database
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "CFile.h"
#include "CString.h"
#include "Collections.h"
#include "DeclarationIndex.h"
#include "NameTable.h"
#include "ParsedObjects.h"
#include "RunContext.h"

class CStorage;
struct stSignal;

// Token kinds held in m_nTokenType.
enum : int32_t {
    TOKEN_EOF = 0,
    TOKEN_END_OF_STATEMENT = 1,
    TOKEN_DEFINE = 2,
    TOKEN_ORDINARY = 4,
};

constexpr int32_t kMaxDefines = 5000;
constexpr int32_t kHiddenEnumValue = static_cast<int32_t>(0x80000001u);

// A signal group as the parser keeps it.
struct SGroup {
    CString m_strName;
    int32_t m_nValue = 0;
};

// Macro name to value, for #ifdef, #ifndef and #undef. Shared by every parser
// of the process and never cleared, so macros of one header stay visible while
// a later one is parsed.
extern CMapStringTo<int32_t> g_DefinesMap;

// Resolves a relative path against a base directory with backslash separators.
bool MakeAbsolutePath(CString& path, CString& base);

class CParseS2T {
public:
    CParseS2T();
    CParseS2T(CParseS2T const&) = delete;
    CParseS2T& operator=(CParseS2T const&) = delete;
    virtual void PrintProgress(int32_t done, int32_t total);
    virtual ~CParseS2T();

    // ---- construction and small helpers (ParseS2T.cpp)
    void InitReservedKeywordsList();
    CString PPIntToStr(int32_t n);
    bool IsQuoted(CString const& s);
    void UnQuote(CString& s);
    CString GetLastError() const { return m_strReserved; }
    void PexilSignalsMode() { m_bPexilSignalsMode = true; }
    void AddDSFile(CString const& name);
    void SetStorage(CStorage* storage) { m_pStorage = storage; }

    // ---- lexer (ParseS2T_Lexer.cpp)
    // 1 when a line was read into m_strLine, 0 at the end of the file (nothing changes).
    int ReadLine(CFile* file, int raw);
    CString GetToken(CFile* file);
    void DeleteRemark(CString& line);
    void RemoveComments(CString& text);
    bool FindCharToEOL(CFile* file, char c);
    void DisplayFileProcessedSizePercentage(CFile* file);

    // ---- preprocessor and define table (ParseS2T_Preproc.cpp)
    void ParsePPStatements(CFile* file);
    void ParseDefineStatement(CFile* file);
    void AddDefineStatementToDefineArray(CFile* file, CString name);
    bool IsTypeDef(CString const& word);
    int32_t FindDefVal(CString const& token);

    // ---- constant expressions (ParseS2T_Expr.cpp)
    int32_t GetDefineVal(CFile* file);
    int32_t ParseBrackets(CFile* file);
    int32_t Operation(CString const& op, int32_t acc, int32_t value);
    int32_t CalcSizeOf(CFile* file);
    int32_t FindEnumVal(CString const& name);

    // ---- enumerations (ParseS2T_Enum.cpp)
    void DoEnum(CFile* file);
    bool AddGroup(CString& name);
    bool EnumExists(CString const& name);
    CEnum* FindEnumByName(CString const& name);
    void RemoveEnum(CString const& name);

    // ---- structures (ParseS2T_Struct.cpp)
    CStruct* DoStruct(CFile* file, bool typedefForm);
    bool IsPointer(CFile* file);
    bool IsStructDeclaration(CFile* file);
    CString GenerateNestedNameForTag(CString tag);
    void AddTagToNestedNames(CString tag);
    CString GenerateKestrinStructureTag();
    void MoveAdditionalNames(CStruct* to, CStruct* from);
    CStruct* FindStructByName(CString const& name);
    bool StructExists(CString const& name);
    CStruct* FindStructByNamePattern(CString const& pattern);

    // ---- unions (ParseS2T_Union.cpp)
    CUnion* DoUnion(CFile* file, int nested, bool typedefForm);
    CUnion* FindUnionByName(CString const& name);
    int RemoveUnionByName(CString const& name);
    CUnion* FindUnionByNamePattern(CString const& pattern);
    void RemoveUnion(CString const& name);

    // ---- header file driver (ParseS2T_Driver.cpp)
    bool ParseS2TFile(CString path, bool firstFlag, bool exportedOnly);

    // ---- transfer into the type database (ParseS2T_Transfer.cpp)
    bool WriteEnums();
    void WriteUnions();
    void WriteDB();
    void WriteStruct(stSignal* signal, CStruct* source, CString signalName, CString second, CString prefix);
    bool WriteVersion();
    bool WriteSignalGroups();
    bool BuildSignalTable();

    // ---- database loader (forwards to the database library)
    void BuildDBFromText(CString path, stData& data);

    // Members, in this order.
    bool m_bPexilSignalsMode = false;
    CString m_strLine;
    int32_t m_nTokenType = TOKEN_EOF;
    CDefines m_Defines[kMaxDefines];
    int32_t m_nDefinesCount = 0;
    int32_t m_nReserved1 = 0;
    int32_t m_nReserved2 = 0;
    CList<CObject*> m_StructList;
    CList<CObject*> m_EnumList;
    CList<CObject*> m_UnionList;
    CMapStringToString m_TypedefMap;
    bool m_bExportedStruct = false;
    bool m_bExportedEnum = false;
    bool m_bExportedOnly = false;
    int32_t m_nIntBits = 32;
    int32_t m_nLineNo = 0;
    CString m_strReserved;
    CUIntArray m_IfStack;
    CMap<CString, CString, int32_t, int32_t> m_ReservedMap;
    CStringList* m_pDSFiles = nullptr;
    CString m_strFileName;
    CStorage* m_pStorage = nullptr;
    CString m_strToken;
    CStringList m_ReservedKeywords;
    int32_t m_nTagCounter = 0;
    int32_t m_nFileLength = 0;
    int32_t m_nNestedCounter = 0;
    CStringList* m_pNestedNames = nullptr;
    int32_t m_nGeneratedStructCounter = 0;
    bool m_bInComment = false;
    CList<SGroup> m_SignalGroups;
    int32_t m_nReserved3 = 0;
    int32_t m_nGenUnionCounter = 0;
    int32_t m_nProgressLines = 0;

    // ---- indexes and helpers of the lexer and preprocessor (add below)

    // GetToken reads the current line from an offset: a token is cut by moving
    // the offset, so a line is never shifted token by token and a long line
    // tokenises in linear time. Code outside the lexer that reads or replaces
    // the line goes through CurrentLine() (or CommitLinePos()), which brings
    // m_strLine to exactly the rest of the line first.
    CString& CurrentLine();
    // Empties the define table and its index; the driver calls it per file.
    void ResetDefineTable();
    // Records name with the value 0x80000001 (an enumeration left out in
    // exported-only mode): counted like any entry, never entered in g_DefinesMap.
    void AddHiddenEnumDefine(CString const& name);
    void CommitLinePos();
    void CheckLinePos();
    void SetLinePos(int32_t pos);
    void SkipLineBlanks();
    bool LineStartsWith(char const* prefix) const;
    bool LineIsEmpty() const;
    void SkipBlockCommentLines(CFile* file, bool& endOfFile);
    CString CutToken(int32_t length);
    void CutTokenAt(int32_t length, CString& token);
    // GetToken into token, whose block is used again; GetBodyToken and
    // GetNonEmptyToken likewise.
    void ReadToken(CFile* file, CString& token);
    void ReadBodyToken(CFile* file, CString& token);
    void ReadNonEmptyToken(CFile* file, CString& token);
    void HandleDirective(CFile* file);
    CString DirectiveName() const;
    bool StoreDefine(CString const& name, int32_t value);
    void SyncDefineIndex();
    void IndexDefine(CString const& name, int32_t entry);
    int32_t m_nLinePos = 0;                     // start of the rest of the line in m_strLine
    int32_t m_nLineSeenLength = 0;              // m_strLine as the lexer left it, to notice
    char const* m_pLineSeenData = nullptr;      // a replacement made elsewhere
    int32_t m_nDirectiveDepth = 0;              // directives run one after another, not nested
    bool m_bDirectivePending = false;
    CNameTable<int32_t> m_DefineIndex;          // name -> oldest entry of m_Defines
    int32_t m_nDefineIndexCount = 0;            // entries of m_Defines already in the index
    // Searches of the rest of the current line for the look-aheads of the
    // structure and union readers, whatever the line's length: each answer is
    // kept per character, so that the rest, which only ever starts further on,
    // is never searched twice and a header written on one line stays linear.
    int32_t RestFind(char c);    // the first c at or after the rest's start, or -1
    int32_t RestLastOf(char c);  // the line's last c when it lies in the rest, or -1
    // A "*" in the rest that neither multiplies inside an array size (a "["
    // before it and the line's last "]" after it) nor follows a "/".
    bool RestMakesPointer();
    struct SLineSearch {
        uint32_t version = 0;  // m_nLineVersion the answers belong to
        int32_t from = 0;      // at: the first c at or after from
        int32_t at = -1;
        int32_t last = -2;     // the last c of the line; -2 before it is sought
    };
    SLineSearch& LineSearch(char c);
    void LineChanged() { ++m_nLineVersion; }
    SLineSearch m_LineSearches[256];
    char const* m_pSearchedData = nullptr;  // the line the answers were found in
    int32_t m_nSearchedLength = -1;
    uint32_t m_nLineVersion = 1;  // moves whenever m_strLine may hold another text
    // ---- indexes and helpers of the expressions and enumerations (add below)

    // Evaluates up to the unmatched closing token: ")" for ParseBrackets, "]"
    // for an array size.
    int32_t ParseBracketsUntil(CFile* file, char const* closing);
    void ApplyOperand(CString const& previous, CString const& token, int32_t& acc);
    // Called for every token, so kept inline; the list rarely shrinks.
    void NoteEnumListChanges() {
        int32_t count = m_EnumList.GetCount();
        if (count < m_nEnumListSeen && count <= m_nEnumsIndexed) NoteEnumListShrunk(count);
        m_nEnumListSeen = count;
    }
    void NoteEnumListShrunk(int32_t count);
    void SyncEnumIndex();
    void ClearEnumIndex();
    void DropPartialEnum();
    void IndexEnumValues(CEnum* enumeration, int32_t limit);
    struct SEnumIndexEntry {
        int32_t nOrdinal;  // position of the enumeration in m_EnumList
        int32_t nValue;
    };
    // The entries of one enumerator name, in list order. Nearly every name has
    // one, which is held in place; a name repeated across enumerations keeps
    // the others in an array of m_EnumIndexMore.
    struct SEnumIndexEntries {
        SEnumIndexEntry first;
        int32_t count;
        uint32_t more;  // 1 + its array in m_EnumIndexMore, 0 before one is needed
    };
    SEnumIndexEntry const& EnumIndexEntry(SEnumIndexEntries const& entries, int32_t i) const {
        return i == 0 ? entries.first : m_EnumIndexMore[entries.more - 1][static_cast<size_t>(i - 1)];
    }
    // Enumerator name -> the first enumerator of that name in each enumeration,
    // in list order. Holds every enumerator but the newest one of the last
    // enumeration, whose value may still change; that one is read in place.
    CNameTable<SEnumIndexEntries> m_EnumIndex;
    std::vector<std::vector<SEnumIndexEntry>> m_EnumIndexMore;
    int32_t m_nEnumsIndexed = 0;           // leading enumerations indexed completely
    void* m_posLastEnumIndexed = nullptr;  // list position of the last of them
    CEnum* m_pEnumPartial = nullptr;       // the enumeration after them, indexed in part
    int32_t m_nPartialValuesIndexed = 0;
    void* m_posPartialValue = nullptr;     // list position of its last value indexed
    std::vector<uint32_t> m_PartialNames;  // entries of m_EnumIndex it added to
    int32_t m_nEnumListSeen = 0;
    bool m_bEnumIndexStale = false;
    // ---- helpers of the field types, structures and unions (add below)
    // The next token of a declaration body: empty tokens are skipped and a
    // #define met on the way is recorded.
    CString GetBodyToken(CFile* file);
    bool IsReservedKeyword(CString const& word);
    // "extern", "volatile", "const" or "register" before a field's type.
    bool IsFieldQualifier(CString const& word);
    // One of the primitive type names (character types included).
    bool IsPrimitiveTypeName(CString const& type);
    // Follows the typedef map, dropping "volatile", to the text it ends at.
    CString ResolveTypeAlias(CString const& start);
    // The type text of a field whose first type word is first; pending receives
    // the token read past a type of keywords or "unsigned"/"signed" (the
    // declarator's start), empty when nothing was read past the type.
    CString ResolveFieldType(CFile* file, CString const& first, CString& pending);
    CString NormaliseTypeName(CString const& text);
    void NormaliseTypeNameInPlace(CString& text);
    int32_t SelectFieldKind(CString const& type);
    // field, just appended to owner, is a bit-field of width bits.
    void AddBitField(CStruct* owner, CStructVar* field, int32_t width, int32_t& holderCounter);
    // A structure whose "struct" was read; nested ones keep the prefix rules
    // and return right after their closing brace. Null when no body follows.
    CStruct* ParseStruct(CFile* file, bool typedefForm, bool nested);
    // Aggregates nested deeper than this are skipped to their closing brace and
    // kept empty, so that no header can exhaust the stack.
    static constexpr int32_t kMaxNesting = 200;
    bool IsNestingTooDeep() const { return m_nNestingDepth >= kMaxNesting; }
    void SkipBody(CFile* file);
    void PopNestedName();
    void AppendStruct(CStruct* parsed);
    void DeleteStruct(CStruct* parsed);
    void AppendUnion(CUnion* parsed);
    void RenameUnion(CUnion* parsed, CString const& name);
    void DeleteUnion(CUnion* parsed);
    int RemoveUnionByNameExcept(CString const& name, CUnion const* keep);
    int32_t m_nNestingDepth = 0;
    // Enumeration bodies (ParseS2T_Enum.cpp).
    struct SEnumBody;
    CString GetNonEmptyToken(CFile* file);
    bool ReadEnumTag(CFile* file, CString& tag);
    void ReadEnumDefinition(CFile* file, CString const& tag, SEnumBody& body);
    void ReadEnumBody(CFile* file, SEnumBody& body);
    bool ReadEnumInitialiser(CFile* file, SEnumBody& body, CString const& op);
    void CompleteLastEnumerator(SEnumBody& body);
    int32_t QuotedCharacterValue(CString const& operand);
    void NameEnum(CFile* file, SEnumBody& body);
    // An enumeration defined inside a structure, named by its tag; false when
    // no body followed (the statement was read to its end).
    bool ReadNestedEnum(CFile* file, CString& tag);
    // Structure bodies (ParseS2T_Struct.cpp).
    struct SFieldType;
    struct SStructBody;
    struct SDeclarator;
    struct SLookAhead;
    bool ReadStructHead(CFile* file, CString& tag);
    void ReadStructBody(CFile* file, SStructBody& body);
    bool StatementInterrupted(SStructBody& body, CString const& token);
    // token, the statement's first, is read on from (its text is not kept).
    void ReadFieldStatement(CFile* file, SStructBody& body, CString& token);
    void ClassifyTypeWord(CFile* file, CString const& word, SFieldType& type, CString& pending);
    bool ReadAggregateType(CFile* file, SStructBody& body, bool isUnion, SFieldType& type, CString& pending);
    bool ReadAggregateTypeWord(CFile* file, SStructBody& body, bool isUnion, bool bodyFollows, SFieldType& type,
                               CString& pending);
    // Whether the first ";" or "{" from the reader's place on is a "{".
    bool BodyFollows(CFile* file);
    // What IsPointer, IsStructDeclaration and BodyFollows answer, from one
    // reading of the lines ahead.
    struct SStatementAhead {
        bool pointer = false;
        bool braceOnLine = false;  // the line that ends the search holds a "{"
        bool braceFirst = false;   // its first ";" or "{" is a "{"
    };
    SStatementAhead LookAheadStatement(CFile* file);
    bool StatementHoldsStar();
    bool ReadEnumFieldType(CFile* file, SStructBody& body, SFieldType& type, CString& pending);
    void ReadDeclarators(CFile* file, SStructBody& body, SFieldType const& type, CString& token);
    void ReadDeclarator(CFile* file, SStructBody& body, SFieldType const& type, SDeclarator& declarator,
                        CString& token);
    void CreateField(SStructBody& body, SFieldType const& type, SDeclarator& declarator);
    void ReadArrayDimension(CFile* file, SDeclarator& declarator, CString& token);
    int32_t ReadPointerArraySize(CFile* file, CString& token);
    void ReadBitWidth(CFile* file, SStructBody& body, SDeclarator& declarator, CString& token);
    void FinishStruct(CFile* file, CStruct* parsed, bool typedefForm, CStruct* earlier);
    void ReadFurtherStructNames(CFile* file, CStruct* parsed);
    void SkipRestOfLine(CFile* file);
    SLookAhead SaveLookAhead(CFile* file);
    void RestoreLookAhead(CFile* file, SLookAhead const& saved);
    // Union bodies (ParseS2T_Union.cpp).
    struct SMemberType;
    bool ReadUnionHead(CFile* file, bool typedefForm, CString& tag);
    void ReadUnionBody(CFile* file, CUnion* parsed);
    bool ReadMemberStatement(CFile* file, CUnion* parsed, CString token);
    void ClassifyMember(CFile* file, CString const& token, SMemberType& type, CString& pending);
    void ClassifyAggregateMember(CFile* file, bool isUnion, SMemberType& type, CString& pending);
    bool ReadMemberDeclarators(CFile* file, CUnion* parsed, SMemberType const& type, CString token);
    bool ReadMemberDeclarator(CFile* file, SMemberType const& type, CUnionVar* member, CString& token);
    void ReadMemberArraySize(CFile* file, CUnionVar* member, bool first, CString& token);
    int32_t PointedKindOf(CString const& word);
    CString ReadUnionName(CFile* file, CString const& current, bool& named);
    void ReadFurtherUnionNames(CFile* file, CUnion* parsed);
    // Name look-ups of m_EnumList, m_StructList and m_UnionList.
    CEnumIndex m_EnumNameIndex;
    CStructIndex m_StructIndex;
    CUnionIndex m_UnionIndex;

    // ---- helpers of the driver and transfer (add below)
    void ParseTopLevel(CFile* file);
    bool DispatchTypedef(CFile* file);
    void ReadTypedefAlias(CFile* file, CString const& word);
    void ReadTypedefRest(CFile* file, CString current, CString& type);
    void MapTypedefAlias(CString const& alias, CString const& type);
    // ---- typedef chains followed once (ParseS2T_FieldTypes.cpp)
    // Every text met on a chain ResolveTypeAlias or FollowSizeofAlias has
    // followed, with its answer, so that a long chain named many times costs
    // its length only once. DropResolvedAliases empties them when a new alias
    // could change an answer.
    void DropResolvedAliases(CString const& alias);
    // The text sizeof sizes: the chain is followed without dropping
    // "volatile" and stops before a text already met.
    CString FollowSizeofAlias(CString const& type);
    std::unordered_map<CString, CString, CStringKeyHash> m_ResolvedAliases;
    std::unordered_map<CString, CString, CStringKeyHash> m_SizeofAliases;
    std::unordered_set<CString, CStringKeyHash> m_AliasChainEnds;  // answers that are no alias
};
