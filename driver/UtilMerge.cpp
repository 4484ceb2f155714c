// KSManUtil merge: reads the predefined database, merges the Init database into
// a fresh store checked against it, writes that store as the output database
// and lists beside the predefined database what the Init database did not take
// from it. Options as KSManCMD reads them: -P, -I, -N with the value glued on,
// letters without regard to case, the last of a repeated option winning.
#include <cstdio>

#include "KSLDBParser.h"
#include "KSLDBWriter.h"
#include "Storage.h"
#include "UtilCommands.h"

namespace {

constexpr int kExitFailed = 1;

struct MergeOptions {
    CString m_strPredefined;  // -P
    CString m_strInit;        // -I
    CString m_strOutput;      // -N
};

CString* OptionSlot(MergeOptions& options, CString const& name) {
    if (name.CompareNoCase("-P") == 0) return &options.m_strPredefined;
    if (name.CompareNoCase("-I") == 0) return &options.m_strInit;
    if (name.CompareNoCase("-N") == 0) return &options.m_strOutput;
    return nullptr;
}

// False for an argument that is none of the three options, or when one of them
// is missing; an option without a value counts as missing, since an empty path
// names no file.
bool ParseMergeOptions(int argc, char** argv, MergeOptions& options) {
    for (int i = 0; i < argc; ++i) {
        CString argument(argv[i]);
        CString* slot = OptionSlot(options, argument.Left(2));
        if (!slot) return false;
        *slot = argument.Mid(2);
    }
    return !options.m_strPredefined.IsEmpty() && !options.m_strInit.IsEmpty() && !options.m_strOutput.IsEmpty();
}

void WriteDatabase(CStorage& storage, stData& data, CString const& path) {
    CKSLDBWriter writer(&storage, &data);
    storage.SetDBWriter(&writer);
    writer.Open(path);
    writer.WriteDB();
    writer.Close();
    storage.SetDBWriter(nullptr);
}

}  // namespace

// A file that cannot be opened ends the command before anything is written; a
// file that merely ends early is merged as far as it was read.
int RunMergeCommand(int argc, char** argv) {
    MergeOptions options;
    if (!ParseMergeOptions(argc, argv, options)) return kExitUsage;
    stData data;
    CStorage predefined(&data);
    CStorage target(&data);
    CKSLDBParser predefinedReader(&predefined, nullptr, &data);
    if (!predefinedReader.ParseFile(options.m_strPredefined, FILE_PREDEFINED) && predefinedReader.LastOpenFailed())
        return kExitFailed;
    CKSLDBParser initReader(&target, &predefined, &data);
    if (!initReader.ParseFile(options.m_strInit, FILE_INIT) && initReader.LastOpenFailed()) return kExitFailed;
    WriteDatabase(target, data, options.m_strOutput);
    predefined.WriteOrphanReportsToFile(options.m_strPredefined);
    if (data.m_bFatalError) {
        std::fprintf(stderr, "%s\n", data.m_strFatalError.GetData());
        return kExitFailed;
    }
    return 0;
}
