#pragma once

#include <cstdint>

#include "ItemType.h"

namespace conduit {

/// What a data item of the reader is. A reader may send others, which a module
/// only logs.
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

/// The name under which a host receives an item of one type.
struct ReaderItemName {
  ReaderDataType type;
  const char* name;
  ItemType itemType;
};

/// The plain items: handed on as they come.
inline constexpr ReaderItemName ReaderItemNames[] = {
    {ReaderDataType::Codeline, "CODELINE", ItemTypeText},
    {ReaderDataType::ImageIr, "IMAGEIR", ItemTypeImage},
    {ReaderDataType::ImageVis, "IMAGEVIS", ItemTypeImage},
    {ReaderDataType::ImageVisRear, "IMAGEVISREAR", ItemTypeImage},
    {ReaderDataType::ImagePhoto, "IMAGEPHOTO", ItemTypeImage},
    {ReaderDataType::ImageUv, "IMAGEUV", ItemTypeImage},
    {ReaderDataType::ImageCoaxVis, "IMAGECOAXVIS", ItemTypeImage},
    {ReaderDataType::ImageCoaxIr, "IMAGECOAXIR", ItemTypeImage},
    {ReaderDataType::ImageBarcode, "IMAGEBARCODE", ItemTypeImage},
    {ReaderDataType::ChipDataGroup1, "SCDG1_CODELINE", ItemTypeText},
    {ReaderDataType::ChipDataGroup2Photo, "SCDG2_PHOTO", ItemTypeImage},
};

/// The name under which a host receives a barcode of one symbology.
struct ReaderBarcodeName {
  ReaderDataType type;
  const char* name;
};

inline constexpr ReaderBarcodeName ReaderBarcodeNames[] = {
    {ReaderDataType::BarcodeIndustrial2Of5, "BARCODE_1D_INDUSTRIAL_2_OF_5"},
    {ReaderDataType::BarcodeInterleaved2Of5, "BARCODE_1D_INTERLEAVED_2_OF_5"},
    {ReaderDataType::BarcodeIata2Of5, "BARCODE_1D_IATA_2_OF_5"},
    {ReaderDataType::Barcode3Of9, "BARCODE_1D_3_OF_9"},
    {ReaderDataType::Barcode128, "BARCODE_1D_128"},
    {ReaderDataType::BarcodePdf417, "BARCODE_PDF417"},
    {ReaderDataType::BarcodeAztec, "BARCODE_AZTECCODE"},
    {ReaderDataType::BarcodeQr, "BARCODE_QRCODE"},
    {ReaderDataType::BarcodeDataMatrix, "BARCODE_DATAMATRIX"},
};

/// The item type of a barcode, by the format code of its record; a code beyond
/// the table, or below it, is ItemTypeUnknown.
inline constexpr ItemType ReaderBarcodeItemTypes[] = {
    ItemTypeText,  ItemTypeText,           ItemTypeUnknown,         ItemTypeUnknown,
    ItemTypeImage, ItemTypeImage,          ItemTypeBarcodeFormat6,  ItemTypeUnknown,
    ItemTypeImage, ItemTypeBarcodeFormat9, ItemTypeBarcodeFormat10, ItemTypeUnknown,
    ItemTypeImage,
};

}  // namespace conduit
