#pragma once  // stands alone in C++17

#include <cstddef>
#include <cstdint>

namespace conduit {

#pragma pack(push, 1)

/// One barcode, as the reader library hands it over. Integers are little-endian.
/// Belongs to the library, is good during the data callback only, and may stand
/// at any address.
struct ReaderBarcodeData {
  char reserved0[36];
  std::int32_t index;  ///< 0-based position among the barcodes of the same read
  std::int32_t count;  ///< number of barcodes in the read
  char reserved44[8];
  std::int32_t format;  ///< how the data is to be taken: see ReaderItem.h
  const void* data;
  std::int32_t length;  ///< bytes at `data`
};

#pragma pack(pop)

static_assert(offsetof(ReaderBarcodeData, index) == 36);
static_assert(offsetof(ReaderBarcodeData, count) == 40);
static_assert(offsetof(ReaderBarcodeData, format) == 52);
static_assert(offsetof(ReaderBarcodeData, data) == 56);
static_assert(offsetof(ReaderBarcodeData, length) == 64);
static_assert(sizeof(ReaderBarcodeData) == 68 && alignof(ReaderBarcodeData) == 1);

}  // namespace conduit
