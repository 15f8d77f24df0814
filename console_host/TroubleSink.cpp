#include "console_host/TroubleSink.h"

#include "hosting/Utf8.h"
#include <conduit/MessageLevel.h>
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

constexpr const char* Prefix = "conduit: ";

struct ResultMeaning {
  std::int32_t result;
  const char* text;
};

/// As the calls of a host answer; their codes do not overlap.
constexpr ResultMeaning ResultMeanings[] = {
    {ResultUnknownParameter, "no parameter has that name"},
    {ResultUnknownCondition, "no such condition"},
    {ResultUnknownAction, "no such action"},
    {ResultValueMissing, "a value is required"},
    {ResultInvalidValue, "the value breaks a rule"},
    {ResultReaderNotStarted, "the reader or its library refused"},
};

std::string Explained(std::int32_t result) {
  std::string text = "result " + std::to_string(result);
  for (const ResultMeaning& meaning : ResultMeanings) {
    if (meaning.result == result) {
      text += std::string(": ") + meaning.text;
    }
  }
  return text;
}

}  // namespace

TroubleSink::TroubleSink(std::ostream& output, TroubleSinkOptions options)
    : output(output), options(options) {}

void TroubleSink::OnLogLine(const LogLine& line) {
  const bool toldElsewhere = line.again == SaidAgain::AsFailure ||
                             (line.again == SaidAgain::AsError && !options.readerErrors);
  if (line.level <= MessageFailure && options.log && !toldElsewhere) {
    output << Prefix << Escaped(line.tag) << ": " << Escaped(line.message) << std::endl;
  }
}

void TroubleSink::OnCallReturned(const CallReturned& call) {
  if (call.result == ResultSuccess) {
    return;
  }
  output << Prefix << call.failure << " (" << Explained(call.result) << ")\n";
  for (const std::string& reason : call.reasons) {
    output << "  " << Escaped(reason) << '\n';
  }
  output.flush();
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
