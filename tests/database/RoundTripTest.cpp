// Loading a database file and writing it back twice. The first pass, pinned by
// the end-to-end database run, rewrites the records the loader reads
// differently from how they were written; a second pass gives the same bytes
// again, except for union members of enumeration, union and pointer kind,
// whose kind word and type text trade columns on every pass, so they alternate
// between two forms.
#include <gtest/gtest.h>

#include <string>

#include "DBLoader.h"
#include "KSLDBWriter.h"
#include "Storage.h"
#include "TestSupport.h"

namespace {

using testsupport::ReadFile;

std::string const kEverySection = KS_TEST_DATA_DIR "/database/every_section.txt";

// One run without a signals header: load the text, write the store back.
std::string LoadAndWrite(std::string const& text) {
    testsupport::ScratchDir dir;
    std::string path = dir.File("db.txt");
    testsupport::WriteFile(path, text);
    stData data;
    CStorage store(&data);
    CKSLDBWriter writer(&store, &data);
    store.SetDBWriter(&writer);
    LoadDatabaseText(store, path.c_str(), data);
    writer.Open(path.c_str());
    writer.WriteDB();
    writer.Close();
    return ReadFile(path);
}

TEST(DatabaseRoundTrip, SecondPassRepeatsFirstButAlternatingUnionMembers) {
    std::string first = LoadAndWrite(ReadFile(kEverySection));
    std::string second = LoadAndWrite(first);
    std::string expected = first;
    struct Swap {
        char const* firstPass;
        char const* secondPass;
    } const swaps[] = {
        {"Any,asKind,enum,primitive,1,0", "Any,asKind,primitive,enum,1,0"},
        {"Any,asUnion,union,primitive,1,0", "Any,asUnion,primitive,union,1,0"},
        {"Any,asPtr,pointer,primitive,4,0", "Any,asPtr,primitive,pointer,4,0"},
    };
    for (Swap const& swap : swaps) {
        size_t at = expected.find(swap.firstPass);
        ASSERT_NE(std::string::npos, at) << swap.firstPass;
        expected.replace(at, std::string(swap.firstPass).size(), swap.secondPass);
    }
    EXPECT_EQ(expected, second);
    EXPECT_EQ(first, LoadAndWrite(second));
}

}  // namespace
