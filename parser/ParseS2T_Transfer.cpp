// CParseS2T: transfer of the parsed types into the type database.
#include "ParseS2T.h"
