#pragma once

#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string_view>

namespace conduit {

/// The formats that scanner programs write.
enum class ImageFormat { Png, Jpeg, Tiff, Bmp };

/// Detects the format by the file's first bytes; std::nullopt when it is none of these.
std::optional<ImageFormat> FormatOf(std::string_view bytes);

/// Returns the name for messages: "PNG", "JPEG", "TIFF", "BMP".
const char* NameOf(ImageFormat format);

/// Returns whether the file has one of the extensions. Ignores case.
/// @param known  in lower case, with the dot
bool HasExtension(const std::filesystem::path& file, std::initializer_list<std::string_view> known);

/// Returns whether the file's extension is that of an image: .png, .jpg, .jpeg, .tif,
/// .tiff, .bmp. Ignores case.
bool IsImageName(const std::filesystem::path& file);

}  // namespace conduit
