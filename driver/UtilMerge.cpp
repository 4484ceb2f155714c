// KSManUtil merge: an Init database checked against a predefined one.
#include "UtilCommands.h"
