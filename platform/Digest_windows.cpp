#include <windows.h>
// After windows.h, whose types they use.
#include <bcrypt.h>
#include <wincrypt.h>

#include <stdexcept>

#include "platform/Digest.h"

namespace conduit {
namespace {

const BYTE* Bytes(std::string_view data) { return reinterpret_cast<const BYTE*>(data.data()); }

/// Closes the system's provider of an algorithm.
struct Provider {
  Provider() = default;
  Provider(const Provider&) = delete;
  Provider& operator=(const Provider&) = delete;
  ~Provider() {
    if (handle) BCryptCloseAlgorithmProvider(handle, 0);
  }

  BCRYPT_ALG_HANDLE handle = nullptr;
};

}  // namespace

std::string Sha256(std::string_view data) {
  Provider provider;
  BYTE digest[32] = {};
  const bool done =
      BCryptOpenAlgorithmProvider(&provider.handle, BCRYPT_SHA256_ALGORITHM, nullptr, 0) == 0 &&
      BCryptHash(provider.handle, nullptr, 0, const_cast<BYTE*>(Bytes(data)),
                 static_cast<ULONG>(data.size()), digest, sizeof digest) == 0;
  if (!done) throw std::runtime_error("the system does not support SHA-256");
  return {reinterpret_cast<const char*>(digest), sizeof digest};
}

std::string Base64(std::string_view data) {
  constexpr DWORD form = CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF;
  const auto length = static_cast<DWORD>(data.size());
  DWORD size = 0;
  if (data.empty() || !CryptBinaryToStringA(Bytes(data), length, form, nullptr, &size)) return "";
  std::string text(size, '\0');
  CryptBinaryToStringA(Bytes(data), length, form, text.data(), &size);
  text.resize(size);
  return text;
}

}  // namespace conduit
