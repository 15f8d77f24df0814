#include "conformance/BuiltInSession.h"

#include <fstream>
#include <stdexcept>
#include <string>

#include "platform/FilePath.h"

namespace conduit {
namespace {

constexpr const char* Session = R"({
  "steps": [
    {"document": {
      "codeline": [
        "P<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<<<<<<<<<",
        "L898902C36UTO7408122F1204159ZE184226B<<<<<10"
      ],
      "images": {"IMAGEVIS": "page.png"},
      "barcodes": [
        {"symbology": "BARCODE_PDF417", "text": "CONDUIT-VALIDATE-317"},
        {"symbology": "BARCODE_QRCODE", "text": "CONDUIT-VALIDATE-327"}
      ]
    }},
    {"pause": 20},
    {"swipe": ["%B4111111111111111^MUSTER/JORDAN A^3112101000000000?"]},
    {"pause": 20},
    {"document": {"images": {"IMAGEVIS": "page.png"}}},
    {"pause": 20}
  ]
}
)";

/// A PNG image of one white pixel.
constexpr unsigned char Page[] = {
    0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48,
    0x44, 0x52, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x00, 0x00, 0x00,
    0x00, 0x3A, 0x7E, 0x9B, 0x55, 0x00, 0x00, 0x00, 0x0A, 0x49, 0x44, 0x41, 0x54, 0x78,
    0xDA, 0x63, 0xF8, 0x0F, 0x00, 0x01, 0x01, 0x01, 0x00, 0x1C, 0xB0, 0x8C, 0x99, 0x00,
    0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};

void Write(const std::filesystem::path& file, const void* bytes, std::size_t size) {
  std::ofstream stream(file, std::ios::binary);
  stream.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(size));
  if (!stream.flush()) {
    throw std::runtime_error("cannot write " + Utf8FromPath(file));
  }
}

std::filesystem::path WriteText(const std::filesystem::path& file, const std::string& text) {
  Write(file, text.data(), text.size());
  return file;
}

}  // namespace

std::filesystem::path WriteBuiltInSession(const std::filesystem::path& folder) {
  Write(folder / "page.png", Page, sizeof Page);
  return WriteText(folder / "session.json", Session);
}

std::filesystem::path WriteSessionOfManyDocuments(const std::filesystem::path& folder) {
  constexpr int documents = 10;
  Write(folder / "page.png", Page, sizeof Page);
  std::string steps;
  for (int i = 0; i < documents; ++i) {
    steps.append(i == 0 ? "" : ",").append(R"({"document":{"images":{"IMAGEVIS":"page.png"}}})");
  }
  return WriteText(folder / "documents.json", R"({"steps":[)" + steps + "]}\n");
}

}  // namespace conduit
