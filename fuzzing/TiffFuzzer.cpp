// Decodes arbitrary bytes as a TIFF, up to eight pages.
#include <algorithm>
#include <stdexcept>

#include "fuzzing/Require.h"
#include "virtual_reader/images/ImageDecoding.h"
#include "virtual_reader/images/TiffPages.h"

namespace conduit {
namespace {

void ReadPage(const TiffPages& pages, std::size_t index) {
  try {
    const TiffPage page = pages.Read(index);
    Require(page.image.luminance.size() == static_cast<std::size_t>(page.image.width) *
                                               static_cast<std::size_t>(page.image.height),
            "every pixel has its light");
    const PageImage sent = DecodeImage(page.png);
    Require(sent.width == page.image.width && sent.height == page.image.height,
            "the PNG of a page is the page");
  } catch (const std::invalid_argument&) {
  }
}

}  // namespace
}  // namespace conduit

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const conduit::TiffPages pages =
        conduit::TiffPages::OfBytes({reinterpret_cast<const char*>(data), size});
    conduit::Require(pages.Count() > 0, "a TIFF has a page");
    constexpr std::size_t enough = 8;
    for (std::size_t i = 0; i < std::min(pages.Count(), enough); ++i) {
      conduit::ReadPage(pages, i);
    }
  } catch (const std::invalid_argument&) {
  }
  return 0;
}
