#pragma once

#include <ostream>

#include "hosting/Happening.h"

namespace conduit {

struct JsonSinkOptions {
  std::int32_t logLevel = -1;  ///< the highest level of log lines to give; -1 for none
  bool data = false;           ///< whether to give the bytes of binary items
};

/// Tells a run to programs: one JSON object a line, written out at once, as
/// docs/json-output.md describes.
class JsonSink final : public ISink {
 public:
  /// REQUIRES: `output` outlives the sink.
  JsonSink(std::ostream& output, JsonSinkOptions options);

  /// Throws a std::runtime_error when `output` takes nothing any more.
  void Receive(const Happening& happening) override;

 private:
  std::ostream& output;
  const JsonSinkOptions options;
};

}  // namespace conduit
