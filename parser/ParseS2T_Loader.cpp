// CParseS2T: loading the database file at the start of a run. The loader lives
// in the database library beside the writer whose format it reads; this member
// only hands it the parser's store.
#include "DBLoader.h"
#include "ParseS2T.h"

// Without a store there is nowhere to load into, and the file is left alone.
void CParseS2T::BuildDBFromText(CString path, stData& data) {
    if (!m_pStorage) return;
    LoadDatabaseText(*m_pStorage, path, data);
}
