#pragma once

#include <filesystem>
#include <set>
#include <string>

#include "hosting/Happening.h"

namespace conduit {

/// Saves every item's bytes as a file: `document-00001-scan_png/IMAGEVIS.png`, the
/// second of the name `IMAGEVIS-2.png`. The folder is named after what the reader
/// says that the document comes from; `document-00000/` takes what belongs to none.
/// An item that came without its data leaves no file.
class SaveSink final : public ISink {
 public:
  /// Creates the folder. Throws a std::runtime_error that names it and the reason
  /// when it cannot be used; one that holds anything is not.
  explicit SaveSink(const std::filesystem::path& folder);

  /// Throws a std::runtime_error when a file cannot be written.
  void Receive(const Happening& happening) override;

 private:
  void Save(const ItemReceived& item);
  std::filesystem::path NewFile(const ItemReceived& item);

  const std::filesystem::path folder;
  int documents = 0;
  std::string document;  ///< what the one laid down comes from, if the reader says so
  std::string documentFolder;
  std::set<std::string> taken;  ///< files, in lower case: Windows tells no cases apart
};

}  // namespace conduit
