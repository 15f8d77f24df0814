#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <thread>

#include "tests/virtual_reader/ReaderSession.h"

namespace conduit {
namespace {

constexpr char LongSession[] = R"({"steps": [{"event": "DATA_READ"}, {"pause": 3600000}]})";
constexpr char LastOfLongSession[] = "DATA_READ Enabled";

TEST(Shutdown, IsHarmlessBeforeTheStartAndTwice) {
  ReaderSession session(LongSession);
  EXPECT_EQ(HaldenReader_Shutdown(), 0);
  session.PlayUntil(LastOfLongSession);
  EXPECT_EQ(HaldenReader_Shutdown(), 0);
  EXPECT_EQ(HaldenReader_Shutdown(), 0);
  EXPECT_EQ(StateName(), "Not Initialised");
  EXPECT_EQ(session.Calls().back(), LastOfLongSession);
}

TEST(Shutdown, EndsTheWaitForTheDevice) {
  ReaderSession session(LongSession);
  ASSERT_EQ(session.Start(), 0);
  EXPECT_EQ(StateName(), "Enabled");
  HaldenReader_Shutdown();
  EXPECT_THAT(session.Calls(), testing::Each("DEVICE_CONNECTED Enabled"));
}

TEST(Shutdown, WaitsForTheCallbackThatIsUnderWay) {
  ReaderSession session(LongSession);
  std::promise<void> entered;
  std::atomic<bool> left = false;
  session.onEvent = [&](ReaderEventCode code) {
    if (code == ReaderEventCode::DataRead) {
      entered.set_value();
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      left = true;
    }
  };
  ASSERT_EQ(session.Start(), 0);
  entered.get_future().wait();
  std::thread other([&] {
    HaldenReader_Shutdown();
    EXPECT_TRUE(left);
  });
  HaldenReader_Shutdown();
  EXPECT_TRUE(left);
  other.join();
}

TEST(Shutdown, FromACallbackLetsNoOtherFollow) {
  ReaderSession session(LongSession);
  std::promise<void> stopped;
  session.onEvent = [&](ReaderEventCode) {
    EXPECT_EQ(HaldenReader_Shutdown(), 0);
    EXPECT_EQ(HaldenReader_Shutdown(), 0);
    EXPECT_EQ(StateName(), "Not Initialised");
    EXPECT_EQ(session.Start(), Code(ReaderResult::AlreadyRunning));
    stopped.set_value();
  };
  ASSERT_EQ(session.Start(), 0);
  stopped.get_future().wait();
  session.onEvent = nullptr;
  // Reaps the thread, however far it has come.
  EXPECT_EQ(session.PlayUntil(LastOfLongSession).size(), 2U);
}

TEST(Shutdown, FromACallbackAndAnotherThreadAtOnce) {
  ReaderSession session(LongSession);
  for (int run = 0; run < 20; ++run) {
    std::promise<void> entered;
    session.onEvent = [&](ReaderEventCode) {
      entered.set_value();
      HaldenReader_Shutdown();
    };
    ASSERT_EQ(session.Start(), 0);
    entered.get_future().wait();
    HaldenReader_Shutdown();
  }
  EXPECT_EQ(session.Calls().size(), 20U);
}

TEST(Shutdown, IsNeededBeforeASecondStart) {
  ReaderSession session(LongSession);
  session.PlayUntil(LastOfLongSession);
  EXPECT_EQ(session.Start(), Code(ReaderResult::AlreadyRunning));
  EXPECT_EQ(StateName(), "Enabled");
}

TEST(Shutdown, MayComeFromTheCallbackThatReportsARefusal) {
  ReaderSession session("no JSON");
  const auto shutDown = [](void*, const ReaderErrorInfo*, void*) { HaldenReader_Shutdown(); };
  EXPECT_NE(HaldenReader_Initialise(nullptr, nullptr, shutDown, nullptr, false, false, nullptr), 0);
  EXPECT_EQ(StateName(), "Not Initialised");
}

}  // namespace
}  // namespace conduit
