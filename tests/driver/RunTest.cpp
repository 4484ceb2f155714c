// End-to-end runs of the built KSManCMD in a scratch folder: database files
// under tests/data/database/ loaded and written back without a header; the
// command lines that decide which files a run reads and rewrites, the stages
// that run with empty paths and the progress of a long header; and the whole
// job on the cases under tests/data/signals/<case>/ and on the examples. The
// exit status is 0 whatever happened.
#include <gtest/gtest.h>

#include <string>

#include "RunCase.h"

namespace {

using runcase::Data;

std::string const kBanner = "KSManCMD version 2.1.5.26 (linux)\n";
std::string const kNoFile = "Error : Could not open file  to read.\n";  // the empty path of an option not given
std::string const kEnumHeader = "typedef enum { A = 1 } E;\n";

// What a successful signal stage prints: the notices go between the
// enumeration heading and its total.
std::string Stages(int enums, int unions = 0, int structs = 0, std::string const& notices = "") {
    return "\rDone!\nWrite enums to database\n" + notices + "\rTotal Enums: " + std::to_string(enums) +
           ".\rWrite unions to database\n\rTotal Unions: " + std::to_string(unions) +
           ".\rWrite structures to database\n\rTotal Structs: " + std::to_string(structs) +
           ".\r\rDone!\nWrite signal groups to database\n\rDone!\n";
}

// The file written from an empty store with the given version line and lines
// inserted right after the first occurrence of each anchor (a section header,
// or the fixed report line for reports).
std::string Empty(std::string const& version = "0,0",
                  std::initializer_list<std::pair<std::string, std::string>> insertions = {}) {
    std::string file = Data("database/empty.expected.txt");
    file.replace(file.find("0,0\n"), 4, version + "\n");
    for (auto const& [anchor, lines] : insertions) file.insert(file.find(anchor) + anchor.size(), lines);
    return file;
}

TEST(DatabaseRun, FilesAreRewritten) {
    std::string const loaded = kBanner + kNoFile;
    runcase::Case const rows[] = {
        {"no file", {}, {"-Ndb.txt"}, 0, kBanner + "Error : Could not open file db.txt to read.\n" + kNoFile, "",
         {{"db.txt", Empty()}}},
        {"every section", {{"db.txt", Data("database/every_section.txt")}}, {"-Ndb.txt"}, 0, loaded, "",
         {{"db.txt", Data("database/every_section.expected.txt")}}},
        // A missing "<end>" runs the section to the end of the file. The empty
        // line makes a structure without a name; "EnumsTitle" reuses it and
        // "E,0,,x" is the header of a structure named "0".
        {"missing end", {{"db.txt", Data("database/missing_end.txt")}}, {"-Ndb.txt"}, 0, loaded, "",
         {{"db.txt", Data("database/missing_end.expected.txt")}}},
    };
    for (auto const& row : rows) runcase::Check(KS_KSMANCMD_PATH, row);
}

// "DbVersion", "EnumVals" and "Unions" are found by their first characters,
// every other keyword only as the whole line; the line read after a section's
// last line is tested by the keywords that follow in the same pass.
TEST(DatabaseRun, SectionKeywordsMatchByPrefixOrWholeLine) {
    std::string const empty = Empty(), command = "1,5,0,2,A,B,C,x\n<end>\n";
    struct Row {
        std::string text, expected;
    } const rows[] = {
        {empty, empty},  // the fixed report loads as report 0 and is not written twice
        {"DbVersionX\n12,3\n<end>\n", std::string(empty).replace(10, 4, "12,3\n")},
        {"DbVersion\n<end>\nEnumVals\n" + command, Empty("0,0", {{"<end>\nEnumVals\n", "1,5,1,2,A,B,C,x\n"}})},
        {"EnumVals \n" + command, Empty("0,0", {{"<end>\nEnumVals\n", "1,5,1,2,A,B,C,x\n"}})},
        {"EnumVals\n<end>\nEnumVals2\n" + command, Empty("0,0", {{"diagPrintf(\"%s\")\n", "1,5,0,2,A,B,C,x\n"}})},
        {"Unions \nU,m,int,primitive,1,0\n<end>\n", Empty("0,0", {{"Unions\n", "U,m,primitive,primitive,1,0\n"}})},
        {"MonitorParams \n3,M,a,b,1\n<end>\n", empty},
        {"nvm \nS,,,,,0,0,,\n<end>\n", empty},
        {"EnumsTitle \nE,0,,d\n<end>\n", empty},
        {"Enums \nE,A,1,\n<end>\n", empty},
        {"UnionIdentifiers \nA,1\n<end>\n", empty},
        // Any line that begins with "<end>" ends a section.
        {"Enums\nE,A,1,\n<end> x\nUnionIdentifiers\nA,1\n<end>\n",
         Empty("0,0", {{"Enums\n", "E,A,1,\n"}, {"UnionIdentifiers\n", "A,1\n"}})},
        // One command per identifier, the later of two, from 0 upward.
        {"EnumVals\n1,5,0,0,A,B,C,first\n2,5,0,0,D,E,F,second\n3,-1,0,0,G,H,I,minus\n4,0,0,0,A,B,C,zero\n<end>\n",
         Empty("0,0", {{"<end>\nEnumVals\n", "4,0,1,0,A,B,C,zero\n2,5,1,0,D,E,F,second\n"}})},
        // The third field runs to the first ")," after the first "(".
        {"nvm\nS,,a),b(c),d,e,f,1,0,,x\n<end>\n",
         Empty("0,0", {{"nvm\n", "S,,,,,0,1,0,,x\nS,,a),b(c),d,e,0,1,0,,x@ITEM_MODE@@ITEM_UNIT@@ITEM_DEPENDENCY@\n"}})},
    };
    for (Row const& row : rows) {
        runcase::Check(KS_KSMANCMD_PATH,
                       {row.text.c_str(), {{"db.txt", row.text}}, {"-Ndb.txt"}, 0, kBanner + kNoFile, "",
                        {{"db.txt", row.expected}}});
    }
}

TEST(RunSequence, CommandLineDecidesFilesAndStages) {
    runcase::Files const folder = {
        {"foo.txt", "DbVersion\n1,1\n<end>\n"}, {"bar.txt", "DbVersion\n2,2\n<end>\n"}, {"h.h", kEnumHeader}};
    std::string lines;  // lines 1 to 2000 end at byte 20890, line 4000 at 42890
    for (int i = 0; i < 4500; ++i) lines += "int x" + std::to_string(i) + ";\n";
    std::string huge;
    for (int i = 0; i < 2001; ++i) huge += "//" + std::string(21997, 'x') + "\n";  // 22000 bytes a line
    runcase::Case const rows[] = {
        // The loader and the header parser each report the empty path; the
        // writer cannot create a file without a name.
        {"no arguments", {}, {}, 0, kBanner + kNoFile + kNoFile, "", {}, true},
        {"the last database option", folder, {"-Nfoo.txt", "-Nbar.txt"}, 0, kBanner + kNoFile, "",
         {{"foo.txt", "DbVersion\n1,1\n<end>\n"}, {"bar.txt", Empty("2,2")}}},
        {"option letters without case", folder, {"-nbar.txt", "-sh.h", "-cbrantove"}, 0, kBanner + Stages(1), "",
         {{"bar.txt", Empty("2,2", {{"Enums\n", "E,A,1,\n"}})}}},
        // "-S" with its value in the next argument parses no header; that
        // argument, the bare arguments and the options the run does not use
        // change nothing.
        {"unused arguments", folder,
         {"-S", "h.h", "tool.EXE", "x.exe", "-Z", "a", "-E1", "-Xdir", "-Ddefs", "-Oout", "-Nbar.txt"}, 0,
         kBanner + kNoFile, "", {{"bar.txt", Empty("2,2")}, {"foo.txt", folder[0].second}, {"h.h", kEnumHeader}},
         true},
        // Every 2000th header line prints the file position after that line as a
        // percentage of the file length, in unsigned 32-bit arithmetic. 48390
        // bytes: 2089000 / 48390 and 4289000 / 48390.
        {"progress of a header", {{"h.h", lines}}, {"-Sh.h"}, 0, kBanner + kNoFile + "\r43%\r88%" + Stages(0), "", {}},
        // 44000000 * 100 wraps to 105032704; / 44022000 gives 2.
        {"progress wraps", {{"h.h", huge}}, {"-Sh.h"}, 0, kBanner + kNoFile + "\r2%" + Stages(0), "", {}},
    };
    for (auto const& row : rows) runcase::Check(KS_KSMANCMD_PATH, row);
}

// The first run of "twice" normalises what only the database holds (a union
// read back with its type and kind columns swapped, a structure field whose
// type is listed later); the second run finds the header's enumeration stored
// and keeps it, and rebuilds unions, signals and groups from the header, so its
// database equals the first run's.
TEST(WholeJob, OneRunOnEachCase) {
    auto in = [](std::string const& header, std::string const& database) {
        runcase::Files files = {{"database.txt", Data("signals/" + database)}};
        if (!header.empty()) files.push_back({"signals.h", Data("signals/" + header)});
        return files;
    };
    auto db = [](std::string const& expected) { return runcase::Files{{"database.txt", Data("signals/" + expected)}}; };
    std::string const kNoDatabase = "Error : Could not open file database.txt to read.\n";
    std::string const example = KS_EXAMPLES_DIR;
    std::initializer_list<std::string> const args = {"-Ndatabase.txt", "-Ssignals.h"};
    runcase::Case const rows[] = {
        {"enumerations new, aliased and already stored", in("enums/signals.h", "enums/database.txt"), args, 0,
         kBanner + Stages(3, 0, 0, "Enum 'StoredEnum' exist in Database!\n"),
         "#endif without matching if found on line 12 on file signals.h\n", db("enums/expected_database.txt")},
        {"unions replace the stored ones, with every member kind", in("unions/signals.h", "unions/database.txt"), args,
         0, kBanner + Stages(1, 2, 1), "", db("unions/expected_database.txt")},
        {"structures become signals without a database file",
         {{"signals.h", Data("signals/structs/signals.h")}}, args, 0, kBanner + kNoDatabase + Stages(1, 1, 2), "",
         db("structs/expected_database.txt")},
        {"signal groups and the signal table replace the loaded ones", in("groups/signals.h", "groups/database.txt"),
         args, 0, kBanner + Stages(1, 1, 3), "", db("groups/expected_database.txt")},
        {"a missing header still rewrites the loaded database", in("", "missing_header/database.txt"),
         {"-Ndatabase.txt", "-Smissing.h"}, 0, kBanner + "Error : Could not open file missing.h to read.\n", "",
         db("missing_header/expected_database.txt")},
        // The line after the marker is still read once, so its directive is handled.
        {"the do-not-preprocess marker skips the header", in("no_preprocess/signals.h", "no_preprocess/database.txt"),
         args, 0, kBanner + Stages(0, 0, 0), "#else without matching if found on line 1\n",
         db("no_preprocess/expected_database.txt")},
        {"twice, first run", in("unions/signals.h", "twice/database.txt"), args, 0, kBanner + Stages(1, 2, 1), "",
         db("twice/expected_first.txt")},
        {"twice, second run", in("unions/signals.h", "twice/expected_first.txt"), args, 0,
         kBanner + Stages(1, 2, 1, "Enum 'Switch' exist in Database!\n"), "", db("twice/expected_first.txt")},
        {"the example",
         {{"signals.h", testsupport::ReadFile(example + "/signals.h")},
          {"database.txt", testsupport::ReadFile(example + "/database.txt")}},
         args, 0,
         Data("signals/example/expected_stdout.txt"), "", db("example/expected_database.txt")},
    };
    for (auto const& row : rows) runcase::Check(KS_KSMANCMD_PATH, row);
}

}  // namespace
