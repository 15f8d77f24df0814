#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "conformance/Check.h"
#include "conformance/Verdict.h"
#include "hosting/TemporaryFolder.h"

namespace conduit {

struct CheckOptions {
  std::string module;
  std::string session;                ///< empty for one of this program's own
  std::vector<std::string> settings;  ///< NAME=VALUE
  int timeout = 10;                   ///< seconds

  // In the process of one check.
  std::string runCheck;       ///< its name
  std::string manyDocuments;  ///< a session
  bool builtIn = false;       ///< the session is this program's own
};

/// Runs checks, each in a process of its own: `conduit validate` with the options of one.
class CheckRunner {
 public:
  explicit CheckRunner(const CheckOptions& options);

  /// @param check  null to see no more than whether the module can be loaded and takes the
  ///               settings
  /// @returns none when this program is asked to end.
  std::optional<Verdict> Run(const Check* check) const;

 private:
  const TemporaryFolder folder;
  const std::filesystem::path module;
  const std::filesystem::path session;
  const std::filesystem::path manyDocuments;
  const bool isBuiltIn;
  const std::vector<std::string> settings;
  const std::chrono::seconds timeout;
};

/// In the process of one check. What a module throws is its fault, and so is
/// what happens while its library is unloaded: the verdict comes last.
int RunCheckHere(const CheckOptions& options);

}  // namespace conduit
