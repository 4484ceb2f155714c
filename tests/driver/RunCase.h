// One end-to-end run of a built executable as a table row: the files put into a
// fresh scratch folder, the arguments, and what must come out of it, namely the
// exit status, standard output and error, and the folder's files afterwards.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "TestSupport.h"

namespace runcase {

using Files = std::vector<std::pair<std::string, std::string>>;  // name and bytes
std::string const kAbsent = "<absent>";  // after the run: the file must not exist
std::string const kAny = "<any>";        // after the run: the file must exist, any bytes

struct Case {
    char const* reason;
    Files in;
    std::initializer_list<std::string> args;
    int status;
    std::string out, err;
    Files after;
    bool onlyThese = false;  // the folder holds the files of after and nothing else
};

inline std::string Data(std::string const& name) { return testsupport::ReadFile(KS_TEST_DATA_DIR "/" + name); }

inline void Check(char const* program, Case const& c) {
    testsupport::ScratchDir dir;
    for (auto const& [name, bytes] : c.in) testsupport::WriteFile(dir.File(name), bytes);
    testsupport::RunResult run = testsupport::Run(program, c.args, dir.Path());
    EXPECT_EQ(c.status, run.status) << c.reason;
    EXPECT_EQ(c.out, run.out) << c.reason;
    EXPECT_EQ(c.err, run.err) << c.reason;
    std::set<std::string> expected, present;
    for (auto const& [name, bytes] : c.after) {
        EXPECT_EQ(bytes != kAbsent, testsupport::FileExists(dir.File(name))) << c.reason << ": " << name;
        if (bytes != kAbsent) expected.insert(name);
        if (bytes != kAbsent && bytes != kAny) {
            EXPECT_EQ(bytes, testsupport::ReadFile(dir.File(name))) << c.reason << ": " << name;
        }
    }
    for (auto const& entry : std::filesystem::directory_iterator(dir.Path())) present.insert(entry.path().filename());
    if (c.onlyThese) {
        EXPECT_EQ(expected, present) << c.reason;
    }
}

}  // namespace runcase
