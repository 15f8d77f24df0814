// Formats dates of arbitrary integers by arbitrary formats.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstring>

#include "fullpage/DateFormat.h"
#include "fuzzing/Require.h"
#include "platform/LocalTime.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const auto day = input.ConsumeIntegral<std::int32_t>();
  const auto month = input.ConsumeIntegral<std::int32_t>();
  const auto year = input.ConsumeIntegral<std::int32_t>();
  const bool ahead = input.ConsumeBool();
  const std::string format = input.ConsumeRemainingBytesAsString();
  const conduit::BaseString<char> text =
      conduit::FormatDate(format.c_str(), day, month, year, ahead);
  conduit::Require(static_cast<std::size_t>(text.length) == std::strlen(text.buffer),
                   "a text is as long as it says");
  conduit::TextBuilder raw;
  conduit::AppendRawDate(raw, {day, month, year});
  conduit::Require(std::strlen(raw.Text()) >= 8, "every part has two digits");
  return 0;
}
