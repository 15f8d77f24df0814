#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "virtual_reader/images/PageImage.h"
#include "virtual_reader/session/StepBuilder.h"

namespace conduit {

/// Room for an uncompressed page image of A3 at 600 dpi in colour.
inline constexpr std::uintmax_t LargestImage = std::uintmax_t{256} << 20;

/// An image of a document, and what kind it is sent as.
struct DocumentImage {
  ReaderDataType type;
  std::string name;   ///< of its file, for the log
  std::string place;  ///< what an error with it is said of
  std::string bytes;  ///< as they are sent
  std::optional<PageImage> decoded = {};
};

/// What is to be read from the images that show a page: not what the document
/// gives itself.
struct PagesWanted {
  bool codeline = true;
  bool barcodes = true;
  bool aamva = true;
};

/// Adds the images, before them the codeline and behind them the barcodes that
/// stand on them, one that several of them show counted once. A TIFF is sent as
/// a PNG of its first page. A damaged image is an error in its place.
void AddImages(std::vector<DocumentImage> images, const PagesWanted& wanted, StepBuilder* step);

/// What this build does not look for on pages, for the log.
std::vector<std::string> LimitsOfPageReading();

}  // namespace conduit
