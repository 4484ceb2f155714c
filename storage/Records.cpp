// The record operations: field cursor, equality, the enumeration size rule.
#include "Records.h"
