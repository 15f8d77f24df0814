#include <dlfcn.h>

#include "platform/Process.h"

namespace conduit {

std::filesystem::path ProgramFile() { return std::filesystem::read_symlink("/proc/self/exe"); }

std::filesystem::path FileOfCode(const void* address) {
  Dl_info info = {};
  // What is no library is this program.
  return dladdr(address, &info) != 0 && info.dli_fname != nullptr &&
                 std::filesystem::exists(info.dli_fname)
             ? std::filesystem::absolute(info.dli_fname)
             : ProgramFile();
}

}  // namespace conduit
