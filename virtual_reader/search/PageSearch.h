#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "interfaces/ReaderDataType.h"
#include "virtual_reader/images/PageImage.h"

namespace conduit {

/// The name under which a host receives a barcode of this type.
inline std::string BarcodeName(ReaderDataType type) {
  return std::find_if(std::begin(ReaderBarcodeNames), std::end(ReaderBarcodeNames),
                      [type](const auto& row) { return row.type == type; })
      ->name;
}

struct PageBarcode {
  ReaderDataType type;
  std::string data;  ///< byte for byte

  bool operator==(const PageBarcode&) const = default;
};

/// What a search of one image has found.
struct PageFindings {
  std::vector<PageBarcode> barcodes;  ///< from top to bottom, and in a row from left to right
  std::vector<std::string> failures;  ///< barcodes that are there and cannot be decoded, and why
};

/// Whether this build can search: not where the decoder is missing.
bool CanSearchPages();

PageFindings SearchPage(const PageImage& image);

}  // namespace conduit
