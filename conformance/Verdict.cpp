#include "conformance/Verdict.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <iostream>

#include "hosting/Utf8.h"

namespace conduit {
namespace {

constexpr std::string_view Mark = "conduit-verdict ";

constexpr const char* StatusNames[] = {"passed", "warning", "failed", "skipped"};

[[noreturn]] void EndWith(const Verdict& verdict) {
  Announce(verdict);
  std::_Exit(EXIT_SUCCESS);
}

}  // namespace

const char* NameOf(Verdict::Status status) { return StatusNames[static_cast<int>(status)]; }

/// Begins with a line end, because the module may have written half a line.
void Announce(const Verdict& verdict) {
  std::cout << '\n'
            << Mark << NameOf(verdict.status) << ' ' << EscapedPaths(verdict.reason) << std::endl;
}

Verdict FindVerdict(std::string_view output) {
  Verdict verdict{Verdict::Status::Failed, ""};
  while (!output.empty()) {
    std::string_view line = output.substr(0, output.find('\n'));
    output.remove_prefix(std::min(output.size(), line.size() + 1));
    if (line.ends_with('\r')) {
      line.remove_suffix(1);
    }
    if (!line.starts_with(Mark)) {
      continue;
    }
    line.remove_prefix(Mark.size());
    for (const auto status : {Verdict::Status::Passed, Verdict::Status::Warning,
                              Verdict::Status::Failed, Verdict::Status::Skipped}) {
      const std::string_view name = NameOf(status);
      if (line.starts_with(name)) {
        verdict = {status, std::string(line.substr(std::min(line.size(), name.size() + 1)))};
      }
    }
  }
  return verdict;
}

void Fail(const std::string& reason) { EndWith({Verdict::Status::Failed, reason}); }

void Skip(const std::string& reason) { EndWith({Verdict::Status::Skipped, reason}); }

void Warn(const std::string& reason) { EndWith({Verdict::Status::Warning, reason}); }

void RequireResult(const std::string& call, std::int32_t expected, std::int32_t result) {
  if (result != expected) {
    Fail(call + " answered " + std::to_string(result) + " instead of " + std::to_string(expected));
  }
}

}  // namespace conduit
