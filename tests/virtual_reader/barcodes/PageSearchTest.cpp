#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>

#include "tests/virtual_reader/DrawnPage.h"
#include "virtual_reader/InputFile.h"
#include "virtual_reader/barcodes/PageSearch.h"
#include "virtual_reader/images/ImageDecoding.h"
#include "virtual_reader/images/ImageFormat.h"

namespace conduit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

/// As the texts beside the pages have it.
std::string Line(const PageBarcode& barcode) {
  std::string line = BarcodeName(barcode.type) + " ";
  for (const char character : barcode.data) {
    const auto byte = static_cast<unsigned char>(character);
    char code[8];
    std::snprintf(code, sizeof code, byte < 32 || byte > 126 || byte == '\\' ? "\\x%02X" : "%c",
                  byte);
    line += code;
  }
  return line;
}

std::vector<std::string> Found(const PageImage& page) {
  std::vector<std::string> lines;
  for (const PageBarcode& barcode : SearchPage(page).barcodes) {
    lines.push_back(Line(barcode));
  }
  return lines;
}

PageImage RealPage(const std::string& name) {
  return DecodeImage(ReadInputFile(std::string(PAGES_FOLDER "/real/") + name, 1 << 30));
}

// Pages as large as real ones: pages/draw-pages has drawn them. Far more of them are
// compared by page_bench.
TEST(PageSearch, FindsOnceWhatStandsOnPagesOfRealSize) {
  int pages = 0;
  for (const auto& entry : std::filesystem::directory_iterator(PAGES_FOLDER "/real")) {
    if (!IsImageName(entry.path())) {
      continue;
    }
    std::vector<std::string> wanted;
    std::ifstream texts(std::filesystem::path(entry.path()).replace_extension(".txt"));
    for (std::string line; std::getline(texts, line);) {
      wanted.push_back(line);
    }
    const std::string name = entry.path().filename().string();
    EXPECT_THAT(Found(RealPage(name)), UnorderedElementsAreArray(wanted)) << name;
    ++pages;
  }
  EXPECT_GE(pages, 12);
}

TEST(PageSearch, ReadsALargePageInPartsAndNothingTwice) {
  const PageImage symbol = RealPage("itf-tall.png");
  constexpr int width = 4000;
  constexpr int height = 5000;
  // In the rows that two parts share, and at the lower end.
  PageImage page = Drawn(width, height, [](int, int) { return 255; });
  for (const int top : {3200, height - symbol.height}) {
    for (int y = 0; y < symbol.height; ++y) {
      std::copy_n(symbol.luminance.begin() + static_cast<std::ptrdiff_t>(y) * symbol.width,
                  symbol.width,
                  page.luminance.begin() + static_cast<std::ptrdiff_t>(top + y) * width + 800);
    }
  }
  // A frame, so that the page is searched as a whole.
  for (int x = 0; x < width; ++x) {
    page.luminance[static_cast<std::size_t>(x) + 20 * width] = 0;
    page.luminance[static_cast<std::size_t>(x) + 21 * width] = 0;
  }
  const std::string line = "BARCODE_1D_INTERLEAVED_2_OF_5 12345678901234";
  EXPECT_THAT(Found(page), ElementsAre(line, line));
}

TEST(PageSearch, EndsOnPagesOfAnyShapeAndPattern) {
  constexpr std::pair<int, int> sizes[] = {{1, 1},   {2, 1},   {2, 15},    {1, 700},
                                           {700, 1}, {3, 3},   {5, 8},     {7, 40},
                                           {40, 7},  {33, 17}, {500, 500}, {1012, 20}};
  const std::map<std::string, int (*)(int, int)> patterns = {
      {"black", [](int, int) { return 0; }},
      {"bars", [](int x, int) { return x / 3 % 2 * 255; }},
      {"rows", [](int, int y) { return y / 3 % 2 * 255; }},
      {"slanted", [](int x, int y) { return (x + y / 2) / 3 % 2 * 255; }},
      {"chequered", [](int x, int y) { return (x / 3 + y / 3) % 2 * 255; }},
      {"rings", [](int x, int y) { return std::max(x % 40, y % 40) / 3 % 2 * 255; }},
      {"slope", [](int x, int y) { return (x + y) % 256; }},
  };
  for (const auto& [width, height] : sizes) {
    for (const auto& [name, light] : patterns) {
      EXPECT_THAT(Found(Drawn(width, height, light)), IsEmpty())
          << name << ' ' << width << ' ' << height;
    }
  }
}

TEST(PageSearch, TellsWhatItDoesNotLookFor) {
  EXPECT_THAT(BarcodesNotLookedFor(),
              ElementsAre(ReaderDataType::BarcodeIndustrial2Of5, ReaderDataType::BarcodeIata2Of5));
}

}  // namespace
}  // namespace conduit
