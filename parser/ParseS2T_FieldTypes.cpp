// CParseS2T: type names, field kinds and bit-field holders.
#include "ParseS2T.h"
