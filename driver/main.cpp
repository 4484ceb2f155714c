// KSManCMD: loads the type database file, parses a signals header into it and
// writes the file back.
#include "CommandLine.h"
#include "HeapReserve.h"

int main(int argc, char** argv) {
    ReserveHeapOnHugePages();
    return RunKSManCMD(argc, argv);
}
