#include "hosting/ResultMeaning.h"

#include <conduit/ResultCode.h>

namespace conduit {
namespace {

struct Meaning {
  std::int32_t result;
  const char* text;
};

/// As the calls of a host answer; their codes do not overlap.
constexpr Meaning Meanings[] = {
    {ResultUnknownParameter, "no parameter has that name"},
    {ResultUnknownCondition, "no such condition"},
    {ResultUnknownAction, "no such action"},
    {ResultValueMissing, "a value is required"},
    {ResultInvalidValue, "the value breaks a rule"},
    {ResultReaderNotStarted, "the reader or its library refused"},
};

}  // namespace

const char* ResultMeaning(std::int32_t result) {
  for (const Meaning& meaning : Meanings) {
    if (meaning.result == result) {
      return meaning.text;
    }
  }
  return "";
}

std::string ExplainedResult(std::int32_t result) {
  const std::string meaning = ResultMeaning(result);
  return "result " + std::to_string(result) + (meaning.empty() ? "" : ": " + meaning);
}

}  // namespace conduit
