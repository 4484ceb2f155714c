// CParseS2T: constant expressions and sizeof.
#include "ParseS2T.h"
