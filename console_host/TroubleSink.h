#pragma once

#include <ostream>

#include "hosting/RunListener.h"

namespace conduit {

struct TroubleSinkOptions {
  bool log = true;           ///< false when the module's log is shown elsewhere
  bool readerErrors = true;  ///< false when whoever reads this sees them elsewhere
};

/// Tells what went wrong, each thing once and with its reason: a line that the module
/// logs of a failure is left out where the failed call or a reader error says the same.
class TroubleSink final : public RunListener {
 public:
  /// REQUIRES: `output` outlives the sink.
  TroubleSink(std::ostream& output, TroubleSinkOptions options);

  void OnCallReturned(const CallReturned& call) override;
  void OnWarning(const Warned& warning) override;
  void OnLogLine(const LogLine& line) override;
  void OnRunEnded(const RunEnded& end) override;

 private:
  std::ostream& output;
  const TroubleSinkOptions options;
};

}  // namespace conduit
