#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <string>

#include "platform/MemoryFile.h"

namespace conduit {
namespace {

TEST(MemoryFile, ReleaseFreesMemoryAndKeepsTheRest) {
  const std::unique_ptr<MemoryFile> file = MemoryFile::Create();
  if (!file) {
    GTEST_SKIP() << "this system has no files in memory";
  }
  const auto bytesInMemory = [&] {
    struct stat status = {};
    EXPECT_EQ(stat(file->path.c_str(), &status), 0);
    return status.st_blocks * 512;
  };
  constexpr std::size_t size = 1000003;
  std::string contents;
  for (int round = 0; round < 20; ++round) {
    contents += std::string(size, static_cast<char>('a' + round));
    std::ofstream(file->path, std::ios::app) << std::string(contents, contents.size() - size);
    file->Release(contents.size() - 10);
    EXPECT_LT(bytesInMemory(), 20000);
  }
  std::ifstream stream(file->path);
  stream.seekg(-10, std::ios::end);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), std::string(10, 't'));
}

}  // namespace
}  // namespace conduit
