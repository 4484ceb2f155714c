// End-to-end runs of the built KSManCMD on small headers: how declarations
// written in the less common ways come out in the rewritten database file.
// Each case compares the file's "Enums" to "Signals" sections as a whole.
#include <gtest/gtest.h>

#include <string>

#include "TestSupport.h"

namespace {

// Runs the tool on the header without a database file and returns the part
// of the written file from the line after "Enums" up to "<end>" of "Signals".
std::string DeclarationSections(std::string const& header) {
    testsupport::ScratchDir dir;
    testsupport::WriteFile(dir.File("s.h"), header);
    testsupport::Run(KS_KSMANCMD_PATH, {"-Ndb.txt", "-Ss.h"}, dir.Path());
    std::string file = testsupport::ReadFile(dir.File("db.txt"));
    size_t from = file.find("\nEnums\n");
    size_t to = file.find("\nSignalTable\n");
    if (from == std::string::npos || to == std::string::npos || to < from) return "<no sections>";
    return file.substr(from + 7, to - from - 6);
}

}  // namespace

// Each case is <name>.header.txt (the header's exact bytes, a missing last
// line feed included) and <name>.expected.txt under tests/data/declarations/.
TEST(DeclarationsRun, DeclarationsAsWrittenInTheDatabase) {
    struct Row {
        char const* name;
        char const* reason;
    } const rows[] = {
        {"keyword_pairs_and_bit_field_holders",
         "keyword pairs after the first word are declarators; a:4 is a name; holders of 32 bits"},
        {"primitive_fields_before_a_star_are_pointers", "a * on the line makes the primitive fields before it pointers"},
        {"declaration_after_a_structure_on_the_last_line", "on the last line the declaration after a structure is read"},
        {"union_member_words_and_a_star_as_name",
         "the first word is the type; one keyword after unsigned; the first size counts; a * names a union"},
        {"nested_names_and_replaced_tag",
         "generated and prefixed names; the later T takes the further names, which stand reversed"},
        {"enumeration_named_by_end_of_file", "the empty token of the end of the file names it"},
        {"further_name_before_end_of_file", "a further name just before the end of the file"},
    };
    std::string const data = KS_TEST_DATA_DIR "/declarations/";
    for (Row const& row : rows) {
        std::string header = testsupport::ReadFile(data + row.name + ".header.txt");
        ASSERT_FALSE(header.empty()) << row.name;
        EXPECT_EQ(testsupport::ReadFile(data + row.name + ".expected.txt"), DeclarationSections(header)) << row.reason;
    }
}
