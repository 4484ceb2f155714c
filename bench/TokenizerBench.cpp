// Tokenising generated signal headers the way the header file driver reads
// them: one cleaned line, then tokens to the end of the file, each #define
// recorded with its value. A seeded generator makes the same header every time:
// structures with commented fields, enumerations, #ifdef blocks and macros
// (4,000 per million lines). A second benchmark tokenises one long line.
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

class HeaderGenerator {
public:
    explicit HeaderGenerator(uint32_t seed) : m_random(seed) {}

    std::string Make(int32_t lines) {
        std::string text;
        int32_t macroEvery = 250;  // 4,000 macros per million lines
        for (int32_t i = 0; i < lines; ++i) text += i % macroEvery == 0 ? Macro(i / macroEvery) : Line(i);
        return text;
    }

private:
    std::string Word() {
        std::string word;
        for (uint32_t n = 3 + m_random() % 9; n > 0; --n) word += static_cast<char>('a' + m_random() % 26);
        return word;
    }
    std::string Macro(int32_t n) {
        std::string name = "MACRO_" + std::to_string(n);
        switch (m_random() % 4) {
            case 0: return "#define " + name + " " + std::to_string(m_random() % 1000) + "\n";
            case 1: return "#define " + name + " ( MACRO_" + std::to_string(n / 2) + " + 4 ) /* derived */\n";
            case 2: return "#define " + name + " 0x" + std::to_string(m_random() % 9999) + "UL\n";
            default: return "#define " + name + " sizeof ( short ) * 2\n";
        }
    }
    std::string Line(int32_t i) {
        switch (i % 20) {
            case 1: return "typedef struct " + Word() + "Tag {\n";
            case 2: return "    unsigned char " + Word() + "; // a field\n";
            case 3: return "    UINT16 " + Word() + "[MACRO_1 * 2];\n";
            case 4: return "    /* a comment\n";
            case 5: return "       across lines */ int " + Word() + ";\n";
            case 6: return "} " + Word() + "_t;\n";
            case 7: return "#ifdef MACRO_" + std::to_string(m_random() % 50) + "\n";
            case 8: return "    long " + Word() + " : 4, " + Word() + " : 3;\n";
            case 9: return "#endif\n";
            case 10: return "typedef enum { " + Word() + " = 1 << 4, " + Word() + ", " + Word() + " } E" + Word() + ";\n";
            case 11: return "\n";
            default: return "int " + Word() + "(int a, char *b); /* prototype */\n";
        }
    }

    std::mt19937 m_random;
};

int64_t TokeniseAll(CString const& text) {
    CParseS2T* parser = new CParseS2T;
    CFile file;
    file.OpenText(text);
    parser->m_nFileLength = file.GetLength();
    int64_t tokens = 0;
    if (parser->ReadLine(&file, 0)) {
        for (;;) {
            CString token = parser->GetToken(&file);
            if (parser->m_nTokenType == TOKEN_EOF) break;
            ++tokens;
            if (parser->m_nTokenType == TOKEN_DEFINE) {
                CString name = parser->GetToken(&file);
                parser->AddDefineStatementToDefineArray(&file, name);
            }
        }
    }
    delete parser;
    return tokens;
}

void BM_TokeniseHeader(benchmark::State& state) {
    std::string header = HeaderGenerator(20261121u).Make(static_cast<int32_t>(state.range(0)));
    CString text(header.data(), static_cast<int32_t>(header.size()));
    int64_t tokens = 0;
    {
        QuietStdout quiet;
        for (auto _ : state) {
            tokens = TokeniseAll(text);
            benchmark::DoNotOptimize(tokens);
        }
    }
    state.counters["tokens"] = static_cast<double>(tokens);
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(header.size()));
}
BENCHMARK(BM_TokeniseHeader)->Arg(125000)->Arg(250000)->Arg(500000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_TokeniseLongLine(benchmark::State& state) {
    std::string line;
    while (static_cast<int64_t>(line.size()) < state.range(0)) line += "a,bb+ccc ";
    CString text(line.data(), static_cast<int32_t>(line.size()));
    for (auto _ : state) benchmark::DoNotOptimize(TokeniseAll(text));
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(line.size()));
}
BENCHMARK(BM_TokeniseLongLine)->Arg(256 << 10)->Arg(512 << 10)->Arg(1 << 20)->Arg(2 << 20)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
