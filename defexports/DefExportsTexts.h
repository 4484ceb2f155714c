// The fixed texts of the module-definition exports updater: the two marker
// lines that bound the exports section and the messages it writes on standard
// error.
#pragma once

namespace defexports_texts {

constexpr char kBeginMarker[] = ";KESTRIN EXPORTS BEGIN";
constexpr char kEndMarker[] = ";KESTRIN EXPORTS END";
constexpr char kSectionMissing[] = "[KSC Warning:] Kestrin export section is missing from file %s\n";
constexpr char kCannotWrite[] = "[KSC Error:] Could not open file %s for writing.\n";
constexpr char kExportIndent[] = "\t";

}  // namespace defexports_texts
