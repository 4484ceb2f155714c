// Fixed texts of the signal run: the progress line printed after each of its
// stages and the reasons left in the error text when the run fails.
#pragma once

namespace signaltexts {

// The carriage return overwrites the percentage the parser leaves on the line.
constexpr char kDone[] = "\rDone!\n";
constexpr char kCouldNotOpenSignals[] = "Could not open signals file %s";
constexpr char kErrorWritingEnums[] = "Error Writing Enums. Reason - %s";

}  // namespace signaltexts
