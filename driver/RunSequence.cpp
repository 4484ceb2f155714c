// The fixed run sequence of KSManCMD: load the database, parse the signals
// header into it, write the database back.
#include "CommandLine.h"
