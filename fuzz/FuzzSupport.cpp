// Scratch files of the fuzz targets: one per process and suffix, so that
// parallel fuzzing jobs never share one.
#include "FuzzSupport.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <unistd.h>

namespace fuzzsupport {
namespace {

std::map<std::string, std::string>& Paths() {
    static std::map<std::string, std::string> paths;
    return paths;
}

void RemoveScratchFiles() {
    for (auto const& entry : Paths()) std::remove(entry.second.c_str());
}

std::string ScratchFolder() {
    return access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
}

}  // namespace

std::string const& ScratchPath(char const* suffix) {
    auto found = Paths().find(suffix);
    if (found != Paths().end()) return found->second;
    if (Paths().empty()) std::atexit(RemoveScratchFiles);
    std::string path = ScratchFolder() + "/ksman_fuzz_" + std::to_string(getpid()) + "." + suffix;
    return Paths().emplace(suffix, path).first->second;
}

bool WriteScratch(std::string const& path, uint8_t const* data, size_t size) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return false;
    bool written = size == 0 || std::fwrite(data, 1, size, file) == size;
    return std::fclose(file) == 0 && written;
}

}  // namespace fuzzsupport
