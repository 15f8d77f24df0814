#include "virtual_reader/session/ScanReading.h"

#include <algorithm>
#include <exception>
#include <fstream>
#include <new>
#include <stdexcept>
#include <utility>

#include "platform/FilePath.h"
#include "virtual_reader/InputFile.h"
#include "virtual_reader/images/ImageFormat.h"
#include "virtual_reader/session/DocumentImages.h"

namespace conduit {
namespace {

/// Far more than three lines: a larger text file is something else.
constexpr std::uintmax_t LargestText = 4096;

/// One page that was laid on the window.
struct ScanPage {
  std::filesystem::path file;
  std::string name;
  std::string text;  ///< of the file with its codeline; empty where there is none
  bool isTiff = false;
  std::uint32_t index = 0;  ///< of the TIFF's pages
};

/// The lines of a text file, whatever system it comes from, without the empty
/// ones at its end.
std::vector<std::string> LinesOf(std::string_view text) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  text.remove_prefix(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.emplace_back(text.substr(0, end));
    if (lines.back().ends_with('\r')) {
      lines.back().pop_back();
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  while (!lines.empty() && lines.back().empty()) {
    lines.pop_back();
  }
  return lines;
}

CodelineReading ReadText(const std::filesystem::path& file) {
  const std::vector<std::string> lines = LinesOf(ReadInputFile(file, LargestText));
  if (lines.empty()) {
    throw std::invalid_argument("there is no text in the file");
  }
  return ReadCodeline(lines);
}

/// Adds the codeline of the text beside the page. A wrong one is an error; what
/// stands on the page is then taken in its place.
bool AddText(const std::filesystem::path& folder, const std::string& text, StepBuilder* step) {
  try {
    step->AddCodeline(text, ReadText(folder / PathFromUtf8(text)), ReaderDataType::Codeline,
                      ReaderDataType::CodelineRecord);
    return true;
  } catch (const std::invalid_argument& reason) {
    step->AddPassingError(text + ": " + reason.what());
    return false;
  }
}

/// For another process, which need not be in the folder that this one is in.
std::string AbsoluteName(const std::filesystem::path& file) {
  return Utf8FromPath(std::filesystem::absolute(file));
}

Step ReadablePage(const std::filesystem::path& folder, const ScanPage& page, PageReaders* readers) {
  PageRequest request;
  if (page.isTiff) {
    request.file = AbsoluteName(page.file);
    request.page = page.index;
  } else {
    request.bytes = ReadInputFile(page.file, LargestImage);
  }
  StepBuilder step;
  step.AddDocument(page.name);
  step.AddEvent(ReaderEventCode::DocOnWindow);
  step.AddEvent(ReaderEventCode::StartOfDocumentData);
  PagesWanted wanted;
  wanted.codeline = page.text.empty() || !AddText(folder, page.text, &step);
  request.barcodes = wanted.barcodes;
  request.codeline = wanted.codeline;
  PageReading reading = readers->Read(request);
  if (!reading.error.empty()) {
    throw std::invalid_argument(reading.error);
  }
  reading.pages = 1;  // each page of a TIFF is a document of its own
  std::string bytes = std::move(page.isTiff ? reading.png : request.bytes);
  std::vector<DocumentImage> images;
  images.push_back(
      {ReaderDataType::ImageVis, page.name, page.name, std::move(bytes), std::move(reading)});
  AddImages(std::move(images), wanted, &step);
  step.AddEvent(ReaderEventCode::EndOfDocumentData);
  step.AddEvent(ReaderEventCode::DocRemoved);
  return step.Take();
}

Step UnreadablePage(const std::string& name, const std::string& reason) {
  StepBuilder step;
  step.AddDocument(name);
  step.AddEvent(ReaderEventCode::DocOnWindow);
  step.AddPassingError(name + ": " + reason);
  step.AddEvent(ReaderEventCode::DocRemoved);
  return step.Take();
}

Step MakePage(const std::filesystem::path& folder, const ScanPage& page, PageReaders* readers) {
  try {
    return ReadablePage(folder, page, readers);
  } catch (const std::bad_alloc&) {
    return UnreadablePage(page.name, "the system has no memory left for it");
  } catch (const std::exception& error) {
    return UnreadablePage(page.name, error.what());
  }
}

bool IsTiff(const std::filesystem::path& file) {
  char start[4] = {};
  std::ifstream stream(file, std::ios::binary);
  stream.read(start, sizeof start);
  return FormatOf({start, static_cast<std::size_t>(stream.gcount())}) == ImageFormat::Tiff;
}

std::vector<ScanPage> PagesOf(const std::filesystem::path& file, const ScanFolder::Scan& scan,
                              PageReaders* readers) {
  RequireInputFile(file, LargestImage);
  if (!IsTiff(file)) {
    return {{file, scan.image, scan.text}};
  }
  std::vector<ScanPage> pages;
  const std::size_t count = readers->CountPages(AbsoluteName(file));
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::string name = scan.image + (count > 1 ? " page " + std::to_string(i + 1) : "");
    pages.push_back({file, name, i == 0 ? scan.text : "", true, i});
  }
  return pages;
}

}  // namespace

std::deque<StepWork> WorkOnScan(const std::filesystem::path& folder, const ScanFolder::Scan& scan,
                                const std::shared_ptr<PageReaders>& readers) {
  std::deque<StepWork> work;
  try {
    for (ScanPage& page : PagesOf(folder / PathFromUtf8(scan.image), scan, readers.get())) {
      work.emplace_back([folder, readers, page = std::move(page)] {
        return MakePage(folder, page, readers.get());
      });
    }
  } catch (const std::exception& error) {
    work = {[name = scan.image, reason = std::string(error.what())] {
      return UnreadablePage(name, reason);
    }};
  }
  return work;
}

bool IsReadable(const std::filesystem::path& folder, const ScanFolder::Scan& scan,
                PageReaders* readers, std::chrono::steady_clock::time_point latest) {
  try {
    const std::filesystem::path file = folder / PathFromUtf8(scan.image);
    PageRequest request;
    if (IsTiff(file)) {
      request.file = AbsoluteName(file);
    } else {
      request.bytes = ReadInputFile(file, LargestImage);
    }
    return readers->IsReadable(std::move(request), latest);
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace conduit
