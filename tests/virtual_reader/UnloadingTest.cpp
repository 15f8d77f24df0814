#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <memory>
#include <thread>

#include "platform/SharedLibrary.h"
#include "tests/virtual_reader/ReaderSession.h"

namespace conduit {
namespace {

TEST(Unloading, NeedsNoShutdownBefore) {
  // A thread left behind would wake up in code that is gone, and on Windows nobody can
  // wait for it meanwhile: there the library stays until the thread has ended.
  ReaderSession session(R"({"steps": [{"event": "DATA_READ"}, {"pause": 30}]})");
  // A copy is a library of its own; the one that is linked to stays loaded.
  const std::filesystem::path copy = session.folder / "reader.so";
  std::filesystem::copy_file(READER_LIBRARY, copy);
  auto library = std::make_unique<SharedLibrary>(copy);
  const auto initialise =
      library->Find<decltype(&HaldenReader_Initialise)>("HaldenReader_Initialise");
  static std::atomic<int> events = 0;
  const auto count = [](void*, ReaderEventCode) { ++events; };
  ASSERT_EQ(initialise(nullptr, count, nullptr, nullptr, false, false, nullptr), 0);
  while (events < 2) {
    std::this_thread::yield();
  }
  library.reset();
  std::this_thread::sleep_for(std::chrono::milliseconds(60));
}

#if !defined(_WIN32)
constexpr char LongSession[] = R"({"steps": [{"event": "DATA_READ"}, {"pause": 3600000}]})";
constexpr char LastOfLongSession[] = "DATA_READ Enabled";

/// A host's object that is destroyed after the reader library let go of everything.
struct LateHost {
  LateHost() = default;
  LateHost(const LateHost&) = delete;
  LateHost& operator=(const LateHost&) = delete;
  ~LateHost() { HaldenReader_Shutdown(); }
};

TEST(UnloadingDeathTest, EndOfTheProcessNeedsNoShutdownBefore) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  ReaderSession session(LongSession);
  const auto whilePlaying = [&] {
    static const LateHost host;
    session.PlayUntil(LastOfLongSession);
    std::exit(0);
  };
  const auto afterShutdownInACallback = [&] {
    std::promise<void> stopped;
    session.onEvent = [&](ReaderEventCode) {
      HaldenReader_Shutdown();
      stopped.set_value();
    };
    session.Start();
    stopped.get_future().wait();
    std::exit(0);
  };
  const auto insideACallback = [&] {
    session.onEvent = [](ReaderEventCode) { std::exit(0); };
    session.PlayUntil("never");
  };
  EXPECT_EXIT(whilePlaying(), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(afterShutdownInACallback(), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(insideACallback(), testing::ExitedWithCode(0), "");
}
#endif

}  // namespace
}  // namespace conduit
