// End-to-end runs of the built KSManUtil: "header" on the signals header kept
// under tests/data/generator/, "exports" on copies of the module-definition
// files under tests/data/exports/, "merge" on the databases under
// tests/data/merge/; every output file and the exit status of each failure.
#include <gtest/gtest.h>

#include <string>

#include "RunCase.h"

namespace {

using runcase::Data;
using runcase::kAbsent;
using runcase::kAny;

std::string const kUsage =
    "usage: KSManUtil <command> [options]\n"
    "commands:\n"
    "  merge   -P<predefined database> -I<Init database> -N<output database>\n"
    "  header  -S<signals header> -O<output header> [-C<target compiler>]\n"
    "  exports -D<module-definition file> NAME...\n";

TEST(UtilHeader, GeneratesHeaderOrFails) {
    std::string const signals = KS_TEST_DATA_DIR "/generator/signals.h";
    runcase::Case const rows[] = {
        {"enumerations by range", {}, {"header", "-S" + signals, "-Oout.h"}, 0, "", "",
         {{"out.h", Data("generator/out_by_range.expected.txt")}}},
        // Letters in any case; a later other compiler does not undo BRANTOVE.
        {"four-byte enumerations", {}, {"header", "-cBrantove", "-s" + signals, "-Cgcc", "-oignored.h", "-Oout.h"}, 0,
         "", "", {{"out.h", Data("generator/out_four_bytes.expected.txt")}, {"ignored.h", kAbsent}}},
        {"missing signals header", {}, {"header", "-Smissing.h", "-Oout.h"}, 1,
         "Error : Could not open file missing.h to read.\n", "", {{"out.h", kAbsent}}},
        {"output not opened", {{"in.h", "typedef struct { char c; } S;\n"}}, {"header", "-Sin.h", "-Ono/such/dir/out.h"},
         1, "Error : Could not open file no/such/dir/out.h to read.\n", "", {}},
    };
    for (auto const& row : rows) runcase::Check(KS_KSMANUTIL_PATH, row);
}

TEST(UtilExports, RewritesTheSectionOrLeavesTheFile) {
    std::string const module = Data("exports/module.def"), noEnd = Data("exports/no_end_marker.def");
    runcase::Case const rows[] = {
        // Any argument other than -D is a name, options-like ones included; the last -D wins.
        {"names in order", {{"module.def", module}}, {"exports", "-Dother.def", "ksOpen", "-dmodule.def", "ksClose"}, 0,
         "", "", {{"module.def", Data("exports/module_updated.def")}}},
        {"no names", {{"module.def", ";KESTRIN EXPORTS BEGIN\n\tA\n;KESTRIN EXPORTS END\n"}}, {"exports", "-Dmodule.def"},
         0, "", "", {{"module.def", ";KESTRIN EXPORTS BEGIN\n;KESTRIN EXPORTS END\n"}}},
        {"no end marker", {{"module.def", noEnd}}, {"exports", "-Dmodule.def", "ksOpen"}, 1, "",
         "[KSC Warning:] Kestrin export section is missing from file module.def\n", {{"module.def", noEnd}}},
        {"unreadable file fails silently", {}, {"exports", "-Dabsent.def", "ksOpen"}, 1, "", "", {}},
    };
    for (auto const& row : rows) runcase::Check(KS_KSMANUTIL_PATH, row);
}

// MATCH and KEEP are taken out of the predefined database by the Init one,
// ORPHAN and GONE stay and are listed; the messages numbered here ("-") are
// not written, the Init database's own records are.
TEST(UtilMerge, WritesInitDatabaseAndMissingItems) {
    runcase::Files const in = {{"predefined.txt", Data("merge/predefined.txt")}, {"init.txt", Data("merge/init.txt")}};
    runcase::Files const merged = {{"out.txt", Data("merge/merged.expected.txt")},
                                   {"predefined_predefined_error.txt",
                                    Data("merge/predefined_predefined_error.expected.txt")}};
    runcase::Files const none = {{"out.txt", kAbsent}, {"predefined_predefined_error.txt", kAbsent}};
    runcase::Case const rows[] = {
        {"merged", in, {"merge", "-Ppredefined.txt", "-Iinit.txt", "-Nout.txt"}, 0, "", "", merged},
        {"options without case, the last value kept", in,
         {"merge", "-pnowhere.txt", "-nout.txt", "-iinit.txt", "-ppredefined.txt"}, 0, "", "", merged},
        {"mismatch is fatal", {in[0], {"init.txt", "EnumVals\n# 14 src/init.c\n-,-,1,0,A,B,MATCH,other\n<end>\n"}},
         {"merge", "-Ppredefined.txt", "-Iinit.txt", "-Nout.txt"}, 1, "",
         "Error: Mismatched predefined command -  A__B__MATCH, on line 14\n\n",
         {{"out.txt", kAny}, {"predefined_predefined_error.txt", kAny}}},
        {"missing predefined database", in, {"merge", "-Pmissing.txt", "-Iinit.txt", "-Nout.txt"}, 1,
         "Error : Opening Predefined DB FILE missing.txt\n", "", none},
        {"missing Init database fails silently", in, {"merge", "-Ppredefined.txt", "-Imissing.txt", "-Nout.txt"}, 1, "",
         "", none},
    };
    for (auto const& row : rows) runcase::Check(KS_KSMANUTIL_PATH, row);
}

TEST(Util, BadArgumentsPrintUsageAndWriteNothing) {
    runcase::Files const in = {{"predefined.txt", Data("merge/predefined.txt")}, {"init.txt", Data("merge/init.txt")}};
    runcase::Case const rows[] = {
        {"header without -O", {}, {"header", "-Sin.h"}, 2, "", kUsage, {}, true},
        {"header without -S", {}, {"header", "-Oout.h"}, 2, "", kUsage, {}, true},
        {"header with a bare argument", {}, {"header", "-Sin.h", "-Oout.h", "extra"}, 2, "", kUsage, {}, true},
        {"header with an unknown option", {}, {"header", "-Sin.h", "-Oout.h", "-X"}, 2, "", kUsage, {}, true},
        {"exports without -D", {}, {"exports", "ksOpen"}, 2, "", kUsage, {}, true},
        {"merge without -N", in, {"merge", "-Ppredefined.txt", "-Iinit.txt"}, 2, "", kUsage, in, true},
        {"merge with an empty -N", in, {"merge", "-Ppredefined.txt", "-Iinit.txt", "-N"}, 2, "", kUsage, in, true},
        {"merge with an unknown option", in, {"merge", "-Ppredefined.txt", "-Iinit.txt", "-Nout.txt", "-Xextra"}, 2, "",
         kUsage, in, true},
        {"merge with a bare argument", in, {"merge", "-Ppredefined.txt", "-Iinit.txt", "-Nout.txt", "extra.txt"}, 2, "",
         kUsage, in, true},
    };
    for (auto const& row : rows) runcase::Check(KS_KSMANUTIL_PATH, row);
}

}  // namespace
