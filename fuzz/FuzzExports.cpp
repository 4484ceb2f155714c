// Fuzz target: the bytes as a module-definition file whose exports section
// is replaced. The file is opened, two names are added and, when both
// markers were found, the file is rewritten in place.
#include <cstddef>
#include <cstdint>

#include "DefExports.h"
#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string const& path = fuzzsupport::ScratchPath("def");
    if (!fuzzsupport::WriteScratch(path, data, size)) return 0;
    CDefExports exports;
    exports.Open(CString(path.c_str()));
    exports.Add(CString("FirstExport"));
    exports.Add(CString("SecondExport @2"));
    exports.Close();
    return 0;
}
