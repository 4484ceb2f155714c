// CStorage: adding, finding, deleting, identifiers and the print walks.
#include "Storage.h"
