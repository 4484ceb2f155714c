// CSignalParser: the generator of a C header of packed signal structures.
#include "SignalParser.h"
