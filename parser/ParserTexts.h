// The fixed texts of the header parser: keywords and markers it looks for in a
// header, separator sets of the lexer, and the messages it prints. Gathered
// here so that every parser file spells them the same way; each concern adds
// its own group below.
#pragma once

// ---- lexer and preprocessor
// Characters that end a word; every other character belongs to it, so "1<<4"
// and 'x' come out as single words.
constexpr char kTokenSeparators[] = " ,;[]{}()=+-\\\n\r\t*/";
constexpr char kBlankAndTab[] = " \t";
// Directive lines are trimmed of these on the left before they are read:
// space, slash and the letter t, the set the preprocessor has always used.
constexpr char kDirectiveTrimSet[] = " /t";
constexpr char kKeywordDefine[] = "define";
constexpr char kKeywordInclude[] = "include";
constexpr char kDirectiveElse[] = "else";
constexpr char kDirectiveEndif[] = "endif";
constexpr char kDirectiveIf[] = "if";
constexpr char kDirectiveIfdef[] = "ifdef";
constexpr char kDirectiveIfndef[] = "ifndef";
constexpr char kDirectiveDefined[] = "defined";
constexpr char kDirectiveUndef[] = "undef";
constexpr char kLineComment[] = "//";
constexpr char kBlockCommentOpen[] = "/*";
constexpr char kBlockCommentClose[] = "*/";
constexpr char kExportedStructMarker[] = "OMRA EXPORTED STRUCT";
constexpr char kExportedEnumMarker[] = "OMRA EXPORTED ENUM";
constexpr char kTypedefStruct[] = "typedef struct";
constexpr char kTypedefEnum[] = "typedef enum";
constexpr char kMsgElseWithoutIf[] = "#else without matching if found on line %d\n";
constexpr char kMsgEndifWithoutIf[] = "#endif without matching if found on line %d on file %s\n";
constexpr char kMsgTooManyDefines[] = "Error: too many #define in file (maximum %d supported\n";
constexpr char kMsgFilePercentage[] = "\r%ld%%";
constexpr char kMsgProgress[] = "\r%d%%";

// ---- constant expressions
constexpr char kKeywordSizeof[] = "sizeof";
constexpr char kHexPrefix[] = "0x";
constexpr char kAlwaysFalse[] = "1==0";
constexpr char kAlwaysTrue[] = "1==1";
constexpr char kAlwaysTrueZero[] = "0==0";

// ---- declarations and the header file driver: the words the enumeration,
// structure and union readers react to, the formats of the names generated
// for anonymous and nested aggregates, and the two messages they print.
// -- words of a declaration
constexpr char kTypedef[] = "typedef";
constexpr char kStruct[] = "struct";
constexpr char kUnion[] = "union";
constexpr char kEnum[] = "enum";
constexpr char kUnsigned[] = "unsigned";
constexpr char kSigned[] = "signed";
constexpr char kConst[] = "const";
constexpr char kVolatile[] = "volatile";
constexpr char const* kFieldQualifiers[] = {"extern", "volatile", "const", "register"};
constexpr char const* kEnumOperators[] = {"|", "&", "^", "<<", "=", "+", "/", "*", "-"};

// -- signal groups
constexpr char kSignalIdTag[] = "SignalIdTag";
constexpr char kSignalBase[] = "_SIGNAL_BASE";

// -- field types
constexpr char kBareUnsignedType[] = "UINT32";
constexpr char kPointerType[] = "unsigned short";
constexpr char kBitFieldHolderName[] = "%s_bitfield_%d";
constexpr char kBitFieldHolderType[] = "unsigned long";

// -- generated names
constexpr char kGeneratedTag[] = "ksTag_%d";
constexpr char kNestedPrefix[] = "%s_%d_";
constexpr char kGeneratedStructBase[] = "GeneratedKestrinStruct";
constexpr char kGeneratedStruct[] = "%s_%d";
constexpr char kGeneratedUnion[] = "ksGenUnion_%d";
constexpr char kFunctionPointer[] = "FuncPtr_%d";

// -- file driver
constexpr char kDoNotPreprocess[] = "//OMRA DO NOT PREPROCESS";

// -- messages
constexpr char kMsgIncorrectStruct[] = "\nWarning: incorrect Stuct : %s FileName: %s LineNum: %d\n";
constexpr char kMsgCannotOpen[] = "Error : Could not open file %s to read.\n";
