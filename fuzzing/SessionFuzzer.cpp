// Reads an arbitrary file as a session, in a folder with no other file.
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "virtual_reader/ReaderResult.h"
#include "virtual_reader/session/DocumentStep.h"
#include "virtual_reader/session/Session.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path folder = [] {
    auto made =
        std::filesystem::temp_directory_path() / ("conduit-fuzz-" + std::to_string(::getpid()));
    std::filesystem::create_directory(made);
    return made;
  }();
  const std::filesystem::path file = folder / "session.json";
  std::ofstream(file, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  try {
    const conduit::Session session = conduit::ReadSession(file);
    for (const conduit::Document& document : session.documents->Next()) {
      conduit::MakeStep(document, conduit::ReadImages(document, session.readers.get()));
    }
  } catch (const conduit::SessionError&) {
    // The only exception for a refused session.
  }
  return 0;
}
