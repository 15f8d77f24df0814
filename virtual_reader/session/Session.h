#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "virtual_reader/pages/PageReaders.h"
#include "virtual_reader/session/Document.h"

namespace conduit {

/// The documents of a session, one after the other. [one thread at a time]
class DocumentSource {
 public:
  DocumentSource() = default;
  DocumentSource(const DocumentSource&) = delete;
  DocumentSource& operator=(const DocumentSource&) = delete;
  virtual ~DocumentSource() = default;

  /// Returns nothing when there is no document, or none yet.
  virtual std::optional<Document> Next() = 0;

  /// Returns whether there can be a document later when there is none.
  virtual bool CanGrow() const { return false; }
};

/// What the reader is to do between its connection and its disconnection.
struct Session {
  std::shared_ptr<PageReaders> readers;  ///< for the images of the documents
  std::unique_ptr<DocumentSource> documents;
  std::vector<std::string> remarks;  ///< notes for the log, before anything is played
};

/// Reads and checks what the location names: a session file, a folder whose
/// images are the documents, or, behind "watch:", such a folder as it fills.
/// Throws SessionError.
Session ReadSession(const std::filesystem::path& location);

}  // namespace conduit
