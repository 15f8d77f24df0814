#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace conduit {

/// What a check finds, as it travels from the process that runs the check to the
/// one that reports it: the last line of its output that begins with the mark.
struct Verdict {
  enum class Status { Passed, Warning, Failed, Skipped };

  Status status;
  std::string reason;  ///< empty for a check that passed
};

/// "passed", "warning", "failed", "skipped".
const char* NameOf(Verdict::Status status);

/// Writes the verdict to standard output.
void Announce(const Verdict& verdict);

/// The verdict among what a process wrote; failed, without a reason, when there
/// is none.
Verdict FindVerdict(std::string_view output);

/// These announce the verdict and end the process there and then: a module that
/// breaks the contract may not survive being stopped and destroyed, and its
/// crash would hide the reason.
[[noreturn]] void Fail(const std::string& reason);
[[noreturn]] void Skip(const std::string& reason);
[[noreturn]] void Warn(const std::string& reason);

/// Fails unless a call gave the expected result.
/// @param call  "SetParameter of an unknown name"
void RequireResult(const std::string& call, std::int32_t expected, std::int32_t result);

}  // namespace conduit
