#include "virtual_reader/session/ScanDocuments.h"

#include <algorithm>
#include <exception>
#include <fstream>
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

/// Adds the codeline of the text beside the page. A wrong one is an error; the codeline on the
/// page then takes its place.
void AddText(Document* document, const std::filesystem::path& folder, const std::string& text) {
  try {
    AddCodeline(LastActions(document), text, ReadText(folder / PathFromUtf8(text)),
                ReaderDataType::Codeline, ReaderDataType::CodelineRecord);
    document->wanted.codeline = false;
  } catch (const std::invalid_argument& reason) {
    AddPassingError(LastActions(document), text + ": " + reason.what());
  }
}

ImageFile ImageOf(const std::filesystem::path& folder, const ScanFolder::Scan& scan) {
  return {ReaderDataType::ImageVis, scan.image, scan.image, folder / PathFromUtf8(scan.image)};
}

/// Throws std::invalid_argument when the file cannot be read.
bool IsTiff(const std::filesystem::path& file) {
  RequireInputFile(file, LargestImage);
  char start[4] = {};
  std::ifstream stream(file, std::ios::binary);
  stream.read(start, sizeof start);
  return FormatOf({start, static_cast<std::size_t>(stream.gcount())}) == ImageFormat::Tiff;
}

}  // namespace

std::deque<Document> DocumentsOf(const std::filesystem::path& folder, const ScanFolder::Scan& scan,
                                 PageReaders* readers) {
  ImageFile image = ImageOf(folder, scan);
  std::size_t count = 1;
  try {
    if (IsTiff(image.path)) {
      image.tiffPage = 0;
      count = readers->CountPages(RequestOf(image).file);
    }
  } catch (const std::exception& error) {
    image.error = error.what();
  }
  std::deque<Document> documents;
  while (documents.size() < count) {
    if (count > 1) {
      image.tiffPage = static_cast<std::uint32_t>(documents.size());
      image.name = image.place = scan.image + " page " + std::to_string(documents.size() + 1);
    }
    Document& document = documents.emplace_back(Document{.name = image.name, .isScan = true});
    if (documents.size() == 1 && !scan.text.empty()) {
      AddText(&document, folder, scan.text);
    }
    document.parts.emplace_back(std::vector{image});
  }
  return documents;
}

bool IsReadable(const std::filesystem::path& folder, const ScanFolder::Scan& scan,
                PageReaders* readers, std::chrono::steady_clock::time_point latest) {
  try {
    ImageFile image = ImageOf(folder, scan);
    if (IsTiff(image.path)) {
      image.tiffPage = 0;
    }
    return readers->IsReadable(RequestOf(image), latest);
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace conduit
