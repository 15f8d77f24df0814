#include "console_host/TroubleSink.h"

#include "hosting/ModuleRun.h"
#include "hosting/Utf8.h"
#include <conduit/MessageLevel.h>
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

constexpr const char* Prefix = "conduit: ";

}  // namespace

TroubleSink::TroubleSink(std::ostream& output, TroubleSinkOptions options)
    : output(output), options(options) {}

void TroubleSink::OnLogLine(const LogLine& line) {
  const bool toldElsewhere = line.again == SaidAgain::AsFailure ||
                             (line.again == SaidAgain::AsError && !options.readerErrors);
  if (line.level <= MessageFailure && options.log && !toldElsewhere) {
    output << Prefix << Escaped(line.tag) << ": " << EscapedPaths(line.message) << std::endl;
  }
}

void TroubleSink::OnCallReturned(const CallReturned& call) {
  if (call.result != ResultSuccess) {
    output << Prefix << FailureText(call) << std::endl;
  }
}

void TroubleSink::OnWarning(const Warned& warning) {
  output << Prefix << "warning: " << warning.message << std::endl;
}

void TroubleSink::OnRunEnded(const RunEnded& end) {
  if (!end.message.empty()) {
    output << Prefix << end.message << std::endl;
  }
}

}  // namespace conduit
