// CParseS2T: enumerations and signal groups.
#include "ParseS2T.h"
