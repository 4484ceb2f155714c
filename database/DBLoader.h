// Loading the database file into the store at the start of a run, and deleting
// the file afterwards (the writer creates it anew at the end of the run).
#pragma once

#include "CString.h"
#include "RunContext.h"

class CStorage;

// Reads the database file at path into storage; prints the open failure and
// returns when the file cannot be read, leaving store, context and file alone.
void LoadDatabaseText(CStorage& storage, CString const& path, stData& data);
