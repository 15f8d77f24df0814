#include <exception>
#include <memory>
#include <new>

#include "virtual_reader/VirtualReader.h"
#include <conduit/HaldenReaderHighLevelAPI.h>

namespace conduit {
namespace {

/// Never destroyed, so that a host may still call Shutdown from its own late
/// destructors; what it holds is let go when the library is unloaded.
VirtualReader& Reader() {
  alignas(VirtualReader) static char storage[sizeof(VirtualReader)];
  static auto* const reader = new (storage) VirtualReader;
  constexpr auto release = [](VirtualReader* released) { released->Release(); };
  static const std::unique_ptr<VirtualReader, decltype(release)> releaser(reader, release);
  return *reader;
}

/// Nothing is thrown into the caller's language.
template <typename Operation>
std::int32_t Answer(const Operation& operation) {
  try {
    return static_cast<std::int32_t>(operation());
  } catch (...) {
    return static_cast<std::int32_t>(ReaderResult::Failed);
  }
}

}  // namespace
}  // namespace conduit

std::int32_t HaldenReader_EnableLogging(bool enable, std::int32_t level, std::int32_t mask,
                                        const char* file) {
  return conduit::Answer(
      [=] { return conduit::Reader().EnableLogging(enable, level, mask, file); });
}

std::int32_t HaldenReader_Initialise(ReaderDataCallback dataCallback,
                                     ReaderEventCallback eventCallback,
                                     ReaderErrorCallback errorCallback, void* /*reserved4*/,
                                     bool /*reserved5*/, bool /*reserved6*/, void* context) {
  return conduit::Answer([=] {
    return conduit::Reader().Initialise({dataCallback, eventCallback, errorCallback, context});
  });
}

std::int32_t HaldenReader_GetState() {
  return static_cast<std::int32_t>(conduit::Reader().State());
}

std::int32_t HaldenReader_Shutdown() {
  return conduit::Answer([] {
    conduit::Reader().Shutdown();
    return conduit::ReaderResult::Success;
  });
}
