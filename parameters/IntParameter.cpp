#include "parameters/IntParameter.h"

#include <cctype>
#include <cstdlib>

namespace conduit {
namespace {

/// A sign without digits counts as a number; atoi converts it to 0.
bool IsNumber(const char* text) {
  while (*text == ' ') {
    ++text;
  }
  const bool hasSign = *text == '-' || *text == '+';
  if (hasSign) {
    ++text;
  }
  if (*text == '\0') {
    return hasSign;
  }
  while (std::isdigit(static_cast<unsigned char>(*text)) != 0) {
    ++text;
  }
  return *text == '\0';
}

}  // namespace

std::int32_t IntParameter::ParseValue(const char* text) {
  if (text == nullptr || !IsNumber(text)) {
    return fallback;
  }
  return std::atoi(text);  // NOLINT(cert-err34-c): the text is a number
}

}  // namespace conduit
