#pragma once

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

/// A way in which this system lets a user end a program on a console.
struct EndRequest {
  const char* name;
  int number;  ///< the system's own
  int status;  ///< the exit status of a program that stops its reader first
};

std::span<const EndRequest> EndRequests();

/// A program that runs beside the test.
class StartedProgram {
 public:
  /// Throws a std::runtime_error when it cannot be started.
  /// @param output   the files that receive what it writes
  StartedProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                 const std::filesystem::path& output, const std::filesystem::path& trouble);
  /// REQUIRES: Wait has returned.
  ~StartedProgram();
  StartedProgram(const StartedProgram&) = delete;
  StartedProgram& operator=(const StartedProgram&) = delete;

  bool HasEnded() const;
  void Ask(const EndRequest& request) const;

  /// @returns the exit status; of a program that crashed a negative number
  int Wait();

 private:
  struct Process;
  const std::unique_ptr<Process> process;
};
