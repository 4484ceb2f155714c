// CSignalParser: construction and the fixed sequence of the signal run.
#include "SignalParser.h"
