// CKSLDBWriter: the thirteen sections and one routine per record kind.
#include "KSLDBWriter.h"
