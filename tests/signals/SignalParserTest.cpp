// Tests of the signal run object: ParseSignals' failure path and its choice
// of store, and the enumeration sizes it reports to the header generator. The
// stage output of whole runs is pinned end to end.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "SignalParser.h"
#include "Storage.h"
#include "TestSupport.h"

namespace {

struct SignalRun {
    stData data;
    CStorage store{&data};
    std::unique_ptr<CSignalParser> parser;
    SignalRun(CString path, CompilerTypesEnumSize mode) { parser = std::make_unique<CSignalParser>(path, store, mode); }
};

}  // namespace

TEST(CSignalParser, ParseSignalsMissingHeaderStopsBeforeDone) {
    SignalRun run("/nonexistent/dir/signals.h", ENUM_SIZE_BY_RANGE);
    testsupport::CaptureStdout capture;
    EXPECT_FALSE(run.parser->ParseSignals(run.store));
    EXPECT_EQ("Error : Could not open file /nonexistent/dir/signals.h to read.\n", capture.Stop());
    EXPECT_EQ(CString("Could not open signals file /nonexistent/dir/signals.h"), run.parser->m_strError);
}

TEST(CSignalParser, ParseSignalsFillsConstructorStoreOnly) {
    testsupport::ScratchDir dir;
    testsupport::WriteFile(dir.File("s.h"), "typedef enum { A } E;\ntypedef struct { long n; } S;\n");
    SignalRun run(dir.File("s.h").c_str(), ENUM_SIZE_BY_RANGE);
    stData otherData;
    CStorage other(&otherData);
    testsupport::CaptureStdout capture;
    EXPECT_TRUE(run.parser->ParseSignals(other));
    capture.Stop();
    EXPECT_NE(nullptr, run.store.FindEnumByName("E"));
    EXPECT_NE(nullptr, run.store.FindSignalByName("S"));
    EXPECT_TRUE(other.Enums().IsEmpty() && other.Signals().IsEmpty());
}

TEST(CSignalParser, FindEnumSizeByModeAndRange) {
    struct Row {
        CompilerTypesEnumSize mode;
        char const* name;
        std::vector<int32_t> values;
        int32_t expected;
    };
    Row const rows[] = {
        {ENUM_SIZE_FOUR_BYTES, "E", {0, 1}, 4},                           // mode 1 always 4
        {static_cast<CompilerTypesEnumSize>(2), "E", {0}, -1},            // an unknown mode
        {static_cast<CompilerTypesEnumSize>(-1), "E", {0}, -1},           // likewise
        {ENUM_SIZE_BY_RANGE, "E", {}, 1},                                 // no enumerators
        {ENUM_SIZE_BY_RANGE, "Nowhere", {300}, 1},                        // unknown name: sized as empty
        {ENUM_SIZE_BY_RANGE, "Alias", {300}, 2},                          // found by a further name
        {ENUM_SIZE_BY_RANGE, "E", {0, 255}, 1},                           // one unsigned byte
        {ENUM_SIZE_BY_RANGE, "E", {256}, 2},                              // past one byte
        {ENUM_SIZE_BY_RANGE, "E", {0x7FFFFFFF}, 2},                       // never 4 by range
        {ENUM_SIZE_BY_RANGE, "E", {-127, 126}, 1},                        // the signed bounds
        {ENUM_SIZE_BY_RANGE, "E", {-128, 0}, 2},                          // one below the lower bound
        {ENUM_SIZE_BY_RANGE, "E", {-1, 127}, 2},                          // one above the upper bound
        {ENUM_SIZE_BY_RANGE, "E", {static_cast<int32_t>(0x80000000u)}, 2},  // the smallest int
    };
    for (Row const& row : rows) {
        SignalRun run("", row.mode);
        CEnum* parsed = new CEnum;
        parsed->m_strName = "E";
        parsed->m_lstNames.AddTail("Alias");
        for (int32_t value : row.values) {
            CDefines* entry = new CDefines;
            entry->m_nValue = value;
            parsed->m_lstValues.AddTail(entry);
        }
        run.parser->m_EnumList.AddTail(parsed);
        CString name = row.name;
        EXPECT_EQ(row.expected, run.parser->FindEnumSize(name)) << row.name << " mode " << row.mode;
    }
}
