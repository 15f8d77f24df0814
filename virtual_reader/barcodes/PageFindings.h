#pragma once

#include <string>
#include <vector>

#include "virtual_reader/pixels/Geometry.h"
#include <conduit/ReaderItem.h>

namespace conduit {

/// The name under which a host receives a barcode of this type.
inline std::string BarcodeName(ReaderDataType type) { return FindReaderItem(type)->name; }

/// A barcode that a search has seen.
struct PageFinding {
  ReaderDataType type;
  std::string data;  ///< byte for byte; of one that cannot be decoded nothing
  Rectangle area;
  std::string failure;  ///< why it cannot be decoded; empty where it can

  bool IsRead() const { return failure.empty(); }
};

/// Whether both are the same symbol, or one of them what a scan across it makes of it.
inline bool IsSameSymbol(const PageFinding& a, const PageFinding& b) {
  return a.type == b.type && Overlap(a.area, b.area);
}

struct PageBarcode {
  ReaderDataType type;
  std::string data;  ///< byte for byte

  bool operator==(const PageBarcode&) const = default;
};

/// The result of a search.
struct PageFindings {
  std::vector<PageBarcode> barcodes;  ///< from top to bottom, and in a row from left to right
  /// Barcodes that are there and cannot be decoded, with the reason.
  std::vector<std::string> failures;
};

/// Puts what a search has found, in any order, into the order of the page. Drops the
/// failures at symbols that were read. The texts do not quote a barcode.
PageFindings ArrangeFindings(std::vector<PageFinding> found);

}  // namespace conduit
