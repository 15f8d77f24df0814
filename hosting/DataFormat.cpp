#include "hosting/DataFormat.h"

#include <algorithm>
#include <iterator>

#include "hosting/Utf8.h"

namespace conduit {
namespace {

using namespace std::string_view_literals;

struct Signature {
  std::string_view bytes;
  std::string_view name;
  std::string_view extension;
  std::string_view mediaType;  ///< empty where browsers do not show it
};

constexpr Signature Signatures[] = {
    {"\x89PNG\r\n\x1a\n"sv, "PNG", ".png", "image/png"},
    {"\xFF\xD8\xFF"sv, "JPEG", ".jpg", "image/jpeg"},
    {"BM"sv, "BMP", ".bmp", "image/bmp"},
    {"\0\0\0\x0CjP  \r\n\x87\n"sv, "JP2", ".jp2", ""},  // JPEG 2000, the usual photo of a chip
    {"\xFF\x4F\xFF\x51"sv, "J2K", ".j2k", ""},          // JPEG 2000 without the file around it
    {"II*\0"sv, "TIFF", ".tif", ""},
    {"MM\0*"sv, "TIFF", ".tif", ""},
    {"GIF8"sv, "GIF", ".gif", "image/gif"},
};

/// Controls that belong to the texts in barcodes: line ends, and the separators
/// and the end mark of ISO/IEC 15434 messages.
constexpr std::string_view BarcodeControls = "\t\n\r\x04\x1C\x1D\x1E\x1F";

bool IsOtherControl(char character) {
  const bool control = (character >= 0 && character < ' ') || character == '\x7F';
  return control && BarcodeControls.find(character) == std::string_view::npos;
}

const Signature& SignatureOf(std::string_view data) {
  static constexpr Signature unknown{"", "", ".bin", ""};
  const auto* signature = std::ranges::find_if(
      Signatures, [data](const Signature& one) { return data.starts_with(one.bytes); });
  return signature == std::end(Signatures) ? unknown : *signature;
}

}  // namespace

std::string_view DataFormat(std::string_view data) { return SignatureOf(data).name; }

std::string_view FileExtension(std::string_view data) { return SignatureOf(data).extension; }

std::string_view BrowserMediaType(std::string_view data) { return SignatureOf(data).mediaType; }

bool ReadsAsText(ItemType type, std::string_view data) {
  if (type == ItemTypeText) {
    return true;
  }
  if (type == ItemTypeImage) {
    return false;
  }
  return IsUtf8(data) && std::ranges::none_of(data, IsOtherControl);
}

}  // namespace conduit
