#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "console_host/Happening.h"

namespace conduit {

/// Tells what went wrong, each thing once and with its reason. The module's log
/// lines of failures are held while the host calls it, because they are the
/// reasons if the call fails.
class TroubleSink final : public ISink {
 public:
  /// REQUIRES: `output` outlives the sink.
  /// @param showsLog  whether to tell the module's failures; false when its log
  ///                  is shown elsewhere
  TroubleSink(std::ostream& output, bool showsLog);

  void Receive(const Happening& happening) override;

 private:
  void Tell(const LogLine& line);
  void Tell(const CallReturned& call);

  std::ostream& output;
  const bool showsLog;
  bool callUnderWay = false;
  std::vector<LogLine> held;
};

}  // namespace conduit
