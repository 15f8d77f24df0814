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
  int status;         ///< of one that exited
  std::string cause;  ///< of a crash, by the system's name: "SIGSEGV"
};

/// Runs a program and waits for it; one that takes longer than `limit` is
/// killed, and so is one that runs when this process is asked to end (see
/// Interrupt.h). What the child started itself does not outlive it, and the child
/// does not outlive this process. Throws a std::runtime_error with the system's
/// reason when it cannot be started.
///
/// REQUIRES: called on the program's first thread; this process has no other
/// children.
/// @param arguments  after the program's name, in UTF-8
/// @param folder     the child's working folder
/// @param output     the file that receives what the child writes to its
///                   standard output and standard error
ChildOutcome RunChild(const std::filesystem::path& program,
                      const std::vector<std::string>& arguments,
                      const std::filesystem::path& folder, const std::filesystem::path& output,
                      std::chrono::milliseconds limit);

}  // namespace conduit
