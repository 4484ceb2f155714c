// Tests of CDefExports: finding the section markers, the lines the replacement
// removes for each marker placement, and the bytes written back.
#include "DefExports.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "TestSupport.h"

using testsupport::CaptureStderr;
using testsupport::ReadFile;
using testsupport::ScratchDir;
using testsupport::WriteFile;

namespace {

struct UpdateResult {
    int opened = 0;
    bool closed = false;
    std::string file;  // the file afterwards
    std::string err;   // standard error
    std::string path;  // the file's path (its folder is gone by then)
};

// Writes text to a .def file, opens it, adds A and B, closes it.
UpdateResult Update(std::string const& text) {
    ScratchDir dir;
    std::string path = dir.File("module.def");
    WriteFile(path, text);
    UpdateResult result;
    result.path = path;
    CaptureStderr err;
    CDefExports exports;
    result.opened = exports.Open(path.c_str());
    exports.Add("A");
    exports.Add("B");
    result.closed = exports.Close();
    result.err = err.Stop();
    result.file = ReadFile(path);
    return result;
}

}  // namespace

TEST(CDefExports, CloseReplacesLinesBetweenMarkersStartingAtTop) {
    UpdateResult r = Update(
        ";KESTRIN EXPORTS BEGIN\n"
        "\told1\n"
        "\told2\n"
        "\told3\n"
        ";KESTRIN EXPORTS END\n"
        "tail\n");
    EXPECT_EQ(1, r.opened);
    EXPECT_TRUE(r.closed);
    EXPECT_EQ(
        ";KESTRIN EXPORTS BEGIN\n"
        "\tA\n"
        "\tB\n"
        ";KESTRIN EXPORTS END\n"
        "tail\n",
        r.file);
    EXPECT_EQ("", r.err);
}

TEST(CDefExports, CloseWithAdjacentMarkersDropsEndMarker) {
    UpdateResult r = Update(
        "LIBRARY x\n"
        "EXPORTS\n"
        ";KESTRIN EXPORTS BEGIN\n"
        ";KESTRIN EXPORTS END\n"
        "tail\n");
    EXPECT_EQ(
        "LIBRARY x\n"
        "EXPORTS\n"
        ";KESTRIN EXPORTS BEGIN\n"
        "\tA\n"
        "\tB\n"
        "tail\n",
        r.file);
}

TEST(CDefExports, CloseWithMarkersOnTwoAndFiveRemovesBeginMarker) {
    UpdateResult r = Update(
        "line0\n"
        "line1\n"
        ";KESTRIN EXPORTS BEGIN\n"
        "line3\n"
        "line4\n"
        ";KESTRIN EXPORTS END\n");
    EXPECT_EQ(
        "line0\n"
        "line1\n"
        "line4\n"
        "\tA\n"
        "\tB\n"
        ";KESTRIN EXPORTS END\n",
        r.file);
}

TEST(CDefExports, CloseWithRemovalPastInsertPointPadsWithEmptyLines) {
    // Markers on 3 and 5: lines 1 to 4 go, the file shrinks to two lines and
    // the names land at index 4, after two empty lines.
    UpdateResult r = Update("l0\nl1\nl2\n;KESTRIN EXPORTS BEGIN\nl4\n;KESTRIN EXPORTS END\n");
    EXPECT_EQ("l0\n;KESTRIN EXPORTS END\n\n\n\tA\n\tB\n", r.file);
}

TEST(CDefExports, CloseWithMarkersOnOneAndNineRemovesUpToCount) {
    // Markers on 1 and 9 of ten lines: RemoveAt(2, 7) removes lines 2 to 7.
    UpdateResult r = Update("l0\n;KESTRIN EXPORTS BEGIN\nl2\nl3\nl4\nl5\nl6\nl7\nl8\n;KESTRIN EXPORTS END\n");
    EXPECT_EQ("l0\n;KESTRIN EXPORTS BEGIN\n\tA\n\tB\nl8\n;KESTRIN EXPORTS END\n", r.file);
}

TEST(CDefExports, CloseWithEndMarkerAboveBeginRemovesNothing) {
    UpdateResult r = Update(";KESTRIN EXPORTS END\nx\n;KESTRIN EXPORTS BEGIN\ny\n");
    EXPECT_EQ(";KESTRIN EXPORTS END\nx\n;KESTRIN EXPORTS BEGIN\n\tA\n\tB\ny\n", r.file);
}

