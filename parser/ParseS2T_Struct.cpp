// CParseS2T: structures.
#include "ParseS2T.h"
