#include "console_host/UnfinishedFile.h"

#include <cstdint>
#include <cstdio>
#include <random>

namespace conduit {
namespace {

std::filesystem::path Beside(const std::filesystem::path& place) {
  std::random_device random;
  char ending[32];
  std::snprintf(ending, sizeof ending, ".%08x%08x.part", random(), random());
  std::filesystem::path path = place;
  path += ending;
  return path;
}

}  // namespace

UnfinishedFile::UnfinishedFile(const std::filesystem::path& place)
    : place(place), path(Beside(place)), file(OutputFile::Create(path)) {}

UnfinishedFile::~UnfinishedFile() {
  if (!kept) {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
  }
}

void UnfinishedFile::Write(std::string_view bytes) { file.Write(bytes); }

bool UnfinishedFile::TakePlace(const FileState& expected) {
  file.Close();
  return conduit::TakePlace(path, place, expected);
}

std::string ReasonOf(const std::error_code& problem) {
  return problem.default_error_condition().message();
}

}  // namespace conduit
