#include "virtual_reader/pages/PageWork.h"

#include <exception>
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

TiffPages TiffOf(const PageRequest& request) {
  return request.file.empty() ? TiffPages::OfBytes(request.bytes)
                              : TiffPages(PathFromUtf8(request.file));
}

bool IsTiff(const PageRequest& request) {
  return !request.file.empty() || FormatOf(request.bytes) == ImageFormat::Tiff;
}

PageImage Decode(const PageRequest& request, const AnswerPage& answer) {
  PageImage image;
  std::string png;
  std::size_t pages = 1;
  if (IsTiff(request)) {
    const TiffPages tiff = TiffOf(request);
    TiffPage page = tiff.Read(request.page);
    pages = tiff.Count();
    image = std::move(page.image);
    png = std::move(page.png);
  } else {
    image = DecodeImage(request.bytes);
  }
  if (!png.empty()) {
    answer({{{"kind", PageAnswer::Png}}, std::move(png)});
  }
  answer({{{"kind", PageAnswer::Decoded},
           {"width", image.width},
           {"height", image.height},
           {"pages", pages}},
          {}});
  return image;
}

void ReadPage(const PageRequest& request, const AnswerPage& answer) {
  const PageImage image = Decode(request, answer);
  // First, for its time is bounded.
  if (request.codeline) {
    const CodelineFindings found = SearchCodeline(image);
    answer({{{"kind", PageAnswer::Codeline}, {"lines", found.lines}, {"failures", found.failures}},
            {}});
  }
  if (request.barcodes) {
    SearchPage(image, [&answer](const PageFinding& finding) { answer(MessageOf(finding)); });
    if (CanSearchPages()) {
      answer({{{"kind", PageAnswer::Searched}}, {}});
    }
  }
}

void CountPages(const PageRequest& request, const AnswerPage& answer) {
  answer({{{"kind", PageAnswer::Decoded},
           {"width", 0},
           {"height", 0},
           {"pages", TiffOf(request).Count()}},
          {}});
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
  answer({{{"kind", PageAnswer::Limit}, {"text", text}}, {}});
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
  answer({{{"kind", PageAnswer::Done}, {"error", error}}, {}});
}

}  // namespace conduit
