#include "console_host/ReplacedFile.h"

#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "platform/FilePath.h"

namespace conduit {

ReplacedFile::ReplacedFile(std::string what, const std::filesystem::path& file,
                           std::string_view start)
    : what(std::move(what)), file(file), unfinished(file) {
  RequireReplaceable(start);
  std::error_code noneYet;
  const std::filesystem::file_type type = std::filesystem::status(file, noneYet).type();
  if (type == std::filesystem::file_type::not_found ||
      type == std::filesystem::file_type::regular) {
    unfinished += ".part";
  }
  output.open(unfinished, std::ios::binary);
  if (!output) {
    Refuse(std::generic_category().message(errno));
  }
}

void ReplacedFile::Write(std::string_view text) {
  if (!(output << text << std::flush)) {
    Refuse(std::generic_category().message(errno));
  }
}

void ReplacedFile::Complete() {
  output.close();
  if (!output) {
    Refuse(std::generic_category().message(errno));
  }
  std::error_code problem;
  if (unfinished != file) {
    std::filesystem::rename(unfinished, file, problem);
  }
  if (problem) {
    Refuse(problem.message());
  }
}

void ReplacedFile::Refuse(const std::string& reason) const {
  throw std::runtime_error("cannot write " + what + " " + Utf8FromPath(file) + ": " + reason);
}

void ReplacedFile::RequireReplaceable(std::string_view start) const {
  std::error_code problem;
  if (std::filesystem::is_directory(file, problem)) {
    Refuse("it is a folder");
  }
  if (!std::filesystem::is_regular_file(file, problem)) {
    return;
  }
  std::string present(start.size(), '\0');
  std::ifstream input(file, std::ios::binary);
  input.read(present.data(), static_cast<std::streamsize>(present.size()));
  if (input.gcount() > 0 && present != start) {
    Refuse("the file exists and is no " + what);
  }
}

}  // namespace conduit
