#include <libexif/exif-data.h>

#include <memory>

#include "virtual_reader/images/Orientation.h"

namespace conduit {

int ExifOrientation(std::string_view exif) {
  const std::unique_ptr<ExifData, decltype(&exif_data_unref)> data(
      exif_data_new_from_data(reinterpret_cast<const unsigned char*>(exif.data()),
                              static_cast<unsigned int>(exif.size())),
      &exif_data_unref);
  if (data == nullptr) {
    return 1;
  }
  const ExifEntry* const entry =
      exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION);
  if (entry == nullptr || entry->format != EXIF_FORMAT_SHORT || entry->size < 2) {
    return 1;
  }
  return exif_get_short(entry->data, exif_data_get_byte_order(data.get()));
}

}  // namespace conduit
