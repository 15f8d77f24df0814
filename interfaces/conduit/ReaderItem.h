#pragma once  // self-contained; C++17

#include <cstddef>
#include <cstdint>

#include "ItemType.h"
#include "ReaderDataType.h"

namespace conduit {

/// How a module treats an item of the reader.
enum class ReaderItemKind {
  Text,     ///< passes it on
  Image,    ///< passes it on
  Barcode,  ///< passes on the data of its ReaderBarcodeData
  Record,   ///< translates it to items with the names of ItemName.h
};

/// An item of the reader, and its name towards the host.
struct ReaderItem {
  ReaderDataType type;
  const char* name;  ///< empty for a record
  ReaderItemKind kind;
};

/// Every type that a module delivers; it only logs any other type. The types that come
/// with every document are first, because the search is linear.
inline constexpr ReaderItem ReaderItems[] = {
    {ReaderDataType::CodelineRecord, "", ReaderItemKind::Record},
    {ReaderDataType::ChipCodelineRecord, "", ReaderItemKind::Record},
    {ReaderDataType::SwipeRecord, "", ReaderItemKind::Record},
    {ReaderDataType::AamvaSwipeRecord, "", ReaderItemKind::Record},
    {ReaderDataType::AamvaBarcodeRecord, "", ReaderItemKind::Record},
    {ReaderDataType::Codeline, "CODELINE", ReaderItemKind::Text},
    {ReaderDataType::ImageIr, "IMAGEIR", ReaderItemKind::Image},
    {ReaderDataType::ImageVis, "IMAGEVIS", ReaderItemKind::Image},
    {ReaderDataType::ImageVisRear, "IMAGEVISREAR", ReaderItemKind::Image},
    {ReaderDataType::ImagePhoto, "IMAGEPHOTO", ReaderItemKind::Image},
    {ReaderDataType::ImageUv, "IMAGEUV", ReaderItemKind::Image},
    {ReaderDataType::ImageCoaxVis, "IMAGECOAXVIS", ReaderItemKind::Image},
    {ReaderDataType::ImageCoaxIr, "IMAGECOAXIR", ReaderItemKind::Image},
    {ReaderDataType::ImageBarcode, "IMAGEBARCODE", ReaderItemKind::Image},
    {ReaderDataType::ChipDataGroup1, "SCDG1_CODELINE", ReaderItemKind::Text},
    {ReaderDataType::ChipDataGroup2Photo, "SCDG2_PHOTO", ReaderItemKind::Image},
    {ReaderDataType::BarcodeIndustrial2Of5, "BARCODE_1D_INDUSTRIAL_2_OF_5",
     ReaderItemKind::Barcode},
    {ReaderDataType::BarcodeInterleaved2Of5, "BARCODE_1D_INTERLEAVED_2_OF_5",
     ReaderItemKind::Barcode},
    {ReaderDataType::BarcodeIata2Of5, "BARCODE_1D_IATA_2_OF_5", ReaderItemKind::Barcode},
    {ReaderDataType::Barcode3Of9, "BARCODE_1D_3_OF_9", ReaderItemKind::Barcode},
    {ReaderDataType::Barcode128, "BARCODE_1D_128", ReaderItemKind::Barcode},
    {ReaderDataType::BarcodePdf417, "BARCODE_PDF417", ReaderItemKind::Barcode},
    {ReaderDataType::BarcodeAztec, "BARCODE_AZTECCODE", ReaderItemKind::Barcode},
    {ReaderDataType::BarcodeQr, "BARCODE_QRCODE", ReaderItemKind::Barcode},
    {ReaderDataType::BarcodeDataMatrix, "BARCODE_DATAMATRIX", ReaderItemKind::Barcode},
};

/// Returns the row of a type, or null.
constexpr const ReaderItem* FindReaderItem(ReaderDataType type) {
  for (const ReaderItem& item : ReaderItems) {
    if (item.type == type) {
      return &item;
    }
  }
  return nullptr;
}

/// The item type of a barcode, indexed by the format code of its record. A code
/// outside the table is ItemTypeUnknown.
inline constexpr ItemType ReaderBarcodeItemTypes[] = {
    ItemTypeText,  ItemTypeText,           ItemTypeUnknown,         ItemTypeUnknown,
    ItemTypeImage, ItemTypeImage,          ItemTypeBarcodeFormat6,  ItemTypeUnknown,
    ItemTypeImage, ItemTypeBarcodeFormat9, ItemTypeBarcodeFormat10, ItemTypeUnknown,
    ItemTypeImage,
};

/// The highest format code in the table.
inline constexpr std::int32_t LastReaderBarcodeFormat = 12;
static_assert(sizeof ReaderBarcodeItemTypes / sizeof *ReaderBarcodeItemTypes ==
              LastReaderBarcodeFormat + 1);

}  // namespace conduit
