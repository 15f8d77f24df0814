#include <openssl/evp.h>

#include <stdexcept>

#include "platform/Digest.h"

namespace conduit {
namespace {

const unsigned char* Bytes(std::string_view data) {
  return reinterpret_cast<const unsigned char*>(data.data());
}

}  // namespace

std::string Sha256(std::string_view data) {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  if (EVP_Digest(data.data(), data.size(), digest, &length, EVP_sha256(), nullptr) != 1) {
    throw std::runtime_error("the system's crypto library does not support SHA-256");
  }
  return {reinterpret_cast<const char*>(digest), length};
}

std::string Base64(std::string_view data) {
  constexpr std::size_t blockSize = 3UL << 20;  // a multiple of three that fits an int
  std::string text((data.size() + 2) / 3 * 4, '\0');
  auto* target = reinterpret_cast<unsigned char*>(text.data());
  for (std::size_t at = 0; at < data.size(); at += blockSize) {
    const std::string_view block = data.substr(at, blockSize);
    target += EVP_EncodeBlock(target, Bytes(block), static_cast<int>(block.size()));
  }
  return text;
}

}  // namespace conduit
