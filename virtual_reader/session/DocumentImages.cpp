#include "virtual_reader/session/DocumentImages.h"

#include <algorithm>
#include <array>
#include <exception>
#include <new>
#include <stdexcept>
#include <utility>

#include "platform/FilePath.h"
#include "virtual_reader/InputFile.h"
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
std::vector<Image*> Ordered(std::span<Image> images,
                            const std::array<ReaderDataType, Size>& types) {
  std::vector<Image*> ordered;
  ordered.reserve(images.size());
  for (Image& image : images) {
    ordered.push_back(&image);
  }
  std::stable_sort(ordered.begin(), ordered.end(), [&types](const Image* a, const Image* b) {
    return RankAmong(types, a->file->type) < RankAmong(types, b->file->type);
  });
  return ordered;
}

bool ShowsPage(const DocumentImage& image) {
  return RankAmong(PagesByBarcodes, image.file->type) < PagesByBarcodes.size();
}

/// The reader sends a file as it is when neither its bytes nor its name are those of an image.
bool IsImage(const DocumentImage& image) {
  return image.file->tiffPage.has_value() || FormatOf(image.bytes).has_value() ||
         IsImageName(image.file->path);
}

/// @param wanted  on an image that shows a page
void Read(DocumentImage* image, const PagesWanted& wanted, PageReaders* readers) {
  const ImageFile& file = *image->file;
  PageRequest request;
  if (file.tiffPage) {
    request.file = AbsoluteName(file.path);
    request.page = *file.tiffPage;
  } else {
    image->bytes = ReadInputFile(file.path, LargestImage);
  }
  if (!IsImage(*image)) {
    return;
  }
  request.barcodes = wanted.barcodes && ShowsPage(*image);
  request.codeline = wanted.codeline && ShowsPage(*image);
  request.bytes = std::move(image->bytes);
  image->reading = readers->Read(request);
  image->bytes = std::move(image->reading.png.empty() ? request.bytes : image->reading.png);
}

struct FoundBarcode {
  PageBarcode barcode;
  const DocumentImage* image;
};

/// Tells of the images of one document, and adds what was read from them.
class ImagesOfDocument {
 public:
  ImagesOfDocument(Step* step, std::span<DocumentImage> images, const PagesWanted& wanted)
      : step(step), images(images), wanted(wanted) {}

  void Send() {
    for (const DocumentImage* image : Ordered(images, PagesByCodeline)) {
      if (image->reading.error.empty()) {
        TellOf(*image);
      }
    }
    WarnOfUnreadCodeline();
    SendCodeline();
    SendImages();
    SendBarcodes();
  }

 private:
  void TellOf(const DocumentImage& image) {
    if (image.reading.pages > 1 && !image.file->tiffPage) {
      AddWarning(step, image.file->name,
                 "the first of its " + std::to_string(image.reading.pages) +
                     " pages is taken, as it is one image of a document");
    }
    if (ShowsPage(image) && !IsImage(image)) {
      AddWarning(step, image.file->name, "not searched, as it is no image of a known format");
    }
    TakeBarcodes(image);
    TakeCodeline(image);
    if (!image.reading.shortened.empty()) {
      AddWarning(step, image.file->name, "not searched to the end: " + image.reading.shortened);
    }
  }

  void TakeBarcodes(const DocumentImage& image) {
    std::string symbologies;
    for (const PageBarcode& barcode : image.reading.barcodes.barcodes) {
      symbologies += (symbologies.empty() ? "" : ", ") + BarcodeName(barcode.type);
      barcodes.push_back({barcode, &image});
    }
    if (!symbologies.empty()) {
      AddNote(step, image.file->name, "found on the page: " + symbologies);
    } else if (image.reading.searched) {
      AddNote(step, image.file->name, "no barcode found on the page");
    }
    AddWarnings(step, image.file->name, image.reading.barcodes.failures);
  }

  void TakeCodeline(const DocumentImage& image) {
    const CodelineFindings& findings = image.reading.codeline;
    if (!findings.lines.empty() && codelineImage == nullptr) {
      AddNote(step, image.file->name, "a codeline found on the page");
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
        AddWarning(step, image->file->name, failure);
      }
    }
  }

  void SendCodeline() {
    if (codelineImage != nullptr) {
      AddCodeline(step, codelineImage->file->name,
                  ReadCodeline(codelineImage->reading.codeline.lines), ReaderDataType::Codeline,
                  ReaderDataType::CodelineRecord);
    }
  }

  void SendImages() {
    for (DocumentImage& image : images) {
      if (image.reading.error.empty()) {
        Add(step, SendItem{image.file->type, std::move(image.bytes)});
      } else {
        AddPassingError(step, ErrorOf(image));
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

  void SendBarcodes() {
    const std::vector<FoundBarcode> found = BarcodesOnce();
    std::int32_t index = 0;
    for (const FoundBarcode& one : found) {
      Add(step, SendBarcode{one.barcode.type, index++, static_cast<std::int32_t>(found.size()), 0,
                            one.barcode.data});
    }
    for (const FoundBarcode& one : found) {
      if (wanted.aamva && one.barcode.type == ReaderDataType::BarcodePdf417 &&
          IsAamva(one.barcode.data)) {
        SendLicence(one);
      }
    }
  }

  void SendLicence(const FoundBarcode& found) {
    try {
      AddAamva(step, found.image->file->name, found.barcode.data);
    } catch (const std::invalid_argument& reason) {
      AddWarning(step, found.image->file->name,
                 std::string("no AAMVA record of the barcode: ") + reason.what());
    }
  }

  Step* const step;
  const std::span<DocumentImage> images;
  const PagesWanted wanted;
  std::vector<FoundBarcode> barcodes;
  const DocumentImage* codelineImage = nullptr;
  std::vector<std::pair<const DocumentImage*, std::string>> unreadCodelines;
};

}  // namespace

std::vector<DocumentImage> ReadImages(const Document& document, PageReaders* readers) {
  std::vector<DocumentImage> images;
  for (const DocumentPart& part : document.parts) {
    if (const auto* const files = std::get_if<std::vector<ImageFile>>(&part); files != nullptr) {
      for (const ImageFile& file : *files) {
        images.push_back({&file, {}, {}});
        images.back().reading.error = file.error;
      }
    }
  }
  PagesWanted wanted = document.wanted;
  for (DocumentImage* image : Ordered(std::span(images), PagesByCodeline)) {
    if (!image->reading.error.empty()) {
      continue;
    }
    try {
      Read(image, wanted, readers);
    } catch (const std::bad_alloc&) {
      image->reading.error = "the system has no memory left for it";
    } catch (const std::exception& problem) {
      image->reading.error = problem.what();
    }
    wanted.codeline = wanted.codeline && image->reading.codeline.lines.empty();
  }
  return images;
}

std::string ErrorOf(const DocumentImage& image) {
  return image.file->place + ": " + image.reading.error;
}

void AddImages(Step* step, std::span<DocumentImage> images, const PagesWanted& wanted) {
  ImagesOfDocument(step, images, wanted).Send();
}

std::string AbsoluteName(const std::filesystem::path& file) {
  return Utf8FromPath(std::filesystem::absolute(file));
}

}  // namespace conduit
