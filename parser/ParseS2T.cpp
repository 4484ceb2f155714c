// CParseS2T: construction, destruction and the small helpers.
#include "ParseS2T.h"
