#include "platform/Process.h"

namespace conduit {

std::filesystem::path ProgramFile() { return std::filesystem::read_symlink("/proc/self/exe"); }

}  // namespace conduit
