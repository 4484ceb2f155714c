// The option names and values that KSManUtil's "header" and "exports" commands
// recognise. Options are two characters, compared without regard to case, with
// the value glued on ("-Sfile.h"); a repeated option keeps its last value.
#pragma once

namespace utiloptiontexts {

constexpr char kSignalsOption[] = "-S";
constexpr char kOutputOption[] = "-O";
constexpr char kCompilerOption[] = "-C";
constexpr char kDefinitionOption[] = "-D";
// The target compiler whose enumerations are always four bytes wide.
constexpr char kFourByteEnumCompiler[] = "BRANTOVE";
constexpr int kOptionLength = 2;

}  // namespace utiloptiontexts
