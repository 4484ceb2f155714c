// Helpers shared by the fuzz targets: every target hands its bytes to the
// tool as a file, because the readers under test open files by path. Each
// process writes one scratch file of its own, in memory-backed storage when
// the machine has it, and removes it at exit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzzsupport {

// The scratch file of this process for one kind of input ("h", "txt", "def").
std::string const& ScratchPath(char const* suffix);
// Replaces the scratch file's contents with the bytes; false when it cannot.
bool WriteScratch(std::string const& path, uint8_t const* data, size_t size);

}  // namespace fuzzsupport
