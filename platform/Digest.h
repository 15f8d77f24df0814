#pragma once

#include <string>
#include <string_view>

namespace conduit {

/// The SHA-256 digest: 32 bytes.
std::string Sha256(std::string_view data);

/// Base64 after RFC 4648, padded and without line ends.
std::string Base64(std::string_view data);

}  // namespace conduit
