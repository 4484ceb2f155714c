// Bounded, timed runs of the built tools and the generators of hostile inputs.
#include "HostileInput.h"

#include <chrono>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "TestSupport.h"

namespace hostile {
namespace {

// Runs program through coreutils' timeout, so that a hang ends with 124.
testsupport::RunResult RunThroughTimeout(std::vector<std::string> const& argv, std::string const& workDir) {
    std::string const out = workDir + "/.hostile.out";
    std::string const err = workDir + "/.hostile.err";
    pid_t child = fork();
    if (child == 0) {
        if (chdir(workDir.c_str()) != 0) _exit(127);
        int outFd = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        int errFd = open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (outFd < 0 || errFd < 0) _exit(127);
        dup2(outFd, 1);
        dup2(errFd, 2);
        std::vector<char*> args;
        for (auto const& arg : argv) args.push_back(const_cast<char*>(arg.c_str()));
        args.push_back(nullptr);
        execvp(args[0], args.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    testsupport::RunResult result;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    result.out = testsupport::ReadFile(out);
    result.err = testsupport::ReadFile(err);
    unlink(out.c_str());
    unlink(err.c_str());
    return result;
}

}  // namespace

TimedRun RunLimited(std::string const& program, std::vector<std::string> const& args, std::string const& workDir) {
    std::vector<std::string> argv{"timeout", std::to_string(static_cast<int>(2 * kSecondsPerRun)), program};
    argv.insert(argv.end(), args.begin(), args.end());
    auto start = std::chrono::steady_clock::now();
    testsupport::RunResult result = RunThroughTimeout(argv, workDir);
    TimedRun run;
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    run.status = result.status;
    run.out = std::move(result.out);
    run.err = std::move(result.err);
    return run;
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

std::vector<std::string> Truncations(std::string const& text, size_t count) {
    std::vector<std::string> prefixes;
    for (size_t i = 1; i <= count; ++i) prefixes.push_back(text.substr(0, text.size() * i / (count + 1)));
    return prefixes;
}

}  // namespace hostile
