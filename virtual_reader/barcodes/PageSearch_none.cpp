#include "virtual_reader/barcodes/PageSearch.h"
#include "virtual_reader/records/ItemsOfKind.h"

namespace conduit {

bool CanSearchPages() { return false; }

std::vector<ReaderDataType> BarcodesNotLookedFor() {
  std::vector<ReaderDataType> all;
  for (const ReaderItem& row : ItemsOfKind(ReaderItemKind::Barcode)) {
    all.push_back(row.type);
  }
  return all;
}

void SearchPage(const PageImage& /*image*/,
                const std::function<void(const PageFinding&)>& /*tell*/) {}

PageFindings SearchPage(const PageImage& /*image*/) { return {}; }

}  // namespace conduit
