#include "virtual_reader/InputFile.h"

#include <fstream>
#include <stdexcept>
#include <system_error>

namespace conduit {

std::uintmax_t RequireInputFile(const std::filesystem::path& file, std::uintmax_t limit) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(file, error);
  if (status.type() == std::filesystem::file_type::not_found) {
    throw std::invalid_argument("there is no such file");
  }
  if (error) {
    throw std::invalid_argument("the file cannot be read: " + error.message());
  }
  // Also keeps a pipe or a device from being read without an end.
  if (status.type() != std::filesystem::file_type::regular) {
    throw std::invalid_argument("this is a folder or a device, not a file");
  }
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  if (error) {
    throw std::invalid_argument("the file cannot be read: " + error.message());
  }
  if (size == 0) {
    throw std::invalid_argument("the file is empty");
  }
  if (size > limit) {
    throw std::invalid_argument("the file has " + std::to_string(size) + " bytes, at most " +
                                std::to_string(limit) + " are taken");
  }
  return size;
}

std::string ReadInputFile(const std::filesystem::path& file, std::uintmax_t limit) {
  const std::uintmax_t size = RequireInputFile(file, limit);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  std::ifstream stream(file, std::ios::binary);
  if (!stream.read(bytes.data(), static_cast<std::streamsize>(size))) {
    throw std::invalid_argument("the file cannot be read");
  }
  return bytes;
}

}  // namespace conduit
