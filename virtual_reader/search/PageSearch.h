#pragma once

#include <string>
#include <vector>

#include "virtual_reader/images/PageImage.h"
#include <conduit/ReaderItem.h>

namespace conduit {

/// The name under which a host receives a barcode of this type.
inline std::string BarcodeName(ReaderDataType type) { return FindReaderItem(type)->name; }

struct PageBarcode {
  ReaderDataType type;
  std::string data;  ///< byte for byte

  bool operator==(const PageBarcode&) const = default;
};

/// What a search of one image has found.
struct PageFindings {
  std::vector<PageBarcode> barcodes;  ///< from top to bottom, and in a row from left to right
  /// Barcodes that are there and cannot be decoded, and why; what ended the search early.
  std::vector<std::string> failures;
};

/// Whether this build can search: not where the decoder is missing.
bool CanSearchPages();

/// The barcodes among the host's items that no search finds, for what decodes has no
/// reader for them: Industrial and IATA 2 of 5, or all where CanSearchPages is false.
std::vector<ReaderDataType> BarcodesNotLookedFor();

/// Looks for barcodes at any angle, dark on light or light on dark; each symbol comes
/// once. Takes up to three bytes for each pixel of a large page, beside the image.
/// Throws nothing but std::bad_alloc. May be called on several threads at once.
PageFindings SearchPage(const PageImage& image);

}  // namespace conduit
