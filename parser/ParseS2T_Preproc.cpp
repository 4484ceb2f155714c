// CParseS2T: directives and the define table.
#include "ParseS2T.h"
