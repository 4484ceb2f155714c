// Fuzz target: the bytes as the signals header of a whole signal run. The
// header is parsed and transferred into an empty store, the store is written
// as a database file and the parsed types as a generated C header, both to
// /dev/null. The first byte picks the enumeration size mode.
#include <cstddef>
#include <cstdint>

#include "FuzzSupport.h"
#include "KSLDBWriter.h"
#include "ParseS2T.h"
#include "SignalParser.h"
#include "Storage.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string const& path = fuzzsupport::ScratchPath("h");
    if (!fuzzsupport::WriteScratch(path, data, size)) return 0;
    stData context;
    CStorage storage(&context);
    CKSLDBWriter writer(&storage, &context);
    storage.SetDBWriter(&writer);
    CString header(path.c_str());
    auto mode = size > 0 && (data[0] & 1) ? ENUM_SIZE_FOUR_BYTES : ENUM_SIZE_BY_RANGE;
    // The parser holds its define table inline: too large for the stack.
    auto* signals = new CSignalParser(header, storage, mode);
    signals->ParseSignals(storage);
    writer.Open("/dev/null");
    writer.WriteDB();
    writer.Close();
    signals->GenerateSignalsHFile(CString("/dev/null"));
    delete signals;
    // Macros outlive a parser by design; each input starts from none.
    g_DefinesMap.RemoveAll();
    return 0;
}
