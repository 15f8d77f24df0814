#pragma once

#include <deque>
#include <filesystem>
#include <memory>
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

  /// Returns the documents that follow, as many as are listed at once; none at the end, and none
  /// while a source that can grow has no more yet.
  virtual std::deque<Document> Next() = 0;

  virtual bool CanGrow() const { return false; }
};

/// What the reader is to do between its connection and its disconnection.
struct Session {
  std::shared_ptr<PageReaders> readers;  ///< for the images of the documents
  std::unique_ptr<DocumentSource> documents;
  std::vector<std::string> remarks;  ///< notes for the log, before anything is played
};

/// Reads and checks the session at `location`: a session file, a folder whose images are the
/// documents, or, after "watch:", such a folder as it fills. Throws SessionError.
Session ReadSession(const std::filesystem::path& location);

}  // namespace conduit
