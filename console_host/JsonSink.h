#pragma once

#include <ostream>

#include "console_host/Happening.h"

namespace conduit {

/// Tells a run to programs: one JSON object a line, written out at once, as
/// docs/json-output.md describes.
class JsonSink final : public ISink {
 public:
  /// REQUIRES: `output` outlives the sink.
  /// @param logLevel  the highest level of log lines to give; -1 for none
  JsonSink(std::ostream& output, std::int32_t logLevel);

  /// Throws a std::runtime_error when `output` takes nothing any more.
  void Receive(const Happening& happening) override;

 private:
  std::ostream& output;
  const std::int32_t logLevel;
};

}  // namespace conduit
