#include "virtual_reader/session/DocumentImages.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <stdexcept>

#include "platform/FilePath.h"
#include "virtual_reader/codelines/CodelineSearch.h"
#include "virtual_reader/images/ImageDecoding.h"
#include "virtual_reader/images/ImageFormat.h"
#include "virtual_reader/images/TiffPages.h"
#include "virtual_reader/records/AamvaReading.h"
#include "virtual_reader/search/PageSearch.h"

namespace conduit {
namespace {

/// The images that show the page, by how well barcodes are seen on them.
constexpr std::array PagesByBarcodes = {
    ReaderDataType::ImageVis,     ReaderDataType::ImageVisRear, ReaderDataType::ImageCoaxVis,
    ReaderDataType::ImageBarcode, ReaderDataType::ImageIr,      ReaderDataType::ImageCoaxIr,
    ReaderDataType::ImageUv,
};

/// The same for codelines: ICAO Doc 9303 has them legible in the near infrared,
/// where the background that is printed for the eye vanishes.
constexpr std::array PagesByCodeline = {
    ReaderDataType::ImageIr,      ReaderDataType::ImageCoaxIr,  ReaderDataType::ImageVis,
    ReaderDataType::ImageVisRear, ReaderDataType::ImageCoaxVis, ReaderDataType::ImageBarcode,
    ReaderDataType::ImageUv,
};

template <std::size_t Size>
std::size_t RankAmong(const std::array<ReaderDataType, Size>& types, const DocumentImage& image) {
  return static_cast<std::size_t>(std::find(types.begin(), types.end(), image.type) -
                                  types.begin());
}

bool ShowsPage(const DocumentImage& image) {
  return RankAmong(PagesByBarcodes, image) < PagesByBarcodes.size();
}

struct FoundBarcode {
  PageBarcode barcode;
  const DocumentImage* image;
};

/// Reads the images of one document.
class ImagesReading {
 public:
  ImagesReading(std::vector<DocumentImage> images, const PagesWanted& wanted, StepBuilder* step)
      : images(std::move(images)), wanted(wanted), step(step), errors(this->images.size()) {}

  void Read() {
    // One after the other, as what is decoded takes the most memory.
    for (DocumentImage* image : Ordered(PagesByCodeline)) {
      if (Decode(image)) {
        SearchForBarcodes(*image);
        SearchForCodeline(*image);
      }
      image->decoded.reset();
    }
    WarnOfUnreadCodeline();
    AddCodeline();
    SendImages();
    AddBarcodes();
  }

 private:
  template <std::size_t Size>
  std::vector<DocumentImage*> Ordered(const std::array<ReaderDataType, Size>& types) {
    std::vector<DocumentImage*> ordered;
    ordered.reserve(images.size());
    for (DocumentImage& image : images) {
      ordered.push_back(&image);
    }
    std::stable_sort(ordered.begin(), ordered.end(),
                     [&types](const DocumentImage* a, const DocumentImage* b) {
                       return RankAmong(types, *a) < RankAmong(types, *b);
                     });
    return ordered;
  }

  /// Whether there is a page to search now.
  bool Decode(DocumentImage* image) {
    try {
      const std::optional<ImageFormat> format = FormatOf(image->bytes);
      if (format == ImageFormat::Tiff) {
        TakeFirstPage(image);
      } else if ((format || IsImageName(PathFromUtf8(image->name))) && !image->decoded) {
        image->decoded = DecodeImage(image->bytes);
      }
    } catch (const std::invalid_argument& reason) {
      errors[static_cast<std::size_t>(image - images.data())] = image->place + ": " + reason.what();
      return false;
    }
    if (ShowsPage(*image) && !image->decoded) {
      step->Warn(image->name, "not searched, as it is no image of a known format");
    }
    return ShowsPage(*image) && image->decoded;
  }

  void TakeFirstPage(DocumentImage* image) {
    const TiffPages pages = TiffPages::OfBytes(image->bytes);
    if (pages.Count() > 1) {
      step->Warn(image->name, "the first of its " + std::to_string(pages.Count()) +
                                  " pages is taken, as it is one image of a document");
    }
    TiffPage first = pages.Read(0);
    image->bytes = std::move(first.png);
    image->decoded = std::move(first.image);
  }

