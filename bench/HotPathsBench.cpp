// Micro-benchmarks of the hot paths of a whole run on a large header: look-ups
// in an index that grows with its entries against one of fixed size, the
// declaration index the structure reader files every structure in, building a
// database line in the writer's reused buffer against formatting it anew,
// reading lines from a file, and stripping comments from header lines. Inputs
// come from a seeded generator, so every run measures the same work.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "CFile.h"
#include "Collections.h"
#include "DatabaseTexts.h"
#include "DeclarationIndex.h"
#include "LineText.h"
#include "ParseS2T.h"

namespace {

std::vector<CString> Names(int32_t count, uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<CString> names;
    names.reserve(static_cast<size_t>(count));
    for (int32_t i = 0; i < count; ++i) {
        std::string name = "ENUM" + std::to_string(i) + "_VALUE_" + std::to_string(random() % 100);
        names.emplace_back(name.c_str());
    }
    return names;
}

// Filling an enumerator-name index and asking it once per name: with a fixed
// table the chains grow with the entries; a growing table keeps them short.
void MapFillAndFind(benchmark::State& state, bool grows) {
    std::vector<CString> names = Names(static_cast<int32_t>(state.range(0)), 13u);
    for (auto _ : state) {
        CMapStringTo<int32_t> map(4099);
        if (grows) map.EnableGrowth();
        for (size_t i = 0; i < names.size(); ++i) map[names[i]] = static_cast<int32_t>(i);
        int64_t sum = 0;
        for (CString const& name : names) sum += *map.Find(name);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
void BM_MapFixedBuckets(benchmark::State& state) { MapFillAndFind(state, false); }
void BM_MapGrowing(benchmark::State& state) { MapFillAndFind(state, true); }
BENCHMARK(BM_MapFixedBuckets)->Arg(10000)->Arg(100000)->Arg(400000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MapGrowing)->Arg(10000)->Arg(100000)->Arg(400000)->Unit(benchmark::kMillisecond);

// Appending structures to the parser's list with the index kept in step, then
// looking each up by name, as the field types of a large header do.
void BM_StructIndexAppendAndFind(benchmark::State& state) {
    std::vector<CString> names = Names(static_cast<int32_t>(state.range(0)), 17u);
    for (auto _ : state) {
        CList<CObject*> list;
        CStructIndex index;
        std::vector<CStruct*> owned;
        for (CString const& name : names) {
            CStruct* parsed = new CStruct;
            parsed->m_strName = name;
            parsed->m_strTag = name + "Tag";
            owned.push_back(parsed);
            list.AddTail(parsed);
            index.Appended(list, parsed);
        }
        int64_t found = 0;
        for (CString const& name : names) found += index.First(list, CStructKeys::kNameOrTag, name) != nullptr;
        benchmark::DoNotOptimize(found);
        for (CStruct* parsed : owned) delete parsed;
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_StructIndexAppendAndFind)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

// One structure field line of the database file, formatted by the C library
// into a new string against built in the writer's reused buffer.
void BM_FieldLineFormat(benchmark::State& state) {
    CString structName("RadioSamplesIndication"), field("sampleCount12"), type("UINT32"), info("info");
    for (auto _ : state) {
        CString line;
        line.Format(dbtexts::kStructField, structName.GetData(), field.GetData(), type.GetData(), type.GetData(), 12,
                    0, info.GetData(), "");
        benchmark::DoNotOptimize(line.GetData());
    }
}
void BM_FieldLineText(benchmark::State& state) {
    CString structName("RadioSamplesIndication"), field("sampleCount12"), type("UINT32"), info("info");
    CLineText line;
    for (auto _ : state) {
        line.Format(dbtexts::kStructField, structName, field, type, type, 12, 0, info, "");
        benchmark::DoNotOptimize(line.GetData());
    }
}
BENCHMARK(BM_FieldLineFormat);
BENCHMARK(BM_FieldLineText);

std::string HeaderLines(int32_t count) {
    std::mt19937 random(19u);
    std::string text;
    for (int32_t i = 0; i < count; ++i) {
        text += "    UINT32          field" + std::to_string(i);
        text += random() % 2 ? ";                /* set by the controller */\n" : ";\n";
    }
    return text;
}

// Reading every line of an in-memory header.
void BM_ReadLines(benchmark::State& state) {
    std::string text = HeaderLines(static_cast<int32_t>(state.range(0)));
    CString source(text.data(), static_cast<int32_t>(text.size()));
    for (auto _ : state) {
        CFile file;
        file.OpenText(source);
        CString line;
        int64_t lines = 0;
        while (file.ReadString(line)) ++lines;
        benchmark::DoNotOptimize(lines);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}
BENCHMARK(BM_ReadLines)->Arg(100000)->Unit(benchmark::kMillisecond);

// Stripping the comments of header lines, half of which end in a block comment.
void BM_DeleteRemark(benchmark::State& state) {
    std::string text = HeaderLines(static_cast<int32_t>(state.range(0)));
    std::vector<CString> lines;
    for (size_t at = 0, end; (end = text.find('\n', at)) != std::string::npos; at = end + 1) {
        lines.emplace_back(text.data() + at, static_cast<int32_t>(end - at));
    }
    CParseS2T* parser = new CParseS2T;
    for (auto _ : state) {
        for (CString const& source : lines) {
            CString line = source;
            parser->DeleteRemark(line);
            benchmark::DoNotOptimize(line.GetData());
        }
    }
    delete parser;
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(lines.size()));
}
BENCHMARK(BM_DeleteRemark)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
