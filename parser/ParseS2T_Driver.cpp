// CParseS2T: the header file driver.
#include "ParseS2T.h"
