// stData: recording fatal errors.
#include "RunContext.h"

int stData::SetFatalError(char const* message, int32_t level) {
    if (level > m_nFatalLevel) return 0;
    m_bFatalError = true;
    m_strFatalError = message;
    return 1;
}
