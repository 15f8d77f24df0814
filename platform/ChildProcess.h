#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace conduit {

/// How a child process ended.
struct ChildOutcome {
  enum class End { Exited, Crashed, TimedOut, Interrupted };

  End end;
  int status;         ///< the exit status, for Exited
  std::string cause;  ///< the system's name of the crash: "SIGSEGV"
};

/// Runs a program and waits for it. Kills it after `limit`, and when this process is
/// asked to end (see Interrupt.h). The child's own children do not outlive it, and
/// the child does not outlive this process. Throws std::runtime_error with the
/// system's reason when the program does not start.
///
/// REQUIRES: called on the program's first thread; this process has no other
/// children.
/// @param arguments  after the program's name, in UTF-8
/// @param folder     the child's working folder
/// @param output     receives the child's standard output and standard error
ChildOutcome RunChild(const std::filesystem::path& program,
                      const std::vector<std::string>& arguments,
                      const std::filesystem::path& folder, const std::filesystem::path& output,
                      std::chrono::milliseconds limit);

}  // namespace conduit
