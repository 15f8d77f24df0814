#include <windows.h>
// After windows.h, whose types it uses.
#include <gtest/gtest.h>
#include <shellapi.h>

#include <random>

#include "platform/CommandLine_windows.h"
#include "platform/FilePath.h"

namespace conduit {
namespace {

std::vector<std::string> AsTheSystemTakesThem(const std::wstring& line) {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(line.c_str(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) {
    arguments.push_back(Utf8FromPath(words[i]));
  }
  LocalFree(words);
  return arguments;
}

TEST(CommandLine, IsSplitAsTheSystemDoes) {
  std::mt19937 random(1);
  for (int i = 0; i < 20000; ++i) {
    std::wstring line = i % 2 == 0 ? L"a.exe " : L"\"C:\\a b\\c.exe\" ";
    for (int length = static_cast<int>(random() % 16); length > 0; --length) {
      line += L"\\\\\\\"\"\" \tab\u00e4"[random() % 11];
    }
    EXPECT_EQ(ArgumentsOf(line), AsTheSystemTakesThem(line)) << Utf8FromPath(line);
  }
}

TEST(CommandLine, SplitsIntoTheWordsItWasBuiltFrom) {
  const std::vector<std::string> words = {
      "", "a b", "C:\\a b\\", "\"", "\\\"", "\\\\\"x\\", "\t", "\xC3\xA4\xE6\x97\xA5", "a=\"b\" c"};
  const std::wstring line = CommandLine(L"C:\\a b\\c.exe", words);
  EXPECT_EQ(ArgumentsOf(line), words);
  EXPECT_EQ(AsTheSystemTakesThem(line), words);
}

}  // namespace
}  // namespace conduit
