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
  PageRequest request = RequestOf(*image->file);
  image->bytes = std::move(request.bytes);
  if (!IsImage(*image)) {
    return;
  }
  request.barcodes = wanted.barcodes && ShowsPage(*image);
  request.codeline = wanted.codeline && ShowsPage(*image);
  request.bytes = std::move(image->bytes);
  image->reading = readers->Read(request);
  image->bytes = std::move(image->reading.png.empty() ? request.bytes : image->reading.png);
}

void AddNotes(Step* step, const DocumentImage& image, bool hasTheCodeline) {
  const std::string& name = image.file->name;
  const PageReading& reading = image.reading;
  if (reading.pages > 1 && !image.file->tiffPage) {
    AddWarning(step, name,
               "the first of its " + std::to_string(reading.pages) +
                   " pages is taken, as it is one image of a document");
  }
  if (ShowsPage(image) && !IsImage(image)) {
    AddWarning(step, name, "not searched, as it is no image of a known format");
  }
  std::string symbologies;
  for (const PageBarcode& barcode : reading.barcodes.barcodes) {
    symbologies += (symbologies.empty() ? "" : ", ") + BarcodeName(barcode.type);
  }
  if (!symbologies.empty()) {
    AddNote(step, name, "found on the page: " + symbologies);
  } else if (reading.searched) {
    AddNote(step, name, "no barcode found on the page");
  }
  AddWarnings(step, name, reading.barcodes.failures);
  if (hasTheCodeline) {
    AddNote(step, name, "a codeline found on the page");
  }
  if (!reading.shortened.empty()) {
    AddWarning(step, name, "not searched to the end: " + reading.shortened);
  }
}

struct FoundBarcode {
  const PageBarcode* barcode;
  const DocumentImage* image;
};

/// Two equal barcodes on one page are two; on another image they are the same once more.
std::vector<FoundBarcode> BarcodesOn(std::span<DocumentImage> images) {
  std::vector<FoundBarcode> found;
  for (const DocumentImage* image : Ordered(images, PagesByBarcodes)) {
    for (const PageBarcode& barcode : image->reading.barcodes.barcodes) {
      const bool known = std::any_of(found.begin(), found.end(), [&](const FoundBarcode& other) {
        return *other.barcode == barcode && other.image != image;
      });
      if (!known) {
        found.push_back({&barcode, image});
      }
    }
  }
  return found;
}

void AddLicence(Step* step, const FoundBarcode& found) {
  const std::string& name = found.image->file->name;
  try {
    AddAamva(step, name, found.barcode->data);
  } catch (const std::invalid_argument& reason) {
    AddWarning(step, name, std::string("no AAMVA record of the barcode: ") + reason.what());
  }
}

void AddBarcodes(Step* step, const std::vector<FoundBarcode>& found, bool licencesWanted) {
  const auto count = static_cast<std::int32_t>(found.size());
  std::int32_t index = 0;
  for (const auto& [barcode, image] : found) {
    Add(step, SendBarcode{barcode->type, index++, count, 0, barcode->data});
  }
  for (const FoundBarcode& one : found) {
    if (licencesWanted && one.barcode->type == ReaderDataType::BarcodePdf417 &&
        IsAamva(one.barcode->data)) {
      AddLicence(step, one);
    }
  }
}

}  // namespace

PageRequest RequestOf(const ImageFile& file) {
  PageRequest request;
  if (file.tiffPage) {
    // The process that reads it need not be in the folder that this one is in.
    request.file = Utf8FromPath(std::filesystem::absolute(file.path));
    request.page = *file.tiffPage;
  } else {
    request.bytes = ReadInputFile(file.path, LargestImage);
  }
  return request;
}

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
  std::vector<DocumentImage*> pages = Ordered(images, PagesByCodeline);
  std::erase_if(pages, [](const DocumentImage* image) { return !image->reading.error.empty(); });
  const auto codeline = std::ranges::find_if(
      pages, [](const DocumentImage* image) { return !image->reading.codeline.lines.empty(); });
  const DocumentImage* const codelinePage = codeline != pages.end() ? *codeline : nullptr;
  for (const DocumentImage* page : pages) {
    AddNotes(step, *page, page == codelinePage);
  }
  for (const DocumentImage* page : pages) {
    // A codeline that one page does not give away counts only if no other does.
    if (codelinePage == nullptr || codelinePage == page) {
      AddWarnings(step, page->file->name, page->reading.codeline.failures);
    }
  }
  if (codelinePage != nullptr) {
    AddCodeline(step, codelinePage->file->name, ReadCodeline(codelinePage->reading.codeline.lines),
                ReaderDataType::Codeline, ReaderDataType::CodelineRecord);
  }
  for (DocumentImage& image : images) {
    if (image.reading.error.empty()) {
      Add(step, SendItem{image.file->type, std::move(image.bytes)});
    } else {
      AddPassingError(step, ErrorOf(image));
    }
  }
  AddBarcodes(step, BarcodesOn(images), wanted.aamva);
}

}  // namespace conduit