TEST(CDefExports, OpenWithoutEndMarkerWarnsAndLeavesFileUntouched) {
    std::string text = ";KESTRIN EXPORTS BEGIN\n\told\n";
    UpdateResult r = Update(text);
    EXPECT_EQ(0, r.opened);
    EXPECT_FALSE(r.closed);
    EXPECT_EQ(text, r.file);
    EXPECT_EQ("[KSC Warning:] Kestrin export section is missing from file " + r.path + "\n", r.err);
}

TEST(CDefExports, OpenIgnoresMarkerNotAtLineStart) {
    std::string text = " ;KESTRIN EXPORTS BEGIN\n;KESTRIN EXPORTS END\n";
    UpdateResult r = Update(text);
    EXPECT_EQ(0, r.opened);
    EXPECT_EQ(text, r.file);
    EXPECT_EQ("[KSC Warning:] Kestrin export section is missing from file " + r.path + "\n", r.err);
}

TEST(CDefExports, OpenTakesLastMarkerAndMarkerPrefix) {
    // The later begin marker (line 2) wins over line 0, text after a marker is
    // allowed: RemoveAt(3, 1) takes lines 1 to 3 and the names land at index 3.
    UpdateResult r = Update(";KESTRIN EXPORTS BEGIN\nx\n;KESTRIN EXPORTS BEGIN v2\ny\n;KESTRIN EXPORTS END here\n");
    EXPECT_EQ(";KESTRIN EXPORTS BEGIN\n;KESTRIN EXPORTS END here\n\n\tA\n\tB\n", r.file);
}

TEST(CDefExports, OpenOfEmptyOrMissingPathFailsSilently) {
    CaptureStderr err;
    CDefExports exports;
    EXPECT_EQ(0, exports.Open(""));
    EXPECT_EQ(0, exports.Open("/nonexistent/dir/x.def"));
    EXPECT_FALSE(exports.Close());
    EXPECT_EQ("", err.Stop());
}

TEST(CDefExports, CloseCutsLinesAtCarriageReturnAndDropsCrLfEnds) {
    // CR LF line ends are read away; a CR inside a line ends the written text
    // there, without a line feed; so does a name holding a line feed.
    ScratchDir dir;
    std::string path = dir.File("crlf.def");
    WriteFile(path, "a\rb\r\n;KESTRIN EXPORTS BEGIN\r\n;KESTRIN EXPORTS END\r\n\r\nlast");
    CDefExports exports;
    ASSERT_EQ(1, exports.Open(path.c_str()));
    exports.Add("N\nM");
    exports.Add("\rX");
    EXPECT_TRUE(exports.Close());
    EXPECT_EQ("a;KESTRIN EXPORTS BEGIN\n\tN\t\nlast\n", ReadFile(path));
}

TEST(CDefExports, CloseOfUnwritableFileReportsError) {
    ScratchDir dir;
    std::string path = dir.File("ro.def");
    WriteFile(path, ";KESTRIN EXPORTS BEGIN\n;KESTRIN EXPORTS END\n");
    CDefExports exports;
    ASSERT_EQ(1, exports.Open(path.c_str()));
    // Replacing the file by a folder makes the rewrite fail whoever runs the test.
    std::remove(path.c_str());
    ASSERT_EQ(0, std::system(("mkdir '" + path + "'").c_str()));
    CaptureStderr err;
    EXPECT_FALSE(exports.Close());
    EXPECT_EQ("[KSC Error:] Could not open file " + path + " for writing.\n", err.Stop());
}

TEST(CDefExports, InsetWithoutMarkersWarnsAndReturnsZero) {
    CDefExports exports;
    exports.m_strFileName = "m.def";
    CaptureStderr err;
    EXPECT_EQ(0, exports.InsetExportsToFileContents());
    EXPECT_EQ("[KSC Warning:] Kestrin export section is missing from file m.def\n", err.Stop());
}

TEST(CDefExports, InsetLeavesEndIndexAfterInsertedNames) {
    CDefExports exports;
    for (char const* line : {"b", ";KESTRIN EXPORTS BEGIN", "old", ";KESTRIN EXPORTS END"})
        exports.m_FileLines.Add(line);
    exports.m_nBeginLine = 1;
    exports.m_nEndLine = 3;
    exports.Add("X");
    EXPECT_EQ(1, exports.InsetExportsToFileContents());
    // RemoveAt(2, 1) takes lines 1 and 2; the name is appended at index 2.
    EXPECT_EQ(3, exports.m_nEndLine);
    ASSERT_EQ(3u, exports.m_FileLines.GetSize());
    EXPECT_EQ("\tX", std::string(exports.m_FileLines[2].GetData()));
}
