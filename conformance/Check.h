#pragma once

#include <chrono>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "conformance/Setting.h"
#include "hosting/ModuleLibrary.h"

namespace conduit {

/// What a check works with.
struct CheckContext {
  const ModuleLibrary& library;
  std::filesystem::path module;          ///< the library's file
  std::filesystem::path session;         ///< for a reader that starts
  std::filesystem::path missingSession;  ///< for a reader that refuses
  std::filesystem::path manyDocuments;   ///< a session of many equal documents
  bool isBuiltIn;                        ///< the session is this program's own
  std::vector<Setting> settings;         ///< what the module's reader needs to start
  std::chrono::milliseconds patience;    ///< how long a session may take
};

/// One rule of the interface that a module is held against. A check runs in a
/// process of its own; it returns when the module passes, and else ends that
/// process by Fail, Warn or Skip.
struct Check {
  const char* name;
  const char* proves;
  void (*run)(const CheckContext& context);
  void (*runUnloaded)() = nullptr;  ///< the rest, once the library is unloaded
};

// Each check stands, with all that belongs to it, in the list of its file.

/// Of the library and its two functions.
std::span<const Check> LibraryChecks();

/// Of the parameters and reactions.
std::span<const Check> ConfigurationChecks();

/// Of a running reader.
std::span<const Check> SessionChecks();

/// All of them, in the order in which they run.
const std::vector<Check>& AllChecks();

/// Null when there is none of that name.
const Check* FindCheck(const std::string& name);

}  // namespace conduit
