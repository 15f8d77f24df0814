#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <iterator>
#include <mutex>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "platform/Descriptor_posix.h"
#include "platform/WorkerProcess.h"

namespace conduit {
namespace {

[[noreturn]] void Refuse(const std::filesystem::path& program, int problem) {
  throw std::runtime_error("cannot start " + program.string() + ": " +
                           std::generic_category().message(problem));
}

/// The file descriptors, session and signals of a new process.
class SpawnSetting {
 public:
  explicit SpawnSetting(int channel) {
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, channel, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, channel, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);

    posix_spawnattr_init(&attributes);
    // A session of its own: only this process receives a Ctrl-C.
    posix_spawnattr_setflags(
        &attributes,
        static_cast<short>(POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
  }
  ~SpawnSetting() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }
  SpawnSetting(const SpawnSetting&) = delete;
  SpawnSetting& operator=(const SpawnSetting&) = delete;

  int Spawn(const std::filesystem::path& program, pid_t* process) const {
    std::string name = program.string();
    char* const words[] = {name.data(), nullptr};
    return posix_spawn(process, name.c_str(), &actions, &attributes, words, environ);
  }

 private:
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
};

/// Waits until the channel is ready and transfers bytes. Returns std::nullopt at its end.
template <typename Moving>
std::optional<std::size_t> Transfer(int channel, short readiness, std::chrono::milliseconds time,
                                    const Moving& move) {
  pollfd wait = {channel, readiness, 0};
  if (poll(&wait, 1, static_cast<int>(time.count())) <= 0) {
    return 0;
  }
  const ssize_t count = move(channel);
  if (count > 0) {
    return static_cast<std::size_t>(count);
  }
  return count < 0 && (errno == EAGAIN || errno == EINTR) ? std::optional<std::size_t>(0)
                                                          : std::nullopt;
}

std::string DescribeEnd(int status) {
  if (!WIFSIGNALED(status)) {
    return "exit status " + std::to_string(WEXITSTATUS(status));
  }
  const char* const name = sigabbrev_np(WTERMSIG(status));
  return name != nullptr ? std::string("SIG") + name : "signal " + std::to_string(WTERMSIG(status));
}

}  // namespace

struct WorkerProcess::State {
  // A socket, not a pipe: MSG_NOSIGNAL suppresses SIGPIPE when the process has ended.
  int channel = -1;
  pid_t process = -1;
  std::mutex mutex;
  bool reaped = false;  ///< guarded by mutex; the system may then reuse the process id
  std::string end;
};

WorkerProcess::WorkerProcess(const std::filesystem::path& program)
    : state(std::make_unique<State>()) {
  int ends[2] = {-1, -1};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
    Refuse(program, errno);
  }
  for (int& end : ends) {
    end = AboveStandardStreams(end);
  }
  state->channel = ends[0];
  const int problem =
      ends[0] < 0 || ends[1] < 0 ? errno : SpawnSetting(ends[1]).Spawn(program, &state->process);
  close(ends[1]);
  if (problem != 0) {
    close(ends[0]);
    Refuse(program, problem);
  }
}

WorkerProcess::~WorkerProcess() {
  Kill();
  WaitForEnd();
  close(state->channel);
}

std::optional<std::size_t> WorkerProcess::Write(std::string_view bytes,
                                                std::chrono::milliseconds time) {
  return Transfer(state->channel, POLLOUT, time, [&](int channel) {
    return send(channel, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  });
}

std::optional<std::size_t> WorkerProcess::Read(char* bytes, std::size_t most,
                                               std::chrono::milliseconds time) {
  return Transfer(state->channel, POLLIN, time,
                  [&](int channel) { return recv(channel, bytes, most, MSG_DONTWAIT); });
}

void WorkerProcess::Kill() {
  {
    const std::lock_guard lock(state->mutex);
    if (!state->reaped) {
      kill(state->process, SIGKILL);
    }
  }
  shutdown(state->channel, SHUT_RDWR);
}

std::chrono::milliseconds WorkerProcess::ProcessorTime() const {
  clockid_t clock = {};
  timespec time = {};
  if (clock_getcpuclockid(state->process, &clock) != 0 || clock_gettime(clock, &time) != 0) {
    return {};
  }
  return std::chrono::seconds(time.tv_sec) + std::chrono::duration_cast<std::chrono::milliseconds>(
                                                 std::chrono::nanoseconds(time.tv_nsec));
}

std::string WorkerProcess::WaitForEnd() {
  siginfo_t ignored = {};
  const auto process = static_cast<id_t>(state->process);
  // Waits without the lock, which Kill needs, and with WNOWAIT, which keeps the process id.
  while (!state->reaped && waitid(P_PID, process, &ignored, WEXITED | WNOWAIT) != 0 &&
         errno == EINTR) {
  }
  const std::lock_guard lock(state->mutex);
  if (!state->reaped) {
    int status = 0;
    // A host that waits for all its children may have taken the status.
    state->end = waitpid(state->process, &status, WNOHANG) == state->process ? DescribeEnd(status)
                                                                             : "unknown status";
    state->reaped = true;
  }
  return state->end;
}

void BecomeWorker() {
  // Also polls the starter's pidfd: a fork of the starter may keep the channel open. The
  // socket has its process ID; getppid() returns another one once the starter has ended.
  ucred creator = {};
  socklen_t size = sizeof creator;
  getsockopt(STDIN_FILENO, SOL_SOCKET, SO_PEERCRED, &creator, &size);
  const auto starter = static_cast<int>(syscall(SYS_pidfd_open, creator.pid, 0));
  if (starter < 0 && errno == ESRCH) {
    _exit(0);
  }
  std::thread([starter] {
    pollfd ends[] = {{STDIN_FILENO, POLLRDHUP, 0}, {starter, POLLIN, 0}};
    while (poll(ends, std::size(ends), -1) < 0 && errno == EINTR) {
    }
    _exit(0);
  }).detach();
}

}  // namespace conduit
