#include "virtual_reader/pages/PageWork.h"

#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/FilePath.h"
#include "virtual_reader/barcodes/PageSearch.h"
#include "virtual_reader/images/ImageDecoding.h"
#include "virtual_reader/images/ImageFormat.h"
#include "virtual_reader/images/TiffPages.h"
#include "virtual_reader/mrz/CodelineSearch.h"

namespace conduit {
namespace {

/// Lists the directories of a file once for all requests for its pages, which come one after the
/// other: listing them for each page is quadratic.
std::shared_ptr<const TiffPages> TiffOf(const PageRequest& request) {
  if (request.file.empty()) {
    return std::make_shared<TiffPages>(TiffPages::OfBytes(request.bytes));
  }
  static std::shared_ptr<const TiffPages> last;
  const std::filesystem::path file = PathFromUtf8(request.file);
  if (last == nullptr || !last->AreOf(file)) {
    last = nullptr;
    last = std::make_shared<TiffPages>(file);
  }
  return last;
}

bool IsTiff(const PageRequest& request) {
  return !request.file.empty() || FormatOf(request.bytes) == ImageFormat::Tiff;
}

PageImage Decode(const PageRequest& request, const AnswerPage& answer) {
  PageImage image;
  std::string png;
  std::size_t pages = 1;
  if (IsTiff(request)) {
    const auto tiff = TiffOf(request);
    TiffPage page = tiff->Read(request.page);
    pages = tiff->Count();
    image = std::move(page.image);
    png = std::move(page.png);
  } else {
    image = DecodeImage(request.bytes);
  }
  if (!png.empty()) {
    answer(PagePng{std::move(png)});
  }
  answer(PageDecoded{image.width, image.height, pages});
  return image;
}

void ReadPage(const PageRequest& request, const AnswerPage& answer) {
  const PageImage image = Decode(request, answer);
  // First, for its time is bounded.
  if (request.codeline) {
    answer(SearchCodeline(image));
  }
  if (request.barcodes) {
    SearchPage(image, [&answer](const PageFinding& finding) { answer(finding); });
    if (CanSearchPages()) {
      answer(PageSearched{});
    }
  }
}

void CountPages(const PageRequest& request, const AnswerPage& answer) {
  answer(PageDecoded{0, 0, TiffOf(request)->Count()});
}

void DescribeLimits(const AnswerPage& answer) {
  std::string text = "this build does not search page images for barcodes";
  if (CanSearchPages()) {
    std::string names;
    for (const ReaderDataType type : BarcodesNotLookedFor()) {
      names += (names.empty() ? "" : ", ") + BarcodeName(type);
    }
    text = "not looked for on pages, as nothing decodes them: " + names;
  }
  answer(PageLimit{text});
}

void Do(const PageRequest& request, const AnswerPage& answer) {
  switch (request.task) {
    case PageRequest::Task::ReadPage:
      return ReadPage(request, answer);
    case PageRequest::Task::CountPages:
      return CountPages(request, answer);
    case PageRequest::Task::CheckImage:
      if (IsTiff(request)) {
        return CountPages(request, answer);
      }
      Decode(request, answer);
      return;
    case PageRequest::Task::DescribeLimits:
      return DescribeLimits(answer);
  }
}

}  // namespace

void WorkOn(const PageRequest& request, const AnswerPage& answer) {
  std::string error;
  try {
    Do(request, answer);
  } catch (const std::bad_alloc&) {
    error = "the system has no memory left for it";
  } catch (const std::exception& problem) {
    error = problem.what();
  }
  answer(PageDone{error});
}

}  // namespace conduit
