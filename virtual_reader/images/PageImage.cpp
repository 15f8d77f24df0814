#include "virtual_reader/images/PageImage.h"

#include "virtual_reader/InputFile.h"
#include "virtual_reader/images/ImageDecoding.h"

namespace conduit {

ImageFile ReadImageFile(const std::filesystem::path& file, std::uintmax_t limit) {
  ImageFile read = {ReadInputFile(file, limit), {}};
  if (IsImageName(file) || FormatOf(read.bytes)) {
    read.image = DecodeImage(read.bytes);
  }
  return read;
}

}  // namespace conduit
