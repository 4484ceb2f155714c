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

#include "CFile.h"
#include "CString.h"
#include "Collections.h"
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

    // ---- indexes and helpers of the expressions and enumerations (add below)

    // ---- helpers of the field types, structures and unions (add below)

    // ---- helpers of the driver and transfer (add below)
};
