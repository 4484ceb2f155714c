// KSManUtil exports: replaces the exports section of a module-definition file
// with the names given on the command line, in their order. Every argument
// other than -D<file> is a name.
#include "UtilCommands.h"

#include "DefExports.h"
#include "UtilOptionTexts.h"

using namespace utiloptiontexts;

int RunExportsCommand(int argc, char** argv) {
    CString path;
    bool hasPath = false;
    CStringList names;
    for (int i = 0; i < argc; ++i) {
        CString argument(argv[i]);
        if (argument.Left(kOptionLength).CompareNoCase(kDefinitionOption) == 0) {
            path = argument.Mid(kOptionLength);
            hasPath = true;
        } else {
            names.AddTail(argument);
        }
    }
    if (!hasPath) return kExitUsage;
    CDefExports exports;
    // Open has already warned when the markers are missing.
    if (!exports.Open(path)) return 1;
    for (void* pos = names.GetHeadPosition(); pos;) exports.Add(names.GetNext(pos));
    return exports.Close() ? 0 : 1;
}
