// Fuzz target: the bytes as the database file that a run loads first. The
// loader reads it into an empty store (and deletes it, as in a run); the
// writer then writes the store back to /dev/null.
#include <cstddef>
#include <cstdint>

#include "DBLoader.h"
#include "FuzzSupport.h"
#include "KSLDBWriter.h"
#include "Storage.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string const& path = fuzzsupport::ScratchPath("txt");
    if (!fuzzsupport::WriteScratch(path, data, size)) return 0;
    stData context;
    CStorage storage(&context);
    CKSLDBWriter writer(&storage, &context);
    storage.SetDBWriter(&writer);
    LoadDatabaseText(storage, CString(path.c_str()), context);
    writer.Open("/dev/null");
    writer.WriteDB();
    writer.Close();
    return 0;
}
