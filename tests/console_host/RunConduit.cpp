#include "RunConduit.h"

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

std::string Contents(std::FILE* file) {
  std::string contents;
  char buffer[4096];
  const int descriptor = fileno(file);
  for (off_t at = 0;;) {
    const ssize_t count = pread(descriptor, buffer, sizeof buffer, at);
    if (count <= 0) {
      return contents;
    }
    contents.append(buffer, static_cast<std::size_t>(count));
    at += count;
  }
}

[[noreturn]] void Become(const std::vector<std::string>& arguments, std::FILE* output,
                         std::FILE* trouble) {
  dup2(fileno(output), STDOUT_FILENO);
  dup2(fileno(trouble), STDERR_FILENO);
  std::vector<char*> words;
  static std::string program = CONDUIT;
  words.push_back(program.data());
  for (const std::string& argument : arguments) {
    words.push_back(const_cast<char*>(argument.data()));
  }
  words.push_back(nullptr);
  execv(program.c_str(), words.data());
  _exit(127);
}

}  // namespace

Outcome RunConduit(const std::vector<std::string>& arguments, const std::string& script,
                   const Interruption& interruption, const char* outputFile) {
  setenv("FAKE_MODULE_SCRIPT", script.c_str(), 1);
  std::FILE* output = outputFile ? std::fopen(outputFile, "w") : std::tmpfile();
  std::FILE* trouble = std::tmpfile();
  const pid_t child = fork();
  if (child == 0) {
    Become(arguments, output, trouble);
  }

  if (interruption.signal != 0) {
    const auto ended = [child] {
      siginfo_t info = {};
      waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT);
      return info.si_pid == child;
    };
    while (Contents(output).find(interruption.after) == std::string::npos && !ended()) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    kill(child, interruption.signal);
  }
  int status = 0;
  waitpid(child, &status, 0);
  Outcome outcome{WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), Contents(output),
                  Contents(trouble)};
  std::fclose(output);
  std::fclose(trouble);
  return outcome;
}
