// Loading and writing a generated database file. A seeded generator makes the
// same file every time: commands, reports, monitors, structures with fields,
// titled enumerations, unions and union identifiers in the writer's formats.
// Each iteration loads the file into a fresh store (which deletes it) and
// writes the store back; the peak resident size is reported as a counter.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>

#include "DBLoader.h"
#include "KSLDBWriter.h"
#include "Storage.h"

namespace {

class DatabaseGenerator {
public:
    explicit DatabaseGenerator(uint32_t seed) : m_random(seed) {}

    // About records record lines, spread over the sections.
    std::string Make(int32_t records) {
        std::string text = "DbVersion\n3,1\n<end>\n";
        text += Section("EnumVals", records * 15 / 100, &DatabaseGenerator::Command);
        text += Section("EnumVals", records * 15 / 100, &DatabaseGenerator::Report);
        text += "Parameters\nOSType,Linux\n<end>\n";
        text += Section("MonitorParams", records * 5 / 100, &DatabaseGenerator::Monitor);
        text += Section("nvm", records * 30 / 100, &DatabaseGenerator::StructLine);
        text += Section("EnumsTitle", records * 2 / 100, &DatabaseGenerator::EnumTitle);
        text += Section("Enums", records * 18 / 100, &DatabaseGenerator::Enumerator);
        text += Section("Unions", records * 10 / 100, &DatabaseGenerator::UnionMember);
        text += "Signals\n<end>\nSignalTable\n<end>\nGroups\n<end>\n";
        text += Section("UnionIdentifiers", records * 5 / 100, &DatabaseGenerator::UnionIdentifier);
        return text;
    }

private:
    using Line = std::string (DatabaseGenerator::*)(int32_t);

    std::string Section(char const* keyword, int32_t count, Line line) {
        std::string text = std::string(keyword) + "\n";
        for (int32_t i = 0; i < count; ++i) text += (this->*line)(i) + "\n";
        return text + "<end>\n";
    }
    std::string Word() {
        std::string word;
        for (uint32_t n = 3 + m_random() % 8; n > 0; --n) word += static_cast<char>('a' + m_random() % 26);
        return word;
    }
    std::string Number() { return std::to_string(m_random() % 100000); }
    std::string Message(int32_t i, char const* marker) {
        return Number() + "," + std::to_string(i) + "," + marker + ",0," + Word() + "," + Word() + "," + Word() +
               ",text %d of " + Word() + ", with a comma";
    }
    std::string Command(int32_t i) { return Message(i, "1"); }
    std::string Report(int32_t i) { return Message(i + 1, "0"); }
    std::string Monitor(int32_t i) { return std::to_string(i) + ",mon" + std::to_string(i) + "," + Word() + ",,1"; }
    // Six lines per structure: the header, then five fields.
    std::string StructLine(int32_t i) {
        std::string name = "S" + std::to_string(i / 6);
        if (i % 6 == 0) return name + ",,,,,0,1," + Word() + "," + Word();
        return name + ",,f" + std::to_string(i % 6) + ",int,unsigned int," + Number() + ",1,," + Word() +
               "@ITEM_MODE@rw@ITEM_UNIT@ms@ITEM_DEPENDENCY@";
    }
    std::string EnumTitle(int32_t i) { return "E" + std::to_string(i) + ",1," + Word() + "," + Word(); }
    // Nine enumerators per enumeration, the same names as the titles.
    std::string Enumerator(int32_t i) {
        return "E" + std::to_string(i / 9) + "," + Word() + std::to_string(i) + "," + Number() + ",";
    }
    std::string UnionMember(int32_t i) {
        return "U" + std::to_string(i / 5) + ",m" + std::to_string(i % 5) + ",unsigned int,primitive,1,0";
    }
    std::string UnionIdentifier(int32_t i) { return "U" + std::to_string(i) + ",ID_" + Word(); }

    std::mt19937 m_random;
};

long PeakResidentKilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

void WriteText(std::string const& path, std::string const& text) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return;
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
}

void BM_LoadAndWrite(benchmark::State& state) {
    std::string const text = DatabaseGenerator(20261121u).Make(static_cast<int32_t>(state.range(0)));
    std::string const path = "/tmp/ksman_db_bench_" + std::to_string(state.range(0)) + ".txt";
    using Clock = std::chrono::steady_clock;
    double loadSeconds = 0, writeSeconds = 0;
    for (auto _ : state) {
        state.PauseTiming();
        WriteText(path, text);
        state.ResumeTiming();
        stData data;
        CStorage store(&data);
        CKSLDBWriter writer(&store, &data);
        store.SetDBWriter(&writer);
        Clock::time_point start = Clock::now();
        LoadDatabaseText(store, path.c_str(), data);
        Clock::time_point loaded = Clock::now();
        writer.Open(path.c_str());
        writer.WriteDB();
        writer.Close();
        loadSeconds += std::chrono::duration<double>(loaded - start).count();
        writeSeconds += std::chrono::duration<double>(Clock::now() - loaded).count();
    }
    std::remove(path.c_str());
    state.counters["load_ms"] = loadSeconds * 1e3 / static_cast<double>(state.iterations());
    state.counters["write_ms"] = writeSeconds * 1e3 / static_cast<double>(state.iterations());
    state.counters["records"] = static_cast<double>(state.range(0));
    state.counters["file_MB"] = static_cast<double>(text.size()) / 1e6;
    state.counters["peak_rss_MB"] = static_cast<double>(PeakResidentKilobytes()) / 1024.0;
}

}  // namespace

// Few iterations each: the larger run takes seconds on a small machine.
BENCHMARK(BM_LoadAndWrite)->Arg(100000)->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadAndWrite)->Arg(1000000)->Iterations(2)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
