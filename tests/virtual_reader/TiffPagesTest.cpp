#include <fstream>
#include <future>
#include <random>

#include "tests/virtual_reader/ImageFiles.h"
#include "virtual_reader/images/ImageDecoding.h"
#include "virtual_reader/images/TiffPages.h"
#include "virtual_reader/pages/PageWork.h"

namespace conduit {
namespace {

using testing::HasSubstr;

std::string Number(std::uint32_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i, value >>= 8) {
    text += static_cast<char>(value & 0xFF);
  }
  return text;
}

/// The entry of a directory, of a number of 4 bytes.
std::string Entry(std::uint32_t tag, std::uint32_t value) {
  return Number(tag, 2) + Number(4, 2) + Number(1, 4) + Number(value, 4);
}

/// A directory of a grey page without pixels of its own, that leads to another.
std::string Directory(const std::string& entries, std::uint32_t next) {
  return Number(static_cast<std::uint32_t>(entries.size()) / 12, 2) + entries + Number(next, 4);
}

/// What a PNG's header says: width, height, depth, colour type.
std::string PngHeader(const std::string& png) {
  std::string text;
  for (const std::size_t at : {18U, 19U, 22U, 23U, 24U, 25U}) {
    text += std::to_string(static_cast<unsigned char>(png.at(at))) + " ";
  }
  return text;
}

TEST(TiffPages, ReadsWhatScannersWrite) {
  constexpr char oneBit[] = "3 244 2 126 1 0 ";
  constexpr char grey[] = "3 244 2 126 8 0 ";
  constexpr char colour[] = "3 244 2 126 8 2 ";
  const std::pair<const char*, const char*> cases[] = {
      {"card-g4.tif", oneBit},           {"card-g3-white0.tif", oneBit},
      {"card-grey16-deflate.tif", grey}, {"card-palette-packbits.tif", colour},
      {"card-rgb-lzw.tif", colour},      {"card-rgb-planes.tif", colour},
      {"card-rgb-tiles.tif", colour},    {"card-rgba16.tif", colour},
      {"card-inks.tif", colour},         {"card-jpeg.tif", colour},
  };
  for (const auto& [name, header] : cases) {
    const TiffPages pages(std::string(IMAGES_FOLDER "/") + name);
    ASSERT_EQ(pages.Count(), 1U) << name;
    const TiffPage page = pages.Read(0);
    EXPECT_EQ(CardSeenIn(page.image), TheCard) << name;
    EXPECT_EQ(PngHeader(page.png), header) << name;
    EXPECT_EQ(CardSeenIn(DecodeImage(page.png)), TheCard) << name;
    // 300 dpi.
    EXPECT_THAT(page.png, HasSubstr(std::string("pHYs\0\0\x2e\x23\0\0\x2e\x23\x01", 13))) << name;
  }
}

TEST(TiffPages, TurnsPageAndPngUpright) {
  for (std::uint32_t orientation = 1; orientation <= 8; ++orientation) {
    for (const char* name : {"card-g4.tif", "card-rgb-lzw.tif"}) {
      std::string bytes = ImageBytes(name);
      const std::size_t at = bytes.find(std::string("\x12\x01\x03\0\x01\0\0\0\x01", 9));
      ASSERT_NE(at, std::string::npos);
      bytes[at + 8] = static_cast<char>(orientation);
      const TiffPage page = TiffPages::OfBytes(bytes).Read(0);
      EXPECT_EQ(CornerOfMark(page.image), Orientations[orientation - 1].corner) << orientation;
      EXPECT_EQ(page.image.width, Orientations[orientation - 1].onEnd ? 638 : 1012);
      EXPECT_EQ(DecodeImage(page.png).luminance, page.image.luminance) << orientation;
    }
  }
}

TEST(TiffPages, ReadsPagesOnThreadsAndByAnyName) {
  const auto file = std::filesystem::temp_directory_path() /
                    (u8"pages-\u00e9\u4e2d-" + std::u8string(100, u8'x') + u8".tif");
  std::ofstream(file, std::ios::binary) << ImageBytes("pages.tif");
  const TiffPages pages(file);
  ASSERT_EQ(pages.Count(), 2U);
  std::vector<std::future<TiffPage>> read;
  for (std::size_t i = 0; i < 8; ++i) {
    read.push_back(std::async(std::launch::async, [&pages, i] { return pages.Read(i % 2); }));
  }
  for (std::size_t i = 0; i < 8; ++i) {
    const TiffPage page = read[i].get();
    EXPECT_EQ(CornerOfMark(page.image), i % 2 == 0 ? "upper left" : "upper right");
    EXPECT_EQ(PngHeader(page.png), i % 2 == 0 ? "3 244 2 126 8 2 " : "2 126 3 244 8 2 ");
  }
  std::filesystem::remove(file);
  EXPECT_EQ(ReasonOf([&file] { TiffPages{file}; }), "the file cannot be read");
}

/// The process that works on pages lists them once, for as long as the file stays as it is.
TEST(TiffPages, AreThoseOfTheFileAsItIsNow) {
  const auto file = std::filesystem::temp_directory_path() / "replaced-pages.tif";
  PageRequest request;
  request.file = file.string();
  const auto decoded = [&request] {
    std::string text;
    WorkOn(request, [&text](const PageAnswer& answer) {
      if (const auto* const page = std::get_if<PageDecoded>(&answer); page != nullptr) {
        text += std::to_string(page->width) + " of " + std::to_string(page->pages);
      } else if (const auto* const done = std::get_if<PageDone>(&answer); done != nullptr) {
        text += done->error;
      }
    });
    return text;
  };
  const auto write = [&file](const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
  };
  write(ImageBytes("pages.tif"));
  EXPECT_EQ(decoded(), "1012 of 2");
  request.page = 1;
  EXPECT_EQ(decoded(), "638 of 2");
  write(ImageBytes("card-g4.tif"));
  EXPECT_EQ(decoded(), "the file has changed: it has 1 page now");
  request.page = 0;
  EXPECT_EQ(decoded(), "1012 of 1");
  // Of the same size.
  write(std::string(ImageBytes("card-g4.tif").size(), 'x'));
  std::filesystem::last_write_time(
      file, std::filesystem::file_time_type::clock::now() + std::chrono::seconds(1));
  EXPECT_THAT(decoded(), HasSubstr("this TIFF cannot be decoded: "));
  std::filesystem::remove(file);
  EXPECT_EQ(decoded(), "the file cannot be read");
}

TEST(TiffPages, NamesWhatIsWrongWithThePage) {
  const std::string start = std::string("II*\0", 4) + Number(8, 4);
  const auto sized = [](std::uint32_t width, std::uint32_t height, std::uint32_t packing = 1) {
    return Entry(256, width) + Entry(257, height) + Entry(258, 1) + Entry(259, packing) +
           Entry(262, 1);
  };
  const std::string strip = Entry(273, 8) + Entry(278, 0x7FFFFFFF) + Entry(279, 8);
  const std::string tile = Entry(322, 65520) + Entry(323, 65520) + Entry(324, 8) + Entry(325, 8);
  const std::pair<std::string, const char*> cases[] = {
      {Directory(sized(60000, 60000) + strip, 0), "60000 x 60000 pixels, at most 100 million"},
      {Directory(sized(1, 100000) + strip, 0), "at most 65535 along a side"},
      {Directory(sized(0, 10) + strip, 0), "this TIFF cannot be decoded: "},
      {Directory(sized(100, 100) + tile, 0), "strips or tiles are larger than"},
      {Directory(sized(9000, 9000) + strip, 0), "the file ends early"},
      {Directory(sized(9000, 9000), 0), "this TIFF cannot be decoded: "},
      {Directory(sized(100, 100, 50001) + strip, 0), "packed in a way that is not read"},
      {Directory(sized(100, 100) + strip, 8), "the file ends early"},  // leads to itself
      {Directory(Entry(254, 1) + sized(100, 100) + strip, 0), "it has no page"},
      {Directory(sized(100, 100) + strip, 100000), "the file ends early"},
      {Number(65535, 2), "the file ends early"},
  };
  for (const auto& [directory, reason] : cases) {
    const std::string bytes = start + directory;
    EXPECT_THAT(ReasonOf([&] { TiffPages::OfBytes(bytes).Read(0); }), HasSubstr(reason))
        << bytes.size();
  }
  std::string many = start;
  for (std::uint32_t i = 1; i <= 6000; ++i) {
    many += Directory("", i < 6000 ? static_cast<std::uint32_t>(many.size()) + 6 : 0);
  }
  EXPECT_THAT(ReasonOf([&] { TiffPages::OfBytes(many); }), HasSubstr("at most 5000 are taken"));
}

TEST(TiffPages, ReadsTheOthersBesideADamagedPage) {
  const auto onePixel = [](std::uint32_t at, std::uint32_t next) {
    return Directory(Entry(256, 1) + Entry(257, 1) + Entry(258, 8) + Entry(259, 1) + Entry(262, 1) +
                         Entry(273, at) + Entry(278, 1) + Entry(279, 1),
                     next);
  };
  const std::string first = std::string("II*\0", 4) + Number(8, 4) + onePixel(100000, 110);
  const std::string cut = first + onePixel(8, 0);
  ASSERT_EQ(first.size(), 110U);
  const TiffPages endingEarly = TiffPages::OfBytes(cut);
  EXPECT_EQ(ReasonOf([&] { endingEarly.Read(0); }), "the file ends early");
  EXPECT_EQ(endingEarly.Read(1).image.width, 1);

  std::string bytes = ImageBytes("pages.tif");
  std::fill(bytes.begin() + 8, bytes.begin() + 200, '\xFF');
  const TiffPages pages = TiffPages::OfBytes(bytes);
  ASSERT_EQ(pages.Count(), 2U);
  EXPECT_THAT(ReasonOf([&] { pages.Read(0); }), HasSubstr("this TIFF cannot be decoded: "));
  EXPECT_EQ(CornerOfMark(pages.Read(1).image), "upper right");
}

}  // namespace
}  // namespace conduit
