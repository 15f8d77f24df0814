#pragma once

#include <string>
#include <vector>

#include "virtual_reader/images/PageImage.h"
#include "virtual_reader/search/PageSearch.h"

namespace conduit {

/// One image of a document, and what kind it is sent as.
struct PageFile {
  ReaderDataType type;
  ImageFile file;
};

/// The barcodes on a document's page images, one that several of them show
/// counted once.
struct PagesReading {
  bool hasPages = false;  ///< false: nothing but portraits and the like
  std::vector<PageBarcode> barcodes;
  std::vector<std::string> warnings;  ///< what could not be decoded or searched
};

PagesReading ReadPages(const std::vector<PageFile>& files);

}  // namespace conduit
