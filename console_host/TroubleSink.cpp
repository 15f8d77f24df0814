#include "console_host/TroubleSink.h"

#include "hosting/Utf8.h"
#include "interfaces/ResultCode.h"

namespace conduit {

namespace {

constexpr std::int32_t FailureLevel = 0;
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
    {ResultReaderNotStarted, "the reader library refused"},
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

void TroubleSink::Receive(const Happening& happening) {
  const auto* line = std::get_if<LogLine>(&happening);
  if (!line && !callUnderWay) {
    TellHeld(std::get_if<ErrorReported>(&happening));
  }
  if (line) {
    Hold(*line);
  }
  if (std::holds_alternative<CallBegan>(happening)) {
    callUnderWay = true;
  }
  if (const auto* call = std::get_if<CallReturned>(&happening)) {
    Tell(*call);
  }
  if (const auto* warning = std::get_if<Warned>(&happening)) {
    output << Prefix << "warning: " << warning->message << '\n';
  }
  if (const auto* end = std::get_if<RunEnded>(&happening); end && !end->message.empty()) {
    output << Prefix << end->message << '\n';
  }
  output.flush();
}

void TroubleSink::Hold(const LogLine& line) {
  if (line.level <= FailureLevel && options.log) {
    held.push_back(line);
  }
}

void TroubleSink::TellHeld(const ErrorReported* error) {
  for (const LogLine& line : held) {
    const bool repeats = error && !options.readerErrors && !error->text.empty() &&
                         line.message.find(error->text) != std::string::npos;
    if (!repeats) {
      output << Prefix << Escaped(line.tag) << ": " << Escaped(line.message) << '\n';
    }
  }
  held.clear();
}

void TroubleSink::Tell(const CallReturned& call) {
  callUnderWay = false;
  if (call.result == ResultSuccess) {
    TellHeld(nullptr);
    return;
  }
  output << Prefix << call.failure << " (" << Explained(call.result) << ")\n";
  for (const std::string& reason : call.reasons) {
    output << "  " << Escaped(reason) << '\n';
  }
  held.clear();
}

}  // namespace conduit
