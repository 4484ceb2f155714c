// The fixed run sequence of KSManCMD: load the database, parse the signals
// header into it, write the database back. No stage's result stops the run:
// each stage reports its own problems, and the database file is always
// rewritten with whatever the store holds.
#include <cstdio>

#include "CommandLine.h"
#include "KSLDBWriter.h"
#include "SignalParser.h"
#include "Storage.h"

int RunKSManCMD(int argc, char** argv) {
    stData data;
    CString banner = GetProductNameAndVersion(argc > 0 ? argv[0] : nullptr, data);
    std::printf("%s\n", banner.GetData());
    CStorage storage(&data);
    CommandLineOptions options;
    ParseCommandLine(argc, argv, options);

    CKSLDBWriter writer(&storage, &data);
    storage.SetDBWriter(&writer);
    {
        CSignalParser signals(options.m_strSignals, storage, options.m_nEnumSize);
        signals.BuildDBFromText(options.m_strDatabase, data);
        signals.ParseSignals(storage);
        writer.Open(options.m_strDatabase);
        writer.WriteDB();
        writer.Close();
    }
    std::fflush(stdout);
    return 0;
}
