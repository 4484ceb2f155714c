// The fixed run sequence of KSManCMD: load the database, parse the signals
// header into it, write the database back. No stage's result stops the run:
// each stage reports its own problems, and the database file is always
// rewritten with whatever the store holds.
#include <cstdio>

#include "CommandLine.h"
#include "KSLDBWriter.h"
#include "SignalParser.h"
#include "Storage.h"

namespace {

// The store and the parser hold every record of the run: for a large header a
// few hundred thousand small blocks, which would take a sizeable part of the
// run to give back one by one just before the process ends. They are left to
// the end of the process instead, as compilers leave their syntax trees; they
// stay reachable from here, so leak checkers do not count them.
stData* g_pKeptData = nullptr;
CStorage* g_pKeptStorage = nullptr;
CSignalParser* g_pKeptSignals = nullptr;

// A second run in the same process gives the first one's objects back first.
void ReleaseKeptRun() {
    delete g_pKeptSignals;
    delete g_pKeptStorage;
    delete g_pKeptData;
    g_pKeptSignals = nullptr;
    g_pKeptStorage = nullptr;
    g_pKeptData = nullptr;
}

}  // namespace

int RunKSManCMD(int argc, char** argv) {
    ReleaseKeptRun();
    g_pKeptData = new stData;
    stData& data = *g_pKeptData;
    CString banner = GetProductNameAndVersion(argc > 0 ? argv[0] : nullptr, data);
    std::printf("%s\n", banner.GetData());
    CStorage* storage = new CStorage(&data);
    CommandLineOptions options;
    ParseCommandLine(argc, argv, options);
    CKSLDBWriter writer(storage, &data);
    storage->SetDBWriter(&writer);
    CSignalParser* signals = new CSignalParser(options.m_strSignals, *storage, options.m_nEnumSize);
    signals->BuildDBFromText(options.m_strDatabase, data);
    signals->ParseSignals(*storage);
    writer.Open(options.m_strDatabase);
    writer.WriteDB();
    writer.Close();
    storage->SetDBWriter(nullptr);
    g_pKeptStorage = storage;
    g_pKeptSignals = signals;
    std::fflush(stdout);
    return 0;
}