  void SearchForBarcodes(const DocumentImage& image) {
    if (!wanted.barcodes || !CanSearchPages()) {
      return;
    }
    PageFindings findings = SearchPage(*image.decoded);
    std::string symbologies;
    for (PageBarcode& barcode : findings.barcodes) {
      symbologies += (symbologies.empty() ? "" : ", ") + BarcodeName(barcode.type);
      barcodes.push_back({std::move(barcode), &image});
    }
    step->Note(image.name, symbologies.empty() ? "no barcode found on the page"
                                               : "found on the page: " + symbologies);
    step->WarnAll(image.name, findings.failures);
  }

  void SearchForCodeline(const DocumentImage& image) {
    if (!wanted.codeline || codelineImage != nullptr) {
      return;
    }
    CodelineFindings findings = SearchCodeline(*image.decoded);
    if (!findings.lines.empty()) {
      step->Note(image.name, "a codeline found on the page");
      codelineImage = &image;
      codeline = std::move(findings.lines);
    }
    for (const std::string& failure : findings.failures) {
      unreadCodelines.emplace_back(&image, failure);
    }
  }

  /// What one image does not give away counts only if no other does.
  void WarnOfUnreadCodeline() {
    for (const auto& [image, failure] : unreadCodelines) {
      if (codelineImage == nullptr || codelineImage == image) {
        step->Warn(image->name, failure);
      }
    }
  }

  void AddCodeline() {
    if (codelineImage != nullptr) {
      step->AddCodeline(codelineImage->name, ReadCodeline(codeline), ReaderDataType::Codeline,
                        ReaderDataType::CodelineRecord);
    }
  }

  void SendImages() {
    for (std::size_t i = 0; i < images.size(); ++i) {
      if (errors[i].empty()) {
        step->Add(SendItem{images[i].type, std::move(images[i].bytes)});
      } else {
        step->AddPassingError(errors[i]);
      }
    }
  }

  /// Twice on one page is two; on another image it is the same once more.
  std::vector<FoundBarcode> BarcodesOnce() {
    std::vector<FoundBarcode> once;
    for (const DocumentImage* image : Ordered(PagesByBarcodes)) {
      for (FoundBarcode& found : barcodes) {
        const bool known =
            std::any_of(once.begin(), once.end(), [&found](const FoundBarcode& other) {
              return other.barcode == found.barcode && other.image != found.image;
            });
        if (found.image == image && !known) {
          once.push_back(found);
        }
      }
    }
    return once;
  }

  void AddBarcodes() {
    const std::vector<FoundBarcode> found = BarcodesOnce();
    std::int32_t index = 0;
    for (const FoundBarcode& one : found) {
      step->Add(SendBarcode{one.barcode.type, index++, static_cast<std::int32_t>(found.size()), 0,
                            one.barcode.data});
    }
    for (const FoundBarcode& one : found) {
      if (wanted.aamva && one.barcode.type == ReaderDataType::BarcodePdf417 &&
          IsAamva(one.barcode.data)) {
        AddLicence(one);
      }
    }
  }

  void AddLicence(const FoundBarcode& found) {
    try {
      step->AddAamva(found.image->name, found.barcode.data);
    } catch (const std::invalid_argument& reason) {
      step->Warn(found.image->name,
                 std::string("no AAMVA record of the barcode: ") + reason.what());
    }
  }

  std::vector<DocumentImage> images;
  const PagesWanted wanted;
  StepBuilder* const step;
  std::vector<std::string> errors;  ///< of each image; empty for one that is sent
  std::vector<FoundBarcode> barcodes;
  const DocumentImage* codelineImage = nullptr;
  std::vector<std::string> codeline;
  std::vector<std::pair<const DocumentImage*, std::string>> unreadCodelines;
};

}  // namespace

void AddImages(std::vector<DocumentImage> images, const PagesWanted& wanted, StepBuilder* step) {
  ImagesReading(std::move(images), wanted, step).Read();
}

std::vector<std::string> LimitsOfPageReading() {
  if (!CanSearchPages()) {
    return {"this build does not search page images for barcodes"};
  }
  std::string names;
  for (const ReaderDataType type : BarcodesNotLookedFor()) {
    names += (names.empty() ? "" : ", ") + BarcodeName(type);
  }
  return {"not looked for on pages, as nothing decodes them: " + names};
}

}  // namespace conduit
