// Fuzz target: the bytes through the record-level reader, first as the
// predefined database, then as the Init file checked against what the first
// pass read, then as an ordinary file merged into the same store. The merged
// store is written to /dev/null.
#include <cstddef>
#include <cstdint>

#include "FuzzSupport.h"
#include "KSLDBParser.h"
#include "KSLDBWriter.h"
#include "Storage.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string const& path = fuzzsupport::ScratchPath("txt");
    if (!fuzzsupport::WriteScratch(path, data, size)) return 0;
    stData context;
    CStorage predefined(&context);
    CStorage merged(&context);
    CKSLDBParser(&predefined, nullptr, &context).ParseFile(path.c_str(), FILE_PREDEFINED);
    CKSLDBParser(&merged, &predefined, &context).ParseFile(path.c_str(), FILE_INIT);
    CKSLDBParser(&merged, &predefined, &context).ParseFile(path.c_str(), FILE_ORDINARY);
    CKSLDBWriter writer(&merged, &context);
    merged.SetDBWriter(&writer);
    writer.Open("/dev/null");
    writer.WriteDB();
    writer.Close();
    return 0;
}
