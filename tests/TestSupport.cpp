// Scratch folders, file helpers, child processes and output capture for the tests.
#include "TestSupport.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <vector>

namespace testsupport {

ScratchDir::ScratchDir() {
    char pattern[] = "/tmp/ksman_test_XXXXXX";
    char* made = mkdtemp(pattern);
    m_path = made ? made : "/tmp";
}

ScratchDir::~ScratchDir() {
    if (m_path != "/tmp") {
        std::string command = "rm -rf '" + m_path + "'";
        if (std::system(command.c_str()) != 0) std::perror("rm");
    }
}

std::string ReadFile(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void WriteFile(std::string const& path, std::string const& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

bool FileExists(std::string const& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0;
}

RunResult Run(std::string const& program, std::initializer_list<std::string> args, std::string const& workDir) {
    RunResult result;
    std::string outFile = workDir + "/.stdout", errFile = workDir + "/.stderr";
    pid_t child = fork();
    if (child == 0) {
        if (chdir(workDir.c_str()) != 0) _exit(127);
        int out = open(outFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        int err = open(errFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        dup2(out, 1);
        dup2(err, 2);
        std::vector<char*> argv;
        argv.push_back(const_cast<char*>(program.c_str()));
        for (auto const& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
        argv.push_back(nullptr);
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    result.out = ReadFile(outFile);
    result.err = ReadFile(errFile);
    std::remove(outFile.c_str());
    std::remove(errFile.c_str());
    return result;
}

CaptureFd::CaptureFd(int fd) : m_fd(fd) {
    char pattern[] = "/tmp/ksman_capture_XXXXXX";
    int tmp = mkstemp(pattern);
    m_file = pattern;
    std::fflush(fd == 1 ? stdout : stderr);
    m_saved = dup(fd);
    dup2(tmp, fd);
    close(tmp);
}

std::string CaptureFd::Stop() {
    if (m_stopped) return "";
    m_stopped = true;
    std::fflush(m_fd == 1 ? stdout : stderr);
    dup2(m_saved, m_fd);
    close(m_saved);
    std::string text = ReadFile(m_file);
    std::remove(m_file.c_str());
    return text;
}

}  // namespace testsupport
