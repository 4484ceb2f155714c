// CFile: both line readers, the mode string from flags, and writes through a
// file that is not open.
#include "CFile.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestSupport.h"

namespace {

using testsupport::ReadFile;
using testsupport::ScratchDir;
using testsupport::WriteFile;

std::string Bytes(CString const& line) { return std::string(line.GetData(), static_cast<size_t>(line.GetLength())); }

std::string ReadAllLines(std::string const& path) {
    CFile file;
    EXPECT_TRUE(file.Open(path.c_str(), "rb"));
    std::string out;
    for (CString line; file.ReadString(line);) out += "[" + Bytes(line) + "]";
    return out;
}

TEST(CFile, ReadStringSplitsTheFileIntoLines) {
    std::string const longLine(5000, 'z');
    struct Row {
        std::string text, lines;
        char const* reason;
    } const rows[] = {
        {"one\ntwo", "[one][two]", "the last line comes without its feed, then nothing"},
        {"x\r\r\n\ny\r\n", "[x][][y]", "every trailing carriage return goes"},
        {longLine + "\nend\n", "[" + longLine + "][end]", "long lines are joined"},
        {std::string("ab\0cd\nef\n", 9), "[ab][ef]", "a NUL byte hides the rest of its piece"},
    };
    ScratchDir dir;
    for (Row const& row : rows) {
        WriteFile(dir.File("a"), row.text);
        EXPECT_EQ(row.lines, ReadAllLines(dir.File("a"))) << row.reason;
    }
}

// Lines over several reads of the file, one longer than any read, each with
// the position behind it; every position is then sought again, from the last
// back to the first, and the other line reader goes on from the place reached.
TEST(CFile, LinesAndPositionsAcrossLargeFiles) {
    std::string text;
    std::vector<std::string> lines;
    std::vector<int64_t> after;
    for (int i = 0; i < 30000; ++i) {
        std::string line = std::string(static_cast<size_t>(i % 37), static_cast<char>('a' + i % 26));
        if (i == 12345) line = std::string(150000, 'L');
        lines.push_back(line);
        text += line + (i % 3 == 0 ? "\r\n" : "\n");
        after.push_back(static_cast<int64_t>(text.size()));
    }
    lines.push_back("tail");
    text += "tail";
    after.push_back(static_cast<int64_t>(text.size()));
    ScratchDir dir;
    WriteFile(dir.File("big"), text);
    CFile file;
    ASSERT_TRUE(file.Open(dir.File("big").c_str(), "rb"));
    CString line;
    for (size_t i = 0; i < lines.size(); ++i) {
        ASSERT_TRUE(file.ReadString(line)) << i;
        ASSERT_EQ(lines[i], Bytes(line)) << i;
        ASSERT_EQ(after[i], file.GetPosition()) << i;
    }
    EXPECT_FALSE(file.ReadString(line));
    EXPECT_EQ(static_cast<int64_t>(text.size()), file.GetPosition());
    for (size_t i = lines.size() - 1; i-- > 0;) {
        file.Seek(after[i], CFile::begin);
        ASSERT_TRUE(file.ReadString(line)) << i;
        ASSERT_EQ(lines[i + 1], Bytes(line)) << i;
    }
    file.SeekToBegin();
    ASSERT_TRUE(file.ReadString(line));
    ASSERT_TRUE(file.ReadString(line));
    EXPECT_EQ(after[1], file.GetPosition());
    char buffer[256];
    ASSERT_TRUE(file.ReadString(buffer, 256));
    EXPECT_EQ(lines[2], buffer);
    EXPECT_EQ(after[2], file.GetPosition());
}

// NUL bytes spread over several reads of the file, sparse and then on every
// line: each line is cut at its first NUL, read straight on and after seeking
// back over them.
TEST(CFile, NulBytesAcrossReadsAndSeeks) {
    std::string text;
    std::vector<std::string> lines;
    std::vector<int64_t> before;
    for (int i = 0; i < 20000; ++i) {
        std::string line(static_cast<size_t>(10 + i % 50), static_cast<char>('a' + i % 26));
        bool nul = i % 997 == 3 || i >= 19000;
        before.push_back(static_cast<int64_t>(text.size()));
        text += nul ? line + std::string(1, '\0') + "hidden" : line;
        text += "\n";
        lines.push_back(line);
    }
    ScratchDir dir;
    WriteFile(dir.File("nul"), text);
    CFile file;
    ASSERT_TRUE(file.Open(dir.File("nul").c_str(), "rb"));
    CString line;
    for (size_t i = 0; i < lines.size(); ++i) {
        ASSERT_TRUE(file.ReadString(line)) << i;
        ASSERT_EQ(lines[i], Bytes(line)) << i;
    }
    EXPECT_FALSE(file.ReadString(line));
    for (size_t i : {19999u, 19500u, 18999u, 9974u, 9973u, 0u}) {
        file.Seek(before[i], CFile::begin);
        for (size_t j = i; j < i + 3 && j < lines.size(); ++j) {
            ASSERT_TRUE(file.ReadString(line)) << j;
            ASSERT_EQ(lines[j], Bytes(line)) << j;
        }
    }
}

TEST(CFile, FixedBufferReadSplitsLongLines) {
    ScratchDir dir;
    WriteFile(dir.File("a"), std::string(300, 'k') + "\r\nz");
    CFile file;
    ASSERT_TRUE(file.Open(dir.File("a").c_str(), "rb"));
    char buffer[256];
    ASSERT_TRUE(file.ReadString(buffer, 256));
    EXPECT_EQ(255u, std::string(buffer).size());
    ASSERT_TRUE(file.ReadString(buffer, 256));
    EXPECT_EQ(std::string(45, 'k') + "\r", buffer);
    ASSERT_TRUE(file.ReadString(buffer, 256));
    EXPECT_STREQ("z", buffer);
    EXPECT_FALSE(file.ReadString(buffer, 256));
}

TEST(CFile, ModeStringFromFlags) {
    struct Row {
        int32_t flags;
        char const* mode;
    } rows[] = {
        {0x0000, "r"}, {0x8000, "rb"}, {0x4000, "rt"}, {0x0001, "w"}, {0x8001, "wb"},
        {0x9002, "w+b"}, {0x2001, "a"}, {0x2002, "a+"}, {0xC001, "wt"},
    };
    for (auto const& row : rows) EXPECT_STREQ(row.mode, CFile::ModeFromFlags(row.flags).GetData()) << row.flags;
}

TEST(CFile, WritesSkipEmptyTextAndAreHarmlessWhenClosed) {
    CFile file;
    EXPECT_FALSE(file.Open("/nonexistent-dir/x.txt", "wb"));
    file.WriteString("text");
    file.WriteLine("text");
    file.Close();
    file.Close();
    EXPECT_EQ(0, file.GetLength());
    ScratchDir dir;
    ASSERT_TRUE(file.Open(dir.File("w").c_str(), "wb"));
    file.WriteLine(CString("a"));
    file.WriteLine(CString(""));
    file.WriteString(CString(""));
    file.WriteLine("b");
    EXPECT_EQ("/w", std::string(file.GetFilePath().GetData()).substr(dir.Path().size()));
    file.Close();
    EXPECT_EQ("a\n\nb\n", ReadFile(dir.File("w")));
}

TEST(CFile, SeekAndLength) {
    CFile file;
    ASSERT_TRUE(file.OpenText("line1\nline2\n"));
    EXPECT_EQ(12, file.GetLength());
    CString line;
    file.ReadString(line);
    int64_t mark = file.GetPosition();
    file.ReadString(line);
    EXPECT_EQ("line2", std::string(line.GetData()));
    file.Seek(mark, CFile::begin);
    file.ReadString(line);
    EXPECT_EQ("line2", std::string(line.GetData()));
    EXPECT_FALSE(file.ReadString(line));
}

}  // namespace
