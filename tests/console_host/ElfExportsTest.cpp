#include <elf.h>
#include <gmock/gmock.h>

#include <cstddef>
#include <fstream>
#include <iterator>
#include <string>

#include "RunConduit.h"

namespace {

TEST(ValidateCommand, ReadsALibraryWithoutSectionHeaders) {
  const std::string stripped = TEST_FOLDER "/broken_modules/Stripped.so";
  std::ifstream stream(TEST_FOLDER "/broken_modules/ExportsMore.so", std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  bytes.replace(offsetof(Elf64_Ehdr, e_shoff), sizeof(Elf64_Off), sizeof(Elf64_Off), '\0');
  bytes.replace(offsetof(Elf64_Ehdr, e_shnum), 2 * sizeof(Elf64_Half), 2 * sizeof(Elf64_Half),
                '\0');
  std::ofstream(stripped, std::ios::binary) << bytes;
  EXPECT_THAT(RunConduit({"validate", "--only", "exports", stripped}).output,
              testing::HasSubstr("also exports _ZN7conduit6HelperEv"));
}

}  // namespace
