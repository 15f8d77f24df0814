#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/virtual_reader/ReaderSession.h"

namespace conduit {
namespace {

// A host that forks while a session is played has no thread to wait for in its copy, and
// what that copy does is no end of the session.
TEST(Fork, EndsItsCopyOfAReaderAndNotTheSession) {
  ReaderSession session(R"({"steps": [{"event": "DATA_READ"}, {"pause": 3600000}]})");
  session.PlayUntil("DATA_READ Enabled");
  const pid_t child = fork();
  if (child == 0) {
    alarm(60);
    _exit(HaldenReader_Shutdown() + HaldenReader_GetState());
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  EXPECT_EQ(StateName(), "Enabled");
}

}  // namespace
}  // namespace conduit
