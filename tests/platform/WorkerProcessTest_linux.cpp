#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "platform/AppendedFile.h"
#include "platform/MemoryFile.h"
#include "platform/WorkerProcess.h"

namespace conduit {
namespace {

constexpr std::chrono::milliseconds Time(100);

TEST(WorkerProcess, AcceptsWritesWhileItReads) {
  WorkerProcess process("/bin/cat");
  EXPECT_EQ(process.Write("request", std::chrono::minutes(1)), 7U);
  char answer[8] = {};
  EXPECT_EQ(process.Read(answer, sizeof answer, std::chrono::minutes(1)), 7U);
  EXPECT_STREQ(answer, "request");

  // cat blocks on its own output when the buffers of both directions are full.
  const std::string bytes(1 << 16, 'x');
  std::optional<std::size_t> taken = 1;
  for (int tries = 0; taken != std::size_t{0} && tries < 1000; ++tries) {
    taken = process.Write(bytes, Time);
  }
  EXPECT_EQ(taken, std::size_t{0});
  process.Kill();
  EXPECT_EQ(process.Write(bytes, Time), std::nullopt);
  EXPECT_EQ(process.WaitForEnd(), "SIGKILL");
}

// Output to a closed standard stream would reach a descriptor that has its number.
TEST(WorkerProcess, UsesNoDescriptorOfAStandardStream) {
  const pid_t child = fork();
  if (child == 0) {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
      close(stream);
    }
    const WorkerProcess process("/bin/cat");
    const auto memory = MemoryFile::Create();
    AppendedFile file;
    file.Open("/dev/null");
    int taken = 0;
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
      taken += fcntl(stream, F_GETFD) >= 0 ? 1 : 0;
    }
    _exit(memory != nullptr && file.IsOpen() ? taken : 100);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace
}  // namespace conduit
