// Decodes arbitrary bytes as a page image, and searches small pages for barcodes.
#include <stdexcept>

#include "fuzzing/Require.h"
#include "virtual_reader/barcodes/PageSearch.h"
#include "virtual_reader/images/ImageDecoding.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const conduit::PageImage image =
        conduit::DecodeImage({reinterpret_cast<const char*>(data), size});
    conduit::Require(image.width > 0 && image.height > 0, "a page has pixels");
    conduit::Require(image.luminance.size() == static_cast<std::size_t>(image.width) *
                                                   static_cast<std::size_t>(image.height),
                     "every pixel has its light");
    // Under sanitizers the search of a large page, which a small header suffices for, takes
    // seconds.
    constexpr std::size_t searched = 250'000;
    if (image.luminance.size() <= searched) {
      conduit::SearchPage(image);
    }
  } catch (const std::invalid_argument&) {
  }
  return 0;
}
