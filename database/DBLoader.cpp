// Loading the database file: field cutting and the section tests in their fixed order.
#include "DBLoader.h"
