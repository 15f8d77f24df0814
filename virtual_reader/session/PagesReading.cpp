#include "virtual_reader/session/PagesReading.h"

#include <algorithm>
#include <iterator>

namespace conduit {
namespace {

/// The images that show the page, by how well barcodes are seen on them.
constexpr struct {
  ReaderDataType type;
  const char* name;
} Pages[] = {
    {ReaderDataType::ImageVis, "IMAGEVIS"},         {ReaderDataType::ImageVisRear, "IMAGEVISREAR"},
    {ReaderDataType::ImageCoaxVis, "IMAGECOAXVIS"}, {ReaderDataType::ImageBarcode, "IMAGEBARCODE"},
    {ReaderDataType::ImageIr, "IMAGEIR"},           {ReaderDataType::ImageCoaxIr, "IMAGECOAXIR"},
    {ReaderDataType::ImageUv, "IMAGEUV"},
};

}  // namespace

PagesReading ReadPages(const std::vector<PageFile>& files) {
  PagesReading reading;
  for (const auto& page : Pages) {
    const auto file = std::find_if(files.begin(), files.end(),
                                   [&page](const PageFile& one) { return one.type == page.type; });
    if (file == files.end()) {
      continue;
    }
    reading.hasPages = true;
    const auto warn = [&](const std::string& reason) {
      reading.warnings.push_back(std::string(page.name) + ": " + reason);
    };
    if (!file->file.image) {
      warn("not searched for barcodes, as it is neither a PNG nor a JPEG image");
      continue;
    }
    PageFindings findings = SearchPage(*file->file.image);
    std::for_each(findings.failures.begin(), findings.failures.end(), warn);
    // Twice on one page is two; on another image it is the same once more.
    const std::vector<PageBarcode> before = reading.barcodes;
    std::copy_if(findings.barcodes.begin(), findings.barcodes.end(),
                 std::back_inserter(reading.barcodes), [&before](const PageBarcode& barcode) {
                   return std::find(before.begin(), before.end(), barcode) == before.end();
                 });
  }
  return reading;
}

}  // namespace conduit
