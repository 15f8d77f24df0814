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

void RequireReadableFile(const char* what, const std::filesystem::path& file) {
  const auto refuse = [&](const std::string& reason) {
    throw std::runtime_error(std::string("cannot read ") + what + " " + Utf8FromPath(file) + ": " +
                             reason);
  };
  std::error_code problem;
  if (std::filesystem::is_directory(file, problem)) {
    refuse("it is a folder");
  }
  if (!std::ifstream(file, std::ios::binary)) {
    refuse(std::generic_category().message(errno));
  }
}

}  // namespace conduit
