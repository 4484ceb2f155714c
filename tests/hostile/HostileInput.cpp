// Bounded, timed runs of the built tools and the generators of hostile inputs.
#include "HostileInput.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

namespace hostile {

// Runs program through coreutils' timeout, so that a hang ends with 124.
TimedRun RunLimited(std::string const& program, std::vector<std::string> const& args, std::string const& workDir) {
    std::vector<std::string> argv{"timeout", std::to_string(static_cast<int>(2 * kSecondsPerRun)), program};
    argv.insert(argv.end(), args.begin(), args.end());
    std::string const out = workDir + "/.hostile.out";
    std::string const err = workDir + "/.hostile.err";
    auto start = std::chrono::steady_clock::now();
    pid_t child = fork();
    if (child == 0) {
        if (chdir(workDir.c_str()) != 0) _exit(127);
        int outFd = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        int errFd = open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (outFd < 0 || errFd < 0) _exit(127);
        dup2(outFd, 1);
        dup2(errFd, 2);
        std::vector<char*> pointers;
        for (auto const& arg : argv) pointers.push_back(const_cast<char*>(arg.c_str()));
        pointers.push_back(nullptr);
        execvp(pointers[0], pointers.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    TimedRun run;
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    run.out = testsupport::ReadFile(out);
    run.err = testsupport::ReadFile(err);
    unlink(out.c_str());
    unlink(err.c_str());
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return run;
}

void ExpectFinished(TimedRun const& run, bool mayRefuse) {
    EXPECT_TRUE(run.status == 0 || (mayRefuse && run.status == 1)) << run.status << "\n" << run.err;
    EXPECT_GT(kSecondsPerRun, run.seconds);
}

std::string Repeat(std::string const& text, size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (size_t i = 0; i < count; ++i) result += text;
    return result;
}

std::string PseudoRandomBytes(size_t size, uint32_t seed) {
    std::string bytes(size, '\0');
    uint32_t state = seed;
    for (auto& byte : bytes) {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

std::string EveryByteValue() {
    std::string all;
    for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
    return all;
}

std::vector<Case> Truncations(std::string const& text, size_t count) {
    std::vector<Case> prefixes;
    for (size_t i = 1; i <= count; ++i) {
        std::string prefix = text.substr(0, text.size() * i / (count + 1));
        prefixes.push_back({"cut after " + std::to_string(prefix.size()) + " bytes", prefix});
    }
    return prefixes;
}

}  // namespace hostile
