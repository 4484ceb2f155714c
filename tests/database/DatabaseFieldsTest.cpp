// The field cursor of the loader must read every line exactly as repeated
// CutField calls on a copy of it do, numbers and the rest included; the
// documentation markers split a text in their fixed order only.
#include "DatabaseFields.h"

#include <gtest/gtest.h>

#include <string>

#include "NumberText.h"

namespace {

std::string Bytes(CString const& text) { return std::string(text.GetData(), static_cast<size_t>(text.GetLength())); }

TEST(CFieldCursor, ReadsWhatCutFieldCuts) {
    struct Row {
        std::string line;
        char const* reason;
    };
    Row const rows[] = {
        {"", "an empty line gives empty fields"},
        {"abc", "without a comma every field is empty and the rest stays whole"},
        {"a,b,c", "the last field has no comma after it: it stays in the rest"},
        {",,,", "empty fields"},
        {"12,-7, +3,x9,99999999999,-99999999999,", "numbers: sign, blank, junk and saturation"},
        {std::string("a\0b,1\0002,c", 9), "NUL bytes stay inside their fields"},
        {"0x1f,  \t,-,+,", "no digits read as 0"},
        {"7,123456789,1234567890,42", "nine digits, ten digits, and digits with no comma after them"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.reason);
        CString const line(row.line.data(), static_cast<int32_t>(row.line.size()));
        // Fields alternate between text and number reads, from both starts.
        for (int32_t numberFirst = 0; numberFirst < 2; ++numberFirst) {
            CString rest = line;
            dbfields::CFieldCursor cursor(line);
            for (int32_t i = 0; i < 8; ++i) {
                if ((i + numberFirst) % 2) {
                    EXPECT_EQ(Atoi32(dbfields::CutField(rest)), cursor.NextNumber());
                } else {
                    EXPECT_EQ(Bytes(dbfields::CutField(rest)), Bytes(cursor.Next()));
                }
                EXPECT_EQ(Bytes(rest), Bytes(cursor.Rest()));
            }
        }
    }
}

TEST(SplitMarkers, SplitsAtEachMarkerAfterTheOneBefore) {
    struct Row {
        std::string text;
        std::string description, mode, unit, dependency;
        char const* reason;
    } const rows[] = {
        {"plain", "plain", "", "", "", "no marker: all description"},
        {"d@ITEM_MODE@m@ITEM_UNIT@u@ITEM_DEPENDENCY@x", "d", "m", "u", "x", "all four parts"},
        {"@ITEM_MODE@@ITEM_UNIT@@ITEM_DEPENDENCY@", "", "", "", "", "empty parts"},
        {"d@ITEM_UNIT@u@ITEM_MODE@m", "d@ITEM_UNIT@u", "m", "", "", "a unit marker before the mode marker is text"},
        {"d@ITEM_MODE@m@ITEM_DEPENDENCY@x", "d", "m@ITEM_DEPENDENCY@x", "", "", "no unit marker: the rest is mode"},
        {"d@ITEM_MODE", "d@ITEM_MODE", "", "", "", "a cut marker is text"},
        {std::string("a\0b@ITEM_MODE@m\0", 16), std::string("a\0b", 3), std::string("m\0", 2), "", "",
         "NUL bytes stay inside their parts"},
    };
    for (auto const& row : rows) {
        CString text(row.text.data(), static_cast<int32_t>(row.text.size()));
        dbfields::DocTexts doc = dbfields::SplitMarkers(text);
        EXPECT_EQ(row.description, Bytes(doc.description)) << row.reason;
        EXPECT_EQ(row.mode, Bytes(doc.mode)) << row.reason;
        EXPECT_EQ(row.unit, Bytes(doc.unit)) << row.reason;
        EXPECT_EQ(row.dependency, Bytes(doc.dependency)) << row.reason;
    }
}

}  // namespace
