#pragma once  // self-contained; C++17

#include <cstdint>

namespace conduit {

/// The type of a data item of the reader. A reader may send other codes; a module
/// only logs them.
enum class ReaderDataType : std::int32_t {
  Codeline = 0,        ///< the codeline as plain text
  CodelineRecord = 1,  ///< ReaderCodelineData, read from the page
  ImageIr = 4,
  ImageVis = 6,
  ImageVisRear = 7,
  ImagePhoto = 10,
  ImageUv = 11,
  ImageCoaxVis = 13,
  ImageCoaxIr = 14,
  ImageBarcode = 15,
  ChipDataGroup1 = 18,       ///< data group 1 of the chip, as plain text
  ChipCodelineRecord = 19,   ///< ReaderCodelineData, from a source other than the page
  ChipDataGroup2Photo = 20,  ///< the photo in data group 2 of the chip
  SwipeRecord = 74,          ///< ReaderSwipeData
  AamvaSwipeRecord = 75,     ///< ReaderAamvaData
  AamvaBarcodeRecord = 80,   ///< ReaderAamvaData

  // The barcodes, each a ReaderBarcodeData.
  BarcodeIndustrial2Of5 = 0x10000001,
  BarcodeInterleaved2Of5 = 0x10000002,
  BarcodeIata2Of5 = 0x10000003,
  Barcode3Of9 = 0x10000004,
  Barcode128 = 0x10000005,
  BarcodePdf417 = 0x10000006,
  BarcodeAztec = 0x1000000A,
  BarcodeQr = 0x1000000C,
  BarcodeDataMatrix = 0x10000014,
};

}  // namespace conduit
