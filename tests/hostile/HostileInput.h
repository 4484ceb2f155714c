// Runs of the built tools on hostile inputs, shared by the hostile-input tests:
// every run is bounded by a time limit (a hang fails instead of blocking the
// suite) and timed, and generators build large inputs in the test itself.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "TestSupport.h"

namespace hostile {

// Longest a run on one hostile input may take, in seconds. Hostile inputs are
// at most a few megabytes: a linear tool reads them well within it, even
// under the sanitizers.
constexpr double kSecondsPerRun = 20.0;

// status is 124 when the time limit stopped the run, 128+n on signal n.
struct TimedRun : testsupport::RunResult {
    double seconds = 0;
};

// Runs program with args in workDir under a time limit of twice kSecondsPerRun.
TimedRun RunLimited(std::string const& program, std::vector<std::string> const& args, std::string const& workDir);
// Expects status 0, or 1 where the command may refuse its input (never a signal,
// a sanitizer report or the time limit), within kSecondsPerRun.
void ExpectFinished(TimedRun const& run, bool mayRefuse);

// A hostile input and the name that tells it apart in a failure.
struct Case {
    std::string name;
    std::string bytes;
};

std::string Repeat(std::string const& text, size_t count);
// size bytes of every value, from a fixed seed: the same bytes every time.
std::string PseudoRandomBytes(size_t size, uint32_t seed);
// The 256 byte values in ascending order.
std::string EveryByteValue();
// The prefixes of text cut at count evenly spread places (the empty and the
// whole text excluded), each named "cut after <size> bytes".
std::vector<Case> Truncations(std::string const& text, size_t count);

}  // namespace hostile
