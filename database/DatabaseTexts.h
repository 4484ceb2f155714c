// Fixed texts of the database file: the section keywords in the order the writer
// emits them, the "<end>" marker, the line formats of every record kind, the
// documentation markers and the few messages of the writer and the loader.
// The writer and the loader share them, so one file format lives in one place.
#pragma once

#include <cstdint>

namespace dbtexts {

// Section keywords. The two "EnumVals" sections are told apart only by position:
// commands first, reports second.
constexpr char kDbVersion[] = "DbVersion";
constexpr char kEnumVals[] = "EnumVals";
constexpr char kParameters[] = "Parameters";
constexpr char kMonitorParams[] = "MonitorParams";
constexpr char kNvm[] = "nvm";
constexpr char kEnumsTitle[] = "EnumsTitle";
constexpr char kEnums[] = "Enums";
constexpr char kUnions[] = "Unions";
constexpr char kSignals[] = "Signals";
constexpr char kSignalTable[] = "SignalTable";
constexpr char kGroups[] = "Groups";
constexpr char kUnionIdentifiers[] = "UnionIdentifiers";
constexpr char kEnd[] = "<end>";

// Record line formats.
constexpr char kVersionLine[] = "%ld,%d";
constexpr char kMessageHead[] = "%d,%d,%d,%d,%s,%s,%s,";
constexpr char kParameterLine[] = "%s,%s";
constexpr char kMonitorLine[] = "%d,%s,%s,%s,%d";
constexpr char kStructHeader[] = "%s,,,,,0,%d,%s,%s";
constexpr char kStructHeaderWithDependency[] = "%s,,,,,0,%d,%s,%s@ITEM_MODE@@ITEM_UNIT@@ITEM_DEPENDENCY@%s";
constexpr char kStructFieldOfStruct[] = "%s,%s,,,%s,%d,%d,%s,%s";
constexpr char kStructField[] = "%s,,%s,%s,%s,%d,%d,%s,%s";
constexpr char kTagText[] = "%s%s%s%s%s%s%s";
constexpr char kEnumTitleLine[] = "%s,%d,%s,%s";
constexpr char kEnumeratorLine[] = "%s,%s,%d,%s";
constexpr char kUnionMemberLine[] = "%s,%s,%s,%s,%d,0";
constexpr char kSignalHeader[] = "%s,,,,1,";
constexpr char kSignalMemberOfSignal[] = "%s,%s,,,%d,%s";
constexpr char kSignalMemberUnknown[] = "%s,,%s,unknown,%d,%s";
constexpr char kSignalMember[] = "%s,,%s,%s,%d,%s";
constexpr char kSignalTableLine[] = "%s,%d,";
constexpr char kGroupLine[] = "%s,%d,";
constexpr char kUnionIdentifierLine[] = "%s,%s";
constexpr char kMonitorKey[] = "__MON_%s";

// Documentation markers inside the last column of structure lines.
constexpr char kItemMode[] = "@ITEM_MODE@";
constexpr char kItemUnit[] = "@ITEM_UNIT@";
constexpr char kItemDependency[] = "@ITEM_DEPENDENCY@";

// Report wrappers: a text holding "%S" prints a structure.
constexpr char kWrapPrintf[] = "diagPrintf(";
constexpr char kWrapStructPrintf[] = "diagStructPrintf(";
constexpr char kWrapClose[] = ")";
constexpr char kStructPrintMark[] = "%S";

// The one parameter every database carries.
constexpr char kOsTypeName[] = "OSType";
constexpr char kOsTypeValue[] = "Linux";

// Kind words of structure and union lines.
constexpr char kKindPrimitive[] = "primitive";
constexpr char kKindStruct[] = "struct";
constexpr char kKindEnum[] = "enum";
constexpr char kKindUnion[] = "union";
constexpr char kKindPointer[] = "pointer";

// Words of signal member type codes 0 to 5, in ten-character slots.
constexpr int32_t kSignalVarTypeCount = 6;
constexpr char kSignalVarType[kSignalVarTypeCount][10] = {"int", "char", "struct", "enum", "union", "pointer"};

// Messages.
constexpr char kUnknownStruct[] = "Error : Unknown struct %s.";
constexpr char kUnknownSignal[] = "Error : Unknown signal %s.";
constexpr char kCouldNotOpen[] = "Error : Could not open file %s to read.\n";

// Record reader: the parameter it keeps, the fixed first report it skips, its
// open failures by file type and its duplicate and mismatch messages ("Error :"
// and "Error:" both occur, as the diagnostics tools expect them).
constexpr char kKscVersion[] = "KSC Version";
constexpr char kPrintfReportName[] = "PRINTF__PRINTF__PRINTF";
constexpr char kOpenPredefinedFailed[] = "Error : Opening Predefined DB FILE %s\n";
constexpr char kOpenOrdinaryFailed[] = "Error : Could not Open file %s for read.\n";
constexpr char kDupCommandInit[] = "Error : Duplicate command CAT123 for %s in Init database.";
constexpr char kDupCommandPredefined[] = "Error : Duplicate command CAT123 for %s in predefined database.";
constexpr char kDupCommandWarning[] = "Warning :Duplicate Command Cat123 %s on files %s and %s";
constexpr char kMismatchCommand[] = "Error: Mismatched predefined command -  %s, on line %d\n";
constexpr char kDupCommandId[] = "Error : Duplicate command ID for %s in predefined database.";
constexpr char kDupReportInit[] = "Error : Duplicate report CAT123 for %s in Init database.";
constexpr char kDupReportPredefined[] = "Error : Duplicate report CAT123 for %s in predefined database.";
constexpr char kDupReportWarning[] = "Warning :Duplicate Report Cat123 %s on files %s and %s";
constexpr char kMismatchReport[] = "Error: Mismatched predefined report -  %s, on line %d\n";
constexpr char kDupReportId[] = "Error : Duplicate report ID for %s in predefined database.";
constexpr char kDupEnumInit[] = "Error: Duplicate Enum for %s in Init database.";
constexpr char kDupEnumPredefined[] = "Error: Duplicate Enum for %s in predefined database.";
constexpr char kDupStructInit[] = "Error : Duplicate Struct for %s in Init database.";
constexpr char kDupStructPredefined[] = "Error : Duplicate Struct for %s in predefined database.";
constexpr char kDupUnionInit[] = "Error: Duplicate Union for %s in Init database.";
constexpr char kDupUnionPredefined[] = "Error: Duplicate Union for %s in predefined database.";

}  // namespace dbtexts
