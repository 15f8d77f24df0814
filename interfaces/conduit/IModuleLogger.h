#pragma once  // stands alone in C++17

#include <cstdint>

namespace conduit {

/// Where a module writes its log lines; supplied by the host.
///
/// The module never destroys a logger, so the interface has no virtual
/// destructor: it would take a slot of the table that the module calls through.
/// One logger may be called from the host's thread and from several reader
/// threads at once.
class IModuleLogger {
 public:
  /// Reserved: these hold the first four slots of the table. Never called.
  virtual void Reserved1() {}
  virtual void Reserved2() {}
  virtual void Reserved3() {}
  virtual void Reserved4() {}

  /// Writes one line. [any thread]
  ///
  /// The module does no filtering of its own; what to keep is up to the host.
  /// @param level    0 failures and refusals, 1 a request that names no known
  ///                 parameter, 2 the trace of items and events, 3 the trace of
  ///                 configuration
  /// @param tag      the operation that speaks, "Class::Operation"
  /// @param message  the text, without a line end
  /// Both texts are never null and are lent for the duration of the call.
  virtual void Log(std::int32_t level, const char* tag, const char* message) = 0;

 protected:
  ~IModuleLogger() = default;
};

}  // namespace conduit
