#include "hosting/TemporaryFolder.h"

#include <random>
#include <stdexcept>
#include <string>
#include <system_error>

#include "platform/FilePath.h"

namespace conduit {
namespace {

std::filesystem::path Create() {
  std::error_code problem;
  const std::filesystem::path temporary = std::filesystem::temp_directory_path(problem);
  if (problem) {
    throw std::runtime_error(
        "the folder for temporary files, which TMPDIR names, cannot be used: " + problem.message());
  }
  // Absolute, as its user may work in another folder.
  const std::filesystem::path parent = std::filesystem::absolute(temporary);
  std::filesystem::path folder = parent / ("conduit-" + std::to_string(std::random_device()()));
  // False without a problem: somebody else's folder of that name.
  if (!std::filesystem::create_directory(folder, problem)) {
    throw std::runtime_error("cannot create the folder " + Utf8FromPath(folder) + ": " +
                             (problem ? problem.message() : "it exists"));
  }
  return folder;
}

}  // namespace

TemporaryFolder::TemporaryFolder() : path(Create()) {}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;  // a reader's log that is still open stays behind
  std::filesystem::remove_all(path, ignored);
}

}  // namespace conduit
