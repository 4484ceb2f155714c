// The fixed texts of the type database: the built-in report that heads the
// report section, the separator of message full names, the names the signal
// table is derived from, and the headings and file suffix of the
// missing-items report.
#pragma once

namespace storagetexts {

// The report written before every stored report.
constexpr char kBuiltInReportCategory[] = "PRINTF";
constexpr char kBuiltInReportFormat[] = "diagPrintf(\"%s\")";

// Between the three categories of a message's full name.
constexpr char kFullNameSeparator[] = "__";

// The union whose members and the enumeration whose values form the signal table.
constexpr char kSignalUnionName[] = "Signal";
constexpr char kSignalIdEnumName[] = "SignalId";

// The missing-items report.
constexpr char kOrphanFileSuffix[] = "_predefined_error.txt";
constexpr char kOrphanCommandsHeading[] = "****** List of Missing Commands ******\n";
constexpr char kOrphanReportsHeading[] = "\n\n****** List of Missing Reports ******\n";
constexpr char kOrphanStructsHeading[] = "\n\n****** List of Missing Structs ******\n";
constexpr char kOrphanEnumsHeading[] = "\n\n****** List of Missing Enums ******\n";

}  // namespace storagetexts
