#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "hosting/RunListener.h"

namespace conduit {

/// Saves every item's bytes as a file: `document-00001-scan_png/IMAGEVIS.png`, the
/// second of the name `IMAGEVIS-2.png`. The folder is named after what the reader
/// says that the document comes from; `document-00000/` takes what belongs to none.
/// An item that came without its data leaves no file.
///
/// Two runs never share a folder: `document-00000/` is there from the start, so that another
/// run finds a folder that is not empty. It goes at the end when it holds nothing.
class SaveSink final : public RunListener {
 public:
  /// Creates the folder. Throws a std::runtime_error that names it and the reason
  /// when it cannot be used; one that holds anything is not.
  explicit SaveSink(const std::filesystem::path& path);
  ~SaveSink() override;
  SaveSink(const SaveSink&) = delete;
  SaveSink& operator=(const SaveSink&) = delete;

  void OnDataBegan(const Document& document) override;
  /// Throws a std::runtime_error when the file cannot be written.
  void OnItem(const ItemReceived& item) override;

 private:
  std::filesystem::path NewFile(const ItemReceived& item);

  const std::filesystem::path folder;
  const std::filesystem::path claim;

  /// How many items of a name there were, by the name in lower case: Windows tells no
  /// cases apart.
  using NameCounts = std::map<std::string, int>;
  NameCounts outside;  ///< documents
  NameCounts inside;   ///< the document under way
};

}  // namespace conduit
