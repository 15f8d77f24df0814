#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#include "tests/console_host/RunConduit.h"
#include "tests/samples/PseudoTerminal.h"

namespace conduit {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr std::chrono::milliseconds Moment(5);

std::string ContentsOf(const std::string& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void WaitFor(const std::string& file, const std::string& text) {
  for (int moments = 0; moments < 2000 && ContentsOf(file).find(text) == std::string::npos;
       ++moments) {
    std::this_thread::sleep_for(Moment);
  }
}

TEST(SerialLineProcess, ShowsLinesUntilThePortVanishes) {
  if (!PseudoTerminal::IsAvailable()) {
    GTEST_SKIP() << "this system has no pseudo-terminal";
  }
  const std::string output = TEST_FOLDER "/serial-lines.txt";
  std::ofstream(output).close();
  PseudoTerminal terminal;
  std::thread device([&] {
    WaitFor(output, "event   DEVICE_CONNECTED\nstate ");
    terminal.Write("hello\r\n");
    WaitFor(output, "END_OF_DOCUMENT_DATA\nstate ");
    terminal.Unplug();
  });
  const Outcome outcome =
      RunConduit({"run", "--module", MODULE_FILE, "--set", "Port=" + terminal.name, "--set",
                  "BaudRate=115200", "--on", "START_OF_DOCUMENT_DATA=greet"},
                 "", {}, output.c_str());
  device.join();
  EXPECT_EQ(ContentsOf(output),
            "run     SerialLineModule.so\n"
            "state   Enabled\n"
            "event   DEVICE_CONNECTED\n"
            "state   Enabled\n"
            "script  greet\n"
            "begin\n"
            "  event   START_OF_DOCUMENT_DATA\n"
            "  state   Reading\n"
            "  SERIAL_LINE                           hello\n"
            "end\n"
            "event   END_OF_DOCUMENT_DATA\n"
            "state   Enabled\n"
            "event   DEVICE_DISCONNECTED\n"
            "state   Error\n"
            "ERROR   serial port " +
                terminal.name +
                " is gone\n"
                "state   Terminated\n"
                "stop    the reader has terminated\n");
  EXPECT_EQ(outcome.status, 0) << outcome.trouble;
}

#if defined(VALIDATES)
TEST(SerialLineProcess, FollowsTheInterface) {
  if (!PseudoTerminal::IsAvailable()) {
    GTEST_SKIP() << "this system has no pseudo-terminal";
  }
  const PseudoTerminal terminal;
  std::atomic<bool> stop = false;
  std::thread device([&] {
    while (!stop) {
      terminal.WriteWhatFits("4006381333931\r\n");
      std::this_thread::sleep_for(Moment);
    }
  });
  const Outcome outcome =
      RunConduit({"validate", MODULE_FILE, "--timeout", "2", "--set", "Port=" + terminal.name});
  stop = true;
  device.join();
  EXPECT_THAT(outcome.output,
              AllOf(HasSubstr("23 passed, 0 warnings, 0 failed, 2 skipped\n"),
                    HasSubstr("skipped reader-refuses       the module's reader does not play"),
                    HasSubstr("skipped session-memory       as reader-refuses\n")));
  EXPECT_EQ(outcome.status, 0) << outcome.trouble;
}
#endif

}  // namespace
}  // namespace conduit
