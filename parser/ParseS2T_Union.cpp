// CParseS2T: unions.
#include "ParseS2T.h"
