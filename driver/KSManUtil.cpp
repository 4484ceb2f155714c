// KSManUtil: the companion of KSManCMD that makes the library components usable
// from the command line: merging an Init database with a predefined one,
// generating a packed signals header, and updating a module-definition file's
// exports section.
#include <cstdio>
#include <cstring>

#include "UtilCommands.h"

namespace {

constexpr char kUsage[] =
    "usage: KSManUtil <command> [options]\n"
    "commands:\n"
    "  merge   -P<predefined database> -I<Init database> -N<output database>\n"
    "  header  -S<signals header> -O<output header> [-C<target compiler>]\n"
    "  exports -D<module-definition file> NAME...\n";

int Usage() {
    std::fputs(kUsage, stderr);
    return kExitUsage;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return Usage();
    int status = kExitUsage;
    if (std::strcmp(argv[1], "merge") == 0) status = RunMergeCommand(argc - 2, argv + 2);
    else if (std::strcmp(argv[1], "header") == 0) status = RunHeaderCommand(argc - 2, argv + 2);
    else if (std::strcmp(argv[1], "exports") == 0) status = RunExportsCommand(argc - 2, argv + 2);
    if (status == kExitUsage) return Usage();
    return status;
}
