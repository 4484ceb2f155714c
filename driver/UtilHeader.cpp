// KSManUtil header: a packed C header generated from a signals header. The
// header is parsed as the signal run's first step does it (signals mode), then
// the generator writes the output header; nothing is transferred to a database.
#include "UtilCommands.h"

#include "SignalParser.h"
#include "Storage.h"
#include "UtilOptionTexts.h"

using namespace utiloptiontexts;

namespace {

struct HeaderOptions {
    CString m_strSignals;
    CString m_strOutput;
    bool m_bHasSignals = false;
    bool m_bHasOutput = false;
    CompilerTypesEnumSize m_nEnumSize = ENUM_SIZE_BY_RANGE;
};

bool IsOption(CString const& argument, char const* name) {
    return argument.Left(kOptionLength).CompareNoCase(name) == 0;
}

// False for an argument that is none of -S, -O, -C. As in KSManCMD, only the
// four-byte compiler changes the mode and a later other -C does not undo it.
bool ReadHeaderOption(CString const& argument, HeaderOptions& options) {
    CString value = argument.Mid(kOptionLength);
    if (IsOption(argument, kSignalsOption)) {
        options.m_strSignals = value;
        options.m_bHasSignals = true;
    } else if (IsOption(argument, kOutputOption)) {
        options.m_strOutput = value;
        options.m_bHasOutput = true;
    } else if (IsOption(argument, kCompilerOption)) {
        if (value.CompareNoCase(kFourByteEnumCompiler) == 0) options.m_nEnumSize = ENUM_SIZE_FOUR_BYTES;
    } else {
        return false;
    }
    return true;
}

}  // namespace

// An option given with an empty value counts as given: the empty path then
// fails to open with the usual message.
int RunHeaderCommand(int argc, char** argv) {
    HeaderOptions options;
    for (int i = 0; i < argc; ++i) {
        if (!ReadHeaderOption(CString(argv[i]), options)) return kExitUsage;
    }
    if (!options.m_bHasSignals || !options.m_bHasOutput) return kExitUsage;
    stData data;
    CStorage storage(&data);
    CSignalParser parser(options.m_strSignals, storage, options.m_nEnumSize);
    // The parser prints its own message for a header it cannot open.
    if (!parser.ParseS2TFile(options.m_strSignals, true, false)) return 1;
    return parser.GenerateSignalsHFile(options.m_strOutput) ? 0 : 1;
}
