#include "virtual_reader/session/DocumentImages.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <stdexcept>

#include "platform/FilePath.h"
#include "virtual_reader/images/ImageFormat.h"
#include "virtual_reader/records/AamvaReading.h"

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
std::size_t RankAmong(const std::array<ReaderDataType, Size>& types, ReaderDataType type) {
  return static_cast<std::size_t>(std::find(types.begin(), types.end(), type) - types.begin());
}

/// The images in the order of these types; those of other types come last.
template <class Image, std::size_t Size>
std::vector<Image*> Ordered(std::vector<Image>& images,
                            const std::array<ReaderDataType, Size>& types) {
  std::vector<Image*> ordered;
  ordered.reserve(images.size());
  for (Image& image : images) {
    ordered.push_back(&image);
  }
  std::stable_sort(ordered.begin(), ordered.end(), [&types](const Image* a, const Image* b) {
    return RankAmong(types, a->type) < RankAmong(types, b->type);
  });
  return ordered;
}

bool ShowsPage(const DocumentImage& image) {
  return RankAmong(PagesByBarcodes, image.type) < PagesByBarcodes.size();
}

/// What is neither an image by its bytes nor by its name is sent as it is.
bool IsImage(const DocumentImage& image) {
  return FormatOf(image.bytes).has_value() || IsImageName(PathFromUtf8(image.name));
}

struct FoundBarcode {
  PageBarcode barcode;
  const DocumentImage* image;
};

/// Tells of the images of one document, and adds what was read from them.
class ImagesOfDocument {
 public:
  ImagesOfDocument(std::vector<DocumentImage> images, const PagesWanted& wanted, StepBuilder* step)
      : images(std::move(images)), wanted(wanted), step(step) {}

  void Add() {
    for (const DocumentImage* image : Ordered(images, PagesByCodeline)) {
      if (image->reading.error.empty()) {
        TellOf(*image);
      }
    }
    WarnOfUnreadCodeline();
    AddCodeline();
    SendImages();
    AddBarcodes();
  }

 private:
  void TellOf(const DocumentImage& image) {
    if (image.reading.pages > 1) {
      step->Warn(image.name, "the first of its " + std::to_string(image.reading.pages) +
                                 " pages is taken, as it is one image of a document");
    }
    if (ShowsPage(image) && !IsImage(image)) {
      step->Warn(image.name, "not searched, as it is no image of a known format");
    }
    TakeBarcodes(image);
    TakeCodeline(image);
    if (!image.reading.shortened.empty()) {
      step->Warn(image.name, "not searched to the end: " + image.reading.shortened);
    }
  }

  void TakeBarcodes(const DocumentImage& image) {
    std::string symbologies;
    for (const PageBarcode& barcode : image.reading.barcodes.barcodes) {
      symbologies += (symbologies.empty() ? "" : ", ") + BarcodeName(barcode.type);
      barcodes.push_back({barcode, &image});
    }
    if (!symbologies.empty()) {
      step->Note(image.name, "found on the page: " + symbologies);
    } else if (image.reading.searched) {
      step->Note(image.name, "no barcode found on the page");
    }
    step->WarnAll(image.name, image.reading.barcodes.failures);
  }

  void TakeCodeline(const DocumentImage& image) {
    const CodelineFindings& findings = image.reading.codeline;
    if (!findings.lines.empty() && codelineImage == nullptr) {
      step->Note(image.name, "a codeline found on the page");
      codelineImage = &image;
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
      step->AddCodeline(codelineImage->name, ReadCodeline(codelineImage->reading.codeline.lines),
                        ReaderDataType::Codeline, ReaderDataType::CodelineRecord);
    }
  }

  void SendImages() {
    for (DocumentImage& image : images) {
      if (image.reading.error.empty()) {
        step->Add(SendItem{image.type, std::move(image.bytes)});
      } else {
        step->AddPassingError(image.place + ": " + image.reading.error);
      }
    }
  }

  /// Twice on one page is two; on another image it is the same once more.
  std::vector<FoundBarcode> BarcodesOnce() {
    std::vector<FoundBarcode> once;
    for (const DocumentImage* image : Ordered(images, PagesByBarcodes)) {
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
  std::vector<FoundBarcode> barcodes;
  const DocumentImage* codelineImage = nullptr;
  std::vector<std::pair<const DocumentImage*, std::string>> unreadCodelines;
};

}  // namespace

void ReadImages(std::vector<DocumentImage>* images, const PagesWanted& wanted,
                PageReaders* readers) {
  bool codelineWanted = wanted.codeline;
  for (DocumentImage* image : Ordered(*images, PagesByCodeline)) {
    if (!IsImage(*image)) {
      continue;
    }
    PageRequest request;
    request.barcodes = wanted.barcodes && ShowsPage(*image);
    request.codeline = codelineWanted && ShowsPage(*image);
    request.bytes = std::move(image->bytes);
    image->reading = readers->Read(request);
    image->bytes =
        image->reading.png.empty() ? std::move(request.bytes) : std::move(image->reading.png);
    codelineWanted = codelineWanted && image->reading.codeline.lines.empty();
  }
}

void AddImages(std::vector<DocumentImage> images, const PagesWanted& wanted, StepBuilder* step) {
  ImagesOfDocument(std::move(images), wanted, step).Add();
}

}  // namespace conduit
