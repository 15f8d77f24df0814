#include "virtual_reader/images/ImageFormat.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string>

#include "platform/FilePath.h"

namespace conduit {
namespace {

using namespace std::string_view_literals;

constexpr struct {
  ImageFormat format;
  std::string_view start;
} Signatures[] = {
    {ImageFormat::Png, "\x89PNG\r\n\x1a\n"sv},
    {ImageFormat::Jpeg, "\xFF\xD8\xFF"sv},
    {ImageFormat::Tiff, "II*\0"sv},
    {ImageFormat::Tiff, "MM\0*"sv},
    {ImageFormat::Tiff, "II+\0"sv},  // BigTIFF, for files beyond 4 GB
    {ImageFormat::Tiff, "MM\0+"sv},
};

/// The signature "BM" is too short to identify a BMP, so this also checks the length of
/// the second header, which differs by version.
bool IsBmp(std::string_view bytes) {
  constexpr std::string_view known[] = {"\x0c\0\0\0"sv, "\x28\0\0\0"sv, "\x34\0\0\0"sv,
                                        "\x38\0\0\0"sv, "\x6c\0\0\0"sv, "\x7c\0\0\0"sv};
  return bytes.starts_with("BM") && bytes.size() >= 18 &&
         std::find(std::begin(known), std::end(known), bytes.substr(14, 4)) != std::end(known);
}

}  // namespace

std::optional<ImageFormat> FormatOf(std::string_view bytes) {
  for (const auto& row : Signatures) {
    if (bytes.starts_with(row.start)) {
      return row.format;
    }
  }
  return IsBmp(bytes) ? std::optional(ImageFormat::Bmp) : std::nullopt;
}

const char* NameOf(ImageFormat format) {
  switch (format) {
    case ImageFormat::Png:
      return "PNG";
    case ImageFormat::Jpeg:
      return "JPEG";
    case ImageFormat::Tiff:
      return "TIFF";
    case ImageFormat::Bmp:
      break;
  }
  return "BMP";
}

bool HasExtension(const std::filesystem::path& file,
                  std::initializer_list<std::string_view> known) {
  std::string extension = Utf8FromPath(file.extension());
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return std::find(known.begin(), known.end(), extension) != known.end();
}

bool IsImageName(const std::filesystem::path& file) {
  return HasExtension(file, {".png", ".jpg", ".jpeg", ".tif", ".tiff", ".bmp"});
}

}  // namespace conduit
