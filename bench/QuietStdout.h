// Sends standard output away for the life of the object, so that the parser's
// progress percentages do not disturb a benchmark's report.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

class QuietStdout {
public:
    QuietStdout() : m_saved(dup(1)) {
        std::fflush(stdout);
        int null = open("/dev/null", O_WRONLY);
        dup2(null, 1);
        close(null);
    }
    ~QuietStdout() {
        std::fflush(stdout);
        dup2(m_saved, 1);
        close(m_saved);
    }
    QuietStdout(QuietStdout const&) = delete;
    QuietStdout& operator=(QuietStdout const&) = delete;

private:
    int m_saved;
};
