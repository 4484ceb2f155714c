// Tests of CDefExports: the lines the replacement removes for each placement
// of the section markers, files it refuses, and the bytes written back.
#include "DefExports.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "TestSupport.h"

using testsupport::CaptureStderr;
using testsupport::ReadFile;
using testsupport::ScratchDir;
using testsupport::WriteFile;

#define BEGIN ";KESTRIN EXPORTS BEGIN\n"
#define END ";KESTRIN EXPORTS END\n"

namespace {

struct Outcome {
    bool rewritten = false;
    std::string file;  // afterwards
    std::string err;
    std::string path;
};

// Writes text to a file, then Open, Add("A"), Add("B"), Close.
Outcome Update(std::string const& text) {
    ScratchDir dir;
    Outcome outcome;
    outcome.path = dir.File("module.def");
    WriteFile(outcome.path, text);
    CaptureStderr err;
    CDefExports exports;
    exports.Open(outcome.path.c_str());
    exports.Add("A");
    exports.Add("B");
    outcome.rewritten = exports.Close();
    outcome.err = err.Stop();
    outcome.file = ReadFile(outcome.path);
    return outcome;
}

}  // namespace

TEST(CDefExports, CloseReplacesSectionByMarkerPlacement) {
    struct Row {
        char const* before;
        char const* after;
    } const rows[] = {
        // markers on 0 and 4: exactly lines 1 to 3 go
        {BEGIN "1\n2\n3\n" END "t\n", BEGIN "\tA\n\tB\n" END "t\n"},
        // adjacent markers on 2 and 3: the count is 0, so the end marker goes
        {"0\n1\n" BEGIN END "t\n", "0\n1\n" BEGIN "\tA\n\tB\nt\n"},
        // markers on 2 and 5: lines 2 and 3 go, the names follow the old line 4
        {"0\n1\n" BEGIN "3\n4\n" END, "0\n1\n4\n\tA\n\tB\n" END},
        // markers on 3 and 5: lines 1 to 4 go and the names land past the end
        // of what is left, after empty lines
        {"0\n1\n2\n" BEGIN "4\n" END, "0\n" END "\n\n\tA\n\tB\n"},
        // end marker above the begin marker: nothing goes; the last marker
        // line of each kind counts and may carry more text
        {END BEGIN "x\n;KESTRIN EXPORTS BEGIN v2\ny\n", END BEGIN "x\n;KESTRIN EXPORTS BEGIN v2\n\tA\n\tB\ny\n"},
        // CR LF ends are read away; a carriage return inside a line ends what
        // is written of it, line feed included
        {"a\rb\r\n;KESTRIN EXPORTS BEGIN\r\n;KESTRIN EXPORTS END\r\n\r\nlast", "a" BEGIN "\tA\n\tB\n\nlast\n"},
    };
    for (Row const& row : rows) {
        Outcome outcome = Update(row.before);
        EXPECT_TRUE(outcome.rewritten) << row.before;
        EXPECT_EQ(row.after, outcome.file) << row.before;
        EXPECT_EQ("", outcome.err);
    }
}

TEST(CDefExports, OpenWithoutBothMarkersWarnsAndLeavesFileUntouched) {
    for (char const* text : {BEGIN "\told\n",  // no end marker
                             " " BEGIN END,    // a marker not at the line start
                             "EXPORTS\n\tX;KESTRIN EXPORTS BEGIN\n" END}) {
        Outcome outcome = Update(text);
        EXPECT_FALSE(outcome.rewritten);
        EXPECT_EQ(text, outcome.file);
        EXPECT_EQ("[KSC Warning:] Kestrin export section is missing from file " + outcome.path + "\n", outcome.err);
    }
}

TEST(CDefExports, OpenOfEmptyOrMissingPathFailsSilently) {
    CaptureStderr err;
    CDefExports exports;
    EXPECT_EQ(0, exports.Open(""));
    EXPECT_EQ(0, exports.Open("/nonexistent/dir/x.def"));
    EXPECT_FALSE(exports.Close());
    EXPECT_EQ("", err.Stop());
}

TEST(CDefExports, CloseOfUnwritableFileReportsError) {
    ScratchDir dir;
    std::string path = dir.File("gone.def");
    WriteFile(path, BEGIN END);
    CDefExports exports;
    ASSERT_EQ(1, exports.Open(path.c_str()));
    // A folder in the file's place cannot be opened for writing, whoever runs the test.
    std::remove(path.c_str());
    ASSERT_EQ(0, mkdir(path.c_str(), 0755));
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
