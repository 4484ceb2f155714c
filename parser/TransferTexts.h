// Fixed texts of the transfer of parsed types into the type database: the
// progress lines of each stage, the totals and the notice for an enumeration
// the database already holds. All go to standard output.
#pragma once

namespace transfertexts {

constexpr char kWriteEnums[] = "Write enums to database\n";
constexpr char kEnumExists[] = "Enum '%s' exist in Database!\n";
// The totals end with a carriage return and no line end, so the next stage
// line overwrites them on a terminal.
constexpr char kTotalEnums[] = "\rTotal Enums: %d.\r";
constexpr char kWriteUnions[] = "Write unions to database\n";
constexpr char kTotalUnions[] = "\rTotal Unions: %d.\r";
constexpr char kWriteStructs[] = "Write structures to database\n";
constexpr char kTotalStructs[] = "\rTotal Structs: %d.\r";
constexpr char kWriteSignalGroups[] = "Write signal groups to database\n";

// Kind words stored as the type name of union members, by field kind; the
// enumeration slot is never used (an enumeration member keeps its own type name).
constexpr char const* kUnionKindWords[] = {"primitive", "primitive", "struct", "enum", "union", "pointer"};
constexpr char kStructKindText[] = "struct";

}  // namespace transfertexts
