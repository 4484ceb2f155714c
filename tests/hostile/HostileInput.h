// Runs of the built tools on hostile inputs, shared by the hostile-input tests:
// every run is bounded by a time limit (a hang fails instead of blocking the
// suite) and timed, and generators build large inputs in the test itself.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace hostile {

// Longest a run on one hostile input may take, in seconds. Hostile inputs are
// at most a few megabytes: a linear tool reads them well within it, even
// under the sanitizers.
constexpr double kSecondsPerRun = 20.0;

struct TimedRun {
    int status = -1;  // 124 when the time limit stopped it, 128+n on signal n
    double seconds = 0;
    std::string out;
    std::string err;
};

// Runs program with args in workDir under a time limit of twice kSecondsPerRun.
TimedRun RunLimited(std::string const& program, std::vector<std::string> const& args, std::string const& workDir);

std::string Repeat(std::string const& text, size_t count);
// size bytes of every value, from a fixed seed: the same bytes every time.
std::string PseudoRandomBytes(size_t size, uint32_t seed);
// The 256 byte values in ascending order.
std::string EveryByteValue();
// The prefixes of text cut at count evenly spread places (the empty and the
// whole text excluded).
std::vector<std::string> Truncations(std::string const& text, size_t count);

}  // namespace hostile
