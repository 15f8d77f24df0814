#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "platform/ChildProcess.h"
#include "platform/Interrupt.h"
#include "platform/ProcessResources.h"

namespace conduit {
namespace {

/// Executes the program in the forked child; returns on failure. Calls only
/// async-signal-safe functions, as a fork requires.
void Become(char* const* words, const char* folder, const char* output, pid_t parent) {
  setsid();  // only the parent receives a Ctrl-C
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) {
    _exit(EXIT_FAILURE);  // the parent ended before prctl
  }
  signal(SIGPIPE, SIG_DFL);
  const int input = open("/dev/null", O_RDONLY);
  const int file = open(output, O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0600);
  if (input < 0 || file < 0 || chdir(folder) != 0) {
    return;
  }
  dup2(input, STDIN_FILENO);
  dup2(file, STDOUT_FILENO);
  dup2(file, STDERR_FILENO);
  close(input);
  close(file);
  execv(words[0], words);
}

pid_t Start(const std::filesystem::path& program, const std::vector<std::string>& arguments,
            const std::filesystem::path& folder, const std::filesystem::path& output) {
  std::string name = program.string();
  std::vector<std::string> copies = arguments;
  std::vector<char*> words{name.data()};
  for (std::string& copy : copies) {
    words.push_back(copy.data());
  }
  words.push_back(nullptr);

  // A successful exec closes this pipe; a failed one writes its errno.
  int ends[2] = {-1, -1};
  const pid_t parent = getpid();
  const pid_t child = pipe2(ends, O_CLOEXEC) == 0 ? fork() : -1;
  if (child == 0) {
    Become(words.data(), folder.c_str(), output.c_str(), parent);
    const int problem = errno;
    [[maybe_unused]] const ssize_t told = write(ends[1], &problem, sizeof problem);
    _exit(EXIT_FAILURE);
  }
  int problem = child < 0 ? errno : 0;
  close(ends[1]);
  if (child > 0 && read(ends[0], &problem, sizeof problem) > 0) {
    waitpid(child, nullptr, 0);
  }
  close(ends[0]);
  if (problem != 0) {
    throw std::runtime_error("cannot start " + name + ": " +
                             std::generic_category().message(problem));
  }
  return child;
}

/// Kills every descendant of the child: when a parent ends, its children become
/// children of this process.
void KillDescendants() {
  while (waitpid(-1, nullptr, WNOHANG) >= 0) {
    for (const pid_t descendant : ChildProcesses()) {
      kill(descendant, SIGKILL);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

/// Waits for the child.
/// @returns Interrupted or TimedOut when it killed the child, else Exited.
ChildOutcome::End WaitFor(pid_t child, std::chrono::milliseconds limit, int& status) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  while (waitpid(child, &status, WNOHANG) == 0) {
    const bool interrupted = InterruptStatus() != 0;
    if (interrupted || std::chrono::steady_clock::now() >= deadline) {
      kill(child, SIGKILL);
      waitpid(child, &status, 0);
      return interrupted ? ChildOutcome::End::Interrupted : ChildOutcome::End::TimedOut;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return ChildOutcome::End::Exited;
}

}  // namespace

ChildOutcome RunChild(const std::filesystem::path& program,
                      const std::vector<std::string>& arguments,
                      const std::filesystem::path& folder, const std::filesystem::path& output,
                      std::chrono::milliseconds limit) {
  AdoptOrphans();
  const pid_t child = Start(program, arguments, folder, output);
  int status = 0;
  const ChildOutcome::End end = WaitFor(child, limit, status);
  KillDescendants();
  if (end != ChildOutcome::End::Exited) {
    return {end, 0, ""};
  }
  if (WIFSIGNALED(status)) {
    const char* name = sigabbrev_np(WTERMSIG(status));
    return {
        ChildOutcome::End::Crashed, 0,
        name != nullptr ? std::string("SIG") + name : "signal " + std::to_string(WTERMSIG(status))};
  }
  return {ChildOutcome::End::Exited, WEXITSTATUS(status), ""};
}

}  // namespace conduit
