// KSManUtil exports: the exports section of a module-definition file.
#include "UtilCommands.h"
