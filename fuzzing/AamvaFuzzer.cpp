// Parses arbitrary text as an AAMVA barcode.
#include <stdexcept>

#include "fuzzing/Require.h"
#include "virtual_reader/records/AamvaReading.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const conduit::AamvaReading reading =
        conduit::ReadAamva({reinterpret_cast<const char*>(data), size});
    const conduit::ReaderAamvaData& record = reading.record;
    conduit::Require(record.surname[sizeof record.surname - 1] == '\0' &&
                         record.addressCountry[sizeof record.addressCountry - 1] == '\0',
                     "every text ends in its field");
  } catch (const std::invalid_argument&) {
  }
  return 0;
}
