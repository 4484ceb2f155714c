// Parsing generated signal headers from start to end through the header file
// driver: enumerations, typedef'd structures with nested records, bit-fields,
// pointers and arrays sized by macros and enumerators, unions with several
// names, and simple typedef aliases. A seeded generator makes the same header
// every time; fields refer to types declared earlier, so every look-up by
// name runs against lists that grow with the header.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>

#include "ParseS2T.h"
#include "QuietStdout.h"

namespace {

class DeclarationGenerator {
public:
    explicit DeclarationGenerator(uint32_t seed) : m_random(seed) {}

    // Declarations until the header holds at least lines lines.
    std::string Make(int32_t lines) {
        std::string text = "typedef unsigned char UBYTE;\ntypedef unsigned short UINT16;\n";
        int32_t made = 2;
        for (int32_t n = 0; made < lines; ++n) {
            std::string block = n % 10 == 9 ? Union(n) : (n % 5 == 4 ? Enum(n) : Struct(n));
            for (char c : block) made += c == '\n';
            text += block;
        }
        return text;
    }

private:
    std::string Earlier(int32_t n) { return n > 0 ? std::to_string(m_random() % static_cast<uint32_t>(n)) : "0"; }

    std::string Enum(int32_t n) {
        std::string id = std::to_string(n);
        return "#define COUNT_" + id + " " + std::to_string(1 + m_random() % 8) + "\n" + "typedef enum Tag" + id +
               "\n{\n    E" + id + "_FIRST = COUNT_" + id + ",\n    E" + id + "_SECOND,\n    E" + id +
               "_LAST = 0x10 << 2\n} Enum" + id + ", EnumAlias" + id + ";\n\n";
    }
    std::string Struct(int32_t n) {
        std::string id = std::to_string(n);
        std::string enumName = "Enum" + std::to_string(n - n % 5 > 0 ? n - n % 5 - 1 : 4);
        std::string text = "/* record " + id + " */\ntypedef struct Rec" + id + "Tag\n{\n";
        text += "    UBYTE           kind;       // what follows\n";
        text += "    UINT16          values[4][2];\n";
        text += "    unsigned int    ready : 1, level : 4;\n";
        text += "    char            *label, name[16];\n";
        text += "    struct\n    {\n        long x;\n        long y;\n    } position;\n";
        text += "    Rec" + Earlier(n) + "      *link;\n";
        if (n >= 5) text += "    " + enumName + "   mode;\n";
        text += "} Rec" + id + ", *PRec" + id + ";\n\n";
        return text;
    }
    std::string Union(int32_t n) {
        std::string id = std::to_string(n);
        return "typedef union\n{\n    long word;\n    UBYTE bytes[4];\n    struct Rec" + Earlier(n) +
               "Tag *next;\n} Union" + id + ", UnionAlias" + id + ";\n\n";
    }

    std::mt19937 m_random;
};

std::string WriteHeader(int32_t lines) {
    std::string header = DeclarationGenerator(20261121u).Make(lines);
    std::string path = "/tmp/ks_header_parse_bench_" + std::to_string(lines) + ".h";
    FILE* out = std::fopen(path.c_str(), "wb");
    if (out) {
        std::fwrite(header.data(), 1, header.size(), out);
        std::fclose(out);
    }
    return path;
}

void BM_ParseHeader(benchmark::State& state) {
    std::string path = WriteHeader(static_cast<int32_t>(state.range(0)));
    int64_t structures = 0;
    {
        QuietStdout quiet;
        for (auto _ : state) {
            CParseS2T* parser = new CParseS2T;
            parser->PexilSignalsMode();
            parser->ParseS2TFile(CString(path.c_str()), true, false);
            structures = parser->m_StructList.GetCount();
            benchmark::DoNotOptimize(structures);
            delete parser;
        }
    }
    std::remove(path.c_str());
    state.counters["structures"] = static_cast<double>(structures);
    state.counters["lines"] = static_cast<double>(state.range(0));
}
BENCHMARK(BM_ParseHeader)->Arg(100000)->Arg(250000)->Arg(500000)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
