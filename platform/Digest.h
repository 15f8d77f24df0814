#pragma once

#include <string>
#include <string_view>

namespace conduit {

/// Returns the SHA-256 digest: 32 bytes.
std::string Sha256(std::string_view data);

/// Returns Base64 (RFC 4648), padded, without line ends.
std::string Base64(std::string_view data);

}  // namespace conduit
