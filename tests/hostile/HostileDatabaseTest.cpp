// Hostile database files and module-definition files through the built tools:
// KSManCMD loads the file and writes it back, KSManUtil merge reads it as the
// predefined and the Init database, KSManUtil exports rewrites a
// module-definition file. Every run ends within seconds without a crash.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "HostileInput.h"

namespace {

using hostile::ExpectFinished;
using hostile::Repeat;
using hostile::RunLimited;

std::string EverySection() {
    return testsupport::ReadFile(std::string(KS_TEST_DATA_DIR) + "/database/every_section.txt");
}

// KSManCMD always exits 0 and writes a database file that starts with its
// version section; KSManUtil merge may refuse the file but must not crash.
void ExpectDatabasesSurvive(std::vector<hostile::Case> const& cases) {
    for (auto const& hostileCase : cases) {
        SCOPED_TRACE(hostileCase.name);
        testsupport::ScratchDir dir;
        testsupport::WriteFile(dir.File("database.txt"), hostileCase.bytes);
        testsupport::WriteFile(dir.File("signals.h"), "typedef struct { int a; } Added;\n");
        ExpectFinished(RunLimited(KS_KSMANCMD_PATH, {"-Ndatabase.txt", "-Ssignals.h"}, dir.Path()), false);
        EXPECT_EQ(0u, testsupport::ReadFile(dir.File("database.txt")).find("DbVersion\n"));
        testsupport::WriteFile(dir.File("input.txt"), hostileCase.bytes);
        ExpectFinished(RunLimited(KS_KSMANUTIL_PATH, {"merge", "-Pinput.txt", "-Iinput.txt", "-Nout.txt"}, dir.Path()),
                       true);
    }
}

std::string Section(std::string const& keyword, std::string const& lines) {
    return keyword + "\n" + lines + "<end>\n";
}

}  // namespace

TEST(HostileDatabase, TruncatedFiles) {
    ExpectDatabasesSurvive(hostile::Truncations(EverySection(), 30));
}

TEST(HostileDatabase, BinaryNulAndHugeLines) {
    std::string withNuls = EverySection();
    for (size_t at = 7; at < withNuls.size(); at += 41) withNuls[at] = '\0';
    ExpectDatabasesSurvive({
        {"binary bytes", hostile::PseudoRandomBytes(256 * 1024, 7)},
        {"every byte value", Repeat(hostile::EveryByteValue(), 64)},
        {"NUL bytes in every section", withNuls},
        {"1 MB line in each section",
         Section("DbVersion", Repeat("9", 1024 * 1024) + "\n") + Section("EnumVals", Repeat(",", 1024 * 1024) + "\n") +
             Section("EnumVals", Repeat("1,", 512 * 1024) + "\n") + Section("Parameters", Repeat("p", 1 << 20) + "\n") +
             Section("nvm", "S,,,,,0,1," + Repeat("i", 1 << 20) + "\n") + Section("Enums", Repeat("E,", 1 << 19) + "\n")},
        {"keywords only", Repeat("EnumVals\nnvm\nEnums\nUnions\nSignals\n", 2000)},
        {"sections never ended", "DbVersion\n1,1\nEnumVals\n1,2,1,0,A,B,C,t\nnvm\nS,,,,,0,1,,\n"},
    });
}

TEST(HostileDatabase, ExtremeNumbersAndManyRecords) {
    std::string commands;
    std::string enums;
    std::string groups;
    for (int i = 20000; i > 0; --i) {
        commands += "0," + std::to_string(i) + ",1,0,C,G," + "N" + std::to_string(i) + ",t\n";
        enums += "E" + std::to_string(i % 50) + ",V" + std::to_string(i) + "," + std::to_string(i) + ",\n";
    }
    for (int i = 0; i < 100000; ++i) groups += "G" + std::to_string(i) + "," + std::to_string(i) + ",\n";
    ExpectDatabasesSurvive({
        {"extreme identifiers",
         Section("DbVersion", "2147483647,-2147483648\n") +
             Section("EnumVals", "0,2147483647,1,0,A,B,C,t\n0,-2147483648,1,0,A,B,D,t\n0,99999999999,1,0,A,B,E,t\n") +
             Section("EnumVals", "0,2147483647,0,0,R,B,C,t\n0,-1,0,0,R,B,D,t\n") +
             Section("MonitorParams", "2147483647,M,u,g,-2147483648\n") +
             Section("Groups", "G,2147483647,\nH,-2147483648,\n")},
        {"20,000 commands and enumerators", Section("DbVersion", "1,1\n") + Section("EnumVals", commands) +
                                                Section("EnumVals", "") + Section("Parameters", "") +
                                                Section("MonitorParams", "") + Section("nvm", "") +
                                                Section("EnumsTitle", "") + Section("Enums", enums)},
        {"100,000 group lines",
         Section("DbVersion", "1,1\n") + Repeat(Section("EnumVals", ""), 2) + Section("Parameters", "") +
             Section("MonitorParams", "") + Section("nvm", "") + Section("EnumsTitle", "") + Section("Enums", "") +
             Section("Unions", "") + Section("Signals", "") + Section("SignalTable", "") + Section("Groups", groups)},
    });
}

TEST(HostileExports, ModuleDefinitionFiles) {
    std::string const begin = ";KESTRIN EXPORTS BEGIN";
    std::string const end = ";KESTRIN EXPORTS END";
    std::vector<hostile::Case> const cases = {
        {"binary bytes with markers", hostile::PseudoRandomBytes(64 * 1024, 3) + "\n" + begin + "\n" + end + "\n"},
        {"NUL bytes and carriage returns", std::string("A\0\r\n", 4) + begin + "\0\r\n" + end + "\r\r\n"},
        {"end before begin", end + "\nx\ny\n" + begin + "\n"},
        {"1 MB lines", Repeat("x", 1 << 20) + "\n" + begin + Repeat("y", 1 << 20) + "\n" + end + "\n"},
        {"10,000 markers", Repeat(begin + "\n" + end + "\n", 10000)},
        {"markers without a line end", begin + "\n" + end},
    };
    for (auto const& hostileCase : cases) {
        SCOPED_TRACE(hostileCase.name);
        testsupport::ScratchDir dir;
        testsupport::WriteFile(dir.File("module.def"), hostileCase.bytes);
        ExpectFinished(RunLimited(KS_KSMANUTIL_PATH, {"exports", "-Dmodule.def", "A", "B"}, dir.Path()), true);
    }
}
