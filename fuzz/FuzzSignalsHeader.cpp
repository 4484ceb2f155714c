// Fuzz target: the bytes as the signals header of a whole signal run, as a
// run makes it: a database file with records of every kind is loaded first
// (so that the header's types meet stored ones), the header is parsed and
// transferred, the store is written as a database file and the parsed types
// as a generated C header, both to /dev/null. The first byte picks the
// enumeration size mode.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <sstream>

#include "FuzzSupport.h"
#include "KSLDBWriter.h"
#include "ParseS2T.h"
#include "SignalParser.h"
#include "Storage.h"

namespace {

std::string const& SeedDatabase() {
    static std::string const bytes = [] {
        std::ifstream in(KS_FUZZ_SEED_DATABASE, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }();
    return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string const& path = fuzzsupport::ScratchPath("h");
    std::string const& database = fuzzsupport::ScratchPath("txt");
    std::string const& seed = SeedDatabase();
    if (!fuzzsupport::WriteScratch(path, data, size)) return 0;
    if (!fuzzsupport::WriteScratch(database, reinterpret_cast<uint8_t const*>(seed.data()), seed.size())) return 0;
    stData context;
    CStorage storage(&context);
    CKSLDBWriter writer(&storage, &context);
    storage.SetDBWriter(&writer);
    CString header(path.c_str());
    auto mode = size > 0 && (data[0] & 1) ? ENUM_SIZE_FOUR_BYTES : ENUM_SIZE_BY_RANGE;
    // The parser holds its define table inline: too large for the stack.
    auto* signals = new CSignalParser(header, storage, mode);
    signals->BuildDBFromText(CString(database.c_str()), context);
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
