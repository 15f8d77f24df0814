#include "platform/FilePath.h"

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace conduit {

std::filesystem::path PathFromUtf8(std::string_view text) {
  return std::u8string(text.begin(), text.end());
}

std::string Utf8FromPath(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

void RequireReadable(const char* what, const std::filesystem::path& path) {
  std::error_code problem;
  const std::filesystem::file_type type = std::filesystem::status(path, problem).type();
  if (type == std::filesystem::file_type::directory) {
    return;
  }
  std::string reason;
  if (problem || type == std::filesystem::file_type::not_found) {
    reason =
        (problem ? problem : std::make_error_code(std::errc::no_such_file_or_directory)).message();
  } else if (type != std::filesystem::file_type::regular) {
    // Opening a pipe would block until it has a writer.
    reason = "it is neither a file nor a folder";
  } else if (!std::ifstream(path, std::ios::binary)) {
    reason = std::generic_category().message(errno);
  }
  if (!reason.empty()) {
    throw std::runtime_error(std::string("cannot read ") + what + " " + Utf8FromPath(path) + ": " +
                             reason);
  }
}

}  // namespace conduit
