// Fixed texts of the header parser's declaration readers and file driver: the
// words they react to, the formats of the names they generate for anonymous
// and nested aggregates, and the two messages they print on standard output.
#pragma once

namespace decltexts {

// ---- words of a declaration
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
constexpr char kHexPrefix[] = "0x";

// ---- signal groups
constexpr char kSignalIdTag[] = "SignalIdTag";
constexpr char kSignalBase[] = "_SIGNAL_BASE";

// ---- field types
constexpr char kBareUnsignedType[] = "UINT32";
constexpr char kPointerType[] = "unsigned short";
constexpr char kBitFieldHolderName[] = "%s_bitfield_%d";
constexpr char kBitFieldHolderType[] = "unsigned long";

// ---- generated names
constexpr char kGeneratedTag[] = "ksTag_%d";
constexpr char kNestedPrefix[] = "%s_%d_";
constexpr char kGeneratedStructBase[] = "GeneratedKestrinStruct";
constexpr char kGeneratedStruct[] = "%s_%d";
constexpr char kGeneratedUnion[] = "ksGenUnion_%d";
constexpr char kFunctionPointer[] = "FuncPtr_%d";

// ---- file driver
constexpr char kDoNotPreprocess[] = "//OMRA DO NOT PREPROCESS";

// ---- messages
constexpr char kMsgIncorrectStruct[] = "\nWarning: incorrect Stuct : %s FileName: %s LineNum: %d\n";
constexpr char kMsgCannotOpen[] = "Error : Could not open file %s to read.\n";

}  // namespace decltexts
