// Helpers shared by the tests: scratch folders, whole-file reading and writing,
// and running a built executable with its standard output and error captured.
#pragma once

#include <string>

namespace testsupport {

// A fresh empty folder under the system's temporary folder, removed on destruction.
class ScratchDir {
public:
    ScratchDir();
    ~ScratchDir();
    ScratchDir(ScratchDir const&) = delete;
    ScratchDir& operator=(ScratchDir const&) = delete;
    std::string const& Path() const { return m_path; }
    std::string File(std::string const& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

std::string ReadFile(std::string const& path);  // whole file, bytes as they are; "" when missing
void WriteFile(std::string const& path, std::string const& bytes);
bool FileExists(std::string const& path);

struct RunResult {
    int status = -1;  // exit status
    std::string out;  // standard output
    std::string err;  // standard error
};

// Runs program with args (each passed as one argument) in workDir.
RunResult Run(std::string const& program, std::initializer_list<std::string> args, std::string const& workDir);

// Captures what the calling process writes to fd (1 or 2) between construction and Stop().
class CaptureFd {
public:
    explicit CaptureFd(int fd);
    ~CaptureFd() { Stop(); }
    CaptureFd(CaptureFd const&) = delete;
    CaptureFd& operator=(CaptureFd const&) = delete;
    std::string Stop();

private:
    int m_fd;
    int m_saved = -1;
    std::string m_file;
    bool m_stopped = false;
};

struct CaptureStdout : CaptureFd {
    CaptureStdout() : CaptureFd(1) {}
};
struct CaptureStderr : CaptureFd {
    CaptureStderr() : CaptureFd(2) {}
};

}  // namespace testsupport
