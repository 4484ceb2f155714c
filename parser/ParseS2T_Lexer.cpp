// CParseS2T: lines, comments and tokens.
#include "ParseS2T.h"
