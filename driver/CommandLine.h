// The command line of KSManCMD: options of two characters with their value
// glued on (-Sfile.h), compared without regard to case; bare arguments go to
// the input file list unless they end in ".exe". Also the small free functions
// of the driver: the banner, the release name and reading a list file.
#pragma once

#include <cstdint>

#include "CString.h"
#include "Collections.h"
#include "RunContext.h"
#include "SignalParser.h"

// Values of -X, in command-line order; nothing in the run reads them.
extern CStringList excludeDirsList;

struct CommandLineOptions {
    CString m_strDatabase;       // -N: read, then rewritten
    CString m_strDefinitions;    // -D
    CString m_strMessages;       // -M
    CString m_strTemplates;      // -T
    CString m_strInit;           // -I
    CString m_strFilter;         // -F
    CString m_strSignals;        // -S: the signals header
    CString m_strHeaders;        // -H
    CString m_strAdditional;     // -A
    CString m_strOutput;         // -O: starts as a fixed default path
    CString m_strPredefined;     // -P
    CString m_strNeverSet;       // no option sets it
    int32_t m_nExtended = 0;     // -E sets 1
    CompilerTypesEnumSize m_nEnumSize = ENUM_SIZE_BY_RANGE;  // -CBRANTOVE sets 1; nothing resets it
    CStringList m_InputFiles;    // bare arguments
};

// Fills options from the arguments after the program path (argv[1] onward).
// -X values are appended to excludeDirsList.
void ParseCommandLine(int argc, char** argv, CommandLineOptions& options);

// Stores "2.1.5.26" in data.m_strVersion and returns "KSManCMD version 2.1.5.26 (linux)".
CString GetProductNameAndVersion(char* programPath, stData& data);
void GetReleaseName(stData& data, CString const& unused);
// Appends each line of a text file (pieces of at most 255 characters) to list;
// non-zero to go on, 0 to stop.
int GetListFromFile(char const* path, CStringList& list, stData* data);

// The whole run of KSManCMD; returns the exit status (always 0).
int RunKSManCMD(int argc, char** argv);
