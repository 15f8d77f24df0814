#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "platform/ChildProcess.h"

namespace conduit {

namespace {

pid_t Start(const std::filesystem::path& program, const std::vector<std::string>& arguments,
            const std::filesystem::path& folder, const std::filesystem::path& output) {
  std::string name = program.string();
  std::vector<std::string> copies = arguments;
  std::vector<char*> words{name.data()};
  for (std::string& copy : copies) {
    words.push_back(copy.data());
  }
  words.push_back(nullptr);

  posix_spawn_file_actions_t actions = {};
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(),
                                   O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0600);
  posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
  pid_t child = 0;
  const int problem = posix_spawn(&child, name.c_str(), &actions, nullptr, words.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (problem != 0) {
    throw std::runtime_error("cannot start " + name + ": " +
                             std::generic_category().message(problem));
  }
  return child;
}

}  // namespace

ChildOutcome RunChild(const std::filesystem::path& program,
                      const std::vector<std::string>& arguments,
                      const std::filesystem::path& folder, const std::filesystem::path& output,
                      std::chrono::milliseconds limit) {
  const pid_t child = Start(program, arguments, folder, output);
  const auto deadline = std::chrono::steady_clock::now() + limit;
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() >= deadline) {
      kill(child, SIGKILL);
      waitpid(child, &status, 0);
      return {ChildOutcome::End::TimedOut, 0, ""};
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  if (WIFSIGNALED(status)) {
    const char* name = sigabbrev_np(WTERMSIG(status));
    return {ChildOutcome::End::Crashed, 0,
            name ? std::string("SIG") + name : "signal " + std::to_string(WTERMSIG(status))};
  }
  return {ChildOutcome::End::Exited, WEXITSTATUS(status), ""};
}

}  // namespace conduit
