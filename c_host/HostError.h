#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace conduit {

/// A call on a host that is refused or fails: what it answers, and the text for its caller.
class HostError : public std::runtime_error {
 public:
  HostError(std::int32_t result, const std::string& text)
      : std::runtime_error(text), result(result) {}

  const std::int32_t result;
};

}  // namespace conduit
