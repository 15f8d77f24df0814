#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "virtual_reader/session/Step.h"

namespace conduit {

/// A file that holds an image of a document.
struct ImageFile {
  ReaderDataType type;  ///< it is sent as
  std::string name;     ///< in the log
  std::string place;    ///< heads an error
  std::filesystem::path path;
  std::optional<std::uint32_t> tiffPage = {};  ///< from 0; absent: the first page of a TIFF
  std::string error = {};                      ///< why it cannot be read, where that is known
};

/// What the reader searches the images of a document for: only data that the session does not give.
struct PagesWanted {
  bool codeline = true;
  bool barcodes = true;
  bool aamva = true;
};

/// The reader plays actions as they are. Images are read before they are sent.
using DocumentPart = std::variant<Step, std::vector<ImageFile>>;

/// What the reader plays in one piece: a step of a session file, or a page of a folder.
struct Document {
  std::string name = {};  ///< in the log; empty when nothing is laid on the window
  std::vector<DocumentPart> parts = {};
  PagesWanted wanted = {};
  bool isScan = false;  ///< has one image; when it cannot be read, the document has no data
};

/// Returns the actions that end the document; adds an empty step when images end it.
Step* LastActions(Document* document);

}  // namespace conduit
