#include <dlfcn.h>
#include <sys/auxv.h>

#include <bit>
#include <stdexcept>
#include <system_error>

#include "platform/Process.h"

namespace conduit {

std::filesystem::path ProgramFile() {
  std::error_code problem;
  std::filesystem::path file = std::filesystem::read_symlink("/proc/self/exe", problem);
  if (problem) {
    // /proc may be missing, as in a chroot. The auxiliary vector has the path by which the
    // program was started.
    const auto* const start = std::bit_cast<const char*>(getauxval(AT_EXECFN));
    file = std::filesystem::canonical(start != nullptr ? start : "", problem);
  }
  if (problem) {
    throw std::runtime_error("cannot find the file of this program: /proc is not mounted");
  }
  return file;
}

std::filesystem::path FileOfCode(const void* address) {
  Dl_info info = {};
  // An address outside of any library belongs to this program.
  return dladdr(address, &info) != 0 && info.dli_fname != nullptr &&
                 std::filesystem::exists(info.dli_fname)
             ? std::filesystem::absolute(info.dli_fname)
             : ProgramFile();
}

}  // namespace conduit
