#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "tests/virtual_reader/ReaderSession.h"

namespace conduit {
namespace {

using testing::HasSubstr;

class WatchedFolder : public testing::Test {
 protected:
  WatchedFolder() {
    std::filesystem::create_directory(folder);
    ReaderSession::Name("watch:" + folder.string());
    session.onData = [](ReaderDataType, std::int32_t, const void*) {};
    HaldenReader_EnableLogging(true, 2, -1, session.NameOf("log").c_str());
  }
  ~WatchedFolder() override { HaldenReader_EnableLogging(false, 0, 0, nullptr); }
  WatchedFolder(const WatchedFolder&) = delete;
  WatchedFolder& operator=(const WatchedFolder&) = delete;

  static std::string Page() {
    std::ifstream file(PAGES_FOLDER "/qr-0.png", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  void Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(folder / name, std::ios::binary) << bytes;
  }

  /// Whether a line of the log comes to say so for the nth time.
  bool Says(const std::string& text, int times = 1) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::chrono::steady_clock::now() < end) {
      const std::string log = session.Read("log");
      int found = 0;
      for (std::size_t at = 0; (at = log.find(text, at)) != std::string::npos; ++at) {
        ++found;
      }
      if (found >= times) {
        return true;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
  }

  ReaderSession session;
  const std::filesystem::path folder = session.folder / "scans";
};

TEST_F(WatchedFolder, IsReadAsItFills) {
  Write("b.png", Page());
  ASSERT_EQ(session.Start(), 0);
  EXPECT_TRUE(Says("document b.png"));
  // In pieces, as a scanner program writes, and empty at first.
  Write("a.png", "");
  const std::string page = Page();
  std::ofstream growing(folder / "a.png", std::ios::binary);
  for (const char byte : page.substr(0, 4)) {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    growing << byte << std::flush;
  }
  growing << page.substr(4) << std::flush;
  growing.close();
  Write("notes.pdf", "x");
  EXPECT_TRUE(Says("document a.png"));
  EXPECT_TRUE(Says("notes.pdf: not read: "));
  Write("b.png", Page().substr(0, 60));
  EXPECT_TRUE(Says("document b.png", 2));
  EXPECT_TRUE(Says("event READER_ERROR_RESOLVED"));
  EXPECT_EQ(Page(), [&] {
    std::ifstream file(folder / "a.png", std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }());
  HaldenReader_Shutdown();
  const std::vector<std::string> calls = session.Calls();
  EXPECT_EQ(std::count_if(calls.begin(), calls.end(),
                          [](const std::string& call) { return call.starts_with("error: "); }),
            1);
  EXPECT_THAT(calls, testing::Contains("error: b.png: the file ends early Error"));
}

TEST_F(WatchedFolder, MayGoAwayAndComeBack) {
  ASSERT_EQ(session.Start(), 0);
  session.WaitFor("DEVICE_CONNECTED Enabled");
  std::filesystem::remove(folder);
  while (session.Calls().size() < 2) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  EXPECT_THAT(session.Calls().back(), HasSubstr("the folder cannot be read"));
  std::filesystem::create_directory(folder);
  session.WaitFor("READER_ERROR_RESOLVED Enabled");
  HaldenReader_Shutdown();
  std::filesystem::remove(folder);
  session.Forget();
  EXPECT_EQ(session.Start(), Code(ReaderResult::SessionUnreadable));
}

#ifndef _WIN32
/// A program that knows nothing of this one.
TEST_F(WatchedFolder, IsFilledByAScannerProgram) {
  if (std::system("scanimage -d test -A >/dev/null 2>&1") != 0) {
    GTEST_SKIP() << "needs scanimage and SANE's test device: scripts/setup scan";
  }
  ASSERT_EQ(session.Start(), 0);
  const std::string command =
      "scanimage -d test --mode Gray --resolution 150 --format=png --batch='" + folder.string() +
      "/page%d.png' --batch-count=2 >/dev/null 2>&1";
  // It answers the last page's status, which its own count ends.
  [[maybe_unused]] const int status = std::system(command.c_str());
  EXPECT_TRUE(Says("document page1.png"));
  EXPECT_TRUE(Says("document page2.png"));
  HaldenReader_Shutdown();
  EXPECT_THAT(session.Calls(), testing::Not(testing::Contains(HasSubstr("error"))));
}
#endif

}  // namespace
}  // namespace conduit
