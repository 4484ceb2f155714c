// KSManCMD command line: the two-character options with glued values, the
// banner, the release name and reading a list file.
#include "CommandLine.h"

#include <cstdio>

#include "CFile.h"

CStringList excludeDirsList;

namespace {

constexpr char kVersion[] = "2.1.5.26";
constexpr char kBannerFormat[] = "KSManCMD version %s (linux)";
constexpr char kCantOpenInput[] = "Can't open input file ";
constexpr char kBrantove[] = "BRANTOVE";
// The -O default is a fixed path on the build machines of old; it is kept so
// that command lines which rely on it see the same value.
constexpr char kDefaultOutput[] = "h:\\ks\\ds\\data\\ks_ds_in.ksp";

// Option names in the order they are tried; the first that matches decides.
constexpr char const* kOptionNames[] = {"-S", "-D", "-N", "-M", "-F", "-H", "-T",
                                        "-I", "-O", "-P", "-E", "-X", "-A", "-C"};

CString* SingleValueSlot(CommandLineOptions& options, char letter) {
    switch (letter) {
        case 'S': return &options.m_strSignals;
        case 'D': return &options.m_strDefinitions;
        case 'N': return &options.m_strDatabase;
        case 'M': return &options.m_strMessages;
        case 'F': return &options.m_strFilter;
        case 'H': return &options.m_strHeaders;
        case 'T': return &options.m_strTemplates;
        case 'I': return &options.m_strInit;
        case 'O': return &options.m_strOutput;
        case 'P': return &options.m_strPredefined;
        case 'A': return &options.m_strAdditional;
        default: return nullptr;
    }
}

// The letter of the option the argument names, or 0 for a bare argument.
char MatchOption(CString const& argument) {
    CString head = argument.Left(2);
    for (char const* name : kOptionNames) {
        if (head.CompareNoCase(name) == 0) return name[1];
    }
    return 0;
}

void AddBareArgument(CString const& argument, CommandLineOptions& options) {
    if (argument.Right(4).CompareNoCase(".exe") != 0) options.m_InputFiles.AddTail(argument);
}

void ApplyOption(char letter, CString const& value, CommandLineOptions& options) {
    if (letter == 'E') {
        options.m_nExtended = 1;
    } else if (letter == 'X') {
        excludeDirsList.AddTail(value);
    } else if (letter == 'C') {
        // Only BRANTOVE changes the mode; any other compiler leaves it as it is.
        if (value.CompareNoCase(kBrantove) == 0) options.m_nEnumSize = ENUM_SIZE_FOUR_BYTES;
    } else if (CString* slot = SingleValueSlot(options, letter)) {
        *slot = value;
    }
}

}  // namespace

void ParseCommandLine(int argc, char** argv, CommandLineOptions& options) {
    options.m_strOutput.Format("%s", kDefaultOutput);
    for (int i = 1; i < argc; ++i) {
        CString argument(argv[i]);
        char letter = MatchOption(argument);
        if (letter == 0) AddBareArgument(argument, options);
        else ApplyOption(letter, argument.Right(argument.GetLength() - 2), options);
    }
}

CString GetProductNameAndVersion(char* /*programPath*/, stData& data) {
    data.m_strVersion = kVersion;
    CString banner;
    banner.Format(kBannerFormat, data.m_strVersion.GetData());
    return banner;
}

void GetReleaseName(stData& data, CString const& /*unused*/) { data.m_strReleaseName = "Linux"; }

int GetListFromFile(char const* path, CStringList& list, stData* data) {
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::typeBinary)) {
        std::printf("%s%s\n", kCantOpenInput, path ? path : "");
        if (data && data->m_nFatalLevel >= 2) {
            data->m_bFatalError = true;
            data->m_strFatalError = CString(kCantOpenInput) + path;
            return 0;
        }
        return 1;
    }
    char buffer[256];
    while (file.ReadString(buffer, sizeof buffer)) list.AddTail(CString(buffer));
    file.Close();
    return 1;
}
