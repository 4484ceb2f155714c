// KSManUtil header: a packed C header generated from a signals header.
#include "UtilCommands.h"
