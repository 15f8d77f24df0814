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

/// All of them, in the order in which they run.
std::span<const Check> AllChecks();

/// Null when there is none of that name.
const Check* FindCheck(const std::string& name);

// Of the library and its two functions.
void CheckExports(const CheckContext& context);
void CheckNullArguments(const CheckContext& context);
void CheckNullTexts(const CheckContext& context);
void CheckNullLogger(const CheckContext& context);
void CheckCreateDestroy(const CheckContext& context);
void CheckLeavesNothing(const CheckContext& context);
void CheckNoProcessIsLeft();

// Of the configuration.
void CheckParameterList(const CheckContext& context);
void CheckParameterValues(const CheckContext& context);
void CheckParameterTexts(const CheckContext& context);
void CheckUnknownParameter(const CheckContext& context);
void CheckUnknownCondition(const CheckContext& context);
void CheckUnknownAction(const CheckContext& context);
void CheckConditionList(const CheckContext& context);

// Of a running reader.
void CheckReaderRefuses(const CheckContext& context);
void CheckShutdownAnyTime(const CheckContext& context);
void CheckShutdownIsFinal(const CheckContext& context);
void CheckShutdownInDelivery(const CheckContext& context);
void CheckSecondStart(const CheckContext& context);
void CheckCalls(const CheckContext& context);
void CheckSessionMemory(const CheckContext& context);
void CheckSessionBrackets(const CheckContext& context);
void CheckSessionItems(const CheckContext& context);
void CheckSessionEvents(const CheckContext& context);
void CheckSessionActions(const CheckContext& context);
void CheckFailedActions(const CheckContext& context);

}  // namespace conduit
