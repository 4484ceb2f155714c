// KSManCMD command line, the banner, list files and the fixed run sequence.
#include "CommandLine.h"
