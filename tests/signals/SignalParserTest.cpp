// Tests of the signal run object: its construction, the fixed sequence of
// ParseSignals with its progress lines and error texts, and the enumeration
// sizes it reports to the header generator.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "SignalParser.h"
#include "Storage.h"
#include "TestSupport.h"

namespace {

struct SignalRun {
    testsupport::ScratchDir dir;
    stData data;
    CStorage store{&data};
    CString header;
    std::unique_ptr<CSignalParser> parser;

    explicit SignalRun(std::string const& text, CompilerTypesEnumSize mode = ENUM_SIZE_BY_RANGE) {
        testsupport::WriteFile(dir.File("signals.h"), text);
        header = dir.File("signals.h").c_str();
        parser = std::make_unique<CSignalParser>(header, store, mode);
    }
};

void AddEnum(CSignalParser& parser, char const* name, std::vector<int32_t> const& values) {
    CEnum* parsed = new CEnum;
    parsed->m_strName = name;
    for (int32_t value : values) {
        CDefines* entry = new CDefines;
        entry->m_strName = "V";
        entry->m_nValue = value;
        parsed->m_lstValues.AddTail(entry);
    }
    parser.m_EnumList.AddTail(parsed);
}

}  // namespace

TEST(CSignalParser, ConstructorPreparesSignalsMode) {
    SignalRun run("", ENUM_SIZE_FOUR_BYTES);
    EXPECT_EQ(&run.store, run.parser->m_pStorage);
    EXPECT_TRUE(run.parser->m_bPexilSignalsMode);
    EXPECT_EQ(ENUM_SIZE_FOUR_BYTES, run.parser->m_nEnumSize);
    EXPECT_EQ(run.header, run.parser->m_strSignalsFile);
    EXPECT_TRUE(run.parser->m_strError.IsEmpty());
    EXPECT_TRUE(run.parser->m_lstWritten.IsEmpty());
    EXPECT_FALSE(run.parser->m_fileOut.IsOpen());
}

TEST(CSignalParser, ParseSignalsMissingHeaderStopsBeforeDone) {
    stData data;
    CStorage store(&data);
    CString path = "/nonexistent/dir/signals.h";
    auto parser = std::make_unique<CSignalParser>(path, store, ENUM_SIZE_BY_RANGE);
    testsupport::CaptureStdout capture;
    EXPECT_FALSE(parser->ParseSignals(store));
    EXPECT_EQ("Error : Could not open file /nonexistent/dir/signals.h to read.\n", capture.Stop());
    EXPECT_EQ(CString("Could not open signals file /nonexistent/dir/signals.h"), parser->m_strError);
    EXPECT_TRUE(store.Enums().IsEmpty());
}

TEST(CSignalParser, ParseSignalsPrintsEveryStageInOrder) {
    SignalRun run("typedef enum { RED, GREEN } Colour;\n"
                  "typedef union { long n; char c; } Value;\n"
                  "typedef struct PointTag { long x; Colour c; } Point;\n");
    testsupport::CaptureStdout capture;
    EXPECT_TRUE(run.parser->ParseSignals(run.store));
    EXPECT_EQ("\rDone!\n"
              "Write enums to database\n\rTotal Enums: 1.\r"
              "Write unions to database\n\rTotal Unions: 1.\r"
              "Write structures to database\n\rTotal Structs: 1.\r"
              "\rDone!\n"
              "Write signal groups to database\n"
              "\rDone!\n",
              capture.Stop());
    EXPECT_TRUE(run.parser->m_strError.IsEmpty());
    EXPECT_NE(nullptr, run.store.FindEnumByName("Colour"));
    EXPECT_NE(nullptr, run.store.FindUnionByName("Value"));
    EXPECT_NE(nullptr, run.store.FindSignalByName("Point"));
}

TEST(CSignalParser, ParseSignalsIgnoresItsStoreArgument) {
    SignalRun run("typedef enum { A } E;\n");
    stData otherData;
    CStorage other(&otherData);
    testsupport::CaptureStdout capture;
    EXPECT_TRUE(run.parser->ParseSignals(other));
    capture.Stop();
    EXPECT_NE(nullptr, run.store.FindEnumByName("E"));
    EXPECT_EQ(nullptr, other.FindEnumByName("E"));
}

TEST(CSignalParser, ParseSignalsSkipsUnprocessedHeader) {
    SignalRun run("//OMRA DO NOT PREPROCESS\ntypedef enum { A } E;\ntypedef struct { long n; } S;\n");
    testsupport::CaptureStdout capture;
    EXPECT_TRUE(run.parser->ParseSignals(run.store));
    EXPECT_EQ("\rDone!\nWrite enums to database\n\rTotal Enums: 0.\rWrite unions to database\n\rTotal Unions: 0.\r"
              "Write structures to database\n\rTotal Structs: 0.\r\rDone!\nWrite signal groups to database\n\rDone!\n",
              capture.Stop());
    EXPECT_TRUE(run.store.Enums().IsEmpty());
    EXPECT_TRUE(run.store.Signals().IsEmpty());
}

TEST(CSignalParser, FindEnumSizeByModeAndRange) {
    struct Row {
        CompilerTypesEnumSize mode;
        std::vector<int32_t> values;
        int32_t expected;
    };
    Row const rows[] = {
        {ENUM_SIZE_FOUR_BYTES, {0, 1}, 4},                       // mode 1 always 4
        {static_cast<CompilerTypesEnumSize>(2), {0}, -1},        // an unknown mode
        {static_cast<CompilerTypesEnumSize>(-1), {0}, -1},       // likewise
        {ENUM_SIZE_BY_RANGE, {}, 1},                             // no enumerators
        {ENUM_SIZE_BY_RANGE, {0, 255}, 1},                       // one unsigned byte
        {ENUM_SIZE_BY_RANGE, {256}, 2},                          // past one byte
        {ENUM_SIZE_BY_RANGE, {0x7FFFFFFF}, 2},                   // never 4 by range
        {ENUM_SIZE_BY_RANGE, {-127, 126}, 1},                    // the signed bounds
        {ENUM_SIZE_BY_RANGE, {-128, 0}, 2},                      // one below the lower bound
        {ENUM_SIZE_BY_RANGE, {-1, 127}, 2},                      // one above the upper bound
        {ENUM_SIZE_BY_RANGE, {static_cast<int32_t>(0x80000000u), 5}, 2},  // the smallest int
    };
    stData data;
    CStorage store(&data);
    CString path;
    for (Row const& row : rows) {
        auto parser = std::make_unique<CSignalParser>(path, store, row.mode);
        AddEnum(*parser, "E", row.values);
        CString name = "E";
        EXPECT_EQ(row.expected, parser->FindEnumSize(name)) << "mode " << row.mode << ", " << row.values.size()
                                                            << " values";
    }
}

TEST(CSignalParser, FindEnumSizeFindsFurtherNamesAndSurvivesUnknown) {
    stData data;
    CStorage store(&data);
    CString path;
    auto parser = std::make_unique<CSignalParser>(path, store, ENUM_SIZE_BY_RANGE);
    AddEnum(*parser, "E", {300});
    static_cast<CEnum*>(parser->m_EnumList.GetHead())->m_lstNames.AddTail("Alias");
    CString alias = "Alias";
    CString unknown = "Nowhere";
    EXPECT_EQ(2, parser->FindEnumSize(alias));
    EXPECT_EQ(1, parser->FindEnumSize(unknown));
}
