// The missing-items report: every name still indexed for commands, reports,
// structures and enumerations, written beside the predefined database.
#include "Storage.h"
