#include "console_host/DataFormat.h"

#include <algorithm>

#include "console_host/Utf8.h"

namespace conduit {

namespace {

using namespace std::string_view_literals;

struct Signature {
  std::string_view bytes;
  std::string_view name;
};

constexpr Signature Signatures[] = {
    {"\x89PNG\r\n\x1a\n"sv, "PNG"},
    {"\xFF\xD8\xFF"sv, "JPEG"},
    {"BM"sv, "BMP"},
    {"\0\0\0\x0CjP  \r\n\x87\n"sv, "JP2"},  // JPEG 2000, the usual photo of a chip
    {"\xFF\x4F\xFF\x51"sv, "J2K"},          // JPEG 2000 without the file around it
    {"II*\0"sv, "TIFF"},
    {"MM\0*"sv, "TIFF"},
    {"GIF8"sv, "GIF"},
};

/// Controls that belong to the texts in barcodes: line ends, and the separators
/// and the end mark of ISO/IEC 15434 messages.
constexpr std::string_view BarcodeControls = "\t\n\r\x04\x1C\x1D\x1E\x1F";

bool IsOtherControl(char character) {
  const bool control = (character >= 0 && character < ' ') || character == '\x7F';
  return control && BarcodeControls.find(character) == std::string_view::npos;
}

}  // namespace

std::string_view DataFormat(std::string_view data) {
  for (const Signature& signature : Signatures) {
    if (data.starts_with(signature.bytes)) {
      return signature.name;
    }
  }
  return "";
}

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
