#pragma once

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

/// A request by which a user ends a console program on this system.
struct EndRequest {
  const char* name;
  int number;  ///< the system's signal or event number
  int status;  ///< the exit status of a program that stops its reader first
};

std::span<const EndRequest> EndRequests();

/// A program that runs concurrently with the test.
class StartedProgram {
 public:
  /// Throws std::runtime_error when the program does not start.
  /// @param output   the files that receive its output
  StartedProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                 const std::filesystem::path& output, const std::filesystem::path& trouble);
  /// REQUIRES: Wait has returned.
  ~StartedProgram();
  StartedProgram(const StartedProgram&) = delete;
  StartedProgram& operator=(const StartedProgram&) = delete;

  bool HasEnded() const;
  void Ask(const EndRequest& request) const;

  /// @returns the exit status; a negative number when the program crashed
  int Wait();

 private:
  struct Process;
  const std::unique_ptr<Process> process;
};
