// The run context handed to every stage of a run: the version numbers of the
// database file, the highest command and report identifiers, the tool version
// and the fatal-error record (the last recorded error wins). Lower error levels
// are more severe; an error is fatal when its level is at most m_nFatalLevel.
#pragma once

#include <cstdint>

#include "CString.h"
#include "Collections.h"

struct stData {
    int32_t m_nDbVersionMinor = 0;  // written second on the version line
    bool m_bVersionFlag = false;     // cleared by the loader when it reads the version line
    int32_t m_nUnused1 = 0;
    int32_t m_nUnused2 = 0;
    bool m_bUnused1 = false;
    bool m_bUnused2 = false;
    int32_t m_nUnused3 = 20000;
    bool m_bUnused3 = false;
    bool m_bUnused4 = false;
    int32_t m_nFatalLevel = 3;
    bool m_bFatalError = false;
    CString m_strFatalError;
    CMapStringToPtr m_KscVersions;  // the "KSC Version" values a database names
    CString m_strUnused;
    CString m_strVersion;
    int32_t m_nDbVersion = 0;  // written first on the version line
    int32_t m_nUnused4 = 0;
    int32_t m_nMaxReportID = 0;
    int32_t m_nMaxCommandID = 0;
    CString m_strReleaseName;

    // Records the message when level is at most m_nFatalLevel and returns 1;
    // otherwise does nothing and returns 0.
    int SetFatalError(char const* message, int32_t level);
};
