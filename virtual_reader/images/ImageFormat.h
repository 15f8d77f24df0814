#pragma once

#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string_view>

namespace conduit {

/// The formats that scanner programs write.
enum class ImageFormat { Png, Jpeg, Tiff, Bmp };

/// The format that a file begins as, whatever it is called; nothing when it is none.
std::optional<ImageFormat> FormatOf(std::string_view bytes);

/// As it is written in a sentence: "PNG", "JPEG", "TIFF", "BMP".
const char* NameOf(ImageFormat format);

/// Whether a file's extension is among these, which are in small letters.
bool HasExtension(const std::filesystem::path& file, std::initializer_list<std::string_view> known);

/// Whether a file is called as an image of one of the formats: .png, .jpg, .jpeg,
/// .tif, .tiff, .bmp, in letters of either case.
bool IsImageName(const std::filesystem::path& file);

}  // namespace conduit
