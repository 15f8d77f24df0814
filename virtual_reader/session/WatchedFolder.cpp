#include <chrono>
#include <deque>
#include <map>
#include <set>
#include <system_error>
#include <utility>

#include "platform/FilePath.h"
#include "virtual_reader/ReaderResult.h"
#include "virtual_reader/session/FolderSession.h"
#include "virtual_reader/session/PageSession.h"
#include "virtual_reader/session/ScanDocuments.h"

namespace conduit {
namespace {

using Clock = std::chrono::steady_clock;

/// A file that stays as it is for so long has stopped growing. Scanner programs
/// write a page in pieces, which come as fast as the light moves.
constexpr std::chrono::milliseconds QuietTime(1500);

/// Differs after a file was written to.
struct Shape {
  std::uintmax_t size = 0;
  std::filesystem::file_time_type written;

  bool operator==(const Shape&) const = default;
};

Shape ShapeOf(const std::filesystem::path& file) {
  std::error_code goneMeanwhile;
  const std::uintmax_t size = std::filesystem::file_size(file, goneMeanwhile);
  if (goneMeanwhile) {
    return {};
  }
  return {size, std::filesystem::last_write_time(file, goneMeanwhile)};
}

struct WatchedFile {
  Shape shape;
  Clock::time_point since;  ///< it has this shape
  bool taken = false;       ///< in this shape
};

class WatchedFolder : public DocumentSource {
 public:
  WatchedFolder(std::filesystem::path folder, std::shared_ptr<PageReaders> readers)
      : folder(std::move(folder)), readers(std::move(readers)) {}

  std::deque<Document> Next() override {
    try {
      if (settled.empty() && notes.empty()) {
        const ScanFolder listed = ListScans(folder);
        if (std::exchange(isAway, false)) {
          return {Playing(SendEvent{ReaderEventCode::ReaderErrorResolved})};
        }
        Look(listed);
      }
    } catch (const SessionError& error) {
      if (!std::exchange(isAway, true)) {
        return {Playing(RaiseError{Utf8FromPath(folder) + ": " + error.what()})};
      }
    }
    if (settled.empty()) {
      return std::exchange(notes, {});
    }
    const ScanFolder::Scan scan = std::move(settled.front());
    settled.pop_front();
    return DocumentsOf(folder, scan, readers.get());
  }

  bool CanGrow() const override { return true; }

 private:
  template <typename ActionType>
  static Document Playing(ActionType action) {
    Document document;
    Add(LastActions(&document), std::move(action));
    return document;
  }

  void Look(const ScanFolder& listed) {
    Forget(listed);
    for (const ScanFolder::Scan& scan : listed.scans) {
      const Shape shape = ShapeOf(folder / PathFromUtf8(scan.image));
      // An empty file is one that somebody is about to write.
      if (shape.size > 0 && HasSettled(scan.image, shape)) {
        settled.push_back(scan);
      }
    }
    for (const ScanFolder::Unread& unread : listed.unread) {
      const Shape shape = ShapeOf(folder / PathFromUtf8(unread.name));
      if (!told.contains(unread.name) && HasSettled(unread.name, shape)) {
        told.insert(unread.name);
        notes.push_back(Playing(WriteLine{unread.name + ": not read: " + unread.reason}));
      }
    }
    isFirstLook = false;
  }

  /// Returns whether the file has stopped growing, once for each shape of it.
  bool HasSettled(const std::string& name, const Shape& shape) {
    const Clock::time_point now = Clock::now();
    WatchedFile& file = files[name];
    if (file.since == Clock::time_point() || file.shape != shape) {
      file = {shape, now};
    }
    // A file from before the start is complete. Later a file's own time may come from the clock
    // of another machine.
    const bool isOld =
        isFirstLook && std::filesystem::file_time_type::clock::now() - shape.written >= QuietTime;
    const bool hasSettled = !file.taken && (isOld || now - file.since >= QuietTime);
    file.taken = file.taken || hasSettled;
    return hasSettled;
  }

  /// A name that comes back is a new file.
  void Forget(const ScanFolder& listed) {
    std::set<std::string> present;
    for (const ScanFolder::Scan& scan : listed.scans) {
      present.insert(scan.image);
    }
    for (const ScanFolder::Unread& unread : listed.unread) {
      present.insert(unread.name);
    }
    std::erase_if(files, [&present](const auto& file) { return !present.contains(file.first); });
  }

  const std::filesystem::path folder;
  const std::shared_ptr<PageReaders> readers;
  std::map<std::string, WatchedFile> files;
  std::set<std::string> told;            ///< the unread files that a note was written of
  std::deque<ScanFolder::Scan> settled;  ///< and not yet taken
  std::deque<Document> notes;            ///< on the files that are not read, after those
  bool isFirstLook = true;
  bool isAway = false;
};

}  // namespace

Session WatchFolder(const std::filesystem::path& folder) {
  ListScans(folder);
  Session session;
  session.readers = MakePageReaders();
  RemarkLimits(&session);
  session.documents = std::make_unique<WatchedFolder>(folder, session.readers);
  return session;
}

}  // namespace conduit
