// CParseS2T: loading the database file, which the database library does.
#include "ParseS2T.h"
