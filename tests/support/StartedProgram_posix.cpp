#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <stdexcept>

#include "tests/support/StartedProgram.h"

namespace {

constexpr EndRequest Requests[] = {{"SIGINT", SIGINT, 130}, {"SIGTERM", SIGTERM, 143}};

int Create(const std::filesystem::path& file) {
  return open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
}

}  // namespace

std::span<const EndRequest> EndRequests() { return Requests; }

struct StartedProgram::Process {
  pid_t number;
};

StartedProgram::StartedProgram(const std::filesystem::path& program,
                               const std::vector<std::string>& arguments,
                               const std::filesystem::path& output,
                               const std::filesystem::path& trouble)
    : process(std::make_unique<Process>()) {
  std::vector<std::string> copies{program.string()};
  copies.insert(copies.end(), arguments.begin(), arguments.end());
  std::vector<char*> words(copies.size() + 1);
  std::ranges::transform(copies, words.begin(), [](std::string& copy) { return copy.data(); });

  // Opened here, not in the child, so that the files are truncated when this returns.
  const int outputFile = Create(output);
  const int troubleFile = Create(trouble);
  process->number = fork();
  if (process->number == 0) {
    dup2(outputFile, STDOUT_FILENO);
    dup2(troubleFile, STDERR_FILENO);
    execv(words[0], words.data());
    _exit(127);
  }
  close(outputFile);
  close(troubleFile);
  if (process->number < 0) {
    throw std::runtime_error("cannot start " + program.string());
  }
}

StartedProgram::~StartedProgram() = default;

bool StartedProgram::HasEnded() const {
  siginfo_t info = {};
  waitid(P_PID, static_cast<id_t>(process->number), &info, WEXITED | WNOHANG | WNOWAIT);
  return info.si_pid == process->number;
}

void StartedProgram::Ask(const EndRequest& request) const { kill(process->number, request.number); }

int StartedProgram::Wait() {
  int status = 0;
  waitpid(process->number, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}
