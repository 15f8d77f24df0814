#pragma once  // self-contained; C++17

#include <cstddef>
#include <cstdint>

namespace conduit {

#pragma pack(push, 1)

/// One barcode. Integers are little-endian. The reader library owns the record; it
/// is valid during the data callback only and may be unaligned.
struct ReaderBarcodeData {
  char reserved0[36];
  std::int32_t index;  ///< 0-based position among the barcodes of the same read
  std::int32_t count;  ///< number of barcodes in the read
  char reserved44[8];
  std::int32_t format;  ///< format code of the data: see ReaderItem.h
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
