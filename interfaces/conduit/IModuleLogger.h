#pragma once  // self-contained; C++17

#include <cstdint>

namespace conduit {

/// Receives a module's log lines; supplied by the host.
///
/// The module never destroys a logger, so the interface has no virtual
/// destructor: it would take a slot of the vtable that the module calls through.
/// The host's thread and several reader threads may call one logger at once.
class IModuleLogger {
 public:
  /// Reserved: these occupy the first four vtable slots. Never called.
  virtual void Reserved1() {}
  virtual void Reserved2() {}
  virtual void Reserved3() {}
  virtual void Reserved4() {}

  /// Writes one line. [any thread]
  ///
  /// The module does not filter: the host decides which lines to keep.
  /// @param level    0 failures and refusals, 1 a request that names no known
  ///                 parameter, 2 the trace of items and events, 3 the trace of
  ///                 configuration
  /// @param tag      the operation that logs, "Class::Operation"
  /// @param message  the text, without a line end
  /// Neither text is null; both are valid for the duration of the call.
  virtual void Log(std::int32_t level, const char* tag, const char* message) = 0;

 protected:
  ~IModuleLogger() = default;
};

}  // namespace conduit
