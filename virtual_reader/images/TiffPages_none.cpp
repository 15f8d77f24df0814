#include <stdexcept>

#include "virtual_reader/images/Decoders.h"
#include "virtual_reader/images/TiffPages.h"

namespace conduit {
namespace {

[[noreturn]] void Refuse() { throw std::invalid_argument("this build reads no TIFF"); }

}  // namespace

struct TiffPages::Source {};

TiffPages::TiffPages(const std::filesystem::path& /*file*/) { Refuse(); }
TiffPages::TiffPages(std::unique_ptr<Source> given) : source(std::move(given)) {}
TiffPages TiffPages::OfBytes(std::string_view /*bytes*/) { Refuse(); }
TiffPages::TiffPages(TiffPages&& other) noexcept = default;
TiffPages& TiffPages::operator=(TiffPages&& other) noexcept = default;
TiffPages::~TiffPages() = default;
std::size_t TiffPages::Count() const { return pages.size(); }
// NOLINTBEGIN(readability-convert-member-functions-to-static): where TIFF is read they are none
TiffPage TiffPages::Read(std::size_t /*index*/) const { Refuse(); }
PageImage TiffPages::ReadImage(std::size_t /*index*/) const { Refuse(); }
// NOLINTEND(readability-convert-member-functions-to-static)

PageImage DecodeTiff(std::string_view /*bytes*/) { Refuse(); }

}  // namespace conduit
