#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "hosting/Happening.h"

namespace conduit {

struct TroubleSinkOptions {
  bool log = true;           ///< false when the module's log is shown elsewhere
  bool readerErrors = true;  ///< false when whoever reads this sees them elsewhere
};

/// Tells what went wrong, each thing once and with its reason. The module's log
/// lines of failures are held while the host calls it, because they are the
/// reasons if the call fails, and else until the next happening, which may say
/// the same.
class TroubleSink final : public ISink {
 public:
  /// REQUIRES: `output` outlives the sink.
  TroubleSink(std::ostream& output, TroubleSinkOptions options);

  void Receive(const Happening& happening) override;

 private:
  void Hold(const LogLine& line);
  void TellHeld(const ErrorReported* error);
  void Tell(const CallReturned& call);

  std::ostream& output;
  const TroubleSinkOptions options;
  bool callUnderWay = false;
  std::vector<LogLine> held;
};

}  // namespace conduit
