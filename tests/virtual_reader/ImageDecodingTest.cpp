#include <png.h>

#include <cstring>
#include <random>

#include "tests/virtual_reader/ImageFiles.h"
#include "virtual_reader/images/ImageDecoding.h"
#include "virtual_reader/images/Orientation.h"

namespace conduit {
namespace {

using testing::AllOf;
using testing::Ge;
using testing::HasSubstr;
using testing::Le;

std::string BigEndian(std::uint32_t value, int bytes) {
  std::string text;
  for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
    text += static_cast<char>(value >> shift & 0xFF);
  }
  return text;
}

TEST(ImageDecoding, ReadsEveryKindOfPixel) {
  for (const char* name :
       {"card-grey1.png", "card-grey8.png", "card-grey16-interlaced.png", "card-palette.png",
        "card-rgb-interlaced.png", "card-rgb16.png", "card-grey-alpha.png", "card-rgba16.png",
        "card-rgba-interlaced.png", "card-baseline.jpg", "card-progressive.jpg", "card-inks.jpg",
        "card.bmp", "card-g4.tif"}) {
    const PageImage image = DecodeImage(ImageBytes(name));
    EXPECT_EQ(CardSeenIn(image), TheCard) << name;
    EXPECT_THAT(image.luminance.back(), Ge(254)) << name;
  }
}

TEST(ImageDecoding, WeighsColoursAndLaysThemOnWhite) {
  for (const char* name :
       {"colours.png", "colours.jpg", "colours.tif", "colours.bmp", "colours-32bit.bmp"}) {
    const PageImage image = DecodeImage(ImageBytes(name));
    ASSERT_EQ(image.luminance.size(), 1600U) << name;
    int x = 10;
    for (const int light : {76, 150, 29, 127}) {
      EXPECT_THAT(image.luminance[static_cast<std::size_t>(800 + x)],
                  AllOf(Ge(light - 2), Le(light + 2)))
          << name << " at " << x;
      x += 20;
    }
  }
}

TEST(ImageDecoding, TurnsThePageUpright) {
  const std::string jpeg = ImageBytes("card-baseline.jpg");
  const std::string png = ImageBytes("card-grey1.png");
  for (std::uint32_t orientation = 1; orientation <= 8; ++orientation) {
    std::string exif("Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\0\0\0\0\0\0\0", 32);
    exif[25] = static_cast<char>(orientation);
    const std::string directory = exif.substr(6);
    std::string turnedJpeg = jpeg;
    turnedJpeg.insert(
        2, "\xFF\xE1" + BigEndian(static_cast<std::uint32_t>(exif.size()) + 2, 2) + exif);
    std::string turnedPng = png;
    constexpr std::size_t behindHeader = 33;
    turnedPng.insert(behindHeader, BigEndian(static_cast<std::uint32_t>(directory.size()), 4) +
                                       "eXIf" + directory + "none");
    const auto& [corner, onEnd] = Orientations[orientation - 1];
    for (const std::string& bytes : {turnedJpeg, turnedPng}) {
      const PageImage image = DecodeImage(bytes);
      EXPECT_EQ(CornerOfMark(image), corner) << orientation;
      EXPECT_EQ(image.width, onEnd ? 638 : 1012) << orientation;
    }
  }
}

/// Its next row is its next pixel, so that a turn can be taken for none.
TEST(ImageDecoding, TurnsAColumnOfPixels) {
  for (const int orientation : {5, 6, 7, 8}) {
    const PageImage row = Upright({1, 3, {10, 20, 30}}, orientation);
    EXPECT_EQ(row.width, 3) << orientation;
    EXPECT_EQ(row.height, 1) << orientation;
    EXPECT_EQ(row.luminance.front(), orientation == 5 || orientation == 8 ? 10 : 30) << orientation;
  }
}

/// A page of A3 at 600 dpi, with a dark line at its lower edge.
TEST(ImageDecoding, ReadsTheLargestPage) {
  constexpr int width = 7016;
  constexpr int height = 9921;
  std::vector<png_byte> light(std::size_t{width} * height, 255);
  std::fill(light.end() - width, light.end(), png_byte{0});
  png_image png = {};
  png.version = PNG_IMAGE_VERSION;
  png.width = width;
  png.height = height;
  png.format = PNG_FORMAT_GRAY;
  png.flags = PNG_IMAGE_FLAG_FAST;
  std::string bytes(std::size_t{1} << 22, '\0');
  png_alloc_size_t size = bytes.size();
  ASSERT_NE(png_image_write_to_memory(&png, bytes.data(), &size, 0, light.data(), 0, nullptr), 0);
  bytes.resize(size);
  EXPECT_EQ(DecodeImage(bytes).luminance, light);
}

TEST(ImageDecoding, RefusesBySizeBeforeItDecodes) {
  const auto sized = [](const std::string& name, std::size_t at, const std::string& size) {
    return ImageBytes(name).replace(at, size.size(), size);
  };
  const std::string side = BigEndian(60000, 4);
  std::string jpeg = ImageBytes("card-baseline.jpg");
  const std::size_t frame = jpeg.find("\xFF\xC0");
  std::string progressive = ImageBytes("card-progressive.jpg");
  const std::size_t progressiveFrame = progressive.find("\xFF\xC2");
  const std::pair<std::string, const char*> cases[] = {
      {sized("card-grey1.png", 16, side + side),
       "the image has 60000 x 60000 pixels, at most 100 million are taken"},
      {sized("card-grey1.png", 16, BigEndian(1, 4) + BigEndian(100000, 4)),
       "the image has 1 x 100000 pixels, at most 65535 along a side are taken"},
      {sized("card-grey1.png", 16, BigEndian(0, 4)), "the image has no pixels"},
      {jpeg.replace(frame + 5, 4, BigEndian(60000, 2) + BigEndian(60000, 2)), "60000 x 60000"},
      {progressive.replace(progressiveFrame + 5, 4, BigEndian(9000, 2) + BigEndian(9000, 2)),
       "a progressive one of 9000 x 9000 pixels"},
      {sized("card.bmp", 18, std::string("\x60\xEA\0\0\x60\xEA\0\0", 8)), "60000 x 60000"},
      {sized("card.bmp", 22, std::string("\0\0\0\x80", 4)), "1012 x 2147483648 pixels"},
      {"text", "it is neither a PNG, a JPEG, a TIFF nor a BMP image"},
      {"BM as a text may begin", "it is neither a PNG, a JPEG, a TIFF nor a BMP image"},
  };
  for (const auto& [bytes, reason] : cases) {
    EXPECT_THAT(ReasonOf([&image = bytes] { DecodeImage(image); }), HasSubstr(reason));
  }
}

TEST(ImageDecoding, TakesNoPartOfAPageForAPage) {
  for (const char* name :
       {"card-grey1.png", "card-rgb-interlaced.png", "card-baseline.jpg", "card-progressive.jpg",
        "card.bmp", "card-g4.tif", "card-jpeg.tif", "card-rgb-tiles.tif"}) {
    const std::string bytes = ImageBytes(name);
    for (std::size_t size = 20; size < bytes.size(); size += bytes.size() / 50) {
      EXPECT_EQ(ReasonOf([&] { DecodeImage(bytes.substr(0, size)); }), "the file ends early")
          << name << " of " << size;
    }
    EXPECT_EQ(ReasonOf([&] { DecodeImage(bytes.substr(0, bytes.size() - 1)); }),
              "the file ends early")
        << name;
  }
  // Cut in the middle and closed, as a program may that repairs files.
  const std::string jpeg = ImageBytes("card-baseline.jpg");
  EXPECT_THAT(ReasonOf([&] { DecodeImage(jpeg.substr(0, jpeg.size() / 2) + "\xFF\xD9"); }),
              HasSubstr("this JPEG cannot be decoded: "));
}

TEST(ImageDecoding, OutlivesDamage) {
  std::mt19937 random(1);
  for (const char* folder : {SEEDS_FOLDER "/page", SEEDS_FOLDER "/tiff"}) {
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
      const std::string bytes = ReadInputFile(file, 1 << 20);
      int refused = 0;
      for (int turn = 0; turn < 200; ++turn) {
        std::string damaged = bytes;
        for (unsigned flips = random() % 4 + 1; flips > 0; --flips) {
          damaged[random() % bytes.size()] ^= static_cast<char>(1U << random() % 8);
        }
        try {
          const PageImage image = DecodeImage(damaged);
          EXPECT_EQ(image.luminance.size(),
                    static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height));
        } catch (const std::invalid_argument& error) {
          EXPECT_STRNE(error.what(), "") << file.path();
          ++refused;
        }
      }
      // A BMP has few bytes that are not pixels.
      EXPECT_THAT(refused, Ge(file.path().extension() == ".bmp" ? 1 : 20)) << file.path();
    }
  }
}

}  // namespace
}  // namespace conduit
