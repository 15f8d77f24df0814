// Searches a page for its machine-readable zone (MRZ) after the input bytes have overpainted,
// shifted and rotated parts of it.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <utility>

#include "fuzzing/Require.h"
#include "virtual_reader/images/ImageDecoding.h"
#include "virtual_reader/mrz/CodelineSearch.h"
#include "virtual_reader/mrz/Glyphs.h"
#include "virtual_reader/records/CodelineFormat.h"

namespace conduit {
namespace {

/// The bottom third of a small page, so that a search takes some milliseconds.
PageImage Zone() {
  std::ifstream stream(CODELINE_PAGE, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(stream), {});
  const PageImage page = DecodeImage(bytes);
  PageImage zone = {page.width, page.height / 3, {}};
  const auto size = static_cast<std::size_t>(zone.width) * static_cast<std::size_t>(zone.height);
  zone.luminance.assign(page.luminance.end() - static_cast<std::ptrdiff_t>(size),
                        page.luminance.end());
  return zone;
}

std::size_t Pixels(const PageImage& image) { return image.luminance.size(); }

void Turn(PageImage* image) {
  PageImage turned = {image->height, image->width, {}};
  turned.luminance.reserve(Pixels(*image));
  for (int x = 0; x < image->width; ++x) {
    for (int y = image->height - 1; y >= 0; --y) {
      turned.luminance.push_back(image->luminance[static_cast<std::size_t>(y * image->width + x)]);
    }
  }
  *image = std::move(turned);
}

/// Applies one distortion, encoded in five bytes.
void Disturb(std::span<const std::uint8_t, 5> bytes, PageImage* image) {
  const int left = bytes[1] * image->width / 256;
  const int top = bytes[2] * image->height / 256;
  const int right = std::min(image->width, left + 1 + bytes[3]);
  const int bottom = std::min(image->height, top + 1 + bytes[3] / 4);
  if (bytes[0] % 8 == 7) {
    Turn(image);
    return;
  }
  for (int y = top; y < bottom; ++y) {
    for (int x = left; x < right; ++x) {
      std::uint8_t& light = image->luminance[static_cast<std::size_t>(y * image->width + x)];
      const unsigned noise = static_cast<unsigned>(x * 7919 + y * 104729) >> (bytes[4] % 8);
      switch (bytes[0] % 4) {
        case 0:
          light = bytes[4];
          break;
        case 1:
          light = static_cast<std::uint8_t>(light ^ (noise & bytes[4]));
          break;
        case 2:
          light = static_cast<std::uint8_t>((light + bytes[4]) / 2);
          break;
        default:
          light = image->luminance[static_cast<std::size_t>(y * image->width +
                                                            (x + bytes[4]) % image->width)];
      }
    }
  }
}

void RequireZone(const std::vector<std::string>& lines) {
  const auto formats = CodelineFormats();
  Require(lines.empty() || std::any_of(formats.begin(), formats.end(),
                                       [&lines](const CodelineFormat& format) {
                                         return format.lines == lines.size() &&
                                                format.width == lines[0].size();
                                       }),
          "what is read has the shape of a zone");
  for (const std::string& line : lines) {
    Require(line.size() == lines[0].size() &&
                line.find_first_not_of(MrzCharacters) == std::string::npos,
            "a line has the characters of a zone");
  }
}

}  // namespace
}  // namespace conduit

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const conduit::PageImage zone = conduit::Zone();
  conduit::PageImage image = zone;
  constexpr std::size_t step = 5;
  for (std::span<const std::uint8_t> rest(data, size); rest.size() >= step;
       rest = rest.subspan(step)) {
    conduit::Disturb(rest.first<step>(), &image);
  }
  const conduit::CodelineFindings findings = conduit::SearchCodeline(image);
  conduit::RequireZone(findings.lines);
  conduit::Require(findings.lines.empty() || findings.failures.empty(), "read, or not");
  return 0;
}
