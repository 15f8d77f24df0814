#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "hosting/LoadedModule.h"

namespace conduit {

/// Points to a text that no module has: an out-parameter that still holds it was
/// not written.
extern const char* const Unwritten;

/// An out-parameter between words that a module must not touch.
struct GuardedText {
  const char* before[2] = {Unwritten, Unwritten};
  const char* text = Unwritten;
  const char* after[2] = {Unwritten, Unwritten};

  bool IsWritten() const { return text != Unwritten; }

  /// Fails the check when the words beside the out-parameter changed.
  void RequireGuards(const std::string& operation) const;
};

/// What one of the module's lists gives for an index; null where it writes nothing.
struct ListEntry {
  const char* name = nullptr;
  const char* value = nullptr;
};

using ListReader = void (IInputModule::*)(std::int32_t index, const char** name,
                                          const char** value);

/// Fails the check when the list writes anything for an index out of range or a
/// null pointer.
void RequireNothingWritten(const LoadedModule& module, ListReader read, std::int32_t count,
                           const std::string& operation);

ListEntry ReadEntry(const LoadedModule& module, ListReader read, std::int32_t index,
                    const std::string& operation);

/// What a module does often in its life, each of it with something to log.
void Exercise(const LoadedModule& module);

/// The parameters' names; a name that is null is left out.
std::vector<std::string> ParameterNames(const LoadedModule& module);

}  // namespace conduit
