#pragma once

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace conduit {

/// A picture as its light values, row by row: 0 black to 255 white.
struct PageImage {
  int width;
  int height;
  std::vector<std::uint8_t> light;
};

/// Whether a file's extension is among these, which are in small letters.
bool HasExtension(const std::filesystem::path& file, std::initializer_list<std::string_view> known);

/// Whether a file is called as an image that can be decoded: .png, .jpg, .jpeg.
bool IsImageName(const std::filesystem::path& file);

/// Decodes a PNG or JPEG. Throws std::invalid_argument with the reason when it
/// is none, ends early, is damaged, or has more pixels than a page.
PageImage DecodeImage(std::string_view bytes);

/// An image file as it is sent, and what it shows.
struct ImageFile {
  std::string bytes;
  std::optional<PageImage> image;  ///< absent: neither named nor begun as a PNG or JPEG
};

/// Throws std::invalid_argument with the reason when the file cannot be read, or
/// claims to be an image and is none.
ImageFile ReadImageFile(const std::filesystem::path& file, std::uintmax_t limit);

}  // namespace conduit
