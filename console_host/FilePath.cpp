#include "console_host/FilePath.h"

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace conduit {

std::filesystem::path PathFromUtf8(const std::string& text) {
  return {std::u8string(text.begin(), text.end())};
}

std::string Utf8FromPath(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

void RequireReadable(const char* what, const std::filesystem::path& path) {
  std::error_code problem;
  if (!std::filesystem::is_directory(path, problem) && !std::ifstream(path, std::ios::binary)) {
    throw std::runtime_error(std::string("cannot read ") + what + " " + Utf8FromPath(path) + ": " +
                             std::generic_category().message(errno));
  }
}

}  // namespace conduit
