// Parses arbitrary lines as a codeline: succeeds, or throws std::invalid_argument.
#include <stdexcept>

#include "fuzzing/Require.h"
#include "virtual_reader/records/CodelineReading.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> lines(1);
  for (std::size_t index = 0; index < size; ++index) {
    if (data[index] == '\n') {
      lines.emplace_back();
    } else {
      lines.back() += static_cast<char>(data[index]);
    }
  }
  try {
    const conduit::CodelineReading reading = conduit::ReadCodeline(lines);
    conduit::Require(reading.record.optionalData2[sizeof reading.record.optionalData2 - 1] == '\0',
                     "the last text ends");
  } catch (const std::invalid_argument&) {
  }
  try {
    conduit::UnreadCodeline(lines);
  } catch (const std::invalid_argument&) {
  }
  return 0;
}
